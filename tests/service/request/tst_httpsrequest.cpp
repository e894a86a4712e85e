#include "app/base/apppaths.h"
#include "service/request/httpsrequest.h"
#include "tests/service/support/opensslsignature.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QDateTime>
#include <QNetworkProxy>
#include <QSet>
#include <QSslSocket>
#include <QTest>

/// Requests over plain HTTP: what goes over the wire, what comes back, what is logged.
class TestHttpsRequest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void configPath_followsTheLayoutAtConstruction();
    void widget_isNeverShown();
    void wire_methodPathHeadersAndBody();
    void wire_signatureIsWhatTheServiceComputes();
    void wire_timestampIsNow();
    void wire_headersStayWithoutCredentials();
    void wire_nonAsciiCredentials();
    void wire_noncesDiffer();
    void settings_areReadForEveryRequest();
    void settings_unusableFileSendsEmptyCredentials_data();
    void settings_unusableFileSendsEmptyCredentials();
    void target_resolvedEndpointWinsAndTheHostHeaderNamesTheConfiguredServer();
    void target_fallBackGoesToTheConfiguredServerAndIsLogged();
    void target_fallBackWithBothHalvesResolvedIsNotTaken();
    void target_withoutFallBackAndEndpointFailsInTime();
    void proxyOfTheEnvironment_isIgnored();
    void proxyOfTheApplication_isIgnored();
    void log_ofAGoodRequest();
    void log_neverHoldsCredentials();
    void reply_withoutTheMarkIsLoggedAndReturned();
    void reply_shapes_data();
    void reply_shapes();
    void reply_httpErrorWithJsonBody_data();
    void reply_httpErrorWithJsonBody();
    void reply_fiftyMegabytes();
    void reply_redirectIsNotFollowed();
    void reply_connectionDropped_data();
    void reply_connectionDropped();
    void reply_refusedConnection();
    void reply_replacesTheBuffer();
    void classify_data();
    void classify();

private:
    int send(httpsRequest &request, QByteArray *reply, bool configFallback = true)
    {
        return request.SendHttpsRequest(QStringLiteral("/qa/ask"), 0, longMs, reply,
                                        R"({"text":"q"})", configFallback);
    }

    static constexpr int longMs = 20000;
};

namespace {

const QByteArray goodBody = R"({"errorCode":"0","result":[1]})";

ServiceEndpoint loopback(quint16 port)
{
    return {QStringLiteral("127.0.0.1"), QString::number(port)};
}

QByteArray textToSign(const ReceivedRequest &request, const QByteArray &secret)
{
    return "tenantId=" + request.header("tenantId") + "&x-ca-key=" + request.header("x-ca-key")
         + "&x-ca-nonce=" + request.header("x-ca-nonce") + "&x-ca-secret=" + secret
         + "&x-ca-timestamp=" + request.header("x-ca-timestamp");
}

QString mark(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

void TestHttpsRequest::init()
{
    setResolvedEndpoint({});
    initAppPaths(QString());
}

void TestHttpsRequest::configPath_followsTheLayoutAtConstruction()
{
    const httpsRequest shortcut;
    initAppPaths(QStringLiteral("vdi"));
    const httpsRequest client;
    miravelVersion = QStringLiteral("other");
    const httpsRequest unknown;
    QCOMPARE(shortcut.configPath, QStringLiteral("config/Miravel.ini"));
    QCOMPARE(client.configPath, QStringLiteral("../config/Miravel.ini"));
    QCOMPARE(unknown.configPath, QString());
}

void TestHttpsRequest::widget_isNeverShown()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    send(request, &reply);
    QVERIFY(!request.isVisible());
}

void TestHttpsRequest::wire_methodPathHeadersAndBody()
{
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, goodBody);

    QCOMPARE(server.requests().size(), 1);
    const ReceivedRequest received = server.requests().constFirst();
    QCOMPARE(received.method, QByteArray("POST"));
    QCOMPARE(received.target, QByteArray("/qa/ask"));
    QCOMPARE(received.body, QByteArray(R"({"text":"q"})"));
    const QByteArrayList ours = {"Content-Type", "tenantId",       "x-ca-key",  "x-ca-timestamp",
                                 "x-ca-nonce",   "x-ca-signature", "X-Ap-sHost"};
    const QByteArrayList names = received.headerNames();
    QCOMPARE(names.mid(names.indexOf(ours.first()), ours.size()), ours);
    QCOMPARE(QSet<QByteArray>(names.begin(), names.end()).size(), names.size()); // each one once
    QCOMPARE(received.header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(received.header("tenantId"), QByteArray(TestConfig::tenantId));
    QCOMPARE(received.header("x-ca-key"), QByteArray(TestConfig::key));
    QCOMPARE(received.header("X-Ap-sHost"), "127.0.0.1:" + QByteArray::number(server.port()));
    QCOMPARE(received.header("Content-Length"), QByteArray::number(received.body.size()));
}

void TestHttpsRequest::wire_signatureIsWhatTheServiceComputes()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    send(request, &reply);
    const ReceivedRequest received = server.requests().value(0);
    const QByteArray signature = received.header("x-ca-signature");
    QCOMPARE(signature,
             opensslSignature(textToSign(received, TestConfig::secret), TestConfig::secret));
    // What a service would compute that knows another secret.
    QVERIFY(signature != opensslSignature(textToSign(received, "other"), "other"));
}

