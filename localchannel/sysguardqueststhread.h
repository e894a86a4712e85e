#pragma once

#include "localchannel/unreadbytes.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QThread>

#include <mutex>

class AsynTcpSocket;

/// The questions that the guard tool asks in the user's stead. The thread runs the loopback server;
/// the object belongs to the thread that made it (the GUI thread), where it reads the messages and
/// hands their questions over one at a time. Everything but run() is called there.
class SysguardQuestsThread : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(SysguardQuestsThread)

public:
    /// Questions that may be on their way at once, each inside the wait of the one before: every
    /// further one waits in the list. Each takes stack, descriptors and a thread.
    static constexpr int mostAtOnce = 128;

    /// Reads the port from the configuration. Does not make \a parent its owner: a thread that
    /// still runs must not be destroyed.
    explicit SysguardQuestsThread(QObject *parent);

    /// Ends the thread and waits for it.
    ~SysguardQuestsThread() override;

    /// Closes the channel: nothing is handed over from now on, and the thread ends soon.
    void stop();

signals:
    /// One question, as it was sent. Its receiver reports by QAFinishedNestQuest() when it is done.
    void sysQuests_signal(QJsonObject question);

public slots:
    /// Takes \a tempData as one message of the current client.
    void socketReadData(QByteArray tempData);

    /// The answer region is ready: questions are handed over from now on.
    void rightRegionIniSuccess();

    /// A question has been dealt with: hands over the next that waits. It does so at once, so a
    /// receiver that reports from inside sysQuests_signal() does it by a queued connection.
    void QAFinishedNestQuest();

protected:
    void run() override;

private:
    void handOver(const QJsonObject &question);
    void emitListQuest();
    void acknowledge();
    void setSocket(AsynTcpSocket *socket);

    QString iniFilePath;
    const qint32 replyCode = 0;
    bool rightRegionReady = false;
    QList<QJsonObject> sysMessageList;
    AsynTcpSocket *tcpSocket = nullptr; ///< on the stack of run(); guarded by m_socketMutex
    qint32 port = 0;

    std::mutex m_socketMutex;
    UnreadBytes m_unread;
    int m_handedOver = 0; ///< calls of handOver() that have not returned
    bool m_stopped = false;
};

/// Ends an owned channel: waits at most 2 s for the thread and deletes it. A thread that still runs
/// is left alone, because destroying it would abort the program.
struct SysguardQuestsEnd
{
    void operator()(SysguardQuestsThread *thread) const;
};
