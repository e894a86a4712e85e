#include "demoprocess.h"
#include "signedcall.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QMessageAuthenticationCode>
#include <QTcpSocket>
#include <QTest>
#include <QUuid>

#include <thread>
#include <vector>

Q_DECLARE_METATYPE(SignedCall)

/// What the demo service accepts and what it refuses.
class TestDemoService : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void goodSignature_isAcceptedOverHttpAndHttps_data();
    void goodSignature_isAcceptedOverHttpAndHttps();
    void goodReply_holdsTheSuccessMarkerToTheLetter();
    void documentedExample_hasTheRightSignature();
    void nonAsciiCredentials_areSignedAsLatin1();
    void spoiltRequest_isRefused_data();
    void spoiltRequest_isRefused();
    void missingHeader_isRefused_data();
    void missingHeader_isRefused();
    void headerThatComesTwice_isRefused();
    void replayedNonce_isRefused();
    void requestThatIsRefused_usesUpNoNonce();
    void wrongMethod_isRefused_data();
    void wrongMethod_isRefused();
    void unknownPath_isRefused();
    void badBody_isRefused_data();
    void badBody_isRefused();
    void bodyThatIsTooLarge_isRefused();
    void manyRequestsAtOnce_areAllAnswered();
    void rubbish_doesNotEndTheService();

private:
    DemoProcess m_service;
};

namespace {

const QString question = QStringLiteral("黑屏怎么办");

QByteArray farTimestamp(int ms)
{
    return QByteArray::number(QDateTime::currentMSecsSinceEpoch() + ms);
}

/// Sends bytes as they are and returns whatever comes back until the service closes.
QByteArray sendRaw(int port, const QByteArray &bytes)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(port));
    if (!socket.waitForConnected(5000)) {
        return "not connected";
    }
    socket.write(bytes);
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(5000)) { }
    QByteArray reply;
    while (socket.waitForReadyRead(5000)) {
        reply += socket.readAll();
    }
    return reply;
}

QByteArray rawRequest(const QList<QPair<QByteArray, QByteArray>> &headers, const QByteArray &body)
{
    QByteArray request = "POST /robot/v1/answers HTTP/1.1\r\nHost: 127.0.0.1\r\n";
    for (const auto &[name, value] : headers) {
        request += name + ": " + value + "\r\n";
    }
    return request + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

} // namespace

void TestDemoService::initTestCase()
{
    QVERIFY(m_service.start());
}

void TestDemoService::cleanupTestCase()
{
    QVERIFY2(m_service.isRunning(), "the service ended by itself");
    QCOMPARE(m_service.stop(), 0);
}

void TestDemoService::goodSignature_isAcceptedOverHttpAndHttps_data()
{
    QTest::addColumn<bool>("tls");
    QTest::newRow("http") << false;
    QTest::newRow("https, TLS 1.2") << true;
}

void TestDemoService::goodSignature_isAcceptedOverHttpAndHttps()
{
    QFETCH(bool, tls);
    const auto url = [&](const QString &path) {
        return tls ? m_service.httpsUrl(path) : m_service.httpUrl(path);
    };
    const CallReply ask = sendSigned(url(askPath), compactJson(askBody(question)));
    QCOMPARE(ask.status, 200);
    QCOMPARE(ask.errorCode(), QStringLiteral("0"));
    const QJsonObject result = ask.result().toObject();
    QCOMPARE(result.value(QLatin1String("standardQuestion")).toString(),
             QStringLiteral("登录后黑屏怎么办？"));
    QCOMPARE(result.value(QLatin1String("resultType")).toString(),
             QStringLiteral("MULTI_QA_RESULT"));
    const CallReply hot = sendSigned(url(hotPath), compactJson(hotBody(40)));
    QCOMPARE(hot.result().toArray().size(), 40);
    const CallReply association
        = sendSigned(url(associationPath), compactJson(associationBody(QStringLiteral("ukey"))));
    const QJsonObject first = association.result().toArray().at(0).toObject();
    QVERIFY(first.value(QLatin1String("question")).toString().contains(QLatin1String("UKey")));
    QVERIFY(first.value(QLatin1String("id")).toInt() > 0);
}

void TestDemoService::goodReply_holdsTheSuccessMarkerToTheLetter()
{
    const CallReply reply = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QVERIFY(reply.body.contains("\"errorCode\":\"0\""));
}

