#include "service/reply/listedquestion.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/hotquestions/loadingoverlay.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"
#include "ui/preview/previewtoolbar.h"
#include "ui/style/styles.h"

#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <algorithm>

/// Style texts, places and cursors that other programs know the window by: to the letter.
class TestFixedLooks : public QObject
{
    Q_OBJECT

private slots:
    void hotQuestions();
    void loading();
    void titleBar();
    void inputPanel();
    void suggestions();
    void boxBelowAnAnswer();
    void boxOnItsOwn();
    void recommendationRow();
    void pictureRow();
    void answerRegion();
    void previewTools();
};

namespace {

const QString nextPage = QStringLiteral("换一换");

const QLatin1String foot("QLabel{color:rgb(117, 117, 117);font:14px Microsoft YaHei;}");
const QLatin1String nextRecommendations(
    "QPushButton{background:url(:/Images/btn-switch-association.png) no-repeat;margin-left: 0px;"
    "margin-top:0px;text-align: right bottom; padding-right: 0px;  padding-bottom: -1px;color:rgb("
    "117,117,117);}QPushButton:hover{background:url(:/Images/btn-switch-hover.png) no-repeat;color:"
    "rgb(41,100,245);}QPushButton:pressed{background:url(:/Images/btn-switch-pressed.png) no-repeat;"
    "color:rgb(37,90,219);}QPushButton{background-color: transparent;border:none;font:13px "
    "Microsoft YaHei;}");
const QLatin1String nextQuestions(
    "QPushButton{background:url(:/Images/btn-switch.png) no-repeat;margin-left: 0px;margin-top:0px;"
    "text-align: right bottom; padding-right: 0px;  padding-bottom: -1px;color:rgb(51,47,29);}"
    "QPushButton:hover{background:url(:/Images/btn-switch-hover.png) no-repeat;color:rgb(41,100,"
    "245);}QPushButton:pressed{background:url(:/Images/btn-switch-pressed.png) no-repeat;color:rgb("
    "37,90,219);}QPushButton{background-color: transparent;border:none;font:12px Microsoft YaHei;}");
const QLatin1String
    plainRows("QListWidget{border:none;background-color:transparent;}QListWidget::Item{border:none;"
              "background-color:transparent;}QListWidget::Item:hover{border:none;background-color:"
              "transparent;}QListWidget::Item:selected{border:none;background-color:transparent;}");

/// The widget of this kind that shows \a text; the program ends when there is none.
template <typename Widget>
Widget *showing(const QWidget &parent, const QString &text)
{
    for (Widget *widget : parent.findChildren<Widget *>()) {
        if (widget->text() == text) {
            return widget;
        }
    }
    qFatal("nothing shows %s", qPrintable(text));
}

QVector<ListedQuestion> recommendations()
{
    QVector<ListedQuestion> questions;
    for (int i = 0; i < 12; ++i) {
        questions.append({QStringLiteral("推荐%1").arg(i), i});
    }
    return questions;
}

/// Checks what both kinds of box have at the foot.
void checkFoot(const QWidget &box, const QRect &line, const QRect &hint, const QRect &button)
{
    auto *hintLabel = showing<QLabel>(box, QStringLiteral("没有您想了解的问题？"));
    QCOMPARE(hintLabel->geometry(), hint);
    QCOMPARE(hintLabel->styleSheet(), foot);
    auto *next = showing<QPushButton>(box, nextPage);
    QCOMPARE(next->geometry(), button);
    QCOMPARE(next->styleSheet(), nextRecommendations);
    QCOMPARE(next->cursor().shape(), Qt::PointingHandCursor);
    const auto labels = box.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    const auto isLine = [&line](const QLabel *label) {
        return label->geometry() == line
            && label->styleSheet()
                   == QLatin1String("QLabel{border-bottom:1px solid rgb(208, 210, 217);}");
    };
    QVERIFY(std::any_of(labels.begin(), labels.end(), isLine));
}

void checkPage(const RecommendPage &page, const QRect &place)
{
    QCOMPARE(page.geometry(), place);
    QCOMPARE(page.styleSheet(), plainRows);
    QCOMPARE(page.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

} // namespace

void TestFixedLooks::hotQuestions()
{
    const WindowBench bench;
    QWidget place;
    const HotQuestionsColumn column(&place);
    const auto labels = column.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(labels.at(0)->styleSheet().contains(QLatin1String("rgb(41, 100, 245)")));
    const QLabel *heading = showing<QLabel>(column, QStringLiteral("热门问答"));
    QVERIFY(heading->styleSheet().contains(QLatin1String("font:bold 14px")));
    QVERIFY(heading->styleSheet().contains(QLatin1String("rgb(29, 38, 51)")));
    const auto *next = showing<QPushButton>(column, nextPage);
    QCOMPARE(next->styleSheet(), nextQuestions);
    QCOMPARE(next->cursor().shape(), Qt::PointingHandCursor);
}

void TestFixedLooks::loading()
{
    WindowBench bench;
    bench.server().setReplyFor(WindowBench::hotPath, held(httpReply("{}")));
    bench.window().startForVdiClient();
    const auto *column = bench.window().findChild<HotQuestionsColumn *>();
    const auto frames = column->findChildren<QFrame *>(QString(), Qt::FindDirectChildrenOnly);
    int placeholders = 0;
    for (const QFrame *frame : frames) {
        if (frame->geometry() != QRect(24, 53, 224, 496) || !frame->isVisible()) {
            continue;
        }
        ++placeholders;
        QVERIFY(frame->styleSheet().contains(QLatin1String("1px solid rgb(238, 240, 244)")));
        const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(frame->graphicsEffect());
        QVERIFY(shadow != nullptr);
        QCOMPARE(shadow->offset(), QPointF(0, 0));
        QCOMPARE(shadow->color(), QColor(0xDC, 0xDC, 0xDC));
        QCOMPARE(shadow->blurRadius(), 8.0);
    }
    QVERIFY(placeholders >= 1);
    int buttons = 0;
    for (const QPushButton *button : column->findChildren<QPushButton *>()) {
        if (button->isVisible() && button->text() == nextPage) {
            ++buttons;
            QCOMPARE(button->geometry(), QRect(192, 26, 56, 14));
        }
    }
    QCOMPARE(buttons, 1);
}

void TestFixedLooks::titleBar()
{
    const WindowBench bench;
    const auto style = [&bench](const char16_t *name) {
        return bench.button(QString::fromUtf16(name))->styleSheet();
    };
    // Rows 0, 16 and 32 of a strip of 48 px.
    QCOMPARE(style(u"最小化"),
             QStringLiteral("QPushButton{border-image:url(:/Images/btn-min.png) 0 0 32 0;"
                            "border:none;}QPushButton:hover{border-image:url(:/Images/btn-min.png) "
                            "16 0 16 0;}QPushButton:pressed{border-image:url(:/Images/btn-min.png) "
                            "32 0 0 0;}"));
    QCOMPARE(style(u"关闭"), styles::threeStateSprite(QLatin1String("btn-close.png"), 16));
    for (const char16_t *name : {u"关于", u"最小化", u"关闭"}) {
        QCOMPARE(bench.button(QString::fromUtf16(name))->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestFixedLooks::inputPanel()
{
    const WindowBench bench;
    QCOMPARE(bench.input()->alignment(), Qt::AlignLeft);
    const QString panel = bench.input()->parentWidget()->styleSheet();
    QVERIFY(panel.contains(QLatin1String("background-color:white")));
    QVERIFY(panel.contains(QLatin1String("border-top:1px solid rgb(208, 210, 217)")));
    QVERIFY(panel.contains(QLatin1String("border-left:1px solid rgb(244, 245, 248)")));
    QVERIFY(panel.contains(QLatin1String("border-bottom:1px solid rgb(244, 245, 248)")));
    const QString send = bench.button(QStringLiteral("发送"))->styleSheet();
    QVERIFY(send.contains(QLatin1String("background-color:rgb(42, 100, 244);color:white;")));
    QVERIFY(send.contains(QLatin1String("font:bold 16px Microsoft YaHei;")));
    QVERIFY(send.contains(QLatin1String("QPushButton:hover{background-color:rgb(51, 109, 255);}")));
}

void TestFixedLooks::suggestions()
{
    const WindowBench bench;
    QWidget place;
    const SuggestionPopup popup({{QStringLiteral("a"), 1}}, QStringLiteral("a"), &place);
    const auto *close = popup.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(close->geometry(), QRect(622, 10, 16, 16));
    QCOMPARE(close->styleSheet(), styles::threeStateSprite(QLatin1String("btn-close.png"), 16));
    QCOMPARE(close->cursor().shape(), Qt::PointingHandCursor);
}

void TestFixedLooks::boxBelowAnAnswer()
{
    const WindowBench bench;
    QLabel measure;
    RecommendBox box(RecommendBox::Kind::BelowAnswer, recommendations(), &measure, nullptr);
    const auto *heading
        = showing<QLabel>(box, QStringLiteral("如果未解决您的问题，试试下面的问法："));
    QCOMPARE(heading->geometry(), QRect(11, 12, 260, 19));
    QCOMPARE(heading->styleSheet(),
             QStringLiteral("QLabel{color:rgb(29,38,51);font:bold 14px Microsoft YaHei;text-align: "
                            "left;border:none;}"));
    checkFoot(box, {11, 207, 438, 1}, {11, 219, 140, 20}, {385, 223, 64, 14});
    box.showNextPage();
    for (const RecommendPage *page : box.findChildren<RecommendPage *>()) {
        checkPage(*page, {11, 43, 440, 155});
    }
}

void TestFixedLooks::boxOnItsOwn()
{
    const WindowBench bench;
    QLabel measure;
    RecommendBox box(RecommendBox::Kind::OnItsOwn, recommendations(), &measure, nullptr);
    const auto *heading = showing<QLabel>(box, QStringLiteral("您是要咨询以下问题么？"));
    QCOMPARE(heading->geometry(), QRect(11, 12, 238, 19));
    QCOMPARE(heading->styleSheet(),
             QStringLiteral("QLabel{color:rgb(29,38,51);font:14px Microsoft YaHei;text-align: left;"
                            "border:none;}"));
    const auto *others = showing<QLabel>(box, QStringLiteral("大家都在问："));
    QCOMPARE(others->geometry(), QRect(11, 43, 84, 19));
    QCOMPARE(others->styleSheet(),
             QStringLiteral("QLabel{color:rgb(117,117,117);font:14px Microsoft YaHei;text-align: "
                            "left;border:none;}"));
    checkFoot(box, {11, 232, 438, 1}, {11, 244, 140, 20}, {385, 248, 64, 14});
    box.showNextPage();
    const auto pages = box.findChildren<RecommendPage *>();
    for (const RecommendPage *page : pages) {
        checkPage(*page, {11, 68, 440, 155});
    }
    QCOMPARE(pages.last()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

void TestFixedLooks::recommendationRow()
{
    const WindowBench bench;
    QLabel measure;
    const RecommendPage page(recommendations(), 0, RecommendPage::Elision::FirstOfBox, &measure,
                             nullptr);
    QCOMPARE(page.item(1)->sizeHint(), QSize(440, 31));
    const QWidget *row = page.itemWidget(page.item(1));
    QCOMPARE(row->size(), QSize(440, 31));
    QCOMPARE(row->styleSheet(), QStringLiteral("background-color:transparent;"));
    const auto *label = row->findChild<QLabel *>();
    QCOMPARE(label->geometry(), QRect(0, 6, 440, 19));
    QCOMPARE(label->styleSheet(),
             QStringLiteral("QLabel{background-color:rgb(244, 245, 248);color:rgb(41,100,245);font:"
                            "14px Microsoft YaHei;text-align: left;border:none;}"));
    const auto *button = row->findChild<QPushButton *>();
    QCOMPARE(button->geometry(), label->geometry());
    QCOMPARE(button->styleSheet(),
             QStringLiteral("QPushButton{background-color:transparent;border:none;}"));
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
}

void TestFixedLooks::pictureRow()
{
    const WindowBench bench;
    PictureRow row(nullptr);
    row.setPlace({100, 50}, false);
    const QString style = QStringLiteral("QPushButton{background-color: transparent;border:none;}");
    QCOMPARE(row.label()->styleSheet(), style);
    QCOMPARE(row.button()->styleSheet(), style);
    QVERIFY(row.button()->isFlat());
    QCOMPARE(row.button()->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(row.button()->contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(row.button()->geometry(), QRect(0, 4, 100, 50));
}

void TestFixedLooks::answerRegion()
{
    const WindowBench bench;
    const QARegion region;
    QCOMPARE(region.objectName(), QStringLiteral("QARegion"));
    QCOMPARE(region.size(), QSize(400, 300));
    QCOMPARE(region.contentsMargins(), QMargins());
    QCOMPARE(region.windowTitle(), QStringLiteral("Form"));
    const auto *list = region.findChild<ConversationList *>();
    QCOMPARE(list->geometry(), QRect(1, 0, 648, 432));
    QCOMPARE(list->styleSheet(), QStringLiteral("QListWidget{background-color:white;}"));
    QCOMPARE(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    const QWidget *inner = list->parentWidget();
    QCOMPARE(inner->minimumSize(), QSize(647, 490));
    QCOMPARE(inner->maximumSize(), QSize(647, 490));
    QCOMPARE(inner->styleSheet(), QStringLiteral("QWidget{background-color:white;border:none;}"));
    const auto labels = inner->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 1);
    QVERIFY(labels.first()->isHidden());
    QCOMPARE(labels.first()->styleSheet(), QStringLiteral("QLabel{font:14px Microsoft YaHei;}"));
}

void TestFixedLooks::previewTools()
{
    const WindowBench bench;
    QWidget place;
    PreviewToolBar bar(&place);
    const auto row = [](const QPushButton *button, const char *image, int top, int bottom) {
        return button->styleSheet().contains(
            QStringLiteral("border-image:url(:/Images/%1) %2 0 %3 0;")
                .arg(QLatin1String(image))
                .arg(top)
                .arg(bottom));
    };
    for (const int top : {0, 28, 56, 84}) {
        QVERIFY(row(bar.oneToOneButton(), "btn-preview-1.png", top, 84 - top));
        QVERIFY(row(bar.fitButton(), "btn-preview-2.png", top, 84 - top));
        QVERIFY(row(bar.zoomInButton(), "btn-preview-3.png", top, 84 - top));
        QVERIFY(row(bar.zoomOutButton(), "btn-preview-4.png", top, 84 - top));
    }
    for (const int top : {60, 120, 180}) {
        QVERIFY(row(bar.previousButton(), "btn-preview-5.png", top, 180 - top));
        QVERIFY(row(bar.nextButton(), "btn-preview-6.png", top, 180 - top));
    }
    bar.setAnimated(true);
    QCOMPARE(bar.fitButton()->styleSheet(),
             QStringLiteral("QPushButton{background-color:transparent;border-image:url(:/Images/"
                            "btn-preview-2.png) 84 0 0 0;}"));
    QVERIFY(bar.oneToOneButton()->isEnabled());
    QVERIFY(!bar.zoomInButton()->isEnabled());
}

QTEST_MAIN(TestFixedLooks)
#include "tst_fixedlooks.moc"
