#include "service/request/httpsrequest.h"
#include "tests/service/support/testcertificate.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QSslSocket>
#include <QTest>

/// Requests over HTTPS, against real servers with a certificate that nobody trusts.
class TestHttpsRequestTls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void untrustedCertificate_isAcceptedAndTls12Spoken_data();
    void untrustedCertificate_isAcceptedAndTls12Spoken();
    void headersAndBody_areThoseOfPlainHttp();
    void log_namesTheVersionOnlyForHttps();
    void otherProtocolVersion_fails();
    void plainServer_fails();
    void plainModeToATlsServer_fails();
};

namespace {

constexpr int longMs = 20000;
constexpr int http = 0;
constexpr int https = 1;

const QByteArray goodBody = R"({"errorCode":"0","result":[]})";

int post(const TestConfig &config, int httpMode, QByteArray *reply)
{
    httpsRequest request;
    request.configPath = config.path();
    return request.SendHttpsRequest(QStringLiteral("/hot"), httpMode, longMs, reply, "{}", true);
}

} // namespace

void TestHttpsRequestTls::initTestCase()
{
    QVERIFY2(QSslSocket::supportsSsl(), "The OpenSSL libraries are not found.");
}

void TestHttpsRequestTls::init()
{
    setResolvedEndpoint({});
}

void TestHttpsRequestTls::untrustedCertificate_isAcceptedAndTls12Spoken_data()
{
    QTest::addColumn<int>("httpMode");
    QTest::newRow("1") << 1;
    QTest::newRow("2") << 2;
    QTest::newRow("-1") << -1;
}

void TestHttpsRequestTls::untrustedCertificate_isAcceptedAndTls12Spoken()
{
    QFETCH(int, httpMode);
    // It would speak 1.3 as well: that 1.2 is spoken is the client's doing.
    TestServer server(selfSignedServer(QSsl::TlsV1_2OrLater));
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    QByteArray reply;
    QCOMPARE(post(config, httpMode, &reply), 0);
    QCOMPARE(reply, goodBody);
    QCOMPARE(server.requests().value(0).protocol, QSsl::TlsV1_2);
}

void TestHttpsRequestTls::headersAndBody_areThoseOfPlainHttp()
{
    TestServer tls(selfSignedServer(QSsl::TlsV1_2));
    TestServer plain;
    QByteArray reply;
    TestConfig tlsConfig;
    tlsConfig.setServer(tls.port());
    QCOMPARE(post(tlsConfig, https, &reply), 0);
    TestConfig plainConfig;
    plainConfig.setServer(plain.port());
    QCOMPARE(post(plainConfig, http, &reply), 0);
    QCOMPARE(tls.requests().size(), 1);
    QCOMPARE(plain.requests().size(), 1);
    QCOMPARE(tls.requests().at(0).headerNames(), plain.requests().at(0).headerNames());
    QCOMPARE(tls.requests().at(0).target, plain.requests().at(0).target);
    QCOMPARE(tls.requests().at(0).body, plain.requests().at(0).body);
}

void TestHttpsRequestTls::log_namesTheVersionOnlyForHttps()
{
    TestServer server(selfSignedServer(QSsl::TlsV1_2));
    server.setReply(httpReply(goodBody));
    setResolvedEndpoint({QStringLiteral("127.0.0.1"), QString::number(server.port())});
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QByteArray reply;
    post(config, https, &reply);
    const QString port = QString::number(server.port());
    QCOMPARE(
        log.lines(),
        QStringList({QStringLiteral("debug: version:") + QSslSocket::sslLibraryBuildVersionString(),
                     QStringLiteral("debug: OpenSSL is supported:true"),
                     QStringLiteral("info: url:https://127.0.0.1:%1/hot").arg(port),
                     QStringLiteral("debug: mServerIP:127.0.0.1mServerHttpsPort:%1").arg(port),
                     QStringLiteral("info: The HTTPS request returns a result before it times "
                                    "out!")}));
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestHttpsRequestTls::otherProtocolVersion_fails()
{
    TestServer server(selfSignedServer(QSsl::TlsV1_3));
    server.setReply(httpReply(goodBody));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(post(config, https, &reply), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(server.requests().size(), 0);
    // It depends on whether the other side takes the time to say why.
    const QStringList reasons
        = {QStringLiteral("warning: https reply error:RemoteHostClosedError"),
           QStringLiteral("warning: https reply error:SslHandshakeFailedError")};
    QVERIFY2(reasons.contains(log.lines().constLast()), qPrintable(log.lines().constLast()));
}

void TestHttpsRequestTls::plainServer_fails()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QByteArray reply;
    // A plain server waits for a request that never comes; the client waits for the handshake.
    httpsRequest request;
    request.configPath = config.path();
    constexpr int shortMs = 200;
    QCOMPARE(request.SendHttpsRequest(QStringLiteral("/hot"), https, shortMs, &reply, "{}", true),
             -1);
    QCOMPARE(server.requests().size(), 0);
}

void TestHttpsRequestTls::plainModeToATlsServer_fails()
{
    TestServer server(selfSignedServer(QSsl::TlsV1_2));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QByteArray reply;
    QCOMPARE(post(config, http, &reply), 0);
    QCOMPARE(server.requests().size(), 0);
    QCOMPARE(log.linesWith(QStringLiteral("warning: https reply error:")).size(), 1);
}

QTEST_MAIN(TestHttpsRequestTls)
#include "tst_httpsrequesttls.moc"
