#include "tests/localchannel/support/descriptorlimit.h"
#include "tests/localchannel/support/freeport.h"
#include "tests/localchannel/support/servertest.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <vector>

/// The loopback server: listening, what clients send, their errors, many of them.
class TestAsynTcpSocket : public ServerTest
{
    Q_OBJECT

private slots:
    void listening_isLogged();
    void portZero_listensOnSomePort_andTheLogSaysZero();
    void portTaken_isLoggedAndEmitted_andTheObjectStaysInert();
    void otherAddressesOfTheMachine_areNotListenedOn();
    void newClient_isLogged();
    void errorWhileAccepting_isLogged_andTheNextClientIsServed();
    void withoutDescriptorsToSpare_clientsWait_andAreServedLater();
    void chunk_isOneMessage();
    void messageInTwoChunks_isTwoMessages();
    void messagesReadTogether_areOne();
    void anyBytes_areHandedOnUnchanged();
    void messageOf64MiB_arrivesWhole();
    void errorOfTheCurrentClient_isLoggedAndEmitted();
    void errorWithoutACurrentClient_isOnlyLogged();
    void errorOfAnotherClient_namesTheCurrentClientsText();
    void twoHundredClients_areAllServed();
    void destructionWithClients_closesTheirConnections();
};

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

void TestAsynTcpSocket::errorWhileAccepting_isLogged_andTheNextClientIsServed()
{
    listen();
    auto *server = m_server->findChild<QTcpServer *>();
    // As Qt does it.
    server->pauseAccepting();
    emit server->acceptError(QAbstractSocket::NetworkError);
    QCOMPARE(loggedLines(QStringLiteral("warning: connection cannot be accepted: ")), 1);
    const auto client = connected();
    QVERIFY(client);
    client->send("x");
    QTRY_COMPARE_WITH_TIMEOUT(receivedBytes(), QByteArray("x"), waitMs);
}

void TestAsynTcpSocket::withoutDescriptorsToSpare_clientsWait_andAreServedLater()
{
#ifdef Q_OS_LINUX
    listen();
    std::vector<std::unique_ptr<GuardClient>> clients;
    {
        const DescriptorLimit limit(DescriptorLimit::nextOne() * 2);
        for (int i = 0; i < 3; ++i) {
            clients.push_back(std::make_unique<GuardClient>(m_server->serverPort()));
            QVERIFY(clients.back()->connects());
            clients.back()->send("x");
        }
        const QString waits
            = QStringLiteral("warning: too many clients are connected, the next ones wait.");
        QTRY_COMPARE_WITH_TIMEOUT(loggedLines(waits), 1, waitMs);
        QCOMPARE(loggedLines(newConnection), 1);
        QTRY_COMPARE_WITH_TIMEOUT(receivedBytes(), QByteArray("x"), waitMs);
        QVERIFY(!QTest::qWaitFor([this] { return loggedLines(newConnection) > 1; }, 2500));
    }
    QTRY_COMPARE_WITH_TIMEOUT(receivedBytes(), QByteArray("xxx"), waitMs);
    QCOMPARE(loggedLines(newConnection), 3);
#else
    QSKIP("Descriptors are not counted there.");
#endif
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
