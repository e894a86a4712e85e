#include "localchannel/asyntcpsocket.h"
#include "tests/localchannel/support/freeport.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/support/logcapture.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <memory>
#include <thread>
#include <vector>

/// The loopback server, with real clients.
class TestAsynTcpSocket : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listening_isLogged();
    void portZero_listensOnSomePort_andTheLogSaysZero();
    void portTaken_isLoggedAndEmitted_andTheObjectStaysInert();
    void otherAddressesOfTheMachine_areNotListenedOn();

    void newClient_isLogged();
    void chunk_isOneMessage();
    void messageInTwoChunks_isTwoMessages();
    void messagesReadTogether_areOne();
    void anyBytes_areHandedOnUnchanged();
    void messageOf64MiB_arrivesWhole();

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

    void errorOfTheCurrentClient_isLoggedAndEmitted();
    void errorWithoutACurrentClient_isOnlyLogged();
    void errorOfAnotherClient_namesTheCurrentClientsText();

    void twoHundredClients_areAllServed();
    void clientsThatLeaveWhileOthersSpeak_doNoHarm();
    void destructionWithClients_closesTheirConnections();

private:
    void listen();
    [[nodiscard]] std::unique_ptr<GuardClient> connected();
    [[nodiscard]] QByteArray receivedBytes() const;
    [[nodiscard]] int loggedLines(const QString &start) const;

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<AsynTcpSocket> m_server;
    std::unique_ptr<QSignalSpy> m_messages;
    std::unique_ptr<QSignalSpy> m_errors;
};

namespace {

const QString noClient = QStringLiteral("warning: haven't found the valid client socket.");
const QString disconnected = QStringLiteral("info: Client is disconnected from Q");
const QString errorSeen = QStringLiteral("info: ErrorSocket from QTcpSocket(0x");
const QString newConnection = QStringLiteral("info: TcpServer have a new connection, ");
constexpr int waitMs = 30'000;

} // namespace

void TestAsynTcpSocket::init()
{
    m_log = std::make_unique<LogCapture>();
    m_server = std::make_unique<AsynTcpSocket>();
    m_messages = std::make_unique<QSignalSpy>(m_server.get(), &AsynTcpSocket::socketsuccess);
    m_errors = std::make_unique<QSignalSpy>(m_server.get(), &AsynTcpSocket::socketerror);
}

void TestAsynTcpSocket::cleanup()
{
    m_server.reset();
    m_log.reset();
}

void TestAsynTcpSocket::listen()
{
    m_server->CreateServerSocket(0);
    QVERIFY(m_server->serverPort() != 0);
}

std::unique_ptr<GuardClient> TestAsynTcpSocket::connected()
{
    const int before = loggedLines(newConnection);
    auto client = std::make_unique<GuardClient>(m_server->serverPort());
    const bool accepted
        = QTest::qWaitFor([this, before] { return loggedLines(newConnection) > before; }, waitMs);
    return accepted && client->connects() ? std::move(client) : nullptr;
}

QByteArray TestAsynTcpSocket::receivedBytes() const
{
    QByteArray all;
    for (const QList<QVariant> &message : *m_messages) {
        all += message.first().toByteArray();
    }
    return all;
}

int TestAsynTcpSocket::loggedLines(const QString &start) const
{
    return m_log->linesWith(start).size();
}

void TestAsynTcpSocket::listening_isLogged()
{
    const quint16 port = freePort();
    m_server->CreateServerSocket(port);
    QCOMPARE(m_server->serverPort(), port);
    QCOMPARE(
        m_log->timelessLines(),
        QStringList(
            QStringLiteral("info: Tcp listen the port %1 is success., time: <time>").arg(port)));
    QCOMPARE(m_errors->size(), 0);
}

void TestAsynTcpSocket::portZero_listensOnSomePort_andTheLogSaysZero()
{
    m_server->CreateServerSocket(0);
    QVERIFY(m_server->serverPort() != 0);
    QCOMPARE(m_log->timelessLines(),
             QStringList(QStringLiteral("info: Tcp listen the port 0 is success., time: <time>")));
}

void TestAsynTcpSocket::portTaken_isLoggedAndEmitted_andTheObjectStaysInert()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress(QHostAddress::LocalHost)));
    m_server->CreateServerSocket(other.serverPort());
    QCOMPARE(m_errors->size(), 1);
    const QString reason = m_errors->first().first().toString();
    QVERIFY(!reason.isEmpty());
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("graver: ") + reason));
    QCOMPARE(m_server->serverPort(), quint16(0));
    m_server->ResponseContent(QByteArrayLiteral("x"));
    QCOMPARE(m_log->lines().last(), noClient);
}

