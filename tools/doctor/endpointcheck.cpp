#include "tools/doctor/endpointcheck.h"

#include "service/request/httpsrequest.h"
#include "service/request/requestsettings.h"

#include <QHostInfo>
#include <QNetworkProxy>
#include <QTcpSocket>

namespace {

constexpr int connectMs = 5000; // the program itself waits a second

QString shown(const ServiceEndpoint &endpoint)
{
    return endpoint.strAddr + QLatin1Char(':') + endpoint.strPort;
}

/// Why the configured server cannot be reached.
Finding explain(const ServiceEndpoint &server)
{
    if (QHostInfo::fromName(server.strAddr).addresses().isEmpty()) {
        return toMend(QStringLiteral("the name %1 is not known here").arg(server.strAddr),
                      QStringLiteral("Correct IpAndPort/mserverip, or this machine's name "
                                     "service. Outside the company's network, connect the VPN."));
    }
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    socket.connectToHost(server.strAddr, static_cast<quint16>(server.strPort.toInt()));
    if (socket.waitForConnected(connectMs)) {
        return toMend(
            QStringLiteral("%1 accepts connections, but not within a second").arg(shown(server)),
            QStringLiteral("The program waits no longer: mend the network or name "
                           "service on the way."));
    }
    if (socket.error() == QAbstractSocket::ConnectionRefusedError) {
        return toMend(QStringLiteral("nothing listens at %1").arg(shown(server)),
                      QStringLiteral("Correct IpAndPort/mserverhttpsport, or start the service."));
    }
    return toMend(QStringLiteral("%1 does not answer: %2").arg(shown(server), socket.errorString()),
                  QStringLiteral("Look for a firewall on the way, or connect the VPN."));
}

} // namespace

Findings checkEndpoint(httpsRequest &request)
{
    const ServiceEndpoint configured = readConfiguredServer(request.configPath);
    request.getUseful_IpPort();
    const ServiceEndpoint resolved = resolvedEndpoint();
    if (!resolved.isComplete()) {
        return {configured.isComplete()
                    ? explain(configured)
                    : toMend(QStringLiteral("no server is configured"),
                             QStringLiteral("Set IpAndPort/mserverip and mserverhttpsport.")),
                note(QStringLiteral("the VPN client's library names no gateway"),
                     QStringLiteral("With the VPN client it is looked for beside this tool: to "
                                    "try it, put the tool into the program's folder."))};
    }
    if (shown(resolved) != shown(configured)) {
        return {note(QStringLiteral("%1 cannot be reached within a second, so that the VPN's "
                                    "gateway %2 is used")
                         .arg(shown(configured), shown(resolved)),
                     QStringLiteral("That is as it should be outside the company's network."))};
    }
    return {good(QStringLiteral("%1 accepts connections").arg(shown(resolved)))};
}
