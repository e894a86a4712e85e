#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTcpSocket>

#include <atomic>

class QTcpServer;

/// A TCP server on 127.0.0.1 that hands on what its clients send and answers the client that spoke
/// last. It knows nothing of what the bytes mean. Make it, and let it listen, on a thread with an
/// event loop; everything but ResponseContent() and hasClient() belongs to that thread.
class AsynTcpSocket : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AsynTcpSocket)

public:
    /// Acknowledgements that a client leaves unread, in bytes; beyond them it counts as a client
    /// that cannot be written to.
    static constexpr qint64 unreadLimit = 1024LL * 1024;

    explicit AsynTcpSocket(QObject *parent = nullptr);

    /// Listens on \a port, 0 for one that the system chooses. Called once. A failure is logged and
    /// emitted as socketerror(); the object then stays inert.
    void CreateServerSocket(unsigned short port);

    /// Sends \a data as it is to the client that spoke last. From another thread the bytes are
    /// written later, by this object's thread, in the order of the calls. Without such a client
    /// they are dropped with a warning.
    void ResponseContent(QByteArray data);

    /// Whether there is a client that spoke last and is still connected. From any thread.
    [[nodiscard]] bool hasClient() const { return m_hasClient; }

    /// The port it listens on; 0 when it does not.
    [[nodiscard]] quint16 serverPort() const;

signals:
    /// The bytes that were there at one notification: one message.
    void socketsuccess(QByteArray data);

    /// Why listening failed, or what went wrong with a client.
    void socketerror(QString text);

private slots:
    void ReadSocket();
    void CloseSocket();
    void ErrorSocket(QAbstractSocket::SocketError error);

private:
    void acceptClient();
    void acceptLater();
    void pauseWhenFull();
    void goOnWithRoom();
    void noticeDepartures(const QTcpSocket *newcomer);
    void setClient(QTcpSocket *socket);
    void write(const QByteArray &data);

    QPointer<QTcpSocket> clientSocket; ///< the client that delivered data last; the server owns it
    QTcpServer *tcpServer = nullptr;   ///< a child of this object
    std::atomic<bool> m_hasClient = false; ///< tells other threads about clientSocket
};
