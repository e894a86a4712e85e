#include "service/reply/listedquestion.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"
#include "ui/preview/imagedisplay.h"

#include <QAccessible>
#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>

#include <memory>

/// What a screen reader finds when it walks the windows from the top.
class TestReaderTree : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windows_areWindows();
    void noArea_isAFrame();
    void everyPicture_isNamed();
    void rowsOfQuestions_arePressedByTheReader();
    void preview_isReadInOrder();
    void everyWindow_namesItsControls();
    void conversation_leadsDownAndUpTheSameWay();
    void questionAndAnswer_areToldApart();
    void answer_isReadInOrder();
    void openedAnswer_readsTheOtherBar();
    void picture_isRead();
    void link_isPressedByTheReader();
    void focusedLink_saysSo();
    void recommendation_isPressedByTheReader();
    void recommendationsOnTheirOwn_areRead();
    void sleepingEntry_isReadWhole();
    void coveredPage_isNoStopAndNotRead();
    void coveredPage_handsTheFocusOn();
    void whatIsFoldedAway_isNoStopAndIsRead();

private:
    using Found = QVector<QAccessibleInterface *>;

    static void collect(QAccessibleInterface *top, Found &found);
    [[nodiscard]] static Found below(QWidget *widget);
    [[nodiscard]] static QStringList names(const Found &found);
    [[nodiscard]] static QAccessibleInterface *named(const Found &found, const QString &name);
    [[nodiscard]] QARegion *region() const { return m_bench->window().findChild<QARegion *>(); }
    [[nodiscard]] QWidget *lastEntry() const
    {
        return m_bench->window().findChildren<AnswerItem *>().last();
    }

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

const QString title = QStringLiteral("标题");
const QString text = QStringLiteral("<p>先<a href=\"https://a.example/x\">链<b>接</b></a>后</p>");

QVector<ListedQuestion> recommends(int count)
{
    QVector<ListedQuestion> questions;
    for (int i = 1; i <= count; ++i) {
        questions.append({QStringLiteral("荐%1").arg(i), i});
    }
    return questions;
}

QString picture()
{
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
        .arg(QLatin1String(bytes.toBase64()));
}

} // namespace

void TestReaderTree::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
}

void TestReaderTree::cleanup()
{
    m_bench.reset();
}

void TestReaderTree::collect(QAccessibleInterface *top, Found &found)
{
    found.append(top);
    for (int i = 0; i < top->childCount(); ++i) {
        if (QAccessibleInterface *child = top->child(i)) {
            collect(child, found);
        }
    }
}

TestReaderTree::Found TestReaderTree::below(QWidget *widget)
{
    Found found;
    collect(QAccessible::queryAccessibleInterface(widget), found);
    return found;
}

QStringList TestReaderTree::names(const Found &found)
{
    QStringList texts;
    for (const QAccessibleInterface *interface : found) {
        texts.append(interface->text(QAccessible::Name));
    }
    return texts;
}

QAccessibleInterface *TestReaderTree::named(const Found &found, const QString &name)
{
    const int place = names(found).indexOf(name);
    if (place < 0) {
        qFatal("nothing is read as %s", qUtf8Printable(name));
    }
    return found.at(place);
}

void TestReaderTree::windows_areWindows()
{
    region()->showAnswer(title, picture());
    region()->picture_preview(0);
    const auto roleOf = [](QObject *window) {
        return QAccessible::queryAccessibleInterface(window)->role();
    };
    QCOMPARE(roleOf(&m_bench->window()), QAccessible::Window);
    QCOMPARE(roleOf(region()->preview()), QAccessible::Window);
    QCOMPARE(roleOf(region()), QAccessible::Client);
}

void TestReaderTree::noArea_isAFrame()
{
    m_bench->window().about_clicked();
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *window : all) {
        Found found = below(window);
        found.removeFirst();
        for (const QAccessibleInterface *interface : qAsConst(found)) {
            QVERIFY(interface->role() != QAccessible::Border);
            QVERIFY(interface->role() != QAccessible::Window);
        }
    }
}

void TestReaderTree::everyPicture_isNamed()
{
    region()->showAnswer(title, picture());
    region()->picture_preview(0);
    int pictures = 0;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *window : all) {
        const Found found = below(window);
        for (const QAccessibleInterface *interface : found) {
            const bool isPicture = interface->role() == QAccessible::Graphic;
            pictures += isPicture ? 1 : 0;
            QVERIFY(!isPicture || !interface->text(QAccessible::Name).isEmpty());
        }
    }
    QCOMPARE(pictures, 2); // in the title bar, and in the preview
}

void TestReaderTree::rowsOfQuestions_arePressedByTheReader()
{
    m_bench->serveHotQuestions(2);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().at(2), QStringLiteral("3. "));
    Found lists;
    const Found found = below(&m_bench->window());
    for (QAccessibleInterface *interface : found) {
        if (interface->role() == QAccessible::List) {
            lists.append(interface);
        }
    }
    QAccessibleInterface *hot = lists.last();
    QCOMPARE(hot->text(QAccessible::Name), QStringLiteral("热门问答"));
    QCOMPARE(hot->childCount(), 2); // the empty rows are not read
    QAccessibleInterface *row = hot->child(1);
    QCOMPARE(row->role(), QAccessible::Button);
    QCOMPARE(row->parent(), hot);
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_bench->questions(), QStringList{row->text(QAccessible::Name)});
}

