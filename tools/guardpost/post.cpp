#include "post.h"

#include <QDeadlineTimer>
#include <QHostAddress>

namespace {

constexpr int connectLimitMs = 5000;

} // namespace

bool Post::connectTo(quint16 port)
{
    m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    if (m_socket.waitForConnected(connectLimitMs)) {
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        return true;
    }
    m_error = QStringLiteral("nobody listens on 127.0.0.1, port %1 (%2); is the assistant running?")
                  .arg(port)
                  .arg(m_socket.errorString());
    return false;
}

QByteArray Post::exchange(const QByteArray &message, int timeoutMs)
{
    m_socket.write(message);
    const QDeadlineTimer deadline(timeoutMs);
    while (m_socket.bytesToWrite() > 0
           && m_socket.waitForBytesWritten(static_cast<int>(deadline.remainingTime()))) { }
    // An acknowledgement is one small object without a line end.
    while (!m_received.contains('}')) {
        if (!m_socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            m_error = m_socket.state() == QAbstractSocket::ConnectedState
                        ? QStringLiteral("no acknowledgement within %1 s: the message is no JSON "
                                         "document, or its question is still being answered")
                              .arg(timeoutMs / 1000)
                        : QStringLiteral("the assistant closed the connection");
            return {};
        }
        m_received += m_socket.readAll();
    }
    const int end = m_received.indexOf('}') + 1;
    QByteArray acknowledgement = m_received.left(end);
    m_received.remove(0, end);
    return acknowledgement;
}
