#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "ui/mainwindow/hotquestions/hotpaging.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

/// The column of hot questions: its pages, its rows, and what a click on one says.
class TestHotQuestionsColumn : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void servicePages_data();
    void servicePages();
    void localPages_data();
    void localPages();
    void form();
    void tenServiceQuestions_makeSixteenRows();
    void localPage_endsWithAnEmptyRow();
    void nextPageOfLocalQuestions_isOnlyAskedFor();
    void newQuestions_beginOnTheFirstPage();
    void localListOfOneEntry_showsNoQuestion();
    void rowPlacesAndStyle();
    void rows_leaveTheFramesBorderAlone();
    void icon_followsAShortText_andStandsAtTheEndOfALongOne();
    void longText_isElided_withAToolTip();
    void ampersandAndMarkup_areShownAsTheyAre();
    void click_saysQuestionAndId();
    void click_onARowBeyondTheLast_saysNoQuestion();

private:
    [[nodiscard]] static QVector<ListedQuestion> questions(int count);
    [[nodiscard]] static QStringList localEntries(int count);
    [[nodiscard]] static QWidget *row(const QWidget &column, int number);
    [[nodiscard]] static QPushButton *button(const QWidget &column, int number);
    [[nodiscard]] static QPushButton *nextButton(const QWidget &column);
};

void TestHotQuestionsColumn::initTestCase()
{
    initResources();
}

QVector<ListedQuestion> TestHotQuestionsColumn::questions(int count)
{
    QVector<ListedQuestion> questions;
    for (int i = 1; i <= count; ++i) {
        questions.append({QStringLiteral("问%1").arg(i), 1000 + i});
    }
    return questions;
}

QWidget *TestHotQuestionsColumn::row(const QWidget &column, int number)
{
    auto *list = column.findChild<QListWidget *>();
    return list->itemWidget(list->item(number - 1));
}

QPushButton *TestHotQuestionsColumn::button(const QWidget &column, int number)
{
    return row(column, number)->findChild<QPushButton *>();
}

QPushButton *TestHotQuestionsColumn::nextButton(const QWidget &column)
{
    return column.findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
}

void TestHotQuestionsColumn::servicePages_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<int>>("starts");
    QTest::newRow("10") << 10 << QVector<int>{0, 0};
    QTest::newRow("16") << 16 << QVector<int>{0, 0};
    QTest::newRow("31") << 31 << QVector<int>{0, 0};
    QTest::newRow("32") << 32 << QVector<int>{0, 16, 0};
    QTest::newRow("40") << 40 << QVector<int>{0, 16, 0, 16};
    QTest::newRow("48") << 48 << QVector<int>{0, 16, 32, 0};
}

void TestHotQuestionsColumn::servicePages()
{
    QFETCH(int, count);
    QFETCH(QVector<int>, starts);
    for (int i = 1; i < starts.size(); ++i) {
        QCOMPARE(nextServicePage(starts.at(i - 1), count), starts.at(i));
    }
}

void TestHotQuestionsColumn::localPages_data()
{
    QTest::addColumn<int>("entries");
    QTest::addColumn<QVector<int>>("starts");
    QTest::newRow("1") << 1 << QVector<int>{0, 0};
    QTest::newRow("2") << 2 << QVector<int>{0, 0};
    QTest::newRow("17") << 17 << QVector<int>{0, 0};
    QTest::newRow("18") << 18 << QVector<int>{0, 16, 0};
    QTest::newRow("40") << 40 << QVector<int>{0, 16, 32, 0};
}

void TestHotQuestionsColumn::localPages()
{
    QFETCH(int, entries);
    QFETCH(QVector<int>, starts);
    for (int i = 1; i < starts.size(); ++i) {
        QCOMPARE(nextLocalPage(starts.at(i - 1), entries), starts.at(i));
    }
}

void TestHotQuestionsColumn::form()
{
    const HotQuestionsColumn column(nullptr);
    QCOMPARE(column.geometry(), QRect(648, 58, 272, 582));
    QCOMPARE(column.styleSheet(),
             QStringLiteral("QWidget{background-color:rgb(240, 241, 245);border-left:1px solid "
                            "rgb(208, 210, 217);}"));
    const auto labels = column.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.at(0)->geometry(), QRect(24, 24, 4, 18));
    QCOMPARE(labels.at(1)->geometry(), QRect(36, 23, 56, 19));
    QCOMPARE(labels.at(1)->text(), QStringLiteral("热门问答"));
    const QPushButton *next = nextButton(column);
    QCOMPARE(next->geometry(), QRect(192, 26, 56, 14));
    QCOMPARE(next->text(), QStringLiteral("换一换"));
    QVERIFY(next->isHidden());
    const auto *list = column.findChild<QListWidget *>();
    QCOMPARE(list->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(list->focusPolicy(), Qt::NoFocus);
}

void TestHotQuestionsColumn::tenServiceQuestions_makeSixteenRows()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(10));
    QCOMPARE(column.findChild<QListWidget *>()->count(), 16);
    QCOMPARE(button(column, 10)->text(), QStringLiteral("10. 问10"));
    QCOMPARE(button(column, 11)->text(), QStringLiteral("11. "));
    column.showServiceQuestions({});
    QVERIFY(button(column, 1)->findChild<QLabel *>() == nullptr);
}

QStringList TestHotQuestionsColumn::localEntries(int count)
{
    QStringList entries{QString()};
    for (int i = 1; i < count; ++i) {
        entries.append(QStringLiteral("本地%1").arg(i));
    }
    return entries;
}

