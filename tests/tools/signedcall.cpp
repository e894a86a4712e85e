#include "signedcall.h"

#include <QDateTime>
#include <QEventLoop>
#include <QJsonDocument>
#include <QMessageAuthenticationCode>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QSslConfiguration>
#include <QTimer>
#include <QUuid>

#include <memory>

const QString hotPath = QStringLiteral("/robot/v1/hot-questions");
const QString associationPath = QStringLiteral("/robot/v1/associations");
const QString askPath = QStringLiteral("/robot/v1/answers");

namespace {

constexpr int plainMs = 10000;

void useTls(QNetworkRequest &request)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setProtocol(QSsl::TlsV1_2);
    request.setSslConfiguration(configuration);
}

CallReply waitFor(QNetworkReply &reply, int ms)
{
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    timer.start(ms);
    if (!reply.isFinished()) {
        loop.exec();
    }
    CallReply result;
    result.inTime = reply.isFinished();
    result.status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.body = reply.readAll();
    result.error = reply.error();
    result.peer = reply.sslConfiguration().peerCertificate();
    return result;
}

CallReply send(QNetworkRequest request, const QByteArray &method, const QByteArray &body, int ms)
{
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    if (request.url().scheme() == QLatin1String("https")) {
        useTls(request);
    }
    const std::unique_ptr<QNetworkReply> reply(manager.sendCustomRequest(request, method, body));
    return waitFor(*reply, ms);
}

} // namespace

QJsonObject CallReply::json() const
{
    return QJsonDocument::fromJson(body).object();
}

QString CallReply::errorCode() const
{
    return json().value(QLatin1String("errorCode")).toString();
}

QJsonValue CallReply::result() const
{
    return json().value(QLatin1String("result"));
}

QList<QPair<QByteArray, QByteArray>> SignedCall::headers() const
{
    const QByteArray stamp
        = timestamp.isEmpty() ? QByteArray::number(QDateTime::currentMSecsSinceEpoch()) : timestamp;
    const QByteArray once = nonce.isEmpty() ? QUuid::createUuid().toByteArray() : nonce;
    const QByteArray text = "tenantId=" + tenant + "&x-ca-key=" + key + "&x-ca-nonce=" + once
                          + "&x-ca-secret=" + secret + "&x-ca-timestamp=" + stamp;
    const QByteArray signature
        = QMessageAuthenticationCode::hash(text, secret, QCryptographicHash::Sha256).toHex();
    QList<QPair<QByteArray, QByteArray>> all
        = {{"Content-Type", contentType},  {"tenantId", tenant}, {"x-ca-key", key},
           {"x-ca-timestamp", stamp},      {"x-ca-nonce", once}, {"x-ca-signature", signature},
           {"X-Ap-sHost", "127.0.0.1:443"}};
    for (int i = all.size() - 1; i >= 0; --i) {
        if (all.at(i).first == leftOut) {
            all.removeAt(i);
        }
    }
    return all;
}

CallReply sendSigned(const QUrl &url, const QByteArray &body, const SignedCall &call, int ms,
                     const QByteArray &method)
{
    QNetworkRequest request(url);
    for (const auto &[name, value] : call.headers()) {
        request.setRawHeader(name, value);
    }
    return send(request, method, body, ms);
}

CallReply sendPlain(const QByteArray &method, const QUrl &url, const QByteArray &body)
{
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("text/plain"));
    return send(request, method, body, plainMs);
}

QByteArray compactJson(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject hotBody(int recommendSize)
{
    return {{QStringLiteral("channelId"), 1},
            {QStringLiteral("recommendSize"), recommendSize},
            {QStringLiteral("robotId"), QStringLiteral("robot")}};
}

QJsonObject associationBody(const QString &text, int recommendSize)
{
    QJsonObject body = hotBody(recommendSize);
    body.insert(QStringLiteral("text"), text);
    return body;
}

QJsonObject askBody(const QString &question, qint64 questionId, int recommendSize)
{
    QJsonObject body = hotBody(recommendSize);
    body.insert(QStringLiteral("accountId"), QStringLiteral("user"));
    body.insert(QStringLiteral("currentDomain"), QString());
    body.insert(QStringLiteral("originalQuestion"), QString());
    body.insert(QStringLiteral("questionId"), questionId);
    body.insert(QStringLiteral("rawQuery"), question);
    body.insert(QStringLiteral("source"), QStringLiteral("rawquery"));
    return body;
}
