#include "app/base/apppaths.h"
#include "tests/service/support/opensslsignature.h"
#include "tests/service/support/requestbench.h"

#include <QDateTime>
#include <QNetworkProxy>
#include <QSet>
#include <QTest>

/// Requests over plain HTTP: what goes over the wire, and where it goes.
class TestHttpsRequest : public QObject
{
    Q_OBJECT

private slots:
    void configPath_followsTheLayoutAtConstruction();
    void widget_isNeverShown();
    void wire_methodPathHeadersAndBody();
    void wire_signatureIsWhatTheServiceComputes();
    void wire_timestampIsNow();
    void wire_headersStayWithoutCredentials();
    void wire_nonAsciiCredentials();
    void wire_lineEndInTheSettingsBeginsNoHeader();
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
};

namespace {

const QByteArray goodBody = R"({"errorCode":"0","result":[1]})";

QByteArray textToSign(const ReceivedRequest &request, const QByteArray &secret)
{
    return "tenantId=" + request.header("tenantId") + "&x-ca-key=" + request.header("x-ca-key")
         + "&x-ca-nonce=" + request.header("x-ca-nonce") + "&x-ca-secret=" + secret
         + "&x-ca-timestamp=" + request.header("x-ca-timestamp");
}

} // namespace

void TestHttpsRequest::configPath_followsTheLayoutAtConstruction()
{
    initAppPaths(QString());
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
    RequestBench bench;
    QByteArray reply;
    bench.send(&reply);
    QVERIFY(!bench.request.isVisible());
}

void TestHttpsRequest::wire_methodPathHeadersAndBody()
{
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, goodBody);

    QCOMPARE(bench.server.requests().size(), 1);
    const ReceivedRequest received = bench.server.requests().constFirst();
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
    QCOMPARE(received.header("X-Ap-sHost"), "127.0.0.1:" + QByteArray::number(bench.server.port()));
    QCOMPARE(received.header("Content-Length"), QByteArray::number(received.body.size()));
}

void TestHttpsRequest::wire_signatureIsWhatTheServiceComputes()
{
    RequestBench bench;
    QByteArray reply;
    bench.send(&reply);
    const ReceivedRequest received = bench.server.requests().value(0);
    const QByteArray signature = received.header("x-ca-signature");
    QCOMPARE(signature,
             opensslSignature(textToSign(received, TestConfig::secret), TestConfig::secret));
    // What a service would compute that knows another secret.
    QVERIFY(signature != opensslSignature(textToSign(received, "other"), "other"));
}

void TestHttpsRequest::wire_timestampIsNow()
{
    RequestBench bench;
    QByteArray reply;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    bench.send(&reply);
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    const qint64 sent = bench.sentHeader("x-ca-timestamp").toLongLong();
    QVERIFY(sent >= before && sent <= after);
}

void TestHttpsRequest::wire_headersStayWithoutCredentials()
{
    RequestBench bench;
    bench.request.configPath.clear();
    setResolvedEndpoint(loopback(bench.server.port()));
    QByteArray reply;
    bench.send(&reply);
    const ReceivedRequest received = bench.server.requests().value(0);
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
    RequestBench bench;
    const QString tenant = QStringLiteral("租户");
    bench.config.set(QStringLiteral("Authorization/tenantid"), tenant);
    bench.config.set(QStringLiteral("Authorization/xcafirst"),
                     QString::fromLatin1(QStringLiteral("密钥").toUtf8().toBase64()));
    QByteArray reply;
    bench.send(&reply);
    const ReceivedRequest received = bench.server.requests().value(0);
    QCOMPARE(received.header("tenantId"), tenant.toUtf8());
    QCOMPARE(received.header("x-ca-key"), QStringLiteral("密钥").toUtf8());
    // The text to sign is Latin-1, which has a question mark for each of them.
    const QByteArray text = "tenantId=??&x-ca-key=??&x-ca-nonce=" + received.header("x-ca-nonce")
                          + "&x-ca-secret=" + TestConfig::secret
                          + "&x-ca-timestamp=" + received.header("x-ca-timestamp");
    QCOMPARE(received.header("x-ca-signature"), opensslSignature(text, TestConfig::secret));
}

void TestHttpsRequest::wire_lineEndInTheSettingsBeginsNoHeader()
{
    RequestBench bench;
    setResolvedEndpoint(loopback(bench.server.port()));
    bench.config.set(QStringLiteral("Authorization/tenantid"),
                     QStringLiteral("a\r\nX-Other: b\n\x7f\tcdefg"));
    bench.config.set(QStringLiteral("Authorization/xcafirst"), // as "echo" gives it
                     QString::fromLatin1(QByteArray("demo-key\n").toBase64()));
    bench.config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("a\nX-More: d"));
    const LogCapture log;
    QByteArray reply;
    bench.send(&reply);
    const ReceivedRequest received = bench.server.requests().value(0);
    QCOMPARE(received.header("tenantId"), QByteArray("aX-Other: b\tcdefg"));
    QCOMPARE(received.header("x-ca-key"), QByteArray("demo-key"));
    QVERIFY(received.header("X-Ap-sHost").startsWith("aX-More: d:"));
    QVERIFY(!received.headerNames().contains("X-Other"));
    QVERIFY(!received.headerNames().contains("X-More"));
    const QString end = QStringLiteral(": control characters in the settings are not sent.");
    QCOMPARE(log.linesWith(QStringLiteral("warning: Header ")),
             (QStringList{QStringLiteral("warning: Header tenantId") + end,
                          QStringLiteral("warning: Header x-ca-key") + end,
                          QStringLiteral("warning: Header X-Ap-sHost") + end}));
}

