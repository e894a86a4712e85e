#include "service/diagnosis/netstatetestthread.h"

#include "app/base/logstream.h"
#include "service/diagnosis/pingoutput.h"
#include "service/diagnosis/probehosts.h"
#include "service/diagnosis/systemcommand.h"
#include "service/gateway/vpnaccount.h"

#include <limits>
#include <optional>

namespace {

constexpr int startLimitMs = 1000;
constexpr int answerLimitMs = 1000; // for each ping; shorter than ping's own patience

int totalLimitMs(int count)
{
    return qBound(0, count, std::numeric_limits<int>::max() / answerLimitMs) * answerLimitMs;
}

/// The address of \a host as one ping reports it, or nothing when it does not answer.
std::optional<QString> answeringAddress(const QString &host)
{
    QString address;
    int averageMs = 0;
    if (!NetStateTestThread::Ping(host, address, &averageMs, 1, nullptr)) {
        return std::nullopt;
    }
    return address;
}

int answers(const QString &host)
{
    return answeringAddress(host) ? 1 : 0;
}

int judgementOf(const QString &address)
{
    return address.startsWith(QLatin1String("10.")) ? NetStateTestThread::InternalNetwork
                                                    : NetStateTestThread::ExternalNetwork;
}

} // namespace

NetStateTestThread::NetStateTestThread(QObject *parent)
    : QObject(parent)
{
}

void NetStateTestThread::netStateInfo_get()
{
    const int netJudg = InternalExternal_netJudg();
    LOG_DEBUG() << "InternalExternal_netJudg:" << netJudg;
    const int localState = answers(itProbeHost());
    LOG_DEBUG() << "Local network status:" << localState;
    const int desktopServerState = answers(cloudProbeHost());
    LOG_DEBUG() << "Cloud desktop server status:" << desktopServerState;
    const int norvikState = NORVIK_logState();
    LOG_DEBUG() << "NORVIK status:" << norvikState;
    emit netStateInfo_signal(netJudg, localState, desktopServerState, norvikState);
}

bool NetStateTestThread::Ping(QString host, QString &address, int *averageMs, int count,
                              int *lossPercent)
{
    SystemCommand ping(QStringLiteral("ping"),
                       {host, QStringLiteral("-n"), QString::number(count)});
    if (!ping.startedWithin(startLimitMs)) {
        LOG_DEBUG() << "Ping " << host << " start failed!";
        return false;
    }
    ping.closeInput();
    if (!ping.finishedWithin(totalLimitMs(count))) {
        LOG_DEBUG() << "Ping " << host << " waitForFinished failed!";
        return false;
    }
    const QString output = QString::fromLocal8Bit(ping.output());
    if (!pingAnswered(output)) {
        LOG_DEBUG() << "Ping " << host << " failed";
        return false;
    }
    parsePingOutput(output, address, averageMs, lossPercent);
    return true;
}

int NetStateTestThread::InternalExternal_netJudg()
{
    for (const QString &host : {webProbeHost(), itProbeHost()}) {
        if (const auto address = answeringAddress(host)) {
            return judgementOf(*address);
        }
    }
    for (const QString &host : {publicDns1(), publicDns2()}) {
        if (answeringAddress(host)) {
            return ExternalNetwork;
        }
    }
    const auto address = answeringAddress(cloudProbeHost());
    return address ? judgementOf(*address) : NoNetwork;
}

int NetStateTestThread::NORVIK_logState()
{
    return vpnAccountState(vpnClientIconPath());
}
