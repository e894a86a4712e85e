#include "bench/rows.h"
#include "bench/timing.h"
#include "service/request/httpsrequest.h"
#include "tests/service/support/testserver.h"
#include "tests/support/testconfig.h"

#include <QDir>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

namespace {

constexpr int rounds = 150;
constexpr int timeoutMs = 20000;

const QString askPath = QStringLiteral("/ask");

QByteArray body()
{
    return QByteArray(R"({"accountId":"w1","channelId":7,"currentDomain":"vdi",)"
                      R"("originalQuestion":"","questionId":0,"rawQuery":"如何修改密码？",)"
                      R"("recommendSize":5,"robotId":"robot","source":"rawquery"})");
}

double signedCost(httpsRequest &request)
{
    return microseconds([&request] {
        QByteArray reply;
        if (request.SendHttpsRequest(askPath, 0, timeoutMs, &reply, body(), false) != 0
            || reply.isEmpty()) {
            qFatal("The signed request failed");
        }
    });
}

double bareCost(const QUrl &url)
{
    return microseconds([&url] {
        QNetworkAccessManager manager;
        QNetworkRequest request(url);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json"));
        const std::unique_ptr<QNetworkReply> reply(manager.post(request, body()));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        if (reply->readAll().isEmpty()) {
            qFatal("The bare request failed");
        }
    });
}

} // namespace

Rows measureRequest()
{
    const TestServer server;
    TestConfig config;
    config.setServer(server.port());
    const QString before = QDir::currentPath();
    QDir::setCurrent(config.root());
    httpsRequest request;
    request.getUseful_IpPort();
    const QUrl url(QStringLiteral("http://127.0.0.1:%1/ask").arg(server.port()));
    const TwoCosts costs = compare(
        rounds, [&request] { return signedCost(request); }, [&url] { return bareCost(url); });
    QDir::setCurrent(before);
    return {{QStringLiteral("request"), QStringLiteral("one signed request and reply on loopback"),
             QStringLiteral("the same POST by a fresh bare manager"), QStringLiteral("µs"),
             costs.first, costs.second, 1.15, 1.2}};
}
