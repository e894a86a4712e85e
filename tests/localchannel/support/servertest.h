#pragma once

#include "localchannel/asyntcpsocket.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/support/logcapture.h"

#include <QObject>
#include <QSignalSpy>

#include <memory>

/// What the tests of the loopback server share: the server, everything it emits and logs, and real
/// clients.
class ServerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

protected:
    /// Far more than anything takes, in ms.
    static constexpr int waitMs = 30'000;

    // What the server logs; the last three are beginnings of lines.
    const QString noClient = QStringLiteral("warning: haven't found the valid client socket.");
    const QString disconnected = QStringLiteral("info: Client is disconnected from Q");
    const QString errorSeen = QStringLiteral("info: ErrorSocket from QTcpSocket(0x");
    const QString newConnection = QStringLiteral("info: TcpServer have a new connection, ");

    /// Lets the server listen on any port.
    void listen();

    /// A client that the server has accepted; null when it does not.
    [[nodiscard]] std::unique_ptr<GuardClient> connected();

    /// All bytes that the server has handed on.
    [[nodiscard]] QByteArray receivedBytes() const;

    [[nodiscard]] int loggedLines(const QString &start) const;

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<AsynTcpSocket> m_server;
    std::unique_ptr<QSignalSpy> m_messages;
    std::unique_ptr<QSignalSpy> m_errors;
};
