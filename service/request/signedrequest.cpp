#include "service/request/signedrequest.h"

#include <QDateTime>
#include <QSsl>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QUuid>

namespace {

// A null array would take the header away; an empty one sends it without a value.
QByteArray headerValue(const QString &text)
{
    return text.isEmpty() ? QByteArray("") : text.toUtf8();
}

} // namespace

RequestCredentials freshCredentials(const RequestSettings &settings)
{
    return {settings.tenantId, settings.key, settings.secret, QUuid::createUuid().toString(),
            QString::number(QDateTime::currentDateTime().toMSecsSinceEpoch())};
}

void setSignedHeaders(QNetworkRequest &request, const RequestCredentials &credentials,
                      const ServiceEndpoint &configured)
{
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("tenantId", headerValue(credentials.tenantId));
    request.setRawHeader("x-ca-key", headerValue(credentials.key));
    request.setRawHeader("x-ca-timestamp", headerValue(credentials.timestamp));
    request.setRawHeader("x-ca-nonce", headerValue(credentials.nonce));
    request.setRawHeader("x-ca-signature",
                         requestSignature(stringToSign(credentials), credentials.secret));
    request.setRawHeader("X-Ap-sHost",
                         headerValue(configured.strAddr + QLatin1Char(':') + configured.strPort));
}

void setTlsConfiguration(QNetworkRequest &request)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(QSsl::TlsV1_2);
    request.setSslConfiguration(configuration);
}

void doNothingByItself(QNetworkRequest &request)
{
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    // Qt would prove to any service that asks who is logged in to Windows.
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // As Qt itself sends it; but then Qt would inflate without any bound.
    request.setRawHeader("Accept-Encoding", "gzip, deflate");
}
