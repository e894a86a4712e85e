#include "service/reply/listedquestion.h"
#include "tests/support/generator.h"
#include "tests/ui/support/plainelision.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/answer/recommend/recommendpaging.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

/// Boxes of recommendations over generated lists: which rows a page has, and how they are cut.
class TestRecommendProperties : public QObject
{
    Q_OBJECT

private slots:
    void cursor_goesToAFullPageOrTheFirst();
    void pages_followTheCursor();
    void rows_areCutAsTheirPageSays_data();
    void rows_areCutAsTheirPageSays();

private:
    [[nodiscard]] static QLabel *rowLabel(const QListWidget *page, int row);
};

namespace {

/// The label that texts are measured in, as the answer region has it.
class Measure : public QLabel
{
public:
    Measure()
    {
        setTextFormat(Qt::PlainText);
        setStyleSheet(QStringLiteral("QLabel{font:14px Microsoft YaHei;}"));
        ensurePolished();
    }
};

} // namespace

QLabel *TestRecommendProperties::rowLabel(const QListWidget *page, int row)
{
    return page->itemWidget(page->item(row))->findChild<QLabel *>();
}

void TestRecommendProperties::cursor_goesToAFullPageOrTheFirst()
{
    Generator generator;
    for (int i = 0; i < 5000; ++i) {
        const int count = generator.anyOrder(0, 100'000);
        const int cursor = 5 * generator.between(0, count / 5 + 1);
        const bool isFull = cursor + 5 + 5 <= count;
        QCOMPARE(nextRecommendCursor(cursor, count), isFull ? cursor + 5 : 0);
    }
}

void TestRecommendProperties::pages_followTheCursor()
{
    Generator generator;
    Measure measure;
    for (int i = 0; i < 150; ++i) {
        const int count = generator.between(0, 40);
        QVector<ListedQuestion> recommends;
        for (int number = 0; number < count; ++number) {
            recommends.append({QString::number(number), number});
        }
        const auto kind
            = generator.oneIn(2) ? RecommendBox::Kind::BelowAnswer : RecommendBox::Kind::OnItsOwn;
        RecommendBox box(kind, recommends, &measure, nullptr);
        int first = 0;
        int cursor = 5; // behind the first page
        for (int turn = 0; turn < 8; ++turn) {
            const auto *page = box.findChildren<RecommendPage *>().last();
            QCOMPARE(page->count(), 5);
            for (int row = 0; row < 5; ++row) {
                const int number = first + row;
                QCOMPARE(rowLabel(page, row)->text(),
                         number < count ? QString::number(number) : QString());
            }
            cursor = cursor + 5 + 4 >= count ? 0 : cursor + 5;
            first = cursor;
            box.showNextPage();
        }
    }
}

void TestRecommendProperties::rows_areCutAsTheirPageSays_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("first of a box") << static_cast<int>(RecommendPage::Elision::FirstOfBox);
    QTest::newRow("first of an answer") << static_cast<int>(RecommendPage::Elision::FirstOfAnswer);
    QTest::newRow("later") << static_cast<int>(RecommendPage::Elision::Later);
}

void TestRecommendProperties::rows_areCutAsTheirPageSays()
{
    QFETCH(int, page);
    const auto elision = static_cast<RecommendPage::Elision>(page);
    const bool onBox = elision == RecommendPage::Elision::FirstOfBox;
    Generator generator;
    Measure measure;
    for (int i = 0; i < 250; ++i) {
        QVector<ListedQuestion> recommends;
        for (int row = 0; row < 5; ++row) {
            recommends.append({generator.text(40), row});
        }
        const RecommendPage shown(recommends, 0, elision, &measure, nullptr);
        for (int row = 0; row < 5; ++row) {
            const QString text = recommends.at(row).text;
            const QLabel *label = rowLabel(&shown, row);
            const QFontMetrics metrics = measure.fontMetrics();
            measure.setText(text);
            measure.adjustSize();
            const bool fits
                = onBox ? metrics.horizontalAdvance(text) <= 380 : measure.width() - 1 <= 375;
            QVERIFY2(fits ? label->text() == text
                          : isPlainlyElided(label->text(), text, metrics, onBox ? 380 : 376),
                     qUtf8Printable(text + QLatin1Char('|') + label->text()));
            const auto *button = shown.itemWidget(shown.item(row))->findChild<QPushButton *>();
            QCOMPARE(button->toolTip().isEmpty(),
                     elision != RecommendPage::Elision::Later || label->text() == text);
        }
    }
}

QTEST_MAIN(TestRecommendProperties)
#include "tst_recommendproperties.moc"
