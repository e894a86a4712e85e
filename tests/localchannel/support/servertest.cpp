#include "tests/localchannel/support/servertest.h"

#include <QTest>

void ServerTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_server = std::make_unique<AsynTcpSocket>();
    m_messages = std::make_unique<QSignalSpy>(m_server.get(), &AsynTcpSocket::socketsuccess);
    m_errors = std::make_unique<QSignalSpy>(m_server.get(), &AsynTcpSocket::socketerror);
}

void ServerTest::cleanup()
{
    m_server.reset();
    m_log.reset();
}

void ServerTest::listen()
{
    m_server->CreateServerSocket(0);
    QVERIFY(m_server->serverPort() != 0);
}

std::unique_ptr<GuardClient> ServerTest::connected()
{
    const int before = loggedLines(newConnection);
    auto client = std::make_unique<GuardClient>(m_server->serverPort());
    const bool accepted
        = QTest::qWaitFor([this, before] { return loggedLines(newConnection) > before; }, waitMs);
    return accepted && client->connects() ? std::move(client) : nullptr;
}

QByteArray ServerTest::receivedBytes() const
{
    QByteArray all;
    for (const QList<QVariant> &message : *m_messages) {
        all += message.first().toByteArray();
    }
    return all;
}

int ServerTest::loggedLines(const QString &start) const
{
    return m_log->linesWith(start).size();
}
