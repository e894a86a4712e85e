#include "service/reply/listedquestion.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/style/myproxystyle.h"
#include "ui/text/textwrap.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <algorithm>

/// The places and styles of the entries of the conversation.
class TestBubbles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void question_places();
    void question_styles();
    void question_of446Pixels_staysOnOneLine();
    void question_wider_isWrappedAtCharacters();
    void question_withMarkup_isShownAsTyped();
    void message_places();
    void message_of446Pixels_keepsItsWidth_wider_isWrapped();
    void answer_places();
    void answer_styles();
    void foldBars_styles_data();
    void foldBars_styles();
    void answer_paragraphs();
    void answer_tallIsFolded_andOpensAndRetracts();
    void answer_withoutContent();
    void focusedLink_hasNoFrame();

private:
    [[nodiscard]] static QWidget *bubbleOf(const QLabel *label) { return label->parentWidget(); }
    [[nodiscard]] static QLabel *pictureOf(const QWidget *item, const char *image);
    [[nodiscard]] QSize hintOf(int row) const { return m_list->item(row)->sizeHint(); }

    /// An answer at the end of the list.
    [[nodiscard]] AnswerItem *makeAnswer(const QString &title, const QString &reply);

    /// A text of Latin letters that is exactly \a width px wide in the style of \a label.
    [[nodiscard]] static QString textOfWidth(int width, const QFontMetrics &metrics);

    std::unique_ptr<QWidget> m_window;
    ConversationList *m_list = nullptr;
    ConversationPictures m_pictures;
};

void TestBubbles::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(648, 432);
    m_list = new ConversationList(m_window.get());
    m_list->setGeometry(0, 0, 648, 432);
    m_window->show();
}

void TestBubbles::cleanup()
{
    m_window.reset();
}

QLabel *TestBubbles::pictureOf(const QWidget *item, const char *image)
{
    const auto labels = item->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (label->styleSheet()
            == QStringLiteral("QLabel{border-image: url(:/Images/%1);}")
                   .arg(QLatin1String(image))) {
            return label;
        }
    }
    return nullptr;
}

QString TestBubbles::textOfWidth(int width, const QFontMetrics &metrics)
{
    // Letters of different widths make up for the remainder.
    const QString letters = QStringLiteral("nmilwtfrjaos");
    QString text;
    while (metrics.horizontalAdvance(text + QLatin1Char('n')) <= width - 30) {
        text += QLatin1Char('n');
    }
    for (const QChar a : letters) {
        for (const QChar b : letters) {
            for (const QChar c : letters) {
                QString candidate = text + a + b + c;
                if (metrics.horizontalAdvance(candidate) == width) {
                    return candidate;
                }
            }
        }
    }
    return {};
}

AnswerItem *TestBubbles::makeAnswer(const QString &title, const QString &reply)
{
    auto *answer = new AnswerItem(title, m_list->nextParent());
    answer->setFoldState(initialFoldState(answer->setReply(reply, title, m_pictures)));
    m_list->append(answer);
    return answer;
}

void TestBubbles::question_places()
{
    auto *bubble = new QuestionBubble(QStringLiteral("如何修改密码？"), m_list->nextParent());
    m_list->append(bubble);
    const QSize text = bubble->label()->size();
    QVERIFY(text.width() > 50);
    QCOMPARE(bubble->label()->geometry(), QRect(QPoint(12, 10), text));
    QCOMPARE(bubbleOf(bubble->label())->geometry(),
             QRect(540 - text.width(), 12, text.width() + 25, text.height() + 22));
    QCOMPARE(bubble->size(), QSize(648, text.height() + 50));
    QCOMPARE(hintOf(0), bubble->size());
    QCOMPARE(pictureOf(bubble, "icon-user.png")->geometry(), QRect(582, 10, 42, 42));
    QCOMPARE(pictureOf(bubble, "icon-triangle_right.png")->geometry(), QRect(565, 25, 9, 16));
}