void TestHttpsRequest::wire_noncesDiffer()
{
    RequestBench bench;
    QByteArray reply;
    bench.send(&reply);
    bench.send(&reply);
    QCOMPARE(bench.server.requests().size(), 2);
    const QByteArray first = bench.server.requests().at(0).header("x-ca-nonce");
    const QByteArray second = bench.server.requests().at(1).header("x-ca-nonce");
    QVERIFY(first.startsWith('{') && first.endsWith('}'));
    QVERIFY(second.startsWith('{') && second.endsWith('}'));
    QVERIFY(first != second);
}

void TestHttpsRequest::settings_areReadForEveryRequest()
{
    RequestBench bench;
    QByteArray reply;
    bench.send(&reply);
    bench.config.set(QStringLiteral("Authorization/tenantid"), QStringLiteral("another tenant"));
    bench.send(&reply);
    QCOMPARE(bench.sentHeader("tenantId"), QByteArray(TestConfig::tenantId));
    QCOMPARE(bench.server.requests().value(1).header("tenantId"), QByteArray("another tenant"));
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
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    setResolvedEndpoint(loopback(bench.server.port()));
    if (folder) {
        bench.config.setFolderInPlace();
    } else {
        bench.config.setBytes(bytes);
    }
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, goodBody);
    QCOMPARE(bench.sentHeader("tenantId"), QByteArray());
}

void TestHttpsRequest::target_resolvedEndpointWinsAndTheHostHeaderNamesTheConfiguredServer()
{
    TestServer gateway;
    gateway.setReply(httpReply(goodBody));
    RequestBench bench(1);
    setResolvedEndpoint(loopback(gateway.port()));
    bench.config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("qa.example"));
    QByteArray reply;
    QCOMPARE(bench.send(&reply, false), 0);
    QCOMPARE(reply, goodBody);
    QCOMPARE(gateway.requests().value(0).header("X-Ap-sHost"), QByteArray("qa.example:1"));
    QCOMPARE(gateway.requests().value(0).header("Host"),
             "127.0.0.1:" + QByteArray::number(gateway.port()));
}

void TestHttpsRequest::target_fallBackGoesToTheConfiguredServerAndIsLogged()
{
    RequestBench bench;
    setResolvedEndpoint({QString(), QStringLiteral("443")});
    QByteArray reply;
    bench.send(&reply, true);
    QCOMPARE(bench.server.requests().size(), 1);
    QCOMPARE(bench.log.lines().value(0),
             QStringLiteral("debug: assocation request, strAddr or strPort is empty. "
                            "ip = 127.0.0.1, port = %1")
                 .arg(bench.server.port()));
}

void TestHttpsRequest::target_fallBackWithBothHalvesResolvedIsNotTaken()
{
    TestServer configured;
    TestServer resolved;
    RequestBench bench(configured.port());
    setResolvedEndpoint(loopback(resolved.port()));
    QByteArray reply;
    bench.send(&reply, true);
    QCOMPARE(configured.requests().size(), 0);
    QCOMPARE(resolved.requests().size(), 1);
    QCOMPARE(bench.log.linesWith(QStringLiteral("debug: assocation")), QStringList());
}

void TestHttpsRequest::target_withoutFallBackAndEndpointFailsInTime()
{
    RequestBench bench;
    QByteArray reply;
    QCOMPARE(bench.send(&reply, false), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(bench.server.connectionCount(), 0);
    QVERIFY(bench.log.lines().contains(QStringLiteral("info: url:http://:/qa/ask")));
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: https reply error:")).size(), 1);
}

void TestHttpsRequest::proxyOfTheEnvironment_isIgnored()
{
    TestServer proxy;
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    // This machine, too, but by an address that Qt does not exempt from proxies.
    bench.config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("0.0.0.0"));
    qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.port()));
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    QByteArray reply;
    bench.send(&reply);
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    qunsetenv("http_proxy");
    QCOMPARE(reply, goodBody);
    QCOMPARE(proxy.connectionCount(), 0);
}

void TestHttpsRequest::proxyOfTheApplication_isIgnored()
{
    TestServer proxy;
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    bench.config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("0.0.0.0"));
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy.port()));
    QByteArray reply;
    bench.send(&reply);
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QCOMPARE(reply, goodBody);
    QCOMPARE(proxy.connectionCount(), 0);
}

QTEST_MAIN(TestHttpsRequest)
#include "tst_httpsrequest.moc"