void TestDemoService::documentedExample_hasTheRightSignature()
{
    QFile file(QStringLiteral(DEMOSERVICE_FOLDER "/../../docs/protocol.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray document = file.readAll();
    SignedCall call;
    call.timestamp = "1700000000000";
    call.nonce = "{0f0e0d0c-0b0a-4908-8706-050403020100}";
    for (const auto &[name, value] : call.headers()) {
        if (name.startsWith("x-ca-")) {
            QVERIFY2(document.contains("  " + value + "\n"), value.constData());
        }
    }
}

void TestDemoService::nonAsciiCredentials_areSignedAsLatin1()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--tenant"), QStringLiteral("café"),
                           QStringLiteral("--secret"), QStringLiteral("gehéim桌")}));
    const QByteArray latin1 = "tenantId=caf\xE9&x-ca-key=demo-key&x-ca-nonce="
                              "{0f0e0d0c-0b0a-4908-8706-050403020100}&x-ca-secret=geh\xE9im?"
                              "&x-ca-timestamp=";
    SignedCall call;
    call.timestamp = farTimestamp(0);
    call.nonce = "{0f0e0d0c-0b0a-4908-8706-050403020100}";
    auto headers = call.headers();
    for (auto &[name, value] : headers) {
        if (name == "tenantId") {
            value = "caf\xC3\xA9"; // a header value travels as UTF-8
        } else if (name == "x-ca-signature") {
            value = QMessageAuthenticationCode::hash(latin1 + call.timestamp, "geh\xE9im?",
                                                     QCryptographicHash::Sha256)
                        .toHex();
        }
    }
    const QByteArray reply
        = sendRaw(service.httpPort(), rawRequest(headers, compactJson(askBody(question))));
    QVERIFY2(reply.contains("\"errorCode\":\"0\""), reply.constData());
    QCOMPARE(service.stop(), 0);
}

void TestDemoService::spoiltRequest_isRefused_data()
{
    QTest::addColumn<SignedCall>("call");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *name, const SignedCall &call, int status, const char *code) {
        QTest::newRow(name) << call << status << QString::fromLatin1(code);
    };
    SignedCall call;
    call.secret = "demo-secreu";
    row("secret wrong by one byte", call, 401, "40101");
    call = {};
    call.timestamp = farTimestamp(-301000);
    row("stale timestamp", call, 401, "40102");
    call.timestamp = farTimestamp(310000);
    row("timestamp from the future", call, 401, "40102");
    call.timestamp = "yesterday";
    row("timestamp that is no number", call, 400, "40004");
    call = {};
    call.tenant = "demo-tenanu";
    row("wrong tenant", call, 401, "40104");
    call = {};
    call.key = "demo-kez";
    row("wrong key", call, 401, "40105");
    call = {};
    call.contentType = "text/plain";
    row("wrong content type", call, 415, "40001");
    call = {};
    call.nonce = "0f0e0d0c-0b0a-4908-8706-050403020100";
    row("nonce without braces", call, 400, "40005");
    call.nonce = "{0F0E0D0C-0B0A-4908-8706-050403020100}";
    row("nonce in capitals", call, 400, "40005");
    call.nonce = "{0f0e0d0c-0b0a-1908-8706-050403020100}";
    row("nonce that is no random UUID", call, 400, "40005");
}

void TestDemoService::spoiltRequest_isRefused()
{
    QFETCH(SignedCall, call);
    QFETCH(int, status);
    QFETCH(QString, code);
    const CallReply reply
        = sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), call);
    QCOMPARE(reply.status, status);
    QCOMPARE(reply.errorCode(), code);
    QVERIFY(reply.result().isNull());
    QVERIFY(!reply.json().value(QLatin1String("errorMsg")).toString().isEmpty());
}

void TestDemoService::missingHeader_isRefused_data()
{
    QTest::addColumn<QByteArray>("header");
    for (const char *name :
         {"tenantId", "x-ca-key", "x-ca-timestamp", "x-ca-nonce", "x-ca-signature", "X-Ap-sHost"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void TestDemoService::missingHeader_isRefused()
{
    QFETCH(QByteArray, header);
    SignedCall call;
    call.leftOut = header;
    const CallReply reply
        = sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), call);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.errorCode(), QStringLiteral("40002"));
}

void TestDemoService::headerThatComesTwice_isRefused()
{
    auto headers = SignedCall().headers();
    headers.append(qMakePair(QByteArray("tenantId"), QByteArray("demo-tenant")));
    const QByteArray reply
        = sendRaw(m_service.httpPort(), rawRequest(headers, compactJson(askBody(question))));
    QVERIFY2(reply.contains("\"errorCode\":\"40003\""), reply.constData());
}

void TestDemoService::replayedNonce_isRefused()
{
    SignedCall call;
    call.nonce = QUuid::createUuid().toByteArray();
    const QByteArray body = compactJson(hotBody());
    QCOMPARE(sendSigned(m_service.httpUrl(hotPath), body, call).status, 200);
    const CallReply again = sendSigned(m_service.httpsUrl(hotPath), body, call);
    QCOMPARE(again.status, 401);
    QCOMPARE(again.errorCode(), QStringLiteral("40103"));
}

void TestDemoService::requestThatIsRefused_usesUpNoNonce()
{
    SignedCall call;
    call.nonce = QUuid::createUuid().toByteArray();
    call.secret = "guessed";
    const QByteArray body = compactJson(hotBody());
    QCOMPARE(sendSigned(m_service.httpUrl(hotPath), body, call).status, 401);
    call.secret = "demo-secret";
    QCOMPARE(sendSigned(m_service.httpUrl(hotPath), body, call).status, 200);
}

