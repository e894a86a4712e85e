#include "service/reply/listedquestion.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/answer/recommend/recommendpaging.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

/// Recommended questions: five to a page, and how the pages follow each other.
class TestRecommendBox : public QObject
{
    Q_OBJECT

private slots:
    void pages_followEachOther_data();
    void pages_followEachOther();
    void fewerThanFive_stillMakesFiveRows();
    void rows_haveNoMargins();
    void box_isTinted_withRoundCorners();
    void click_reportsQuestionAndId();
    void click_onARowBeyondTheLast_reportsNoQuestion();
    void places_belowAnAnswer();
    void places_onItsOwn();
    void elision_onTheFirstPageOfABox();
    void elision_onTheFirstPageOfAnAnswer();
    void elision_onLaterPages_addsAToolTip();

private:
    [[nodiscard]] static QVector<ListedQuestion> recommends(int count);
    [[nodiscard]] static QStringList textsOf(const QListWidget *page);
    [[nodiscard]] static QString textWiderThan(int width, const QFontMetrics &metrics);
};

namespace {

QString recommendation(int number)
{
    return QStringLiteral("推荐%1").arg(number);
}

/// The label that texts are measured in, as the answer region has it.
class Measure : public QLabel
{
public:
    Measure() { setStyleSheet(QStringLiteral("QLabel{font:14px Microsoft YaHei;}")); }
};

} // namespace

QVector<ListedQuestion> TestRecommendBox::recommends(int count)
{
    QVector<ListedQuestion> questions;
    for (int i = 0; i < count; ++i) {
        questions.append({recommendation(i), 100 + i});
    }
    return questions;
}

QStringList TestRecommendBox::textsOf(const QListWidget *page)
{
    QStringList texts;
    for (int row = 0; row < page->count(); ++row) {
        texts.append(page->itemWidget(page->item(row))->findChild<QLabel *>()->text());
    }
    return texts;
}

QString TestRecommendBox::textWiderThan(int width, const QFontMetrics &metrics)
{
    QString text;
    while (metrics.horizontalAdvance(text) <= width) {
        text += QLatin1Char('i');
    }
    return text;
}

void TestRecommendBox::pages_followEachOther_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<int>>("starts");
    QTest::newRow("3") << 3 << QVector<int>{0, 0, 0};
    QTest::newRow("5") << 5 << QVector<int>{0, 0, 0};
    QTest::newRow("10") << 10 << QVector<int>{0, 0, 5, 0, 5};
    QTest::newRow("15") << 15 << QVector<int>{0, 10, 0, 5, 10, 0};
    QTest::newRow("14") << 14 << QVector<int>{0, 0, 5, 0};
}

void TestRecommendBox::pages_followEachOther()
{
    QFETCH(int, count);
    QFETCH(QVector<int>, starts);
    Measure measure;
    RecommendBox box(RecommendBox::Kind::OnItsOwn, recommends(count), &measure, nullptr);
    for (int step = 0; step < starts.size(); ++step) {
        QStringList expected;
        for (int row = 0; row < 5; ++row) {
            const int index = starts.at(step) + row;
            expected.append(index < count ? recommendation(index) : QString());
        }
        const auto pages = box.findChildren<RecommendPage *>();
        QCOMPARE(pages.size(), step + 1);
        QCOMPARE(textsOf(pages.last()), expected);
        box.showNextPage();
    }
}

void TestRecommendBox::fewerThanFive_stillMakesFiveRows()
{
    Measure measure;
    const RecommendPage page(recommends(2), 0, RecommendPage::Elision::FirstOfBox, &measure,
                             nullptr);
    QCOMPARE(textsOf(&page),
             (QStringList{recommendation(0), recommendation(1), QString(), QString(), QString()}));
}

void TestRecommendBox::rows_haveNoMargins()
{
    Measure measure;
    const RecommendPage page(recommends(5), 0, RecommendPage::Elision::FirstOfBox, &measure,
                             nullptr);
    for (int row = 0; row < page.count(); ++row) {
        QCOMPARE(page.itemWidget(page.item(row))->contentsMargins(), QMargins());
    }
}

void TestRecommendBox::box_isTinted_withRoundCorners()
{
    Measure measure;
    RecommendBox box(RecommendBox::Kind::OnItsOwn, recommends(5), &measure, nullptr);
    box.resize(478, 230);
    QImage drawn(box.size(), QImage::Format_RGB32);
    drawn.fill(Qt::white);
    box.render(&drawn, QPoint(), QRegion(), QWidget::DrawChildren);
    const QColor tint(244, 245, 248);
    QCOMPARE(drawn.pixelColor(drawn.width() / 2, 2), tint);
    QCOMPARE(drawn.pixelColor(2, drawn.height() / 2), tint);
    QCOMPARE(drawn.pixelColor(0, 0), QColor(Qt::white));
}

void TestRecommendBox::click_reportsQuestionAndId()
{
    Measure measure;
    RecommendPage page(recommends(5), 0, RecommendPage::Elision::FirstOfBox, &measure, nullptr);
    QSignalSpy clicked(&page, &RecommendPage::recommendClicked);
    QTest::mouseClick(page.findChildren<QPushButton *>().at(3), Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().at(0).toString(), recommendation(3));
    QCOMPARE(clicked.first().at(1).toLongLong(), 103);
}

