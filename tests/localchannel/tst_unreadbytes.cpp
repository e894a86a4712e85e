#include "localchannel/unreadbytes.h"

#include <QTest>

#include <atomic>
#include <thread>

/// The bytes handed from one thread to another and not read yet.
class TestUnreadBytes : public QObject
{
    Q_OBJECT

private slots:
    void withinTheLimit_nobodyWaits();
    void beyondTheLimit_theGiverWaitsUntilItIsRead();
    void open_letsTheGiverGo();
    void openBefore_nobodyWaits();
    void readBeforeItIsCounted_isNotCountedTwice();
};

void TestUnreadBytes::withinTheLimit_nobodyWaits()
{
    UnreadBytes unread(10);
    unread.add(4);
    unread.add(6);
    unread.take(10);
    unread.add(10); // returns, or the test runs out of time
}

void TestUnreadBytes::beyondTheLimit_theGiverWaitsUntilItIsRead()
{
    UnreadBytes unread(10);
    std::atomic<bool> read = false;
    std::atomic<bool> readBeforeItWentOn = false;
    std::thread giver([&] {
        unread.add(11);
        readBeforeItWentOn = read.load();
    });
    read = true;
    unread.take(11);
    giver.join();
    QVERIFY(readBeforeItWentOn);
}

void TestUnreadBytes::open_letsTheGiverGo()
{
    UnreadBytes unread(10);
    std::thread giver([&unread] { unread.add(11); });
    unread.open();
    giver.join();
}

void TestUnreadBytes::openBefore_nobodyWaits()
{
    UnreadBytes unread(10);
    unread.open();
    unread.add(1000);
}

void TestUnreadBytes::readBeforeItIsCounted_isNotCountedTwice()
{
    UnreadBytes unread(10);
    for (int i = 0; i < 10; ++i) {
        unread.take(11);
        unread.add(11);
    }
}

QTEST_GUILESS_MAIN(TestUnreadBytes)
#include "tst_unreadbytes.moc"
