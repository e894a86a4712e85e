#include "app/base/startgate.h"

#include <QElapsedTimer>
#include <QTest>

#include <atomic>
#include <thread>

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
    std::atomic<bool> opened = false;
    bool passedBefore = true;
    std::thread waiter([&] {
        startgate::pass();
        passedBefore = !opened;
    });
    opened = true;
    startgate::open();
    waiter.join();
    QVERIFY(!passedBefore);
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
