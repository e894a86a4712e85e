#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "tests/support/generator.h"
#include "tests/ui/support/plainelision.h"
#include "ui/mainwindow/hotquestions/hotpaging.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

/// The column of hot questions over generated lists: which rows a page has, and how they are cut.
class TestHotColumnProperties : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void servicePages_areFullOrTheFirst();
    void localPages_haveAQuestion();
    void serviceRows_areThoseOfThePage();
    void localRows_areThoseOfThePage();
    void rows_areCutAsTheirPlaceSays();

private:
    /// What the rows of \a column show, null texts for rows without a button.
    [[nodiscard]] static QStringList shown(const HotQuestionsColumn &column);
};

namespace {

constexpr int lists = 40;
constexpr int turns = 6;

QString numbered(int row, const QString &question)
{
    return QString::number(row + 1) + QLatin1String(". ") + question;
}

QString question(int number)
{
    return QStringLiteral("问%1").arg(number);
}

} // namespace

void TestHotColumnProperties::initTestCase()
{
    initResources();
}

QStringList TestHotColumnProperties::shown(const HotQuestionsColumn &column)
{
    QStringList texts;
    const auto *list = column.findChild<QListWidget *>();
    for (int row = 0; row < list->count(); ++row) {
        const auto *button = list->itemWidget(list->item(row))->findChild<QPushButton *>();
        texts.append(button == nullptr ? QString() : button->text());
    }
    return texts;
}

void TestHotColumnProperties::servicePages_areFullOrTheFirst()
{
    Generator generator;
    for (int i = 0; i < 5000; ++i) {
        const int count = generator.anyOrder(0, 100'000);
        const int start = hotRowsPerPage * generator.between(0, count / hotRowsPerPage);
        const int next = start + 16;
        const bool isFull = next + 16 <= count;
        QCOMPARE(nextServicePage(start, count), isFull ? next : 0);
    }
}

void TestHotColumnProperties::localPages_haveAQuestion()
{
    Generator generator;
    for (int i = 0; i < 5000; ++i) {
        const int questions = generator.anyOrder(0, 100'000);
        const int start = hotRowsPerPage * generator.between(0, questions / hotRowsPerPage);
        const int next = start + 16;
        QCOMPARE(nextLocalPage(start, questions + 1), next < questions ? next : 0);
    }
}

void TestHotColumnProperties::serviceRows_areThoseOfThePage()
{
    Generator generator;
    for (int i = 0; i < lists; ++i) {
        const int count = generator.between(1, 80);
        QVector<ListedQuestion> questions;
        for (int number = 0; number < count; ++number) {
            questions.append({question(number), number});
        }
        HotQuestionsColumn column(nullptr);
        column.showServiceQuestions(questions);
        auto *button = column.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
        for (int page = 0, turn = 0; turn < turns; ++turn) {
            QStringList expected;
            for (int row = 0; row < 16; ++row) {
                const int number = 16 * page + row;
                expected.append(numbered(row, number < count ? question(number) : QString()));
            }
            QCOMPARE(shown(column), expected);
            button->click();
            page = 16 * (page + 2) <= count ? page + 1 : 0;
        }
    }
}

void TestHotColumnProperties::localRows_areThoseOfThePage()
{
    Generator generator;
    for (int i = 0; i < lists; ++i) {
        const int count = generator.between(1, 80);
        QStringList entries{QString()};
        for (int number = 0; number < count; ++number) {
            entries.append(question(number));
        }
        HotQuestionsColumn column(nullptr);
        column.showLocalQuestions(entries);
        for (int page = 0, turn = 0; turn < turns; ++turn) {
            QStringList expected;
            for (int row = 0; row < 16 && 16 * page + row < count; ++row) {
                expected.append(numbered(row, question(16 * page + row)));
            }
            if (expected.size() < 16) {
                expected.append(QString()); // the row where the list ends
            }
            QCOMPARE(shown(column), expected);
            column.showNextLocalPage();
            page = 16 * (page + 1) < count ? page + 1 : 0;
        }
    }
}

void TestHotColumnProperties::rows_areCutAsTheirPlaceSays()
{
    Generator generator;
    HotQuestionsColumn column(nullptr);
    QLabel measure;
    measure.setStyleSheet(QStringLiteral("QLabel{font:12px Microsoft YaHei;}"));
    measure.ensurePolished();
    const QFontMetrics metrics = measure.fontMetrics();
    for (int i = 0; i < 120; ++i) {
        QVector<ListedQuestion> questions;
        for (int row = 0; row < 16; ++row) {
            questions.append({generator.text(16), row});
        }
        column.showServiceQuestions(questions);
        const auto *list = column.findChild<QListWidget *>();
        for (int row = 0; row < 16; ++row) {
            const auto *button = list->itemWidget(list->item(row))->findChild<QPushButton *>();
            const QString text = numbered(row, questions.at(row).text);
            const QString read = button->text().replace(QLatin1String("&&"), QLatin1String("&"));
            const bool fits = metrics.horizontalAdvance(text) <= (row < 3 ? 168 : 190);
            if (fits) {
                QCOMPARE(read, text);
                QVERIFY(button->toolTip().isEmpty());
            } else {
                QVERIFY2(isPlainlyElided(read, text, metrics, row < 3 ? 168 : 184),
                         qUtf8Printable(text + QLatin1Char('|') + read));
                QVERIFY(!button->toolTip().isEmpty());
            }
        }
    }
}

QTEST_MAIN(TestHotColumnProperties)
#include "tst_hotcolumnproperties.moc"
