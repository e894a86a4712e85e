#include "tests/service/support/testserver.h"

#include <QHostAddress>
#include <QSslSocket>
#include <QTcpServer>

#include <functional>
#include <future>

namespace {

constexpr int pollMs = 10;
constexpr int lifeSignMs = 10000; // a client that is silent for so long is gone

/// Hands over descriptors, so that each connection's socket is made on the thread that uses it.
class DescriptorServer final : public QTcpServer
{
public:
    std::function<void(qintptr)> take;

protected:
    void incomingConnection(qintptr descriptor) override { take(descriptor); }
};

void sendAndClose(QSslSocket &socket, const QByteArray &bytes)
{
    socket.write(bytes);
    while (socket.bytesToWrite() > 0 || socket.encryptedBytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(lifeSignMs)) {
            return;
        }
    }
    socket.disconnectFromHost();
    if (socket.state() != QAbstractSocket::UnconnectedState) {
        socket.waitForDisconnected(lifeSignMs);
    }
}

} // namespace

TestServer::TestServer()
{
    start();
}

TestServer::TestServer(const QSslConfiguration &tls)
    : m_tls(tls)
{
    start();
}

TestServer::~TestServer()
{
    m_stopping = true;
    m_acceptor.join();
}

void TestServer::setReply(const ServedReply &reply)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_reply = reply;
}

void TestServer::setReplyFor(const QByteArray &target, const ServedReply &reply)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_replies.insert(target, reply);
}

void TestServer::release()
{
    m_released = true;
}

QVector<ReceivedRequest> TestServer::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

void TestServer::start()
{
    std::promise<void> listening;
    m_acceptor = std::thread([this, &listening] {
        DescriptorServer server;
        server.take = [this](qintptr descriptor) {
            ++m_connections;
            m_handlers.emplace_back(&TestServer::serve, this, descriptor);
        };
        if (server.listen(QHostAddress::LocalHost)) {
            m_port = server.serverPort();
        }
        listening.set_value();
        while (!m_stopping) {
            server.waitForNewConnection(pollMs);
        }
        for (std::thread &handler : m_handlers) {
            handler.join();
        }
    });
    listening.get_future().wait();
}

void TestServer::serve(qintptr descriptor)
{
    QSslSocket socket;
    socket.setSocketDescriptor(descriptor);
    ReceivedRequest request;
    if (!encrypt(socket) || !receive(socket, request)) {
        return;
    }
    const ServedReply reply = take(request);
    socket.write(reply.early);
    socket.flush();
    if (!reply.hold || waitForRelease(socket)) {
        if (!reply.endless.isEmpty()) {
            return sendWithoutEnd(socket, reply);
        }
        sendAndClose(socket, reply.bytes);
    }
}

bool TestServer::encrypt(QSslSocket &socket) const
{
    if (!m_tls) {
        return true;
    }
    socket.setSslConfiguration(*m_tls);
    socket.startServerEncryption();
    return socket.waitForEncrypted(lifeSignMs);
}

bool TestServer::receive(QSslSocket &socket, ReceivedRequest &request) const
{
    QByteArray bytes;
    do {
        if (m_stopping || socket.state() != QAbstractSocket::ConnectedState) {
            return false;
        }
        socket.waitForReadyRead(pollMs);
        bytes += socket.readAll();
    } while (!readRequest(bytes, request));
    if (m_tls) {
        request.protocol = socket.sessionProtocol();
    }
    return true;
}

ServedReply TestServer::take(const ReceivedRequest &request)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_requests.append(request);
    return m_replies.value(request.target, m_reply);
}

void TestServer::sendWithoutEnd(QSslSocket &socket, const ServedReply &reply) const
{
    socket.write(reply.bytes);
    while (!m_stopping && socket.state() == QAbstractSocket::ConnectedState) {
        socket.write(reply.endless);
        while (socket.bytesToWrite() > 0 && !m_stopping
               && socket.state() == QAbstractSocket::ConnectedState) {
            socket.waitForBytesWritten(pollMs);
        }
    }
}

bool TestServer::waitForRelease(QSslSocket &socket)
{
    while (!m_released && !m_stopping) {
        socket.waitForReadyRead(pollMs);
        if (socket.state() != QAbstractSocket::ConnectedState) {
            ++m_leftWhileHeld;
            return false;
        }
    }
    return m_released;
}
