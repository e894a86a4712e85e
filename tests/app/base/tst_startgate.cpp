#include "app/base/startgate.h"

#include <QElapsedTimer>
#include <QTest>

#include <chrono>
#include <future>

/// The gate at which threads wait for the window's first picture.
class TestStartGate : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void openFromTheStart();
    void closed_holdsUntilItIsOpened();
    void forgotten_letsThroughAfterASecond();
};

void TestStartGate::cleanup()
{
    startgate::open();
}

void TestStartGate::openFromTheStart()
{
    QElapsedTimer timer;
    timer.start();
    startgate::pass();
    QVERIFY(timer.elapsed() < 500);
}

void TestStartGate::closed_holdsUntilItIsOpened()
{
    startgate::close();
    constexpr std::chrono::milliseconds aWhile(200); // well within its patience
    std::future<void> waiter = std::async(std::launch::async, startgate::pass);
    QVERIFY(waiter.wait_for(aWhile) == std::future_status::timeout);
    startgate::open();
    QVERIFY(waiter.wait_for(aWhile) == std::future_status::ready);
}

void TestStartGate::forgotten_letsThroughAfterASecond()
{
    startgate::close();
    QElapsedTimer timer;
    timer.start();
    startgate::pass();
    QVERIFY(timer.elapsed() >= 900);
}

QTEST_APPLESS_MAIN(TestStartGate)

#include "tst_startgate.moc"
