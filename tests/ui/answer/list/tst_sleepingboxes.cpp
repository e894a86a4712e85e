#include "service/reply/listedquestion.h"
#include "service/request/idpinterface.h"
#include "tests/ui/answer/list/sleeptest.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/answer/recommend/recommendpage.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

QString recommendation(int number)
{
    return QStringLiteral("推荐的第%1个问题").arg(number);
}

} // namespace

/// Boxes of recommendations sleep far from what is seen, and nobody may notice.
class TestSleepingBoxes : public SleepTest
{
    Q_OBJECT

private slots:
    void boxes_sleepToo();
    void wokenBoxes_lookAsBefore_onTheirPage();
    void wokenBox_isAskedFromAndPaged();
    void switchingASleepingBox_wakesIt();
    void boxThatIsAskedFrom_maySleepMeanwhile();
    void sleepingBox_takesLittleMemory();

private:
    void addBoxes(int count = 1);
    [[nodiscard]] RecommendOnlyItem *box() const;
};

/// Answers with recommendations, and boxes in place of answers, in turn.
void TestSleepingBoxes::addBoxes(int count)
{
    QVector<ListedQuestion> recommends;
    for (int number = 0; number < 15; ++number) {
        recommends.append({recommendation(number), number});
    }
    for (int i = 0; i < count; ++i) {
        m_region->showAnswerWithRecommends(QStringLiteral("荐"), QStringLiteral("<p>段</p>"),
                                           recommends, QString());
        m_region->showRecommendOnly(recommends, QString());
    }
    QCoreApplication::processEvents();
}

RecommendOnlyItem *TestSleepingBoxes::box() const
{
    return m_region->findChild<RecommendOnlyItem *>();
}

void TestSleepingBoxes::boxes_sleepToo()
{
    addBoxes();
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
    QVERIFY(answers().at(0)->box() == nullptr);
    QVERIFY(!box()->isAwake());
    QVERIFY(box()->box() == nullptr);
    QVERIFY(m_region->findChildren<RecommendBox *>().isEmpty());
}

void TestSleepingBoxes::wokenBoxes_lookAsBefore_onTheirPage()
{
    addBoxes();
    m_region->switchAnswerRecommends(0, QString());
    m_region->switchRecommendOnly(0, QString());
    const QImage answer = answers().first()->grab().toImage();
    const QImage only = box()->grab().toImage();
    addExchanges(many);
    QVERIFY(!answers().first()->isAwake());
    bar()->setValue(0);
    letSleep();
    QVERIFY(answers().first()->isAwake());
    QCOMPARE(answers().first()->grab().toImage(), answer);
    QCOMPARE(box()->grab().toImage(), only);
}

void TestSleepingBoxes::wokenBox_isAskedFromAndPaged()
{
    addBoxes();
    addExchanges(many);
    bar()->setValue(0);
    const auto clickThirdRow = [](RecommendBox *clicked) {
        clicked->findChildren<RecommendPage *>().last()->questions().at(2)->setFocus();
        QTest::keyClick(clicked->window()->focusWidget(), Qt::Key_Space);
    };
    const int before = questions().size();
    m_region->service().askTimeoutMs = 1; // nobody answers
    clickThirdRow(answers().first()->box());
    QCOMPARE(questions().size(), before + 1);
    QCOMPARE(questions().last()->label()->text(), recommendation(2));
    m_region->switchRecommendOnly(0, QString());
    clickThirdRow(box()->box());
    QCOMPARE(questions().last()->label()->text(), recommendation(12));
}

void TestSleepingBoxes::switchingASleepingBox_wakesIt()
{
    addBoxes();
    addExchanges(many);
    m_region->switchAnswerRecommends(0, QString());
    m_region->switchRecommendOnly(0, QString());
    QVERIFY(answers().first()->isAwake());
    QCOMPARE(answers().first()->box()->place().cursor, 10);
    QCOMPARE(box()->box()->place().cursor, 10);
}

void TestSleepingBoxes::boxThatIsAskedFrom_maySleepMeanwhile()
{
    addBoxes();
    connect(answers().first(), &AnswerItem::recommendClicked, this, [this] {
        m_list->setFocus();
        addExchanges(many); // as others may while the question waits
    });
    m_region->service().askTimeoutMs = 1; // nobody answers
    auto *button = qobject_cast<QPushButton *>(answers().first()->box()->part(1));
    QVERIFY(button != nullptr);
    const QPointer<QPushButton> clicked = button;
    button->click();
    QVERIFY(clicked.isNull());
    QVERIFY(!answers().first()->isAwake());
}

void TestSleepingBoxes::sleepingBox_takesLittleMemory()
{
#ifdef __GLIBC__
    constexpr int more = 40;
    addBoxes(5); // what the first ones need for all
    addExchanges(many);
    const auto allocated = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    const double before = allocated();
    addBoxes(more);
    addExchanges(many);
    const double kib = (allocated() - before) / 1024;
    m_region.reset();
    init();
    addExchanges(many);
    const double around = allocated();
    addExchanges(many);
    const double each = (kib - (allocated() - around) / 1024) / (2 * more);
    qInfo("a sleeping box: %.1f KiB", each);
    QVERIFY(each < 24);
#else
    QSKIP("only the C library of Linux tells what is allocated");
#endif
}

QTEST_MAIN(TestSleepingBoxes)
#include "tst_sleepingboxes.moc"