void TestReaderTree::preview_isReadInOrder()
{
    region()->showAnswer(title, picture());
    region()->picture_preview(0);
    QStringList read = names(below(region()->preview()));
    read.removeAll(QString()); // areas
    QCOMPARE(read, (QStringList{QStringLiteral("图片预览"), QStringLiteral("图片预览"),
                                QStringLiteral("1 / 1"), title, QStringLiteral("最小化"),
                                QStringLiteral("最大化"), QStringLiteral("关闭"), title,
                                QStringLiteral("原始大小"), QStringLiteral("适应窗口"),
                                QStringLiteral("上一张"), QStringLiteral("下一张"),
                                QStringLiteral("放大"), QStringLiteral("缩小")}));
}

void TestReaderTree::everyWindow_namesItsControls()
{
    region()->showAnswerWithRecommends(title, text.repeated(30) + picture(), recommends(7),
                                       QStringLiteral("问"));
    region()->picture_preview(0);
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation_process();
    m_bench->window().inputEdit_rightMenu();
    m_bench->window().about_clicked();
    int buttons = 0;
    int windows = 0;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget *window : all) {
        if (!window->isVisible()) {
            continue;
        }
        ++windows;
        const Found found = below(window);
        for (QAccessibleInterface *interface : found) {
            const bool isControl = interface->role() == QAccessible::Button
                                || interface->role() == QAccessible::Link;
            if (isControl && interface->parent()->role() != QAccessible::ScrollBar) {
                QVERIFY(!interface->text(QAccessible::Name).isEmpty());
                QVERIFY(interface->actionInterface() != nullptr);
                ++buttons;
            }
        }
    }
    QVERIFY(windows >= 4); // main window, preview, menu, dialog
    QVERIFY2(buttons > 30 + 20, qPrintable(QString::number(buttons)));
}

void TestReaderTree::conversation_leadsDownAndUpTheSameWay()
{
    region()->showAnswerWithRecommends(title, text + picture(), recommends(7), QString());
    const Found found = below(m_bench->window().findChild<ConversationList *>());
    QVERIFY(found.size() > 15);
    for (QAccessibleInterface *interface : found) {
        for (int i = 0; i < interface->childCount(); ++i) {
            QCOMPARE(interface->child(i)->parent(), interface);
            QCOMPARE(interface->indexOfChild(interface->child(i)), i);
        }
    }
}

void TestReaderTree::questionAndAnswer_areToldApart()
{
    region()->addQuestionBubble(title);
    region()->showAnswer(title, text);
    region()->addRobotMessage(title);
    QAccessibleInterface *list
        = QAccessible::queryAccessibleInterface(m_bench->window().findChild<ConversationList *>());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 4);
    QStringList entries;
    for (int i = 1; i < 4; ++i) {
        QCOMPARE(list->child(i)->role(), QAccessible::ListItem);
        entries.append(list->child(i)->text(QAccessible::Name));
    }
    QCOMPARE(entries, (QStringList{QStringLiteral("您：标题"), QStringLiteral("Miravel：标题"),
                                   QStringLiteral("Miravel：标题")}));
}

void TestReaderTree::answer_isReadInOrder()
{
    region()->showAnswerWithRecommends(title, text + QStringLiteral("<p>长</p>").repeated(20),
                                       recommends(2), QString());
    QStringList expected{QStringLiteral("Miravel：标题"), title, QStringLiteral("先链接后"),
                         QStringLiteral("链接")};
    for (int i = 0; i < 20; ++i) {
        expected.append(QStringLiteral("长"));
    }
    expected << QStringLiteral("展开") << QStringLiteral("推荐问题")
             << QStringLiteral("如果未解决您的问题，试试下面的问法：") << QStringLiteral("荐1")
             << QStringLiteral("荐2") << QStringLiteral("没有您想了解的问题？")
             << QStringLiteral("换一换");
    QCOMPARE(names(below(lastEntry())), expected);
}

void TestReaderTree::openedAnswer_readsTheOtherBar()
{
    region()->showAnswer(title, QStringLiteral("<p>长</p>").repeated(20));
    region()->FoldToOpen_answer(0);
    QCOMPARE(names(below(lastEntry())).last(), QStringLiteral("收起"));
}

void TestReaderTree::picture_isRead()
{
    region()->showAnswer(title, text + picture());
    QAccessibleInterface *button = named(below(lastEntry()), QStringLiteral("查看图片"));
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(region()->preview() != nullptr);
}

