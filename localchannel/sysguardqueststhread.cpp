#include "localchannel/sysguardqueststhread.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "app/base/texttools.h"
#include "localchannel/asyntcpsocket.h"
#include "localchannel/guardmessage.h"

namespace {

/// What the guard tool may send ahead of its being read, in bytes.
constexpr qint64 unreadLimit = 16LL * 1024 * 1024;

constexpr unsigned long endLimitMs = 2000;

} // namespace

SysguardQuestsThread::SysguardQuestsThread(QObject * /*parent*/)
    : QThread(nullptr)
    , iniFilePath(miravelConfigPath())
    , m_unread(unreadLimit)
{
    const SettingsFile settings(iniFilePath);
    port = settings.value(settingsName(SettingsKey::GuardPort)).toInt();
    LOG_INFO() << "SysguardQuestsThread port =" << port;
}

SysguardQuestsThread::~SysguardQuestsThread()
{
    stop();
    wait();
}

void SysguardQuestsThread::stop()
{
    m_stopped = true;
    sysMessageList.clear();
    m_unread.open();
    quit();
}

void SysguardQuestsThread::run()
{
    AsynTcpSocket socket;
    connect(&socket, &AsynTcpSocket::socketsuccess, this, &SysguardQuestsThread::socketReadData);
    connect(&socket, &AsynTcpSocket::socketsuccess, &socket,
            [this](const QByteArray &data) { m_unread.add(data.size()); });
    setSocket(&socket);
    // A number that is no port counts modulo 65536, as the type of a port has it.
    socket.CreateServerSocket(static_cast<unsigned short>(port));
    exec();
    setSocket(nullptr);
}

void SysguardQuestsThread::setSocket(AsynTcpSocket *socket)
{
    const std::lock_guard lock(m_socketMutex);
    tcpSocket = socket;
}

void SysguardQuestsThread::socketReadData(QByteArray tempData)
{
    m_unread.take(tempData.size());
    if (m_stopped) {
        return;
    }
    const GuardMessage message = readGuardMessage(tempData);
    LOG_INFO() << "sysguard bytearray date" << utf8UpToNul(tempData);
    if (!message.error.isEmpty()) {
        LOG_CRITICAL() << "parseJson:" << message.error;
        return;
    }
    if (rightRegionReady && sysMessageList.isEmpty() && m_handedOver < mostAtOnce) {
        LOG_INFO() << "emit sysQuests_signal now";
        handOver(message.object);
    } else {
        sysMessageList.append(message.object);
    }
    acknowledge();
}

void SysguardQuestsThread::acknowledge()
{
    const QByteArray acknowledgement = guardAcknowledgement(replyCode);
    const std::lock_guard lock(m_socketMutex);
    if (tcpSocket == nullptr || !tcpSocket->hasClient()) {
        return;
    }
    LOG_INFO() << "reply content: " << acknowledgement;
    tcpSocket->ResponseContent(acknowledgement);
}

void SysguardQuestsThread::rightRegionIniSuccess()
{
    rightRegionReady = true;
    LOG_INFO() << "right region initialize success: " << (rightRegionReady ? "true" : "false");
    QAFinishedNestQuest();
}

void SysguardQuestsThread::QAFinishedNestQuest()
{
    if (sysMessageList.isEmpty()) {
        return;
    }
    LOG_INFO() << "sysMessage list is not empty, size: " << sysMessageList.size();
    emitListQuest();
}

void SysguardQuestsThread::emitListQuest()
{
    const QJsonObject question = sysMessageList.takeFirst();
    LOG_INFO() << "After remove, sysMessage size: " << sysMessageList.size();
    LOG_INFO() << "emit sysQuests_signal sysMessageList ";
    handOver(question);
}

void SysguardQuestsThread::handOver(const QJsonObject &question)
{
    ++m_handedOver;
    emit sysQuests_signal(question);
    --m_handedOver;
}

void SysguardQuestsEnd::operator()(SysguardQuestsThread *thread) const
{
    thread->stop();
    if (thread->wait(endLimitMs)) {
        delete thread;
    }
}
