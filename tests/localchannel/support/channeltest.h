#pragma once

#include "localchannel/sysguardqueststhread.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

/// How the text of a client's end begins, without its level. A client whose connection is deleted
/// under it is no longer called QTcpSocket.
const QLatin1String clientLeft("Client is disconnected from Q");

/// What the tests of the whole channel share: real clients, the server on its thread, the questions
/// on this one. Qt has nothing to complain about at the end of any test.
class ChannelTest : public QObject
{
    Q_OBJECT

signals:
    /// As the main window reports a finished question.
    void finished();

private slots:
    void init();
    void cleanup();

protected:
    /// Far more than anything takes, in ms.
    static constexpr int waitMs = 30'000;

    const QString replyLogged = QStringLiteral("reply content: {\"code\":\"0\"}");
    /// How the line of a listening server begins.
    const QString listening = QStringLiteral("info: Tcp listen the port ");

    /// Starts the channel with \a port in the settings.
    void start(const QString &port);

    /// Starts it on a free port and waits until it listens there.
    void startListening();

    /// A client that is connected; null when that does not come about.
    [[nodiscard]] std::unique_ptr<GuardClient> connected();

    /// The same with \a question on its way.
    [[nodiscard]] std::unique_ptr<GuardClient> asking(const QByteArray &question);

    /// Whether a new client's good question is acknowledged and handed over.
    [[nodiscard]] bool answersAGoodQuestion();

    /// How many messages were no JSON.
    [[nodiscard]] int badMessages() const;

    /// Whether \a clients clients are seen to leave. Whoever leaves takes the current client along,
    /// so a test waits before the next one asks.
    [[nodiscard]] bool haveLeft(int clients) const;

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<SysguardQuestsThread> m_thread;
    quint16 m_port = 0;
    QStringList m_asked;
    std::function<void()> m_whileAsked; ///< called while a question is being dealt with
    quintptr m_lowestFrame = 0;         ///< of the stack, while questions are dealt with
    quintptr m_highestFrame = 0;

private:
    void ask(const QJsonObject &object);
};
