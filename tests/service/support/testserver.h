#pragma once

#include "tests/service/support/receivedrequest.h"
#include "tests/service/support/servedreply.h"

#include <QMap>
#include <QSslConfiguration>
#include <QtGlobal>

#include <atomic>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

class QSslSocket;

/// An HTTP or HTTPS server on loopback that plays what a test tells it, well-formed or not, and
/// keeps what it received. Every connection has a thread of its own. All operations may be called
/// from any thread; the shared state is guarded by a mutex.
class TestServer final
{
    Q_DISABLE_COPY_MOVE(TestServer)

public:
    /// Plain HTTP.
    TestServer();

    /// HTTPS with the certificate and protocol of \a tls.
    explicit TestServer(const QSslConfiguration &tls);

    ~TestServer();

    [[nodiscard]] quint16 port() const { return m_port; }

    /// What every request gets that has no reply of its own; a good one with nothing in it if this
    /// is never called.
    void setReply(const ServedReply &reply);

    /// What requests for exactly this \a target get.
    void setReplyFor(const QByteArray &target, const ServedReply &reply);

    /// Lets held replies go, those waiting and those to come.
    void release();

    /// The complete requests so far, in the order of their arrival.
    [[nodiscard]] QVector<ReceivedRequest> requests() const;

    /// How many connections were accepted so far.
    [[nodiscard]] int connectionCount() const { return m_connections; }

    /// How many connections were closed by the client while their reply was held.
    [[nodiscard]] int leftWhileHeld() const { return m_leftWhileHeld; }

private:
    void start();
    void acceptConnections();
    void serve(qintptr descriptor);
    [[nodiscard]] bool encrypt(QSslSocket &socket) const;
    [[nodiscard]] bool receive(QSslSocket &socket, ReceivedRequest &request) const;
    [[nodiscard]] ServedReply take(const ReceivedRequest &request);
    void sendWithoutEnd(QSslSocket &socket, const ServedReply &reply) const;
    [[nodiscard]] bool waitForRelease(QSslSocket &socket);

    const std::optional<QSslConfiguration> m_tls;
    std::atomic<quint16> m_port = 0;
    std::atomic<bool> m_stopping = false;
    std::atomic<bool> m_released = false;
    std::atomic<int> m_connections = 0;
    std::atomic<int> m_leftWhileHeld = 0;

    mutable std::mutex m_mutex;
    ServedReply m_reply
        = httpReply(R"({"errorCode":"0"})"); // this and the next two are guarded by m_mutex
    QMap<QByteArray, ServedReply> m_replies;
    QVector<ReceivedRequest> m_requests;

    std::vector<std::thread> m_handlers; // used by the accepting thread alone
    std::thread m_acceptor;
};