void TestAsynTcpSocket::otherAddressesOfTheMachine_areNotListenedOn()
{
    listen();
    int tried = 0;
    for (const QHostAddress &address : QNetworkInterface::allAddresses()) {
        if (address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol) {
            continue;
        }
        QTcpSocket client;
        client.connectToHost(address, m_server->serverPort());
        QVERIFY2(!client.waitForConnected(1000), qPrintable(address.toString()));
        ++tried;
    }
    if (tried == 0) {
        QSKIP("this machine has no address but 127.0.0.1");
    }
    QCOMPARE(loggedLines(newConnection), 0);
}

void TestAsynTcpSocket::newClient_isLogged()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    const QRegularExpression form(
        QStringLiteral("^info: TcpServer have a new connection, ip: 127\\.0\\.0\\.1, "
                       "port:\\d+, time: <time>$"));
    QVERIFY2(form.match(m_log->timelessLines().last()).hasMatch(),
             qPrintable(m_log->timelessLines().last()));
}

void TestAsynTcpSocket::chunk_isOneMessage()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->send(QByteArrayLiteral("{\"question\":\"a\"}"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    QCOMPARE(m_messages->first().first().toByteArray(), QByteArrayLiteral("{\"question\":\"a\"}"));
    const QRegularExpression form(QStringLiteral(
        "^info: have received message from QTcpSocket\\(0x[0-9a-f]+\\)time: <time>$"));
    QVERIFY2(form.match(m_log->timelessLines().last()).hasMatch(),
             qPrintable(m_log->timelessLines().last()));
}

void TestAsynTcpSocket::messageInTwoChunks_isTwoMessages()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->send(QByteArrayLiteral("{\"quest"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    client->send(QByteArrayLiteral("ion\":\"a\"}"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 2, waitMs);
    QCOMPARE(m_messages->at(0).first().toByteArray(), QByteArrayLiteral("{\"quest"));
    QCOMPARE(m_messages->at(1).first().toByteArray(), QByteArrayLiteral("ion\":\"a\"}"));
}

void TestAsynTcpSocket::messagesReadTogether_areOne()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    // The server lives on this thread, so both are there before it reads.
    client->send(QByteArrayLiteral("{}"));
    client->send(QByteArrayLiteral("{}"));
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    QCOMPARE(m_messages->first().first().toByteArray(), QByteArrayLiteral("{}{}"));
}

void TestAsynTcpSocket::anyBytes_areHandedOnUnchanged()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    const QByteArray bytes("\0\xff\xfe\r\n\x80 \0", 8);
    client->send(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(m_messages->size(), 1, waitMs);
    QCOMPARE(m_messages->first().first().toByteArray(), bytes);
}

void TestAsynTcpSocket::messageOf64MiB_arrivesWhole()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    const QByteArray bytes(64 * 1024 * 1024, 'x');
    qint64 arrived = 0;
    bool onlyX = true;
    connect(m_server.get(), &AsynTcpSocket::socketsuccess, this, [&](const QByteArray &data) {
        arrived += data.size();
        onlyX = onlyX && data.count('x') == data.size();
        m_messages->clear();
    });
    client->send(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(arrived, qint64(bytes.size()), 2 * waitMs);
    QVERIFY(onlyX);
}

void TestAsynTcpSocket::reply_goesToTheClientThatSpokeLast()
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

void TestAsynTcpSocket::anotherClientsDisconnect_removesTheCurrentClient()
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

void TestAsynTcpSocket::silentClientsDisconnect_removesTheCurrentClient()
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

void TestAsynTcpSocket::silentClientsDisconnect_withoutACurrentClient_isOnlyLogged()
{
    listen();
    const auto silent = connected();
    QVERIFY(silent);
    silent->leave();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    QVERIFY(!m_server->hasClient());
    QCOMPARE(m_errors->size(), 0);
}

void TestAsynTcpSocket::oneClientsDisconnect_leavesThoseThatAreNotCurrent()
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

void TestAsynTcpSocket::clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst_data()
{
    QTest::addColumn<bool>("speaks");
    QTest::addColumn<bool>("leavesUnread");
    QTest::newRow("silent") << false << false;
    QTest::newRow("current") << true << false;
    QTest::newRow("current, with a reply unread") << true << true;
}

void TestAsynTcpSocket::clientThatLeftBeforeAnotherCame_isSeenToLeaveFirst()
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

void TestAsynTcpSocket::clientThatLeftAtOnce_isSeenToComeFirst()
{
    listen();
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), m_server->serverPort());
    QVERIFY(client.waitForConnected(waitMs));
    client.disconnectFromHost();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    QCOMPARE(loggedLines(newConnection), 1);
}

