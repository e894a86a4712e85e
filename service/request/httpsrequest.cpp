#include "service/request/httpsrequest.h"

#include "app/base/apppaths.h"
#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "app/base/texttools.h"
#include "service/request/deadlinewait.h"
#include "service/request/gatewayquery.h"
#include "service/request/replybody.h"
#include "service/request/requestsettings.h"
#include "service/request/requesttarget.h"
#include "service/request/signedrequest.h"
#include "service/request/tlslibrary.h"

#include <QList>
#include <QMetaEnum>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkSession>
#include <QPair>
#include <QSharedPointer>
#include <QSslError>
#include <QSslSocket>
#include <QTcpSocket>
#include <QUrl>

#include <memory>
#include <optional>

namespace {

constexpr int repliedInTime = 0;
constexpr int noReply = -1;
constexpr int connectTimeoutMs = 1000;

const QLatin1String successMarker("\"errorCode\":\"0\"");

/// Qt registers these types with a thread's first request, and warns when the first
/// requests of two threads meet there.
void registerReplyTypes()
{
    static const int last = [] {
        qRegisterMetaType<QList<QPair<QByteArray, QByteArray>>>();
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED // nothing of ours uses a session, but every request makes one
        qRegisterMetaType<QSharedPointer<QNetworkSession>>();
        QT_WARNING_POP
        return qRegisterMetaType<QList<QSslError>>();
    }();
    Q_UNUSED(last)
}

DeadlineWait::End waitForReply(const QNetworkReply &reply, int timeoutMs)
{
    if (reply.isFinished()) {
        return DeadlineWait::End::InTime;
    }
    DeadlineWait wait(timeoutMs);
    wait.endOn(&reply, &QNetworkReply::finished);
    return wait.exec();
}

void logNetworkError(QNetworkReply::NetworkError error)
{
    if (error != QNetworkReply::NoError) {
        const auto names = QMetaEnum::fromType<QNetworkReply::NetworkError>();
        LOG_WARNING() << "https reply error:" << names.valueToKey(error);
    }
}

/// Nothing when the library knows no gateway.
std::optional<ServiceEndpoint> askForGateway()
{
    const auto gateway = askGatewayLibrary();
    if (!gateway) {
        return {};
    }
    const ServiceEndpoint endpoint{gateway->address, QString::number(gateway->port)};
    LOG_INFO() << "strAddr:" << endpoint.strAddr << "strPort:" << endpoint.strPort;
    return endpoint;
}

/// What a connection test has shown.
enum class Reached {
    Yes,
    No,
    Unknown, ///< the program ends
};

Reached tryToReach(const QString &host, int port)
{
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    DeadlineWait wait(connectTimeoutMs);
    wait.endOn(&socket, &QTcpSocket::connected);
    socket.abort();
    socket.connectToHost(host, static_cast<quint16>(port), QIODevice::ReadWrite,
                         QAbstractSocket::AnyIPProtocol);
    switch (wait.exec()) {
    case DeadlineWait::End::InTime:
        LOG_DEBUG() << "connected ipport:" << host;
        return Reached::Yes;
    case DeadlineWait::End::TooLate:
        LOG_WARNING() << "NetSocketConnect iErrorCode = " << static_cast<int>(socket.error());
        return Reached::No;
    case DeadlineWait::End::GivenUp:
        break;
    }
    LOG_INFO() << "connection test given up, the program ends.";
    return Reached::Unknown;
}

} // namespace

httpsRequest::httpsRequest(QWidget *parent)
    : QWidget(parent)
    , configPath(miravelConfigPath())
{
    registerReplyTypes();
}

