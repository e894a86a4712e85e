#include "ui/answer/bubble/answergeometry.h"

#include <QTest>

Q_DECLARE_METATYPE(FoldState)

/// Where the pieces of an answer lie, folded and unfolded.
class TestAnswerGeometry : public QObject
{
    Q_OBJECT

private slots:
    void contentOf150_isShownWhole_of151_isFolded();
    void titleSeparatorAndContent_lieTheSameInEveryState_data();
    void titleSeparatorAndContent_lieTheSameInEveryState();
    void plainAnswer_unfolded();
    void plainAnswer_folded();
    void plainAnswer_opened();
    void answerWithBox_unfolded();
    void answerWithBox_folded();
    void answerWithBox_opened();
};

namespace {

constexpr int titleTerm = 31;
constexpr int contentHeight = 200;

} // namespace

void TestAnswerGeometry::contentOf150_isShownWhole_of151_isFolded()
{
    QCOMPARE(initialFoldState(0), FoldState::Unfolded);
    QCOMPARE(initialFoldState(150), FoldState::Unfolded);
    QCOMPARE(initialFoldState(151), FoldState::Folded);
}

void TestAnswerGeometry::titleSeparatorAndContent_lieTheSameInEveryState_data()
{
    QTest::addColumn<FoldState>("fold");
    QTest::addColumn<bool>("hasRecommends");
    QTest::newRow("unfolded") << FoldState::Unfolded << false;
    QTest::newRow("folded") << FoldState::Folded << false;
    QTest::newRow("opened") << FoldState::Opened << false;
    QTest::newRow("unfolded with box") << FoldState::Unfolded << true;
    QTest::newRow("folded with box") << FoldState::Folded << true;
    QTest::newRow("opened with box") << FoldState::Opened << true;
}

void TestAnswerGeometry::titleSeparatorAndContent_lieTheSameInEveryState()
{
    QFETCH(FoldState, fold);
    QFETCH(bool, hasRecommends);
    const AnswerGeometry places = answerGeometry(fold, hasRecommends, titleTerm, contentHeight);
    QCOMPARE(places.title, QRect(11, 7, 446, 31));
    QCOMPARE(places.titleSeparator, QRect(11, 43, 446, 1));
    QCOMPARE(places.content, QRect(11, 56, 446, 200));
}

void TestAnswerGeometry::plainAnswer_unfolded()
{
    const AnswerGeometry places = answerGeometry(FoldState::Unfolded, false, 31, 100);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 31 + 100 + 48));
    QCOMPARE(places.itemHeight, 31 + 100 + 68);
    QVERIFY(places.recommendBox.isNull());
    QVERIFY(places.openBar.isNull());
    QVERIFY(places.retractBar.isNull());
}

void TestAnswerGeometry::plainAnswer_folded()
{
    const AnswerGeometry places = answerGeometry(FoldState::Folded, false, 31, 900);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 202));
    QCOMPARE(places.openBar, QRect(0, 155, 469, 48));
    QVERIFY(places.retractBar.isNull());
    QCOMPARE(places.itemHeight, 230);
}

void TestAnswerGeometry::plainAnswer_opened()
{
    const AnswerGeometry places = answerGeometry(FoldState::Opened, false, 31, 900);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 31 + 900 + 80));
    QCOMPARE(places.retractBar, QRect(0, 31 + 900 + 36, 469, 46));
    QVERIFY(places.openBar.isNull());
    QCOMPARE(places.itemHeight, 31 + 900 + 100);
}

void TestAnswerGeometry::answerWithBox_unfolded()
{
    const AnswerGeometry places = answerGeometry(FoldState::Unfolded, true, 31, 100);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 31 + 100 + 48));
    QCOMPARE(places.recommendBox, QRect(83, 31 + 100 + 48, 469, 255));
    QCOMPARE(places.itemHeight, 31 + 100 + 323);
}

void TestAnswerGeometry::answerWithBox_folded()
{
    const AnswerGeometry places = answerGeometry(FoldState::Folded, true, 31, 900);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 210));
    QCOMPARE(places.openBar, QRect(0, 160, 469, 50));
    QCOMPARE(places.recommendBox, QRect(83, 220, 469, 255));
    QCOMPARE(places.itemHeight, 485);
}

void TestAnswerGeometry::answerWithBox_opened()
{
    const AnswerGeometry places = answerGeometry(FoldState::Opened, true, 31, 900);
    QCOMPARE(places.bubble, QRect(83, 10, 469, 31 + 900 + 80));
    QCOMPARE(places.retractBar, QRect(0, 31 + 900 + 36, 469, 70));
    QCOMPARE(places.recommendBox, QRect(83, 31 + 900 + 90, 469, 255));
    QCOMPARE(places.itemHeight, 31 + 900 + 355);
}

QTEST_GUILESS_MAIN(TestAnswerGeometry)
#include "tst_answergeometry.moc"
