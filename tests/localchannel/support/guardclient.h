#pragma once

#include <QByteArray>
#include <QTcpSocket>
#include <QVector>

/// The acknowledgement as it stands on the wire.
[[nodiscard]] QByteArray acknowledgementBytes();

/// A message that asks \a question, which needs no escapes.
[[nodiscard]] QByteArray questionDocument(const QByteArray &question);

/// A client of the guard channel in a test; it needs the test's event loop.
class GuardClient final
{
    Q_DISABLE_COPY_MOVE(GuardClient)

public:
    /// Begins to connect to 127.0.0.1 and \a port.
    explicit GuardClient(quint16 port);

    /// Whether the connection comes about; waits for it.
    [[nodiscard]] bool connects();

    /// Sends \a bytes in one piece, as far as they fit into one.
    void send(const QByteArray &bytes);

    /// Closes the connection in an orderly way, once everything is sent.
    void leave();

    /// Cuts the connection at once.
    void abort();

    /// Everything received so far.
    [[nodiscard]] QByteArray received();

    /// Whether the server has ended the connection, or nobody accepted it.
    [[nodiscard]] bool isClosed() const;

private:
    QTcpSocket m_socket;
    QByteArray m_received;
};

/// One connection for all documents, or a new one for each right after the end of the one before.
enum class Connections { One, OneEach };

/// Posts \a documents to \a port one after the other, each when the one before is acknowledged,
/// from a thread of its own while this thread's event loop runs. Whether all were acknowledged.
[[nodiscard]] bool postAll(quint16 port, const QVector<QByteArray> &documents,
                           Connections connections = Connections::One);