void TestDemoService::wrongMethod_isRefused_data()
{
    QTest::addColumn<QByteArray>("method");
    for (const char *name : {"GET", "PUT", "DELETE", "PATCH", "OPTIONS"}) {
        QTest::newRow(name) << QByteArray(name);
    }
}

void TestDemoService::wrongMethod_isRefused()
{
    QFETCH(QByteArray, method);
    const CallReply reply
        = sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), {}, 10000, method);
    QCOMPARE(reply.status, 405);
    QCOMPARE(reply.errorCode(), QStringLiteral("40501"));
}

void TestDemoService::unknownPath_isRefused()
{
    const QString path = QStringLiteral("/robot/v2/answers/") + QString(6000, QLatin1Char('a'));
    const CallReply reply = sendSigned(m_service.httpUrl(path), compactJson(askBody(question)));
    QCOMPARE(reply.status, 404);
    QCOMPARE(reply.errorCode(), QStringLiteral("40401"));
}

void TestDemoService::badBody_isRefused_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no JSON") << QByteArray("question=x");
    QTest::newRow("an array") << QByteArray("[1]");
    QTest::newRow("deeply nested") << QByteArray(200000, '[');
    QTest::newRow("not UTF-8")
        << compactJson(askBody(QStringLiteral("x"))).replace("\"x\"", "\"\xFF\"");
    for (const QString &name : askBody(question).keys()) {
        QJsonObject body = askBody(question);
        body.remove(name);
        QTest::addRow("without %s", qPrintable(name)) << compactJson(body);
        body.insert(name, QJsonArray());
        QTest::addRow("%s an array", qPrintable(name)) << compactJson(body);
    }
    QTest::newRow("id beyond 64 bits")
        << compactJson(askBody(question))
               .replace("\"questionId\":0", "\"questionId\":18446744073709551615");
    QTest::newRow("negative size") << compactJson(askBody(question, 0, -1));
    QJsonObject more = askBody(question);
    more.insert(QStringLiteral("colour"), QStringLiteral("blue"));
    QTest::newRow("a member too many") << compactJson(more);
    QTest::newRow("body of another call") << compactJson(hotBody());
}

void TestDemoService::badBody_isRefused()
{
    QFETCH(QByteArray, body);
    const CallReply reply = sendSigned(m_service.httpUrl(askPath), body);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.errorCode(), QStringLiteral("40006"));
}

void TestDemoService::bodyThatIsTooLarge_isRefused()
{
    const QByteArray body = compactJson(askBody(QString(1100 * 1024, QLatin1Char('a'))));
    const CallReply reply = sendSigned(m_service.httpUrl(askPath), body);
    QCOMPARE(reply.status, 413);
    QCOMPARE(reply.errorCode(), QStringLiteral("41301"));
}

void TestDemoService::manyRequestsAtOnce_areAllAnswered()
{
    constexpr int clients = 12;
    constexpr int each = 8;
    std::vector<int> good(clients, 0);
    std::vector<std::thread> threads;
    threads.reserve(clients);
    for (int i = 0; i < clients; ++i) {
        threads.emplace_back([this, &good, i] {
            for (int j = 0; j < each; ++j) {
                const QByteArray reply
                    = sendRaw(m_service.httpPort(),
                              rawRequest(SignedCall().headers(), compactJson(askBody(question))));
                good[static_cast<std::size_t>(i)] += reply.contains("\"errorCode\":\"0\"") ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(good, std::vector<int>(clients, each));
}

void TestDemoService::rubbish_doesNotEndTheService()
{
    QByteArray noise;
    for (int i = 0; i < 50000; ++i) {
        noise.append(static_cast<char>((i * 7919) >> 3));
    }
    const QByteArray head = "POST /robot/v1/answers HTTP/1.1\r\n";
    const QList<QByteArray> all = {noise,
                                   "\r\n\r\n",
                                   "GET\r\n\r\n",
                                   QByteArray(20000, 'A') + "\r\n\r\n",
                                   "GET /%00%ff%zz HTTP/1.1\r\n\r\n",
                                   head + "Content-Length: -5\r\n\r\n",
                                   head + "Content-Length: x\r\n\r\nabc",
                                   head + "Transfer-Encoding: chunked\r\n\r\nzz\r\n",
                                   head + "Content-Encoding: gzip\r\nContent-Length: 4\r\n\r\nabcd",
                                   head + "x: " + QByteArray(9000, 'y') + "\r\n\r\n"};
    for (const QByteArray &bytes : all) {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"),
                             static_cast<quint16>(m_service.httpPort()));
        QVERIFY(socket.waitForConnected(5000));
        socket.write(bytes);
        socket.waitForBytesWritten(5000);
        socket.abort();
    }
    QCOMPARE(sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody())).status, 200);
}

QTEST_GUILESS_MAIN(TestDemoService)
#include "tst_demoservice.moc"