void TestHttpsRequest::wire_timestampIsNow()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    send(request, &reply);
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    const qint64 sent = server.requests().value(0).header("x-ca-timestamp").toLongLong();
    QVERIFY(sent >= before && sent <= after);
}

void TestHttpsRequest::wire_headersStayWithoutCredentials()
{
    TestServer server;
    setResolvedEndpoint(loopback(server.port()));
    httpsRequest request;
    request.configPath.clear();
    QByteArray reply;
    send(request, &reply);
    const ReceivedRequest received = server.requests().value(0);
    const QByteArrayList names = received.headerNames();
    QVERIFY(names.contains("tenantId"));
    QVERIFY(names.contains("x-ca-key"));
    QCOMPARE(received.header("tenantId"), QByteArray());
    QCOMPARE(received.header("x-ca-key"), QByteArray());
    QCOMPARE(received.header("X-Ap-sHost"), QByteArray(":"));
    QCOMPARE(received.header("x-ca-signature"), opensslSignature(textToSign(received, ""), ""));
}

void TestHttpsRequest::wire_nonAsciiCredentials()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    const QString tenant = QStringLiteral("租户");
    config.set(QStringLiteral("Authorization/tenantid"), tenant);
    config.set(QStringLiteral("Authorization/xcafirst"),
               QString::fromLatin1(QStringLiteral("密钥").toUtf8().toBase64()));
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    send(request, &reply);
    const ReceivedRequest received = server.requests().value(0);
    QCOMPARE(received.header("tenantId"), tenant.toUtf8());
    QCOMPARE(received.header("x-ca-key"), QStringLiteral("密钥").toUtf8());
    // The text to sign is Latin-1, which has a question mark for each of them.
    const QByteArray text = "tenantId=??&x-ca-key=??&x-ca-nonce=" + received.header("x-ca-nonce")
                          + "&x-ca-secret=" + TestConfig::secret
                          + "&x-ca-timestamp=" + received.header("x-ca-timestamp");
    QCOMPARE(received.header("x-ca-signature"), opensslSignature(text, TestConfig::secret));
}

void TestHttpsRequest::wire_noncesDiffer()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    send(request, &reply);
    send(request, &reply);
    QCOMPARE(server.requests().size(), 2);
    const QByteArray first = server.requests().at(0).header("x-ca-nonce");
    const QByteArray second = server.requests().at(1).header("x-ca-nonce");
    QVERIFY(first.startsWith('{') && first.endsWith('}'));
    QVERIFY(second.startsWith('{') && second.endsWith('}'));
    QVERIFY(first != second);
}

void TestHttpsRequest::settings_areReadForEveryRequest()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    send(request, &reply);
    config.set(QStringLiteral("Authorization/tenantid"), QStringLiteral("another tenant"));
    send(request, &reply);
    QCOMPARE(server.requests().value(0).header("tenantId"), QByteArray(TestConfig::tenantId));
    QCOMPARE(server.requests().value(1).header("tenantId"), QByteArray("another tenant"));
}

void TestHttpsRequest::settings_unusableFileSendsEmptyCredentials_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("folder");
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("binary") << QByteArray("\x00\xff[\x01]\n\x89=\0\n", 11).repeated(200) << false;
    QTest::newRow("a folder in its place") << QByteArray() << true;
}

void TestHttpsRequest::settings_unusableFileSendsEmptyCredentials()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, folder);
    TestServer server;
    server.setReply(httpReply(goodBody));
    setResolvedEndpoint(loopback(server.port()));
    const TestConfig config;
    if (folder) {
        config.setFolderInPlace();
    } else {
        config.setBytes(bytes);
    }
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, goodBody);
    QCOMPARE(server.requests().value(0).header("tenantId"), QByteArray());
}