void TestBubbles::question_styles()
{
    const QuestionBubble bubble(QStringLiteral("如何修改密码？"), m_list->nextParent());
    QCOMPARE(bubble.styleSheet(), QStringLiteral("background-color:rgb(255, 255, 255);"));
    QCOMPARE(bubble.label()->styleSheet(),
             QStringLiteral("QLabel{selection-color:white;selection-background-color:rgb(0,120,215)"
                            ";background-color:transparent;color:rgb(29,38,51);font:14px Microsoft "
                            "YaHei;}"));
    QCOMPARE(bubbleOf(bubble.label())->styleSheet(),
             QStringLiteral("QWidget{background-color:rgb(223, 237, 255);border-radius: "
                            "6px;border-width:1px;}"));
    QCOMPARE(bubble.label()->font().pixelSize(), 14);
    QVERIFY(!bubble.label()->font().bold());
    QCOMPARE(bubble.label()->textInteractionFlags(), Qt::TextSelectableByMouse
                                                         | Qt::LinksAccessibleByMouse
                                                         | Qt::LinksAccessibleByKeyboard);
    QCOMPARE(bubble.label()->contextMenuPolicy(), Qt::CustomContextMenu);
}

void TestBubbles::question_of446Pixels_staysOnOneLine()
{
    const QuestionBubble any(QStringLiteral("x"), m_list->nextParent());
    const QString text = textOfWidth(446, any.label()->fontMetrics());
    QVERIFY(!text.isEmpty());
    const QuestionBubble bubble(text, m_list->nextParent());
    QCOMPARE(bubble.label()->text(), text);
    QVERIFY(!bubble.label()->wordWrap());
}

void TestBubbles::question_wider_isWrappedAtCharacters()
{
    const QuestionBubble any(QStringLiteral("x"), m_list->nextParent());
    const QFontMetrics metrics = any.label()->fontMetrics();
    const QString text = textOfWidth(447, metrics);
    QVERIFY(!text.isEmpty());
    const QuestionBubble bubble(text, m_list->nextParent());
    QCOMPARE(bubble.label()->text(), brokenToWidth(metrics, text, 446));
    QCOMPARE(bubble.label()->text().count(QLatin1Char('\n')), 1);
    QCOMPARE(bubble.label()->width(), 446);
    QVERIFY(bubble.label()->wordWrap());
    QCOMPARE(bubbleOf(bubble.label())->geometry().right() + 1, 565);
}

void TestBubbles::question_withMarkup_isShownAsTyped()
{
    const QString typed = QStringLiteral("<b>粗体</b> 怎么写？");
    const QuestionBubble bubble(typed, m_list->nextParent());
    QCOMPARE(bubble.label()->text(), typed);
    QCOMPARE(bubble.label()->textFormat(), Qt::PlainText);
}

void TestBubbles::message_places()
{
    auto *bubble = new MessageBubble(QStringLiteral("您好"), m_list->nextParent());
    m_list->append(bubble);
    const QSize text = bubble->label()->size();
    QCOMPARE(bubble->label()->geometry(), QRect(QPoint(11, 10), text));
    QCOMPARE(bubbleOf(bubble->label())->geometry(),
             QRect(83, 20, text.width() + 25, text.height() + 22));
    QCOMPARE(hintOf(0), QSize(648, text.height() + 50));
    QCOMPARE(pictureOf(bubble, "icon-robot.png")->geometry(), QRect(22, 20, 42, 42));
    QCOMPARE(pictureOf(bubble, "icon-triangle_left.png")->geometry(), QRect(74, 32, 9, 18));
    QVERIFY(bubble->label()->font().bold());
    QCOMPARE(bubbleOf(bubble->label())->styleSheet(),
             QStringLiteral("QWidget{background-color:rgb(244, 245, 248);border-radius: "
                            "6px;border-width:1px;}"));
}

void TestBubbles::message_of446Pixels_keepsItsWidth_wider_isWrapped()
{
    const MessageBubble any(QStringLiteral("x"), m_list->nextParent());
    const QFontMetrics metrics = any.label()->fontMetrics();
    const MessageBubble fits(textOfWidth(446, metrics), m_list->nextParent());
    QCOMPARE(fits.label()->width(), 446);
    QVERIFY(!fits.label()->wordWrap());
    const QString wide = textOfWidth(447, metrics);
    const MessageBubble wraps(wide, m_list->nextParent());
    QCOMPARE(wraps.label()->width(), 446);
    QVERIFY(wraps.label()->wordWrap());
    QCOMPARE(wraps.label()->text(), wide);
}