void TestHotQuestionsColumn::nextPageOfLocalQuestions_isOnlyAskedFor()
{
    HotQuestionsColumn column(nullptr);
    const QSignalSpy wanted(&column, &HotQuestionsColumn::nextLocalPageWanted);
    column.showServiceQuestions(questions(40));
    nextButton(column)->click();
    QCOMPARE(wanted.count(), 0);
    column.showLocalQuestions(localEntries(40));
    nextButton(column)->click();
    QCOMPARE(wanted.count(), 1);
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 本地1"));
    column.showNextLocalPage();
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 本地17"));
}

void TestHotQuestionsColumn::newQuestions_beginOnTheFirstPage()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(40));
    nextButton(column)->click();
    column.showLocalQuestions(localEntries(40));
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 本地1"));
    column.showNextLocalPage();
    column.showServiceQuestions(questions(40));
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 问1"));
    column.showLocalQuestions(localEntries(40));
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 本地1"));
}

void TestHotQuestionsColumn::localPage_endsWithAnEmptyRow()
{
    HotQuestionsColumn column(nullptr);
    column.showLocalQuestions(localEntries(40));
    column.showNextLocalPage();
    column.showNextLocalPage();
    QCOMPARE(column.findChild<QListWidget *>()->count(), 8);
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. 本地33"));
    QCOMPARE(button(column, 7)->text(), QStringLiteral("7. 本地39"));
    QVERIFY(button(column, 8) == nullptr);
}

void TestHotQuestionsColumn::localListOfOneEntry_showsNoQuestion()
{
    HotQuestionsColumn column(nullptr);
    column.showLocalQuestions({QString()});
    QVERIFY(button(column, 1) == nullptr);
}

void TestHotQuestionsColumn::rowPlacesAndStyle()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(16));
    const auto *list = column.findChild<QListWidget *>();
    QCOMPARE(list->item(4)->sizeHint(), QSize(224, 30));
    QCOMPARE(row(column, 5)->size(), QSize(224, 30));
    QCOMPARE(row(column, 5)->styleSheet(), QStringLiteral("background-color:rgb(255, 255, 255);"));
    QCOMPARE(button(column, 5)->geometry(), QRect(16, 7, 192, 16));
    QCOMPARE(button(column, 5)->styleSheet(),
             QStringLiteral("QPushButton{color:rgb(29,38,51);font:12px Microsoft YaHei;text-align: "
                            "left;border:none;}"));
    QVERIFY(button(column, 3)->findChild<QLabel *>() != nullptr);
    QVERIFY(button(column, 4)->findChild<QLabel *>() == nullptr);
}

void TestHotQuestionsColumn::rows_leaveTheFramesBorderAlone()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(16));
    column.show();
    QVERIFY(QTest::qWaitForWindowExposed(&column));
    QWidget *frame = column.findChild<QListWidget *>()->parentWidget();
    const QImage image = frame->grab().toImage();
    QCOMPARE(image.size(), QSize(224, 496));
    const QColor border(238, 240, 244);
    for (int y = 0; y < image.height(); ++y) {
        QCOMPARE(image.pixelColor(0, y), border);
        QCOMPARE(image.pixelColor(image.width() - 1, y), border);
    }
}

void TestHotQuestionsColumn::icon_followsAShortText_andStandsAtTheEndOfALongOne()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions({{QStringLiteral("短"), 1}});
    button(column, 1)->ensurePolished();
    const int width = button(column, 1)->fontMetrics().horizontalAdvance(QStringLiteral("1. 短"));
    QCOMPARE(button(column, 1)->findChild<QLabel *>()->geometry(), QRect(width + 12, 2, 22, 12));
    column.showServiceQuestions({{QString(30, QChar(u'长')), 1}});
    QCOMPARE(button(column, 1)->findChild<QLabel *>()->geometry(), QRect(170, 2, 22, 12));
}

void TestHotQuestionsColumn::longText_isElided_withAToolTip()
{
    const QString question(QString(30, QChar(u'长')));
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(QVector<ListedQuestion>(5, {question, 1}));
    button(column, 2)->ensurePolished();
    const QFontMetrics metrics = button(column, 2)->fontMetrics();
    QCOMPARE(button(column, 2)->text(),
             metrics.elidedText(QStringLiteral("2. ") + question, Qt::ElideRight, 168));
    QCOMPARE(button(column, 2)->toolTip(), question);
    QCOMPARE(button(column, 5)->text(),
             metrics.elidedText(QStringLiteral("5. ") + question, Qt::ElideRight, 184));
    QCOMPARE(button(column, 5)->toolTip(), question);
}

void TestHotQuestionsColumn::ampersandAndMarkup_areShownAsTheyAre()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions({{QStringLiteral("A & <b>B</b>"), 1}});
    QCOMPARE(button(column, 1)->text(), QStringLiteral("1. A && <b>B</b>"));
    QVERIFY(button(column, 1)->shortcut().isEmpty());
}

void TestHotQuestionsColumn::click_saysQuestionAndId()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(40));
    nextButton(column)->click();
    QSignalSpy clicked(&column, &HotQuestionsColumn::questionClicked);
    QTest::mouseClick(button(column, 2), Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().at(0).toString(), QStringLiteral("问18"));
    QCOMPARE(clicked.first().at(1).toLongLong(), 1018);
}

void TestHotQuestionsColumn::click_onARowBeyondTheLast_saysNoQuestion()
{
    HotQuestionsColumn column(nullptr);
    column.showServiceQuestions(questions(10));
    QSignalSpy clicked(&column, &HotQuestionsColumn::questionClicked);
    QTest::mouseClick(button(column, 11), Qt::LeftButton);
    QCOMPARE(clicked.value(0), (QVariantList{QString(), Q_INT64_C(0)}));
}

QTEST_MAIN(TestHotQuestionsColumn)
#include "tst_hotquestionscolumn.moc"
