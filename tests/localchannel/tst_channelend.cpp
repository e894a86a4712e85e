#include "tests/localchannel/support/channeltest.h"
#include "tests/localchannel/support/freeport.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <vector>

/// The whole channel: on which port it begins, and how it ends whatever is under way.
class TestChannelEnd : public ChannelTest
{
    Q_OBJECT

private slots:
    void portTaken_leavesTheQueueWorking();
    void portOutOfRange_countsModulo65536();
    void portZero_listens();
    void stopWithClients_closesTheirConnections();
    void stopWhileTheServerIsHeldBack_ends();
    void stopRightAfterTheStart_ends();
    void destructionWhileClientsSend_isClean();
};

void TestChannelEnd::portTaken_leavesTheQueueWorking()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress(QHostAddress::LocalHost)));
    start(QString::number(other.serverPort()));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(QStringLiteral("graver: ")).size(), 1, waitMs);
    m_thread->socketReadData(questionDocument("a"));
    m_thread->rightRegionIniSuccess();
    QCOMPARE(m_asked, QStringList(QStringLiteral("a")));
    QCOMPARE(m_log->lines().filter(replyLogged), QStringList());
}

void TestChannelEnd::portOutOfRange_countsModulo65536()
{
    m_port = freePort();
    start(QString::number(65536 + m_port));
    QTRY_COMPARE_WITH_TIMEOUT(
        m_log->timelessLines().last(),
        QStringLiteral("info: Tcp listen the port %1 is success., time: <time>").arg(m_port),
        waitMs);
    QCOMPARE(m_log->lines().first(),
             QStringLiteral("info: SysguardQuestsThread port =%1").arg(65536 + m_port));
    m_thread->rightRegionIniSuccess();
    QVERIFY(answersAGoodQuestion());
}

void TestChannelEnd::portZero_listens()
{
    start(QStringLiteral("0"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(listening + QLatin1Char('0')).size(), 1, waitMs);
}

void TestChannelEnd::stopWithClients_closesTheirConnections()
{
    startListening();
    const auto a = asking("a");
    const auto silent = connected();
    QVERIFY(a && silent);
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), acknowledgementBytes(), waitMs);
    m_thread->stop();
    QVERIFY(m_thread->wait(waitMs));
    QTRY_VERIFY_WITH_TIMEOUT(a->isClosed() && silent->isClosed(), waitMs);
    m_thread->socketReadData(questionDocument("late")); // nobody is there to acknowledge it
}

void TestChannelEnd::stopWhileTheServerIsHeldBack_ends()
{
    startListening();
    const auto client = connected();
    QVERIFY(client);
    QTcpSocket sender;
    sender.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    QVERIFY(sender.waitForConnected(waitMs));
    const QByteArray piece(1024 * 1024, '{');
    do {
        sender.write(piece);
    } while (sender.waitForBytesWritten(1000)); // until the server is held back
    m_thread->stop();
    QVERIFY(m_thread->wait(waitMs));
}

void TestChannelEnd::stopRightAfterTheStart_ends()
{
    for (int i = 0; i < 50; ++i) {
        start(QStringLiteral("0"));
        m_thread.reset();
    }
}

void TestChannelEnd::destructionWhileClientsSend_isClean()
{
    for (int i = 0; i < 10; ++i) {
        m_log->clear();
        startListening();
        m_thread->rightRegionIniSuccess();
        std::vector<std::unique_ptr<GuardClient>> clients;
        for (int j = 0; j < 5; ++j) {
            clients.push_back(asking(QByteArray::number(j)));
            QVERIFY(clients.back());
        }
        m_thread.reset();
    }
}

QTEST_GUILESS_MAIN(TestChannelEnd)
#include "tst_channelend.moc"