void TestHttpsRequest::target_resolvedEndpointWinsAndTheHostHeaderNamesTheConfiguredServer()
{
    TestServer gateway;
    gateway.setReply(httpReply(goodBody));
    setResolvedEndpoint(loopback(gateway.port()));
    TestConfig config;
    config.setServer(1);
    config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("qa.example"));
    httpsRequest request;
    request.configPath = config.path();
    QByteArray reply;
    QCOMPARE(send(request, &reply, false), 0);
    QCOMPARE(reply, goodBody);
    QCOMPARE(gateway.requests().value(0).header("X-Ap-sHost"), QByteArray("qa.example:1"));
    QCOMPARE(gateway.requests().value(0).header("Host"),
             "127.0.0.1:" + QByteArray::number(gateway.port()));
}

void TestHttpsRequest::target_fallBackGoesToTheConfiguredServerAndIsLogged()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    setResolvedEndpoint({QString(), QStringLiteral("443")});
    const LogCapture log;
    QByteArray reply;
    send(request, &reply, true);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(log.lines().value(0),
             QStringLiteral("debug: assocation request, strAddr or strPort is empty. "
                            "ip = 127.0.0.1, port = %1")
                 .arg(server.port()));
}

void TestHttpsRequest::target_fallBackWithBothHalvesResolvedIsNotTaken()
{
    TestServer configured;
    TestServer resolved;
    TestConfig config;
    config.setServer(configured.port());
    httpsRequest request;
    request.configPath = config.path();
    setResolvedEndpoint(loopback(resolved.port()));
    const LogCapture log;
    QByteArray reply;
    send(request, &reply, true);
    QCOMPARE(configured.requests().size(), 0);
    QCOMPARE(resolved.requests().size(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("debug: assocation")), QStringList());
}

void TestHttpsRequest::target_withoutFallBackAndEndpointFailsInTime()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply, false), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(server.connectionCount(), 0);
    QVERIFY(log.lines().contains(QStringLiteral("info: url:http://:/qa/ask")));
    QCOMPARE(log.linesWith(QStringLiteral("warning: https reply error:")).size(), 1);
}

void TestHttpsRequest::proxyOfTheEnvironment_isIgnored()
{
    TestServer proxy;
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    // This machine, too, but by an address that the toolkit does not exempt from proxies.
    config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("0.0.0.0"));
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.port()));
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    QByteArray reply;
    send(request, &reply);
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    qunsetenv("http_proxy");
    QCOMPARE(reply, goodBody);
    QCOMPARE(proxy.connectionCount(), 0);
}

void TestHttpsRequest::proxyOfTheApplication_isIgnored()
{
    TestServer proxy;
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("0.0.0.0"));
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy.port()));
    QByteArray reply;
    send(request, &reply);
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QCOMPARE(reply, goodBody);
    QCOMPARE(proxy.connectionCount(), 0);
}

void TestHttpsRequest::log_ofAGoodRequest()
{
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    setResolvedEndpoint(loopback(server.port()));
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    send(request, &reply);
    const QString port = QString::number(server.port());
    const QString supported = QSslSocket::supportsSsl() ? mark("true") : mark("false");
    QCOMPARE(log.lines(),
             QStringList({mark("debug: OpenSSL is supported:") + supported,
                          mark("info: url:http://127.0.0.1:") + port + mark("/qa/ask"),
                          mark("debug: mServerIP:127.0.0.1mServerHttpsPort:") + port,
                          mark("info: The HTTPS request returns a result before it times out!")}));
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestHttpsRequest::log_neverHoldsCredentials()
{
    TestServer server;
    server.setReply(httpReply("{}"));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    send(request, &reply);
    const QString all = log.lines().join(QLatin1Char('\n'));
    QVERIFY(!all.isEmpty());
    for (const QByteArray &word :
         {QByteArray(TestConfig::key), QByteArray(TestConfig::secret),
          QByteArray(TestConfig::secret).toBase64(), QByteArray(TestConfig::key).toBase64(),
          server.requests().value(0).header("x-ca-signature")}) {
        QVERIFY2(!all.contains(QString::fromLatin1(word)), word.constData());
    }
}

void TestHttpsRequest::reply_withoutTheMarkIsLoggedAndReturned()
{
    TestServer server;
    server.setReply(httpReply("{\"errorCode\":\"7\",\"text\":\"不行\"}"));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, QByteArray("{\"errorCode\":\"7\",\"text\":\"不行\"}"));
    QCOMPARE(log.lines().constLast(),
             mark("warning: The HTTPS request returns a result before it times out, "
                  "buf:{\"errorCode\":\"7\",\"text\":\"不行\"}"));
}

void TestHttpsRequest::reply_shapes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("logged");
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("not UTF-8") << QByteArray(
        "a\xff\xfe"
        "b") << QString(QStringLiteral("a") + QChar(0xfffd) + QChar(0xfffd) + QStringLiteral("b"));
    QTest::newRow("NUL byte") << QByteArray("before\0after", 12) << QStringLiteral("before");
    QTest::newRow("10,000 levels") << QByteArray(10000, '[') << QString(10000, QLatin1Char('['));
    QTest::newRow("text that looks like a format")
        << QByteArray("%s %1 %n") << QStringLiteral("%s %1 %n");
}