void TestBubbles::answer_places()
{
    const AnswerItem *answer = makeAnswer(QStringLiteral("如何修改密码？"),
                                          QStringLiteral("<p>打开设置。</p><p>选择密码。</p>"));
    const int content = answer->content()->contentHeight();
    QCOMPARE(answer->titleLabel()->x(), 11);
    QCOMPARE(answer->titleLabel()->y(), 7);
    QCOMPARE(answer->titleLabel()->width(), 446);
    const int titleTerm = answer->titleLabel()->height();
    QCOMPARE(answer->content()->geometry(), QRect(11, titleTerm + 25, 446, content));
    QCOMPARE(bubbleOf(answer->titleLabel())->geometry(),
             QRect(83, 10, 469, titleTerm + content + 48));
    QCOMPARE(hintOf(0), QSize(648, titleTerm + content + 68));
    QCOMPARE(pictureOf(answer, "icon-robot.png")->geometry(), QRect(22, 10, 42, 42));
    QCOMPARE(pictureOf(answer, "icon-triangle_left.png")->geometry(), QRect(74, 22, 9, 18));

    // The title's own height, of one line of bold text, is the term less 11.
    QLabel plain(QStringLiteral("如何修改密码？"), m_list);
    plain.setStyleSheet(answer->titleLabel()->styleSheet());
    plain.adjustSize();
    QCOMPARE(titleTerm, plain.height() - 1 + 12);
}

