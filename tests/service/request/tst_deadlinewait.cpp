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
    void longWaitOfSeveralTimers_expiresNotBeforeItsTime();
    void longWait_expiresBeforeAWaitThatIsAThirtiethLonger();
    void zeroAndNegativeTimes_expireAtOnce_data();
    void zeroAndNegativeTimes_expireAtOnce();
    void otherEvents_areHandledMeanwhile();
    void quit_givesUp();
    void threadQuit_givesUp();
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
constexpr int severalTimersMs = 3000;
constexpr int longMs = 60000;

void waitInside(int ms)
{
    DeadlineWait inner(ms);
    QCOMPARE(inner.exec(), DeadlineWait::End::TooLate);
}

/// Sits in a wait until it is told to quit.
class WaitingThread : public QThread
{
public:
    DeadlineWait::End end = DeadlineWait::End::InTime;

protected:
    void run() override
    {
        DeadlineWait wait(longMs);
        end = wait.exec();
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
    QCOMPARE(wait.exec(), DeadlineWait::End::InTime);
    QVERIFY(clock.elapsed() < longMs);
}

void TestDeadlineWait::signalBeforeTheWait_needsNoWait()
{
    DeadlineWait wait(longMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    emit happened();
    QCOMPARE(wait.exec(), DeadlineWait::End::InTime);
}

void TestDeadlineWait::noSignal_expiresNotBeforeItsTime()
{
    QElapsedTimer clock;
    clock.start();
    DeadlineWait wait(laterMs);
    wait.endOn(this, &TestDeadlineWait::happened);
    QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
    QVERIFY(clock.elapsed() >= laterMs);
}

void TestDeadlineWait::longWaitOfSeveralTimers_expiresNotBeforeItsTime()
{
    QElapsedTimer clock;
    clock.start();
    DeadlineWait wait(severalTimersMs);
    QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
    QVERIFY(clock.elapsed() >= severalTimersMs);
}

void TestDeadlineWait::longWait_expiresBeforeAWaitThatIsAThirtiethLonger()
{
    // A machine may stand still just then, but not each time.
    bool wasLater = true;
    for (int tries = 5; wasLater && tries > 0; --tries) {
        wasLater = false;
        QTimer later;
        later.setTimerType(Qt::PreciseTimer);
        later.setSingleShot(true);
        connect(&later, &QTimer::timeout, this, [&wasLater] { wasLater = true; });
        DeadlineWait wait(severalTimersMs);
        later.start(severalTimersMs + severalTimersMs / 30);
        QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
    }
    QVERIFY(!wasLater);
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
    QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
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
    QCOMPARE(wait.exec(), DeadlineWait::End::InTime);
    QCOMPARE(ticks, 3);
}

void TestDeadlineWait::quit_givesUp()
{
    DeadlineWait::End end = DeadlineWait::End::InTime;
    QTimer::singleShot(0, this, [&end] {
        QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
        DeadlineWait wait(longMs);
        end = wait.exec();
    });
    QCoreApplication::exec();
    QCOMPARE(end, DeadlineWait::End::GivenUp);
}

void TestDeadlineWait::threadQuit_givesUp()
{
    WaitingThread thread;
    thread.start();
    // Told before or during its wait: either way it must not sit there.
    thread.quit();
    QVERIFY(thread.wait(longMs));
    QCOMPARE(thread.end, DeadlineWait::End::GivenUp);
}

void TestDeadlineWait::afterTheApplicationHasQuit_doesNotWait()
{
    DeadlineWait::End end = DeadlineWait::End::InTime;
    QTimer::singleShot(0, this, [&end] {
        QCoreApplication::quit();
        DeadlineWait wait(longMs);
        end = wait.exec();
    });
    QCoreApplication::exec();
    QCOMPARE(end, DeadlineWait::End::GivenUp);
}

void TestDeadlineWait::signalDuringAnInnerWait_beatsTheDeadlineThatPassesInIt()
{
    DeadlineWait outer(laterMs);
    outer.endOn(this, &TestDeadlineWait::happened);
    QTimer::singleShot(0, this, [] { waitInside(3 * laterMs); });
    emitIn(soonMs);
    QCOMPARE(outer.exec(), DeadlineWait::End::InTime);
}

void TestDeadlineWait::deadlineDuringAnInnerWait_beatsTheSignalThatComesLater()
{
    DeadlineWait outer(soonMs);
    outer.endOn(this, &TestDeadlineWait::happened);
    QTimer::singleShot(0, this, [] { waitInside(3 * laterMs); });
    emitIn(laterMs);
    QCOMPARE(outer.exec(), DeadlineWait::End::TooLate);
}

void TestDeadlineWait::signalAfterTheEnd_changesNothing()
{
    DeadlineWait wait(0);
    wait.endOn(this, &TestDeadlineWait::happened);
    QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
    emit happened();
    QCOMPARE(wait.exec(), DeadlineWait::End::TooLate);
}

QTEST_GUILESS_MAIN(TestDeadlineWait)
#include "tst_deadlinewait.moc"
