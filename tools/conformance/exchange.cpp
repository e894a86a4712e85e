#include "tools/conformance/exchange.h"

#include "service/request/signedrequest.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMetaEnum>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace {

QNetworkRequest requestOf(const QString &address, const Letter &letter)
{
    QNetworkRequest request(QUrl(address + letter.path));
    if (address.startsWith(QLatin1String("https:"))) {
        setTlsConfiguration(request);
    }
    for (const auto &header : letter.headers) {
        request.setRawHeader(header.first, header.second);
    }
    return request;
}

/// An error that only says that the status is none of success is no error of the network.
QString networkError(const QNetworkReply &reply, int status)
{
    constexpr int firstFailure = 400;
    const auto error = reply.error();
    if (error == QNetworkReply::NoError
        || (status >= firstFailure && error >= QNetworkReply::ContentAccessDenied
            && error != QNetworkReply::ProtocolFailure)) {
        return {};
    }
    return QLatin1String(QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(error));
}

} // namespace

Response exchange(const QString &address, const Letter &letter, int limitMs)
{
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy::NoProxy);
    QElapsedTimer clock;
    clock.start();
    const std::unique_ptr<QNetworkReply> reply(
        manager.sendCustomRequest(requestOf(address, letter), letter.verb, letter.body));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(limitMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    if (!reply->isFinished()) {
        loop.exec();
    }
    Response response;
    response.tookMs = clock.elapsed();
    response.inTime = reply->isFinished();
    response.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    response.body = reply->readAll();
    if (response.inTime) {
        response.error = networkError(*reply, response.status);
    } else {
        reply->abort();
    }
    return response;
}
