#include "tests/localchannel/support/guardclient.h"

#include <QHostAddress>
#include <QTest>

namespace {

constexpr int patienceMs = 20'000;

} // namespace

QByteArray acknowledgementBytes()
{
    return QByteArrayLiteral("{\"code\":\"0\"}");
}

GuardClient::GuardClient(quint16 port)
{
    m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
}

bool GuardClient::connects()
{
    return QTest::qWaitFor([this] { return m_socket.state() == QAbstractSocket::ConnectedState; },
                           patienceMs);
}

void GuardClient::send(const QByteArray &bytes)
{
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.write(bytes);
    m_socket.flush();
}

void GuardClient::leave()
{
    m_socket.disconnectFromHost();
}

void GuardClient::abort()
{
    m_socket.abort();
}

QByteArray GuardClient::received()
{
    m_received += m_socket.readAll();
    return m_received;
}

bool GuardClient::isClosed() const
{
    return m_socket.state() == QAbstractSocket::UnconnectedState;
}
