#pragma once

#include <QTcpSocket>

/// A loopback port that refuses connections and that nobody else gets while this lives.
class RefusingPort final
{
    Q_DISABLE_COPY_MOVE(RefusingPort)

public:
    RefusingPort();

    [[nodiscard]] quint16 port() const { return m_socket.localPort(); }

private:
    QTcpSocket m_socket; // bound, but never listening
};
