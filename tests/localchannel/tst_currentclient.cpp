#include "tests/localchannel/support/servertest.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTest>

#include <atomic>
#include <thread>

/// The client that spoke last: what it is answered, and how it and others leave.
class TestCurrentClient : public ServerTest
{
    Q_OBJECT

private slots:
    void reply_goesToTheClientThatSpokeLast();
    void anotherClientsDisconnect_removesTheCurrentClient();
    void silentClientsDisconnect_removesTheCurrentClient();
    void silentClientsDisconnect_withoutACurrentClient_isOnlyLogged();
    void oneClientsDisconnect_leavesThoseThatAreNotCurrent();
    void clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst_data();
    void clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst();
    void clientThatLeftAtOnce_isSeenToComeFirst();
    void replyWithoutAClient_isDroppedWithAWarning();
    void replyAfterTheClientLeft_isDroppedWithAWarning();
    void replyFromAnotherThread_keepsItsOrder();
    void replyFromAnotherThread_withoutAClient_isDroppedWithAWarning();
    void clientThatNeverReads_costsNoMoreThanTheLimit();
    void clientsThatLeaveWhileOthersSpeak_doNoHarm();
};

void TestCurrentClient::reply_goesToTheClientThatSpokeLast()
{
    listen();
    const auto a = connected();
    const auto b = connected();
    QVERIFY(a && b);
    a->send(QByteArrayLiteral("from a"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    b->send(QByteArrayLiteral("from b"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 2, waitMs);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QTRY_COMPARE_WITH_TIMEOUT(b->received(), QByteArrayLiteral("reply"), waitMs);
    a->send(QByteArrayLiteral("again"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 3, waitMs);
    m_server->ResponseContent(QByteArrayLiteral("to a"));
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), QByteArrayLiteral("to a"), waitMs);
    QCOMPARE(b->received(), QByteArrayLiteral("reply"));
}

void TestCurrentClient::anotherClientsDisconnect_removesTheCurrentClient()
{
    listen();
    const auto a = connected();
    const auto b = connected();
    QVERIFY(a && b);
    a->send(QByteArrayLiteral("from a"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    b->send(QByteArrayLiteral("from b"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 2, waitMs);
    QVERIFY(m_server->hasClient());
    a->leave();
    QTRY_VERIFY_WITH_TIMEOUT(b->isClosed(), waitMs);
    QVERIFY(!m_server->hasClient());
    QVERIFY(loggedLines(disconnected) >= 1);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QCOMPARE(m_log->lines().last(), noClient);
    QCOMPARE(b->received(), QByteArray());
}

void TestCurrentClient::silentClientsDisconnect_removesTheCurrentClient()
{
    listen();
    const auto silent = connected();
    const auto current = connected();
    QVERIFY(silent && current);
    current->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    silent->leave();
    QTRY_VERIFY_WITH_TIMEOUT(current->isClosed(), waitMs);
    QVERIFY(!m_server->hasClient());
    QVERIFY(loggedLines(disconnected) >= 1);
}

void TestCurrentClient::silentClientsDisconnect_withoutACurrentClient_isOnlyLogged()
{
    listen();
    const auto silent = connected();
    QVERIFY(silent);
    silent->leave();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    QVERIFY(!m_server->hasClient());
    QCOMPARE(m_errors->size(), 0);
}

void TestCurrentClient::oneClientsDisconnect_leavesThoseThatAreNotCurrent()
{
    listen();
    const auto a = connected();
    const auto b = connected();
    QVERIFY(a && b);
    a->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    a->leave();
    QTRY_VERIFY_WITH_TIMEOUT(!m_server->hasClient(), waitMs);
    b->send(QByteArrayLiteral("y"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QTRY_COMPARE_WITH_TIMEOUT(b->received(), QByteArrayLiteral("reply"), waitMs);
}

void TestCurrentClient::clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst_data()
{
    QTest::addColumn<bool>("speaks");
    QTest::addColumn<bool>("leavesUnread");
    QTest::newRow("silent") << false << false;
    QTest::newRow("current") << true << false;
    QTest::newRow("current, with a reply unread") << true << true;
}

void TestCurrentClient::clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst()
{
    QFETCH(bool, speaks);
    QFETCH(bool, leavesUnread);
    listen();
    const auto first = connected();
    QVERIFY(first);
    if (speaks) {
        first->send(QByteArrayLiteral("first"));
        QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    }
    m_log->clear();
    if (leavesUnread) {
        m_server->ResponseContent(QByteArrayLiteral("unread")); // the connection is reset
    }
    // The server handles nothing until the next client has spoken.
    first->leave();
    QTcpSocket second;
    second.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
    QVERIFY(second.waitForConnected(waitMs));
    second.write(QByteArrayLiteral("second"));
    second.flush();
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), speaks ? 2 : 1, waitMs);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QTRY_COMPARE_WITH_TIMEOUT(second.bytesAvailable(), 5, waitMs);
    const QStringList lines = m_log->lines().filter(
        QRegularExpression(QStringLiteral("disconnected from|new connection|received message")));
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[0].startsWith(disconnected));
    QVERIFY(lines[1].startsWith(newConnection));
    QVERIFY(m_server->hasClient());
}

void TestCurrentClient::clientThatLeftAtOnce_isSeenToComeFirst()
{
    listen();
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
    QVERIFY(client.waitForConnected(waitMs));
    client.disconnectFromHost();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    QCOMPARE(loggedLines(newConnection), 1);
}

void TestCurrentClient::replyWithoutAClient_isDroppedWithAWarning()
{
    listen();
    m_log->clear();
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QCOMPARE(m_log->lines(), QStringList(noClient));
}

void TestCurrentClient::replyAfterTheClientLeft_isDroppedWithAWarning()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    client->abort();
    QTRY_VERIFY_WITH_TIMEOUT(!m_server->hasClient(), waitMs);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QCOMPARE(m_log->lines().last(), noClient);
}

void TestCurrentClient::replyFromAnotherThread_keepsItsOrder()
{
    constexpr int replies = 2000;
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    QByteArray expected;
    for (int i = 0; i < replies; ++i) {
        expected += QByteArray::number(i) + ' ';
    }
    std::atomic<int> answered = 0;
    std::thread other([this, &answered] {
        for (int i = 0; i < replies; ++i) {
            answered += m_server->hasClient() ? 1 : 0;
            m_server->ResponseContent(QByteArray::number(i) + ' ');
        }
    });
    // The server reads from a second client meanwhile.
    const auto second = connected();
    other.join();
    QVERIFY(second);
    QCOMPARE(answered.load(), replies);
    QTRY_COMPARE_WITH_TIMEOUT(client->received(), expected, waitMs);
    QCOMPARE(m_log->foreignLines(), QStringList());
}

void TestCurrentClient::replyFromAnotherThread_withoutAClient_isDroppedWithAWarning()
{
    listen();
    std::thread other([this] { m_server->ResponseContent(QByteArrayLiteral("reply")); });
    other.join();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(noClient), 1, waitMs);
}

void TestCurrentClient::clientThatNeverReads_costsNoMoreThanTheLimit()
{
    listen();
    // Not a GuardClient: this one must leave everything in the system's buffers.
    QTcpSocket client;
    client.setReadBufferSize(1);
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
    QTRY_COMPARE_WITH_TIMEOUT(client.state(), QAbstractSocket::ConnectedState, waitMs);
    client.write("x");
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    const auto *const socket = m_server->findChild<QTcpSocket *>();
    if (socket == nullptr) {
        QFAIL("the server has no socket");
    }
    const QByteArray reply(64 * 1024, 'x');
    for (int i = 0; i < 1600 && loggedLines(noClient) == 0; ++i) { // 100 MiB
        m_server->ResponseContent(reply);
    }
    QCOMPARE(m_log->lines().last(), noClient);
    QVERIFY(socket->bytesToWrite() <= AsynTcpSocket::unreadLimit + reply.size());
    // Others are served all the same.
    const auto second = connected();
    QVERIFY(second);
    second->send(QByteArrayLiteral("y"));
    QTRY_COMPARE_WITH_TIMEOUT(receivedBytes(), QByteArrayLiteral("xy"), waitMs);
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QTRY_COMPARE_WITH_TIMEOUT(second->received(), QByteArrayLiteral("reply"), waitMs);
}

void TestCurrentClient::clientsThatLeaveWhileOthersSpeak_doNoHarm()
{
    constexpr int rounds = 100;
    listen();
    connect(m_server.get(), &AsynTcpSocket::socketsuccess, m_server.get(),
            &AsynTcpSocket::ResponseContent);
    for (int i = 0; i < rounds; ++i) {
        const auto leaving = connected();
        const auto speaking = connected();
        QVERIFY(leaving && speaking);
        leaving->send(QByteArrayLiteral("a"));
        speaking->send(QByteArrayLiteral("b"));
        if (i % 2 == 0) {
            leaving->abort();
        } else {
            leaving->leave();
        }
        // A client that is to be removed may speak once more, and so become the current one.
        speaking->send(QByteArrayLiteral("c"));
    }
    const auto good = connected();
    QVERIFY(good);
    good->send(QByteArrayLiteral("good"));
    QTRY_COMPARE_WITH_TIMEOUT(good->received(), QByteArrayLiteral("good"), waitMs);
}

QTEST_GUILESS_MAIN(TestCurrentClient)
#include "tst_currentclient.moc"