void TestBubbles::answer_styles()
{
    const AnswerItem *answer = makeAnswer(QStringLiteral("标题"), QStringLiteral("<p>段</p>"));
    QCOMPARE(answer->titleLabel()->styleSheet(),
             QStringLiteral("QLabel{selection-color:white;selection-background-color:rgb(0,120,215)"
                            ";background-color:transparent;color:rgb(29,38,51);font:bold 14px "
                            "Microsoft YaHei;}"));
    QVERIFY(answer->titleLabel()->wordWrap());
    QVERIFY(answer->titleLabel()->openExternalLinks());
    QCOMPARE(answer->titleLabel()->contextMenuPolicy(), Qt::CustomContextMenu);
    const auto labels = bubbleOf(answer->titleLabel())
                            ->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(1)->styleSheet(),
             QStringLiteral("QLabel{border-bottom:1px solid rgb(208, 210, 217);}"));
    QCOMPARE(labels.at(1)->geometry(), QRect(11, answer->titleLabel()->height() + 12, 446, 1));
    QCOMPARE(
        answer->content()->styleSheet(),
        QStringLiteral("QListWidget{border:none;background-color:transparent;}"
                       "QListWidget::Item{border:none;background-color:transparent;}"
                       "QListWidget::Item:hover{border:none;background-color:transparent;}"
                       "QListWidget::Item:selected{border:none;background-color:transparent;}"));
    QCOMPARE(answer->content()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(answer->content()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    const QLabel *paragraph = answer->content()->paragraphs().first();
    QCOMPARE(paragraph->styleSheet(),
             QStringLiteral("QLabel{selection-color:white;selection-background-color:rgb(0,120,215)"
                            ";background-color:rgb(244, 245, 248);border:none;}"));
    QCOMPARE(paragraph->parentWidget()->styleSheet(),
             QStringLiteral("background-color:transparent;"));
}

void TestBubbles::foldBars_styles_data()
{
    QTest::addColumn<bool>("withBox");
    QTest::addColumn<QVector<int>>("openLines");
    QTest::addColumn<QVector<int>>("retractLines");
    QTest::newRow("plain") << false << QVector<int>{11} << QVector<int>{11};
    QTest::newRow("with box") << true << QVector<int>{11, 44} << QVector<int>{11, 42};
}

void TestBubbles::foldBars_styles()
{
    QFETCH(bool, withBox);
    QFETCH(QVector<int>, openLines);
    QFETCH(QVector<int>, retractLines);
    QLabel measure;
    auto *answer = new AnswerItem(QStringLiteral("标题"), m_list->nextParent());
    answer->setReply(QStringLiteral("<p>一行文字</p>").repeated(20), QString(), m_pictures);
    if (withBox) {
        answer->setRecommends({}, &measure);
    }
    answer->setFoldState(FoldState::Folded);
    const auto check = [answer](const char *image, const QVector<int> &lines) {
        const QString style
            = QStringLiteral("QPushButton{border-image:url(:/Images/%1);border:none;}")
                  .arg(QLatin1String(image));
        const auto buttons = answer->findChildren<QPushButton *>();
        const auto button
            = std::find_if(buttons.cbegin(), buttons.cend(),
                           [&](const QPushButton *each) { return each->styleSheet() == style; });
        QVERIFY(button != buttons.cend());
        QCOMPARE((*button)->geometry(), QRect(235, 22, 16, 9));
        QCOMPARE((*button)->cursor().shape(), Qt::PointingHandCursor);
        const QWidget *bar = (*button)->parentWidget();
        QCOMPARE(bar->styleSheet(),
                 QStringLiteral("QWidget{background-color:rgb(244, 245, 248);border:none;}"));
        const auto labels = bar->findChildren<QLabel *>();
        QCOMPARE(labels.size(), lines.size());
        for (int i = 0; i < lines.size(); ++i) {
            QCOMPARE(labels.at(i)->geometry(), QRect(11, lines.at(i), 446, 1));
            QCOMPARE(labels.at(i)->styleSheet(),
                     QStringLiteral("QLabel{border-bottom:1px solid rgb(208, 210, 217);}"));
        }
    };
    check("btn-open.png", openLines);
    check("btn-retract.png", retractLines);
}

void TestBubbles::answer_paragraphs()
{
    const AnswerItem *answer = makeAnswer(
        QStringLiteral("标题"), QStringLiteral("<p>第一段 <b>粗</b></p><br><p>第二段</p>"));
    const QVector<QLabel *> &paragraphs = answer->content()->paragraphs();
    QCOMPARE(paragraphs.size(), 2);
    QCOMPARE(answer->content()->count(), 2);
    QCOMPARE(paragraphs.at(0)->text(), QStringLiteral("<p>第一段 <b>粗</b></p>"));
    QCOMPARE(paragraphs.at(1)->text(), QStringLiteral("<p>第二段</p>"));
    int height = 0;
    for (const QLabel *label : paragraphs) {
        QCOMPARE(label->geometry(), QRect(0, 0, 446, label->height()));
        QCOMPARE(label->font().pixelSize(), 14);
        QCOMPARE(label->font().family(), QStringLiteral("Microsoft YaHei"));
        QVERIFY(label->wordWrap());
        QVERIFY(label->openExternalLinks());
        QCOMPARE(
            answer->content()->item(paragraphs.indexOf(const_cast<QLabel *>(label)))->sizeHint(),
            QSize(446, label->height()));
        height += label->height();
    }
    QCOMPARE(answer->content()->contentHeight(), height);
}

void TestBubbles::answer_tallIsFolded_andOpensAndRetracts()
{
    AnswerItem &answer
        = *makeAnswer(QStringLiteral("标题"), QStringLiteral("<p>一行文字</p>").repeated(20));
    QVERIFY(answer.content()->contentHeight() > 151);
    QCOMPARE(answer.size(), QSize(648, 230));
    QVector<FoldState> requested;
    connect(&answer, &AnswerItem::foldRequested, this,
            [&requested](FoldState fold) { requested.append(fold); });
    const auto buttons = answer.findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 2);
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QCOMPARE(requested, QVector<FoldState>{FoldState::Opened});
    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QCOMPARE(requested, (QVector<FoldState>{FoldState::Opened, FoldState::Folded}));

    answer.setFoldState(FoldState::Opened);
    QCOMPARE(answer.height(),
             answer.titleLabel()->height() + answer.content()->contentHeight() + 100);
    QVERIFY(buttons.at(0)->parentWidget()->isHidden());
    QVERIFY(!buttons.at(1)->parentWidget()->isHidden());
    answer.setFoldState(FoldState::Folded);
    QCOMPARE(answer.size(), QSize(648, 230));
    QVERIFY(buttons.at(1)->parentWidget()->isHidden());
}

void TestBubbles::answer_withoutContent()
{
    const AnswerItem &answer = *makeAnswer(QStringLiteral("标题"), QString());
    QCOMPARE(answer.content()->contentHeight(), 0);
    QCOMPARE(answer.height(), answer.titleLabel()->height() + 68);
}

void TestBubbles::focusedLink_hasNoFrame()
{
    QWidget owner;
    auto *style = new MyProxyStyle(&owner);
    QCOMPARE(style->styleHint(QStyle::SH_TextControl_FocusIndicatorTextCharFormat, nullptr, nullptr,
                              nullptr),
             0);
    QCOMPARE(style->styleHint(QStyle::SH_EtchDisabledText, nullptr, nullptr, nullptr),
             QApplication::style()->styleHint(QStyle::SH_EtchDisabledText));
}

QTEST_MAIN(TestBubbles)
#include "tst_bubbles.moc"
