#pragma once

#include <QByteArray>
#include <QString>
#include <QTcpSocket>

/// One connection to the guard channel on 127.0.0.1. Every operation blocks.
class Post
{
    Q_DISABLE_COPY(Post)

public:
    Post() = default;

    /// Whether somebody listens on \a port; why not is in error().
    [[nodiscard]] bool connectTo(quint16 port);

    /// Sends \a message and waits at most \a timeoutMs for its acknowledgement. Empty when there is
    /// none; why is in error().
    [[nodiscard]] QByteArray exchange(const QByteArray &message, int timeoutMs);

    [[nodiscard]] QString error() const { return m_error; }

private:
    QTcpSocket m_socket;
    QByteArray m_received; ///< what came after the last acknowledgement
    QString m_error;
};