int httpsRequest::SendHttpsRequest(const QString &urlPath, int httpMode, int timeoutMs,
                                   QByteArray *replyBuffer, QByteArray body, bool configFallback)
{
    // One manager a request: a kept-alive connection meets the delayed acknowledgement of the
    // other side and is slower than a new one.
    QNetworkAccessManager manager;
    const QNetworkRequest request = prepareRequest(urlPath, httpMode, configFallback);
    manager.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    const std::unique_ptr<QNetworkReply> reply(manager.post(request, body));
    ReplyBody content(*reply);
    const DeadlineWait::End end = waitForReply(*reply, timeoutMs);
    if (end != DeadlineWait::End::InTime) {
        reply->abort();
        if (end == DeadlineWait::End::TooLate) {
            LOG_WARNING() << "HTTPS request timeout.";
        } else {
            LOG_INFO() << "HTTPS request given up, the program ends.";
        }
        return noReply;
    }
    *replyBuffer = content.take();
    httpsError_Log(utf8UpToNul(*replyBuffer));
    logNetworkError(content.error());
    return repliedInTime;
}

QNetworkRequest httpsRequest::prepareRequest(const QString &urlPath, int httpMode,
                                             bool configFallback) const
{
    const RequestSettings settings = readRequestSettings(configPath);
    const ServiceEndpoint target = chooseTarget(configFallback, settings.server);
    const QString url = requestUrl(httpMode, target, urlPath);
    QNetworkRequest request;
    if (isHttps(httpMode)) {
        ignoreTlsConfiguration();
        setTlsConfiguration(request);
        LOG_DEBUG() << "version:" << QSslSocket::sslLibraryBuildVersionString();
    }
    if (isLogged(QtDebugMsg)) { // asking loads the TLS libraries, which plain HTTP does without
        ignoreTlsConfiguration();
        LOG_DEBUG() << "OpenSSL is supported:" << QSslSocket::supportsSsl();
    }
    LOG_INFO() << "url:" << url;
    request.setUrl(QUrl(url));
    setSignedHeaders(request, freshCredentials(settings), settings.server);
    doNothingByItself(request);
    LOG_DEBUG() << "mServerIP:" << settings.server.strAddr
                << "mServerHttpsPort:" << settings.server.strPort;
    return request;
}

ServiceEndpoint httpsRequest::chooseTarget(bool configFallback,
                                           const ServiceEndpoint &configured) const
{
    const ServiceEndpoint resolved = resolvedEndpoint();
    if (fallsBackToConfigured(configFallback, resolved)) {
        LOG_DEBUG() << "assocation request, strAddr or strPort is empty. ip = "
                    << configured.strAddr << ", port = " << configured.strPort;
        return configured;
    }
    // Another call may just be resolving anew, which would cost this one its question.
    const ServiceEndpoint own = m_found.get();
    return own.isComplete() && !resolved.isComplete() ? own : resolved;
}

void httpsRequest::setResolved(const ServiceEndpoint &endpoint)
{
    m_found.set(endpoint);
    setResolvedEndpoint(endpoint);
}

void httpsRequest::httpsError_Log(QString buf)
{
    if (!buf.contains(successMarker)) {
        LOG_WARNING() << "The HTTPS request returns a result before it times out, buf:" << buf;
    } else if (!buf.isEmpty()) {
        LOG_INFO() << "The HTTPS request returns a result before it times out!";
    } else {
        LOG_WARNING() << "The HTTPS request returns a result before it times out, but the buf is "
                         "empty!";
    }
}

void httpsRequest::getUseful_IpPort()
{
    setResolved({});
    const ServiceEndpoint configured = readConfiguredServer(configPath);
    LOG_DEBUG() << "start ping, time: " << timeOfDay();
    const Reached reached = tryToReach(configured.strAddr, configured.strPort.toInt());
    if (reached == Reached::Yes) {
        LOG_INFO() << "can ping";
        setResolved(configured);
    } else if (reached == Reached::No) {
        LOG_INFO() << "can not ping, try kor";
        const auto gateway = askForGateway();
        if (gateway) {
            setResolved(*gateway);
        }
        if (!gateway || !gateway->isComplete()) {
            LOG_WARNING() << "get no korinfo when connect vd";
        }
    }
    LOG_DEBUG() << "end ping, time: " << timeOfDay();
}

bool httpsRequest::NetSocketConnect(QString host, int port)
{
    return tryToReach(host, port) == Reached::Yes;
}

QString httpsRequest::resolvedAddr() const
{
    return resolvedEndpoint().strAddr;
}
