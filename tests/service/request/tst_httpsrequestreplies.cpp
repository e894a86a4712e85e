#include "tests/service/support/refusingport.h"
#include "tests/service/support/requestbench.h"

#include <QSslSocket>
#include <QTest>

/// Requests over plain HTTP: what comes back, what becomes of it, and what is logged.
class TestHttpsRequestReplies : public QObject
{
    Q_OBJECT

private slots:
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
};

namespace {

const QByteArray goodBody = R"({"errorCode":"0","result":[1]})";

QString mark(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

void TestHttpsRequestReplies::log_ofAGoodRequest()
{
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    setResolvedEndpoint(loopback(bench.server.port()));
    QByteArray reply;
    bench.send(&reply);
    const QString port = QString::number(bench.server.port());
    const QString supported = QSslSocket::supportsSsl() ? mark("true") : mark("false");
    QCOMPARE(bench.log.lines(),
             QStringList({mark("debug: OpenSSL is supported:") + supported,
                          mark("info: url:http://127.0.0.1:") + port + mark("/qa/ask"),
                          mark("debug: mServerIP:127.0.0.1mServerHttpsPort:") + port,
                          mark("info: The HTTPS request returns a result before it times out!")}));
    QCOMPARE(bench.log.foreignLines(), QStringList());
}

void TestHttpsRequestReplies::log_neverHoldsCredentials()
{
    RequestBench bench;
    bench.server.setReply(httpReply("{}"));
    QByteArray reply;
    bench.send(&reply);
    const QString all = bench.log.lines().join(QLatin1Char('\n'));
    QVERIFY(!all.isEmpty());
    for (const QByteArray &word :
         {QByteArray(TestConfig::key), QByteArray(TestConfig::secret),
          QByteArray(TestConfig::secret).toBase64(), QByteArray(TestConfig::key).toBase64(),
          bench.sentHeader("x-ca-signature")}) {
        QVERIFY2(!all.contains(QString::fromLatin1(word)), word.constData());
    }
}

void TestHttpsRequestReplies::reply_withoutTheMarkIsLoggedAndReturned()
{
    RequestBench bench;
    bench.server.setReply(httpReply("{\"errorCode\":\"7\",\"text\":\"不行\"}"));
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, QByteArray("{\"errorCode\":\"7\",\"text\":\"不行\"}"));
    QCOMPARE(bench.log.lines().constLast(),
             mark("warning: The HTTPS request returns a result before it times out, "
                  "buf:{\"errorCode\":\"7\",\"text\":\"不行\"}"));
}

void TestHttpsRequestReplies::reply_shapes_data()
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

void TestHttpsRequestReplies::reply_shapes()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, logged);
    RequestBench bench;
    bench.server.setReply(httpReply(body));
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, body); // the bytes are handed back whole, whatever is logged
    QCOMPARE(bench.log.lines().constLast(),
             mark("warning: The HTTPS request returns a result before it times out, buf:")
                 + logged);
}

void TestHttpsRequestReplies::reply_httpErrorWithJsonBody_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("401") << QByteArray("401 Unauthorized") << mark("AuthenticationRequiredError");
    QTest::newRow("404") << QByteArray("404 Not Found") << mark("ContentNotFoundError");
    QTest::newRow("500") << QByteArray("500 Internal Server Error") << mark("InternalServerError");
    QTest::newRow("503") << QByteArray("503 Service Unavailable")
                         << mark("ServiceUnavailableError");
}

void TestHttpsRequestReplies::reply_httpErrorWithJsonBody()
{
    QFETCH(QByteArray, status);
    QFETCH(QString, error);
    const QByteArray body = R"({"errorCode":"401","message":"signature"})";
    RequestBench bench;
    bench.server.setReply(httpReply(body, status));
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, body);
    QCOMPARE(bench.log.lines().mid(bench.log.lines().size() - 2),
             QStringList({mark("warning: The HTTPS request returns a result before it times out, "
                               "buf:")
                              + QString::fromLatin1(body),
                          mark("warning: https reply error:") + error}));
}

void TestHttpsRequestReplies::reply_fiftyMegabytes()
{
    constexpr int size = 50 * 1024 * 1024;
    RequestBench bench;
    const QByteArray body = R"({"errorCode":"0","result":")" + QByteArray(size, 'x') + "\"}";
    bench.server.setReply(httpReply(body));
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QVERIFY(reply == body); // too long to be shown when it differs
}

void TestHttpsRequestReplies::reply_redirectIsNotFollowed()
{
    TestServer other;
    RequestBench bench;
    bench.server.setReply(
        {"HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:" + QByteArray::number(other.port())
             + "/\r\nContent-Length: 0\r\n\r\n",
         false});
    QByteArray reply;
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(other.connectionCount(), 0);
}

void TestHttpsRequestReplies::reply_connectionDropped_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("arrived");
    QTest::newRow("at once") << droppedReply().bytes << QByteArray();
    QTest::newRow("within the headers") << droppedInHeaders().bytes << QByteArray();
    QTest::newRow("within the body") << truncatedReply(R"({"errorCode":"0","res)").bytes
                                     << QByteArray(R"({"errorCode":"0","res)");
}

void TestHttpsRequestReplies::reply_connectionDropped()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, arrived);
    RequestBench bench;
    bench.server.setReply({bytes, false});
    QByteArray reply("before");
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, arrived);
    QCOMPARE(bench.log.lines().constLast(),
             mark("warning: https reply error:RemoteHostClosedError"));
}

void TestHttpsRequestReplies::reply_refusedConnection()
{
    const RefusingPort refusing;
    RequestBench bench(refusing.port());
    QByteArray reply("before");
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(bench.log.lines().mid(bench.log.lines().size() - 2),
             QStringList({mark("warning: The HTTPS request returns a result before it times out, "
                               "buf:"),
                          mark("warning: https reply error:ConnectionRefusedError")}));
}

void TestHttpsRequestReplies::reply_replacesTheBuffer()
{
    RequestBench bench;
    bench.server.setReply(httpReply(goodBody));
    QByteArray reply("before");
    QCOMPARE(bench.send(&reply), 0);
    QCOMPARE(reply, goodBody);
}

void TestHttpsRequestReplies::classify_data()
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

void TestHttpsRequestReplies::classify()
{
    QFETCH(QString, text);
    QFETCH(QString, line);
    httpsRequest request;
    const LogCapture log;
    request.httpsError_Log(text);
    QCOMPARE(log.lines(), QStringList({line}));
}

QTEST_MAIN(TestHttpsRequestReplies)
#include "tst_httpsrequestreplies.moc"
