#include "service/reply/listedquestion.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/frame/titlebar.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/input/inputmenu.h"
#include "ui/mainwindow/input/inputpanel.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QAccessible>
#include <QApplication>
#include <QPushButton>
#include <QSet>
#include <QTest>
#include <QTextEdit>

#include <limits>

/// The window by keyboard alone, and as a screen reader meets it.
class TestWindowAccess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyControl_hasANameAndARole();
    void pictureButtons_haveToolTips();
    void inputBox_isAnEditableText();
    void hotQuestion_isPressedByTheReader();
    void suggestion_isReadAndPressedByTheReader();
    void inputMenu_isReadByTheReader();
    void tab_reachesEveryControl_inReadingOrder();
    void backTab_goesTheSameWayBack();
    void tab_goesThroughTheSuggestions_betweenConversationAndBox();
    void tab_reachesNewerEntriesInOrder();
    void tab_bringsWhatItReachesIntoView();
    void emptyRowsAndPlaceholders_areNoStops();
    void spacePressesTheFocusedControl();

private:
    [[nodiscard]] QWidgetList stops(bool forward);
    [[nodiscard]] static QAccessibleInterface *accessible(QObject *object)
    {
        return QAccessible::queryAccessibleInterface(object);
    }

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

constexpr int amplyMs = 30'000;

/// Everything that a reader finds inside \a interface.
void collect(QAccessibleInterface *interface, QVector<QAccessibleInterface *> &found)
{
    found.append(interface);
    for (int i = 0; i < interface->childCount(); ++i) {
        if (QAccessibleInterface *child = interface->child(i)) {
            collect(child, found);
        }
    }
}

} // namespace

void TestWindowAccess::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
    m_bench->send(QStringLiteral("先问"));
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    m_bench->input()->setFocus();
}

void TestWindowAccess::cleanup()
{
    m_bench.reset();
}

/// Where the Tab key goes from the input box until it is there again.
QWidgetList TestWindowAccess::stops(bool forward)
{
    QWidgetList found;
    m_bench->window().activateWindow();
    m_bench->input()->setFocus();
    // No widget has the focus while the system has yet to make the window the active one.
    const bool active
        = QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }, amplyMs);
    if (!active) {
        qFatal("the window does not get the keyboard");
    }
    constexpr int most = 500;
    while (found.size() < most) {
        QTest::keyClick(QApplication::focusWidget(), forward ? Qt::Key_Tab : Qt::Key_Backtab);
        found.append(QApplication::focusWidget());
        if (QApplication::focusWidget() == m_bench->input()) {
            return found;
        }
    }
    return found;
}

void TestWindowAccess::everyControl_hasANameAndARole()
{
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    QVERIFY(m_bench->popup() != nullptr);
    QVector<QAccessibleInterface *> all;
    collect(accessible(&m_bench->window()), all);
    int buttons = 0;
    int items = 0;
    for (QAccessibleInterface *interface : qAsConst(all)) {
        if (interface->state().invisible || interface->state().disabled) {
            continue;
        }
        const bool named = interface->role() == QAccessible::Button
                        || interface->role() == QAccessible::EditableText
                        || interface->role() == QAccessible::List
                        || interface->role() == QAccessible::ListItem;
        if (named && interface->parent()->role() != QAccessible::ScrollBar) {
            QVERIFY2(!interface->text(QAccessible::Name).isEmpty(),
                     interface->object() == nullptr
                         ? "a list item"
                         : interface->object()->metaObject()->className());
            buttons += interface->role() == QAccessible::Button ? 1 : 0;
            items += interface->role() == QAccessible::ListItem ? 1 : 0;
        }
    }
    // Title bar, sending, next page, closing the suggestions; hot questions, suggestions.
    QCOMPARE(buttons, 3 + 1 + 1 + 1 + 16 + 3);
    QCOMPARE(items, 3); // of the conversation
    QCOMPARE(accessible(&m_bench->window())->text(QAccessible::Name), QStringLiteral("Miravel"));
}

void TestWindowAccess::pictureButtons_haveToolTips()
{
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    const auto buttons = m_bench->window().findChildren<QPushButton *>();
    for (const QPushButton *button : buttons) {
        const bool onlyPicture = button->text().isEmpty()
                              && button->styleSheet().contains(QStringLiteral("border-image"));
        if (onlyPicture) {
            QVERIFY(!button->toolTip().isEmpty());
            QVERIFY(!button->accessibleName().isEmpty());
        }
    }
}

void TestWindowAccess::inputBox_isAnEditableText()
{
    QAccessibleInterface *box = accessible(m_bench->input());
    QCOMPARE(box->role(), QAccessible::EditableText);
    QCOMPARE(box->text(QAccessible::Name), QStringLiteral("问题"));
    QVERIFY(box->state().focusable);
    QVERIFY(box->state().focused);
    QVERIFY(box->textInterface() != nullptr);
    m_bench->input()->setPlainText(QStringLiteral("桌面"));
    QCOMPARE(box->textInterface()->text(0, 2), QStringLiteral("桌面"));
}

void TestWindowAccess::hotQuestion_isPressedByTheReader()
{
    QAccessibleInterface *row = accessible(m_bench->hotRow(2));
    QCOMPARE(row->text(QAccessible::Name), QStringLiteral("问2"));
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(m_bench->questions().last(), QStringLiteral("问2"));
}

void TestWindowAccess::suggestion_isReadAndPressedByTheReader()
{
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    QAccessibleInterface *row = accessible(m_bench->suggestion(2));
    QCOMPARE(row->text(QAccessible::Name), QStringLiteral("建议2"));
    row->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(m_bench->questions().last(), QStringLiteral("建议2"));
}