void TestReaderTree::link_isPressedByTheReader()
{
    region()->showAnswer(title, QStringLiteral("<p>先<a href=\"file:///x\">链接</a></p>"));
    const Found found = below(lastEntry());
    QAccessibleInterface *link = named(found, QStringLiteral("链接"));
    QCOMPARE(link->role(), QAccessible::Link);
    auto *label = qobject_cast<QLabel *>(link->parent()->object());
    const QSignalSpy pressed(label, &QLabel::linkActivated);
    link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(pressed.size(), 1);
    QVERIFY(QRect(label->mapToGlobal(QPoint()), label->size()).contains(link->rect()));
    QVERIFY(link->rect().width() > 10);
}

void TestReaderTree::focusedLink_saysSo()
{
    region()->showAnswer(title, text);
    QAccessibleInterface *link = named(below(lastEntry()), QStringLiteral("链接"));
    QVERIFY(link->state().focusable);
    qobject_cast<QWidget *>(link->parent()->object())->setFocus();
    QVERIFY(!link->state().focused);
    QTest::keyClick(m_bench->window().focusWidget(), Qt::Key_Tab);
    QVERIFY(link->state().focused);
    m_bench->input()->setFocus();
    QVERIFY(!link->state().focused);
}

void TestReaderTree::recommendation_isPressedByTheReader()
{
    region()->showAnswerWithRecommends(title, text, recommends(2), QString());
    QAccessibleInterface *row = named(below(lastEntry()), QStringLiteral("荐2"));
    QVERIFY(
        row->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("荐2")});
}

void TestReaderTree::recommendationsOnTheirOwn_areRead()
{
    region()->showRecommendOnly(recommends(2), QString());
    const QStringList read = names(below(m_bench->window().findChild<ConversationList *>()));
    QCOMPARE(read.mid(read.size() - 8),
             (QStringList{QStringLiteral("Miravel：推荐问题"), QStringLiteral("推荐问题"),
                          QStringLiteral("您是要咨询以下问题么？"), QStringLiteral("大家都在问："),
                          QStringLiteral("荐1"), QStringLiteral("荐2"),
                          QStringLiteral("没有您想了解的问题？"), QStringLiteral("换一换")}));
}

void TestReaderTree::sleepingEntry_isReadWhole()
{
    region()->showAnswer(title, text);
    for (int i = 0; i < 60; ++i) {
        region()->addQuestionBubble(QStringLiteral("问"));
    }
    auto *answer = m_bench->window().findChild<AnswerItem *>();
    QTRY_VERIFY(!answer->isAwake());
    QCOMPARE(names(below(answer)),
             (QStringList{QStringLiteral("Miravel：标题"), title, QStringLiteral("先链接后"),
                          QStringLiteral("链接")}));
    region()->addQuestionBubble(QStringLiteral("问"));
    QTRY_VERIFY(!answer->isAwake());
}

void TestReaderTree::coveredPage_isNoStopAndNotRead()
{
    region()->showAnswerWithRecommends(title, text, recommends(15), QString());
    QPushButton *covered = m_bench->button(QStringLiteral("荐1"));
    region()->switchAnswerRecommends(0, QString());
    const QStringList read = names(below(&m_bench->window()));
    QVERIFY(read.contains(QStringLiteral("荐11")));
    QVERIFY(!read.contains(QStringLiteral("荐1")));
    QVERIFY(covered->isVisible()); // it stays where it was
    m_bench->input()->setFocus();
    QWidgetList stops;
    do {
        QTest::keyClick(m_bench->window().focusWidget(), Qt::Key_Tab);
        stops.append(m_bench->window().focusWidget());
    } while (stops.last() != m_bench->input() && stops.size() < 100);
    QVERIFY(stops.contains(m_bench->button(QStringLiteral("荐11"))));
    QVERIFY(!stops.contains(covered));
}

void TestReaderTree::coveredPage_handsTheFocusOn()
{
    region()->showAnswerWithRecommends(title, text, recommends(15), QString());
    m_bench->button(QStringLiteral("荐1"))->setFocus();
    region()->switchAnswerRecommends(0, QString());
    const auto *focus = qobject_cast<QPushButton *>(m_bench->window().focusWidget());
    QVERIFY(focus != nullptr);
    QCOMPARE(focus->text(), QStringLiteral("换一换"));
    QVERIFY(region()->isAncestorOf(focus));
}

void TestReaderTree::whatIsFoldedAway_isNoStopAndIsRead()
{
    region()->showAnswer(title,
                         QStringLiteral("<p>长</p>").repeated(20)
                             + QStringLiteral("<p><a href=\"https://a.example\">尾</a></p>"));
    QWidget *hidden
        = qobject_cast<QWidget *>(named(below(lastEntry()), QStringLiteral("尾"))->object());
    QVERIFY(hidden != nullptr);
    const auto stops = [this] {
        QWidgetList found;
        m_bench->input()->setFocus();
        do {
            QTest::keyClick(m_bench->window().focusWidget(), Qt::Key_Tab);
            found.append(m_bench->window().focusWidget());
        } while (found.last() != m_bench->input() && found.size() < 100);
        return found;
    };
    QVERIFY(!stops().contains(hidden));
    region()->FoldToOpen_answer(0);
    QVERIFY(stops().contains(hidden));
}

QTEST_MAIN(TestReaderTree)
#include "tst_readertree.moc"
