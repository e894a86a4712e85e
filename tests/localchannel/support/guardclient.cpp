#include "tests/localchannel/support/guardclient.h"

#include <QEventLoop>
#include <QHostAddress>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>

namespace {

constexpr int patienceMs = 20'000;

bool exchange(QTcpSocket &socket, const QByteArray &document)
{
    socket.write(document);
    QByteArray reply;
    while (reply.size() < acknowledgementBytes().size()) {
        if (!socket.waitForReadyRead(patienceMs)) {
            return false;
        }
        reply += socket.readAll();
    }
    return reply == acknowledgementBytes();
}

bool connectTo(QTcpSocket &socket, quint16 port)
{
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (!socket.waitForConnected(patienceMs)) {
        return false;
    }
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    return true;
}

bool postOnOne(quint16 port, const QVector<QByteArray> &documents)
{
    QTcpSocket socket;
    return connectTo(socket, port)
        && std::all_of(documents.begin(), documents.end(), [&socket](const QByteArray &document) {
               return exchange(socket, document);
           });
}

bool postOnOneEach(quint16 port, const QVector<QByteArray> &documents)
{
    return std::all_of(documents.begin(), documents.end(), [port](const QByteArray &document) {
        QTcpSocket socket;
        return connectTo(socket, port) && exchange(socket, document);
    });
}

} // namespace

QByteArray acknowledgementBytes()
{
    return QByteArrayLiteral("{\"code\":\"0\"}");
}

QByteArray questionDocument(const QByteArray &question)
{
    return "{\"question\":\"" + question + "\"}";
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

bool postAll(quint16 port, const QVector<QByteArray> &documents, Connections connections)
{
    const auto post = connections == Connections::One ? postOnOne : postOnOneEach;
    bool acknowledged = false; // read when the thread has ended
    const std::unique_ptr<QThread> poster(QThread::create(
        [&acknowledged, post, port, &documents] { acknowledged = post(port, documents); }));
    QEventLoop loop;
    QObject::connect(poster.get(), &QThread::finished, &loop, &QEventLoop::quit);
    poster->start();
    loop.exec();
    poster->wait();
    return acknowledged;
}