void TestWindowAccess::inputMenu_isReadByTheReader()
{
    m_bench->window().inputEdit_rightMenu();
    QAccessibleInterface *menu = accessible(m_bench->window().findChild<InputMenu *>());
    QCOMPARE(menu->childCount(), 3);
    QStringList names;
    for (int i = 0; i < menu->childCount(); ++i) {
        names.append(menu->child(i)->text(QAccessible::Name));
    }
    QCOMPARE(names,
             (QStringList{QStringLiteral("剪切"), QStringLiteral("复制"), QStringLiteral("粘贴")}));
    QVERIFY(menu->child(0)->state().disabled);
}

void TestWindowAccess::tab_reachesEveryControl_inReadingOrder()
{
    const QWidgetList order = stops(true);
    QSet<QWidget *> expected{m_bench->input()};
    const auto buttons = m_bench->window().findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->isVisible()) {
            expected.insert(button);
        }
    }
    for (QWidget *control : qAsConst(expected)) {
        QVERIFY2(order.contains(control), qPrintable(control->accessibleName()));
    }
    QCOMPARE(QSet<QWidget *>(order.begin(), order.end()).size(), order.size());
    QCOMPARE(order.first(), m_bench->button(QStringLiteral("发送")));
    QCOMPARE(order.at(1), m_bench->button(QStringLiteral("换一换")));
    for (int row = 1; row <= 16; ++row) {
        QCOMPARE(order.at(1 + row), m_bench->hotRow(row));
    }
    QCOMPARE(order.at(18), m_bench->button(QStringLiteral("关于")));
    QCOMPARE(order.at(19), m_bench->button(QStringLiteral("最小化")));
    QCOMPARE(order.at(20), m_bench->button(QStringLiteral("关闭")));
    QCOMPARE(order.last(), m_bench->input());
}

void TestWindowAccess::backTab_goesTheSameWayBack()
{
    QWidgetList there = stops(true);
    QWidgetList back = stops(false);
    std::reverse(back.begin(), back.end());
    back.append(back.takeFirst());
    QCOMPARE(back, there);
}

void TestWindowAccess::tab_goesThroughTheSuggestions_betweenConversationAndBox()
{
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    const QWidgetList order = stops(true);
    const int first = order.indexOf(m_bench->suggestion(1));
    QVERIFY(first > 0);
    QVERIFY(m_bench->window().findChild<QARegion *>()->isAncestorOf(order.at(first - 1)));
    QVERIFY(order.contains(m_bench->suggestion(2)));
    QVERIFY(order.contains(m_bench->suggestion(3)));
    QVERIFY(m_bench->popup()->isAncestorOf(order.at(order.size() - 2)));
}

void TestWindowAccess::tab_reachesNewerEntriesInOrder()
{
    auto *region = m_bench->window().findChild<QARegion *>();
    region->showRecommendOnly({{QStringLiteral("推荐一"), 1}, {QStringLiteral("推荐二"), 2}},
                              QStringLiteral("问"));
    const QWidgetList order = stops(true);
    int last = std::numeric_limits<int>::min();
    for (QWidget *stop : order) {
        if (region->isAncestorOf(stop)) {
            const int top = stop->mapTo(region, QPoint()).y();
            QVERIFY(top >= last);
            last = top;
        }
    }
    QVERIFY(last > std::numeric_limits<int>::min());
}

void TestWindowAccess::tab_bringsWhatItReachesIntoView()
{
    auto *region = m_bench->window().findChild<QARegion *>();
    for (int i = 0; i < 20; ++i) {
        region->addQuestionBubble(QStringLiteral("问题%1").arg(i));
    }
    const QWidgetList order = stops(true);
    bool met = false;
    for (QWidget *stop : order) {
        if (region->isAncestorOf(stop)) {
            stop->setFocus(Qt::OtherFocusReason);
            QTest::keyClick(stop, Qt::Key_Tab);
            QWidget *reached = QApplication::focusWidget();
            if (region->isAncestorOf(reached)) {
                met = true;
                QVERIFY2(!reached->visibleRegion().isEmpty(), "it is out of view");
            }
        }
    }
    QVERIFY(met);
}

void TestWindowAccess::emptyRowsAndPlaceholders_areNoStops()
{
    m_bench->serveHotQuestions(2);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().at(2), QStringLiteral("3. "));
    const QWidgetList order = stops(true);
    QVERIFY(order.contains(m_bench->hotRow(2)));
    QVERIFY(!order.contains(m_bench->hotRow(3)));
    m_bench->server().setReplyFor(WindowBench::hotPath, held(httpReply("{}")));
    m_bench->window().startForVdiClient();
    const QWidgetList loading = stops(true);
    for (const QWidget *stop : loading) {
        const auto *button = qobject_cast<const QPushButton *>(stop);
        QVERIFY(button == nullptr || button->text() != QStringLiteral("换一换"));
    }
}

void TestWindowAccess::spacePressesTheFocusedControl()
{
    m_bench->hotRow(4)->setFocus();
    QTest::keyClick(m_bench->hotRow(4), Qt::Key_Space);
    QCOMPARE(m_bench->questions().last(), QStringLiteral("问4"));
    QPushButton *next = m_bench->button(QStringLiteral("换一换"));
    next->setFocus();
    QTest::keyClick(next, Qt::Key_Space);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
}

QTEST_MAIN(TestWindowAccess)
#include "tst_windowaccess.moc"
