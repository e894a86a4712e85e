#include "service/request/deadlinewait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

/// What a wait is ended by, and what it makes of that.
class TestDeadlineWait : public QObject
{
    Q_OBJECT

signals:
    void happened();

private slots:
    void signalInTime_endsTheWait();
    void signalBeforeTheWait_needsNoWait();
    void noSignal_expiresNotBeforeItsTime();
    void zeroAndNegativeTimes_expireAtOnce_data();
    void zeroAndNegativeTimes_expireAtOnce();
    void otherEvents_areHandledMeanwhile();
    void quit_countsAsInTime();
    void threadQuit_countsAsInTime();
    void afterTheApplicationHasQuit_doesNotWait();
    void signalDuringAnInnerWait_beatsTheDeadlineThatPassesInIt();
    void deadlineDuringAnInnerWait_beatsTheSignalThatComesLater();
    void signalAfterTheEnd_changesNothing();

private:
    void emitIn(int ms) { QTimer::singleShot(ms, this, &TestDeadlineWait::happened); }
};

namespace {

constexpr int soonMs = 20;
constexpr int laterMs = 60;
constexpr int longMs = 60000;

void waitInside(int ms)
{
    DeadlineWait inner(ms);
    QVERIFY(!inner.exec());
}

/// Sits in a wait until it is told to quit.
class WaitingThread : public QThread
{
public:
    bool inTime = false;

protected:
    void run() override
    {
        DeadlineWait wait(longMs);
        inTime = wait.exec();
    }
};

} // namespace

void TestDeadlineWait::signalInTime_endsTheWait()
{
    QElapsedTimer clock;
    clock.start();
    DeadlineWait wait(longMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    emitIn(soonMs);
    QVERIFY(wait.exec());
    QVERIFY(clock.elapsed() < longMs);
}

void TestDeadlineWait::signalBeforeTheWait_needsNoWait()
{
    DeadlineWait wait(longMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    emit happened();
    QVERIFY(wait.exec());
}

void TestDeadlineWait::noSignal_expiresNotBeforeItsTime()
{
    QElapsedTimer clock;
    clock.start();
    DeadlineWait wait(laterMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    QVERIFY(!wait.exec());
    QVERIFY(clock.elapsed() >= laterMs);
}

void TestDeadlineWait::zeroAndNegativeTimes_expireAtOnce_data()
{
    QTest::addColumn<int>("timeoutMs");
    QTest::newRow("zero") << 0;
    QTest::newRow("negative") << -5;
}

void TestDeadlineWait::zeroAndNegativeTimes_expireAtOnce()
{
    QFETCH(int, timeoutMs);
    DeadlineWait wait(timeoutMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    QVERIFY(!wait.exec());
}

void TestDeadlineWait::otherEvents_areHandledMeanwhile()
{
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, this, [&] {
        if (++ticks == 3) {
            emit happened();
        }
    });
    ticking.start(1);
    DeadlineWait wait(longMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    QVERIFY(wait.exec());
    QCOMPARE(ticks, 3);
}

void TestDeadlineWait::quit_countsAsInTime()
{
    bool inTime = false;
    QTimer::singleShot(0, this, [&inTime] {
        QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
        DeadlineWait wait(longMs);
        inTime = wait.exec();
    });
    QCoreApplication::exec();
    QVERIFY(inTime);
}

void TestDeadlineWait::threadQuit_countsAsInTime()
{
    WaitingThread thread;
    thread.start();
    // Told before or during its wait: either way it must not sit there.
    thread.quit();
    QVERIFY(thread.wait(longMs));
    QVERIFY(thread.inTime);
}

void TestDeadlineWait::afterTheApplicationHasQuit_doesNotWait()
{
    bool inTime = false;
    QTimer::singleShot(0, this, [&inTime] {
        QCoreApplication::quit();
        DeadlineWait wait(longMs);
        inTime = wait.exec();
    });
    QCoreApplication::exec();
    QVERIFY(inTime);
}

void TestDeadlineWait::signalDuringAnInnerWait_beatsTheDeadlineThatPassesInIt()
{
    DeadlineWait outer(laterMs);
    outer.endOn(this, &TestDeadlineWait::happened);
    QTimer::singleShot(0, this, [] { waitInside(3 * laterMs); });
    emitIn(soonMs);
    QVERIFY(outer.exec());
}

void TestDeadlineWait::deadlineDuringAnInnerWait_beatsTheSignalThatComesLater()
{
    DeadlineWait outer(soonMs);
    outer.endOn(this, &TestDeadlineWait::happened);
    QTimer::singleShot(0, this, [] { waitInside(3 * laterMs); });
    emitIn(laterMs);
    QVERIFY(!outer.exec());
}

void TestDeadlineWait::signalAfterTheEnd_changesNothing()
{
    DeadlineWait wait(0);
    wait.endOn(this, &TestDeadlineWait::happened);
    QVERIFY(!wait.exec());
    emit happened();
    QVERIFY(!wait.exec());
}

QTEST_GUILESS_MAIN(TestDeadlineWait)
#include "tst_deadlinewait.moc"