void TestAsynTcpSocket::replyWithoutAClient_isDroppedWithAWarning()
{
    listen();
    m_log->clear();
    m_server->ResponseContent(QByteArrayLiteral("reply"));
    QCOMPARE(m_log->lines(), QStringList(noClient));
}

void TestAsynTcpSocket::replyAfterTheClientLeft_isDroppedWithAWarning()
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

void TestAsynTcpSocket::replyFromAnotherThread_keepsItsOrder()
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

void TestAsynTcpSocket::replyFromAnotherThread_withoutAClient_isDroppedWithAWarning()
{
    listen();
    std::thread other([this] { m_server->ResponseContent(QByteArrayLiteral("reply")); });
    other.join();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(noClient), 1, waitMs);
}

void TestAsynTcpSocket::clientThatNeverReads_costsNoMoreThanTheLimit()
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
    QVERIFY(socket != nullptr);
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

void TestAsynTcpSocket::errorOfTheCurrentClient_isLoggedAndEmitted()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    m_log->clear();
    client->leave();
    QTRY_COMPARE_WITH_TIMEOUT(m_errors->size(), 1, waitMs);
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    const QString text
        = QStringLiteral("The following error occurred, errno:1, The remote host closed "
                         "the connection.");
    QCOMPARE(m_errors->first().first().toString(), text);
    QCOMPARE(m_log->lines().size(), 3);
    QVERIFY(m_log->lines().at(0).startsWith(errorSeen));
    QCOMPARE(m_log->lines().at(1), QStringLiteral("info: ") + text);
    QVERIFY(m_log->lines().at(2).startsWith(disconnected));
}

void TestAsynTcpSocket::errorWithoutACurrentClient_isOnlyLogged()
{
    listen();
    const auto client = connected();
    QVERIFY(client);
    client->leave();
    QTRY_COMPARE_WITH_TIMEOUT(loggedLines(disconnected), 1, waitMs);
    QCOMPARE(loggedLines(errorSeen), 1);
    QCOMPARE(m_errors->size(), 0);
}

void TestAsynTcpSocket::errorOfAnotherClient_namesTheCurrentClientsText()
{
    listen();
    const auto other = connected();
    const auto current = connected();
    QVERIFY(other && current);
    current->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    other->leave();
    QTRY_COMPARE_WITH_TIMEOUT(m_errors->size(), 1, waitMs);
    // The current client itself had no error.
    QCOMPARE(m_errors->first().first().toString(),
             QStringLiteral("The following error occurred, errno:1, Unknown error."));
}

void TestAsynTcpSocket::twoHundredClients_areAllServed()
{
    constexpr std::size_t clients = 200;
    listen();
    std::vector<std::unique_ptr<GuardClient>> all;
    for (std::size_t i = 0; i < clients; ++i) {
        all.push_back(std::make_unique<GuardClient>(m_server->serverPort()));
    }
    for (const auto &client : all) {
        QVERIFY(client->connects());
    }
    connect(m_server.get(), &AsynTcpSocket::socketsuccess, m_server.get(),
            &AsynTcpSocket::ResponseContent);
    for (std::size_t i = 0; i < clients; ++i) {
        all[i]->send(QByteArray::number(int(i)));
    }
    for (std::size_t i = 0; i < clients; ++i) {
        QTRY_COMPARE_WITH_TIMEOUT(all[i]->received(), QByteArray::number(int(i)), waitMs);
    }
    QCOMPARE(m_messages->size(), int(clients));
}

void TestAsynTcpSocket::clientsThatLeaveWhileOthersSpeak_doNoHarm()
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

void TestAsynTcpSocket::destructionWithClients_closesTheirConnections()
{
    listen();
    const auto current = connected();
    const auto silent = connected();
    QVERIFY(current && silent);
    current->send(QByteArrayLiteral("x"));
    QTRY_VERIFY_WITH_TIMEOUT(m_server->hasClient(), waitMs);
    m_server.reset();
    QTRY_VERIFY_WITH_TIMEOUT(current->isClosed() && silent->isClosed(), waitMs);
    QCOMPARE(m_log->foreignLines(), QStringList());
}

QTEST_GUILESS_MAIN(TestAsynTcpSocket)
#include "tst_asyntcpsocket.moc"
