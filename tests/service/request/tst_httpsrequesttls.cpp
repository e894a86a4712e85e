#include "tests/service/support/requestbench.h"
#include "tests/service/support/testcertificate.h"

#include <QSslSocket>
#include <QTest>

/// Requests over HTTPS, against real servers with a certificate that nobody trusts.
class TestHttpsRequestTls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
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

} // namespace

void TestHttpsRequestTls::initTestCase()
{
    QVERIFY2(QSslSocket::supportsSsl(), "The OpenSSL libraries are not found.");
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
    RequestBench bench(selfSignedServer(QSsl::TlsV1_2OrLater));
    bench.server.setReply(httpReply(goodBody));
    QCOMPARE(bench.post("/hot", longMs, httpMode).reply, goodBody);
    QCOMPARE(bench.server.requests().value(0).protocol, QSsl::TlsV1_2);
}

void TestHttpsRequestTls::headersAndBody_areThoseOfPlainHttp()
{
    RequestBench bench(selfSignedServer(QSsl::TlsV1_2));
    QCOMPARE(bench.post("/hot", longMs, https).result, 0);
    TestServer plain;
    setResolvedEndpoint(loopback(plain.port()));
    QCOMPARE(bench.post("/hot", longMs, http).result, 0);
    const TestServer &tls = bench.server;
    QCOMPARE(tls.requests().size(), 1);
    QCOMPARE(plain.requests().size(), 1);
    QCOMPARE(tls.requests().at(0).headerNames(), plain.requests().at(0).headerNames());
    QCOMPARE(tls.requests().at(0).target, plain.requests().at(0).target);
    QCOMPARE(tls.requests().at(0).body, plain.requests().at(0).body);
}

void TestHttpsRequestTls::log_namesTheVersionOnlyForHttps()
{
    RequestBench bench(selfSignedServer(QSsl::TlsV1_2));
    bench.server.setReply(httpReply(goodBody));
    setResolvedEndpoint(loopback(bench.server.port()));
    bench.post("/hot", longMs, https);
    const QString port = QString::number(bench.server.port());
    QCOMPARE(
        bench.log.lines(),
        QStringList({QStringLiteral("debug: version:") + QSslSocket::sslLibraryBuildVersionString(),
                     QStringLiteral("debug: OpenSSL is supported:true"),
                     QStringLiteral("info: url:https://127.0.0.1:%1/hot").arg(port),
                     QStringLiteral("debug: mServerIP:127.0.0.1mServerHttpsPort:%1").arg(port),
                     QStringLiteral("info: The HTTPS request returns a result before it times "
                                    "out!")}));
    QCOMPARE(bench.log.foreignLines(), QStringList());
}

void TestHttpsRequestTls::otherProtocolVersion_fails()
{
    RequestBench bench(selfSignedServer(QSsl::TlsV1_3));
    bench.server.setReply(httpReply(goodBody));
    const SentRequest sent = bench.post("/hot", longMs, https);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, QByteArray());
    QCOMPARE(bench.server.requests().size(), 0);
    // It depends on whether the other side takes the time to say why.
    const QStringList reasons
        = {QStringLiteral("warning: https reply error:RemoteHostClosedError"),
           QStringLiteral("warning: https reply error:SslHandshakeFailedError")};
    QVERIFY2(reasons.contains(bench.log.lines().constLast()),
             qPrintable(bench.log.lines().constLast()));
}

void TestHttpsRequestTls::plainServer_fails()
{
    RequestBench bench;
    // A plain server waits for a request that never comes; the client waits for the handshake.
    constexpr int shortMs = 200;
    QCOMPARE(bench.post("/hot", shortMs, https).result, -1);
    QCOMPARE(bench.server.requests().size(), 0);
}

void TestHttpsRequestTls::plainModeToATlsServer_fails()
{
    RequestBench bench(selfSignedServer(QSsl::TlsV1_2));
    QCOMPARE(bench.post("/hot", longMs, http).result, 0);
    QCOMPARE(bench.server.requests().size(), 0);
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: https reply error:")).size(), 1);
}

QTEST_MAIN(TestHttpsRequestTls)
#include "tst_httpsrequesttls.moc"