void TestRecommendBox::click_onARowBeyondTheLast_reportsNoQuestion()
{
    Measure measure;
    RecommendPage page(recommends(2), 0, RecommendPage::Elision::FirstOfBox, &measure, nullptr);
    QSignalSpy clicked(&page, &RecommendPage::recommendClicked);
    QTest::mouseClick(page.findChildren<QPushButton *>().at(4), Qt::LeftButton);
    QCOMPARE(clicked.value(0), (QVariantList{QString(), Q_INT64_C(0)}));
}

void TestRecommendBox::places_belowAnAnswer()
{
    Measure measure;
    const RecommendBox box(RecommendBox::Kind::BelowAnswer, recommends(5), &measure, nullptr);
    QCOMPARE(box.findChild<RecommendPage *>()->geometry(), QRect(11, 43, 440, 155));
    const auto labels = box.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 3);
    QCOMPARE(labels.at(0)->text(), QStringLiteral("如果未解决您的问题，试试下面的问法："));
    QCOMPARE(labels.at(0)->geometry(), QRect(11, 12, 260, 19));
    QCOMPARE(labels.at(1)->geometry(), QRect(11, 207, 438, 1));
    QCOMPARE(labels.at(2)->text(), QStringLiteral("没有您想了解的问题？"));
    QCOMPARE(labels.at(2)->geometry(), QRect(11, 219, 140, 20));
    const auto *button = box.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(button->text(), QStringLiteral("换一换"));
    QCOMPARE(button->geometry(), QRect(385, 223, 64, 14));
}

void TestRecommendBox::places_onItsOwn()
{
    QWidget window;
    auto *list = new ConversationList(&window);
    Measure measure;
    auto *item = new RecommendOnlyItem(recommends(5), &measure, list->nextParent());
    list->append(item);
    item->show();
    QCOMPARE(item->size(), QSize(648, 299));
    QCOMPARE(list->item(0)->sizeHint(), QSize(648, 299));
    const RecommendBox *box = item->box();
    QCOMPARE(box->geometry(), QRect(83, 10, 461, 279));
    QCOMPARE(box->findChild<RecommendPage *>()->geometry(), QRect(11, 68, 440, 155));
    const auto labels = box->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 4);
    QCOMPARE(labels.at(0)->text(), QStringLiteral("您是要咨询以下问题么？"));
    QCOMPARE(labels.at(0)->geometry(), QRect(11, 12, 238, 19));
    QCOMPARE(labels.at(1)->text(), QStringLiteral("大家都在问："));
    QCOMPARE(labels.at(1)->geometry(), QRect(11, 43, 84, 19));
    QCOMPARE(labels.at(2)->geometry(), QRect(11, 232, 438, 1));
    QCOMPARE(labels.at(3)->geometry(), QRect(11, 244, 140, 20));
    QCOMPARE(box->findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly)->geometry(),
             QRect(385, 248, 64, 14));
}

void TestRecommendBox::elision_onTheFirstPageOfABox()
{
    Measure measure;
    measure.ensurePolished();
    const QFontMetrics metrics = measure.fontMetrics();
    const QString wide = textWiderThan(380, metrics);
    const QString fitting = wide.left(wide.size() - 1);
    const RecommendPage page({{wide, 1}, {fitting, 2}}, 0, RecommendPage::Elision::FirstOfBox,
                             &measure, nullptr);
    QCOMPARE(textsOf(&page).at(0), metrics.elidedText(wide, Qt::ElideRight, 380));
    QCOMPARE(textsOf(&page).at(1), fitting);
    QCOMPARE(page.findChildren<QPushButton *>().at(0)->toolTip(), QString());
}

void TestRecommendBox::elision_onTheFirstPageOfAnAnswer()
{
    Measure measure;
    measure.ensurePolished();
    const QFontMetrics metrics = measure.fontMetrics();
    const QString wide = textWiderThan(376, metrics);
    const RecommendPage page({{wide, 1}}, 0, RecommendPage::Elision::FirstOfAnswer, &measure,
                             nullptr);
    QCOMPARE(textsOf(&page).at(0), metrics.elidedText(wide, Qt::ElideRight, 376));
    QCOMPARE(page.findChildren<QPushButton *>().at(0)->toolTip(), QString());
}

void TestRecommendBox::elision_onLaterPages_addsAToolTip()
{
    Measure measure;
    measure.ensurePolished();
    const QFontMetrics metrics = measure.fontMetrics();
    const QString wide = textWiderThan(376, metrics);
    const RecommendPage page({{wide, 1}, {QStringLiteral("短"), 2}}, 0,
                             RecommendPage::Elision::Later, &measure, nullptr);
    QCOMPARE(textsOf(&page).at(0), metrics.elidedText(wide, Qt::ElideRight, 376));
    const auto buttons = page.findChildren<QPushButton *>();
    QCOMPARE(buttons.at(0)->toolTip(), wide);
    QCOMPARE(buttons.at(1)->toolTip(), QString());
}

QTEST_MAIN(TestRecommendBox)
#include "tst_recommendbox.moc"