void TestHttpsRequest::reply_shapes()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, logged);
    TestServer server;
    server.setReply(httpReply(body));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, body); // the bytes are handed back whole, whatever is logged
    QCOMPARE(log.lines().constLast(),
             mark("warning: The HTTPS request returns a result before it times out, buf:")
                 + logged);
}

void TestHttpsRequest::reply_httpErrorWithJsonBody_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("401") << QByteArray("401 Unauthorized") << mark("AuthenticationRequiredError");
    QTest::newRow("404") << QByteArray("404 Not Found") << mark("ContentNotFoundError");
    QTest::newRow("500") << QByteArray("500 Internal Server Error") << mark("InternalServerError");
    QTest::newRow("503") << QByteArray("503 Service Unavailable")
                         << mark("ServiceUnavailableError");
}

void TestHttpsRequest::reply_httpErrorWithJsonBody()
{
    QFETCH(QByteArray, status);
    QFETCH(QString, error);
    const QByteArray body = R"({"errorCode":"401","message":"signature"})";
    TestServer server;
    server.setReply(httpReply(body, status));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, body);
    QCOMPARE(log.lines().mid(log.lines().size() - 2),
             QStringList({mark("warning: The HTTPS request returns a result before it times out, "
                               "buf:")
                              + QString::fromLatin1(body),
                          mark("warning: https reply error:") + error}));
}

void TestHttpsRequest::reply_fiftyMegabytes()
{
    constexpr int size = 50 * 1024 * 1024;
    TestServer server;
    const QByteArray body = R"({"errorCode":"0","result":")" + QByteArray(size, 'x') + "\"}";
    server.setReply(httpReply(body));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QVERIFY(reply == body); // too long to be shown when it differs
}

void TestHttpsRequest::reply_redirectIsNotFollowed()
{
    TestServer other;
    TestServer server;
    server.setReply({"HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:"
                         + QByteArray::number(other.port()) + "/\r\nContent-Length: 0\r\n\r\n",
                     false});
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(other.connectionCount(), 0);
}

void TestHttpsRequest::reply_connectionDropped_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("arrived");
    QTest::newRow("at once") << droppedReply().bytes << QByteArray();
    QTest::newRow("within the headers") << droppedInHeaders().bytes << QByteArray();
    QTest::newRow("within the body") << truncatedReply(R"({"errorCode":"0","res)").bytes
                                     << QByteArray(R"({"errorCode":"0","res)");
}

void TestHttpsRequest::reply_connectionDropped()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, arrived);
    TestServer server;
    server.setReply({bytes, false});
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply("before");
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, arrived);
    QCOMPARE(log.lines().constLast(), mark("warning: https reply error:RemoteHostClosedError"));
}

void TestHttpsRequest::reply_refusedConnection()
{
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply("before");
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(log.lines().mid(log.lines().size() - 2),
             QStringList({mark("warning: The HTTPS request returns a result before it times out, "
                               "buf:"),
                          mark("warning: https reply error:ConnectionRefusedError")}));
}

void TestHttpsRequest::reply_replacesTheBuffer()
{
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    QByteArray reply("before");
    QCOMPARE(send(request, &reply), 0);
    QCOMPARE(reply, goodBody);
}

void TestHttpsRequest::classify_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    const QString good = mark("info: The HTTPS request returns a result before it times out!");
    const QString bad
        = mark("warning: The HTTPS request returns a result before it times out, buf:");
    const auto row = [](const char *name, const char *text, const QString &line) {
        QTest::newRow(name) << mark(text) << line;
    };
    row("marked", R"({"errorCode":"0"})", good);
    row("the mark alone", R"("errorCode":"0")", good);
    row("the mark in the middle", R"(x"errorCode":"0"y)", good);
    row("empty", "", bad);
    row("other code", R"({"errorCode":"1"})", bad + mark(R"({"errorCode":"1"})"));
    row("other case", R"({"errorcode":"0"})", bad + mark(R"({"errorcode":"0"})"));
    row("a blank", R"({"errorCode": "0"})", bad + mark(R"({"errorCode": "0"})"));
    row("a number", R"({"errorCode":0})", bad + mark(R"({"errorCode":0})"));
    row("longer code", R"({"errorCode":"01"})", bad + mark(R"({"errorCode":"01"})"));
}

void TestHttpsRequest::classify()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    httpsRequest request;
    const LogCapture log;
    request.httpsError_Log(text);
    QCOMPARE(log.lines(), QStringList({line}));
}

QTEST_MAIN(TestHttpsRequest)
#include "tst_httpsrequest.moc"
