#include "service/request/signedrequest.h"

#include "app/base/logstream.h"

#include <QDateTime>
#include <QSsl>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QUuid>

#include <algorithm>

namespace {

bool isControl(char character)
{
    const auto code = static_cast<uchar>(character);
    return (code < 0x20 && character != '\t') || code == 0x7f;
}

/// Sets a header to what is configured. A line end in it would begin another header: there and with
/// every other control character \a text goes out without it.
void setHeader(QNetworkRequest &request, const char *name, const QString &text)
{
    QByteArray value = text.toUtf8();
    const auto kept = std::remove_if(value.begin(), value.end(), isControl);
    const int count = static_cast<int>(kept - value.begin());
    if (count < value.size()) {
        LOG_WARNING() << "Header " << name << ": control characters in the settings are not sent.";
        value.truncate(count);
    }
    // A null array would take the header away; an empty one sends it without a value.
    request.setRawHeader(name, value.isEmpty() ? QByteArray("") : value);
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
    setHeader(request, "tenantId", credentials.tenantId);
    setHeader(request, "x-ca-key", credentials.key);
    setHeader(request, "x-ca-timestamp", credentials.timestamp);
    setHeader(request, "x-ca-nonce", credentials.nonce);
    request.setRawHeader("x-ca-signature",
                         requestSignature(stringToSign(credentials), credentials.secret));
    setHeader(request, "X-Ap-sHost", configured.strAddr + QLatin1Char(':') + configured.strPort);
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
