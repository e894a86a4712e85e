#include "demoprocess.h"
#include "signedcall.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTest>

/// Every way in which the demo service can be told to misbehave.
class TestDemoFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void delay_keepsTheAnswerBack();
    void delay_endsWhenTheClientLeaves();
    void error_isASignedRequestAnsweredWithThatCode();
    void error_doesNotCoverUpABadSignature();
    void http_hasThatStatusAndABodyOfItsOwn();
    void empty_isAGoodStatusWithoutABody();
    void emptyReply_isAGoodAnswerWithNothingInIt();
    void brokenJson_endsInTheMiddle();
    void truncate_promisesMoreThanItSends();
    void drop_leavesTheChunkedBodyUnfinished();
    void huge_isAValidAnswerOfThatSize_data();
    void huge_isAValidAnswerOfThatSize();
    void hugeJunk_isNoJsonOfThatSize();
    void notUtf8_holdsBytesThatAreNoCharacters();
    void nul_liesInsideOrAtTheEnd();
    void deep_isNestedThatDeep();
    void noAnswer_waitsUntilTheClientLeaves();
    void noAnswer_keepsNobodyElseWaiting();
    void trickle_sendsOneByteAtATime();
    void faultOfOneCall_leavesTheOthersAlone();
    void faultOfAnyCall_isForAllAndNoneClearsAll();
    void timesIsCountedDown();
    void faultAtStart_isInForceFromTheFirstRequest();
    void badFault_isRefusedWithASentence_data();
    void badFault_isRefusedWithASentence();
    void endingTheService_doesNotWaitForAnything();

private:
    CallReply ask(int ms = 20000);
    /// Sends a good question and leaves the socket open.
    bool sendQuestion(QTcpSocket &socket) const;

    /// All bytes of one answer until the service closes the connection.
    QByteArray readAnswer() const;

    void setFault(const QString &call, const QString &kind, const QJsonValue &argument = {});

    DemoProcess m_service;
    int m_idleThreads = 0;
};

namespace {

const QString question = QStringLiteral("黑屏怎么办");
const QString anyCall = QStringLiteral("any");
const QString askCall = QStringLiteral("ask");

QString replyText(const CallReply &reply)
{
    return reply.result().toObject().value(QLatin1String("reply")).toString();
}

} // namespace

void TestDemoFaults::initTestCase()
{
    QVERIFY(m_service.start());
    m_idleThreads = m_service.threadCount();
}

void TestDemoFaults::init()
{
    setFault(anyCall, QStringLiteral("none"));
}

void TestDemoFaults::cleanupTestCase()
{
    QVERIFY2(m_service.isRunning(), "the service ended by itself");
    QCOMPARE(m_service.stop(), 0);
}

bool TestDemoFaults::sendQuestion(QTcpSocket &socket) const
{
    socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(m_service.httpPort()));
    QByteArray request = "POST /robot/v1/answers HTTP/1.1\r\n";
    for (const auto &[name, value] : SignedCall().headers()) {
        request += name + ": " + value + "\r\n";
    }
    const QByteArray body = compactJson(askBody(question));
    request += "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    return socket.waitForConnected(5000) && socket.write(request) == request.size()
        && socket.waitForBytesWritten(5000);
}

QByteArray TestDemoFaults::readAnswer() const
{
    QTcpSocket socket;
    if (!sendQuestion(socket)) {
        return "not sent";
    }
    while (socket.state() == QAbstractSocket::ConnectedState && socket.waitForReadyRead(5000)) { }
    return socket.readAll();
}

CallReply TestDemoFaults::ask(int ms)
{
    return sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), {}, ms);
}

void TestDemoFaults::setFault(const QString &call, const QString &kind, const QJsonValue &argument)
{
    const QByteArray mistake = m_service.setFault({{QStringLiteral("call"), call},
                                                   {QStringLiteral("kind"), kind},
                                                   {QStringLiteral("arg"), argument}});
    QVERIFY2(mistake.isEmpty(), mistake.constData());
}

void TestDemoFaults::delay_keepsTheAnswerBack()
{
    setFault(askCall, QStringLiteral("delay"), 300);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(ask().errorCode(), QStringLiteral("0"));
    QVERIFY2(clock.elapsed() >= 300, qPrintable(QString::number(clock.elapsed())));
}

void TestDemoFaults::delay_endsWhenTheClientLeaves()
{
    setFault(askCall, QStringLiteral("delay"), 3600000);
    QTRY_COMPARE(m_service.threadCount(), m_idleThreads);
    QVERIFY(!ask(100).inTime);
    QTRY_COMPARE(m_service.threadCount(), m_idleThreads);
    QVERIFY(m_service.lastLogLine().contains(QLatin1String(" fault=delay:3600000 ")));
}

void TestDemoFaults::error_isASignedRequestAnsweredWithThatCode()
{
    setFault(askCall, QStringLiteral("error"), QStringLiteral("70001"));
    const CallReply reply = ask();
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.errorCode(), QStringLiteral("70001"));
    QVERIFY(reply.result().isNull());
}

void TestDemoFaults::error_doesNotCoverUpABadSignature()
{
    setFault(askCall, QStringLiteral("error"), QStringLiteral("70001"));
    SignedCall call;
    call.secret = "wrong";
    const CallReply reply
        = sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), call);
    QCOMPARE(reply.errorCode(), QStringLiteral("40101"));
}

void TestDemoFaults::http_hasThatStatusAndABodyOfItsOwn()
{
    setFault(askCall, QStringLiteral("http"), 503);
    const CallReply reply = ask();
    QCOMPARE(reply.status, 503);
    QVERIFY(reply.body.contains("<html>"));
    QVERIFY(m_service.lastLogLine().contains(QLatin1String(" status=503 fault=http:503 ")));
}

void TestDemoFaults::empty_isAGoodStatusWithoutABody()
{
    setFault(askCall, QStringLiteral("empty"));
    const CallReply reply = ask();
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.body, QByteArray());
    QCOMPARE(reply.error, QNetworkReply::NoError);
}

void TestDemoFaults::emptyReply_isAGoodAnswerWithNothingInIt()
{
    setFault(anyCall, QStringLiteral("empty-reply"));
    const CallReply reply = ask();
    QCOMPARE(reply.errorCode(), QStringLiteral("0"));
    QVERIFY(reply.result().toObject().contains(QLatin1String("reply")));
    QCOMPARE(replyText(reply), QString());
    const CallReply hot = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QCOMPARE(hot.errorCode(), QStringLiteral("0"));
    QCOMPARE(hot.result().toArray().size(), 0);
}

void TestDemoFaults::brokenJson_endsInTheMiddle()
{
    setFault(askCall, QStringLiteral("broken-json"));
    const CallReply reply = ask();
    QCOMPARE(reply.error, QNetworkReply::NoError);
    QVERIFY(reply.body.startsWith("{\"errorCode\":\"0\""));
    QJsonParseError problem;
    QJsonDocument::fromJson(reply.body, &problem);
    QVERIFY(problem.error != QJsonParseError::NoError);
}

void TestDemoFaults::truncate_promisesMoreThanItSends()
{
    const QByteArray whole = ask().body;
    setFault(askCall, QStringLiteral("truncate"));
    const CallReply reply = ask();
    QVERIFY(reply.inTime);
    QCOMPARE(reply.error, QNetworkReply::RemoteHostClosedError);
    QVERIFY(whole.startsWith(reply.body));
    QVERIFY(reply.body.size() < whole.size());
}

void TestDemoFaults::drop_leavesTheChunkedBodyUnfinished()
{
    // Over a bare socket: whether a client notices depends on the client.
    const QByteArray whole = readAnswer();
    QVERIFY(whole.startsWith("HTTP/1.1 200"));
    setFault(askCall, QStringLiteral("drop"));
    const QByteArray half = readAnswer();
    QVERIFY2(half.contains("Transfer-Encoding: chunked\r\n"), half.constData());
    QVERIFY(half.contains("\"errorCode\":\"0\""));
    QVERIFY(!half.contains("resultType"));
    QVERIFY(!half.contains("\r\n0\r\n"));
    QVERIFY(half.size() < whole.size());
}

void TestDemoFaults::huge_isAValidAnswerOfThatSize_data()
{
    QTest::addColumn<bool>("tls");
    QTest::addColumn<int>("bytes");
    QTest::newRow("one byte") << false << 1;
    QTest::newRow("3 MiB") << false << 3 * 1024 * 1024;
    QTest::newRow("3 MiB over TLS") << true << 3 * 1024 * 1024;
}

void TestDemoFaults::huge_isAValidAnswerOfThatSize()
{
    QFETCH(bool, tls);
    QFETCH(int, bytes);
    const int usual = replyText(ask()).size();
    setFault(askCall, QStringLiteral("huge"), bytes);
    const QUrl url = tls ? m_service.httpsUrl(askPath) : m_service.httpUrl(askPath);
    const CallReply reply = sendSigned(url, compactJson(askBody(question)));
    QCOMPARE(reply.errorCode(), QStringLiteral("0"));
    constexpr int paragraphTags = 7;
    QCOMPARE(replyText(reply).size(), usual + bytes + paragraphTags);
}

void TestDemoFaults::hugeJunk_isNoJsonOfThatSize()
{
    setFault(askCall, QStringLiteral("huge-junk"), 1000000);
    const CallReply reply = ask();
    QCOMPARE(reply.body.size(), 1000000);
    QVERIFY(QJsonDocument::fromJson(reply.body).isNull());
}

void TestDemoFaults::notUtf8_holdsBytesThatAreNoCharacters()
{
    setFault(anyCall, QStringLiteral("not-utf8"));
    QVERIFY(QString::fromUtf8(ask().body).contains(QChar(QChar::ReplacementCharacter)));
    const CallReply hot = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QVERIFY(QString::fromUtf8(hot.body).contains(QChar(QChar::ReplacementCharacter)));
}

void TestDemoFaults::nul_liesInsideOrAtTheEnd()
{
    setFault(askCall, QStringLiteral("nul"));
    QByteArray body = ask().body;
    QVERIFY(body.contains('\0'));
    QVERIFY(QJsonDocument::fromJson(body.left(body.indexOf('\0'))).isNull());
    setFault(askCall, QStringLiteral("nul"), QStringLiteral("end"));
    body = ask().body;
    QVERIFY(body.contains('\0'));
    QVERIFY(QJsonDocument::fromJson(body.left(body.indexOf('\0'))).isObject());
}

void TestDemoFaults::deep_isNestedThatDeep()
{
    setFault(askCall, QStringLiteral("deep"), 700);
    QCOMPARE(ask().body.count('['), 700);
    QCOMPARE(ask().body.count(']'), 700);
}

void TestDemoFaults::noAnswer_waitsUntilTheClientLeaves()
{
    setFault(askCall, QStringLiteral("no-answer"));
    const CallReply reply = ask(200);
    QVERIFY(!reply.inTime);
    QTRY_COMPARE(m_service.threadCount(), m_idleThreads);
    QCOMPARE(reply.status, 0);
    QVERIFY(m_service.lastLogLine().contains(QLatin1String(" fault=no-answer ")));
}

void TestDemoFaults::noAnswer_keepsNobodyElseWaiting()
{
    setFault(askCall, QStringLiteral("no-answer"));
    constexpr int waiting = 40;
    const int before = m_service.logLines().size();
    QObject owner;
    for (int i = 0; i < waiting; ++i) {
        auto *const socket = new QTcpSocket(&owner);
        QVERIFY(sendQuestion(*socket));
    }
    QTRY_COMPARE(m_service.logLines().size(), before + waiting);
    const CallReply hot = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QCOMPARE(hot.errorCode(), QStringLiteral("0"));
}

void TestDemoFaults::trickle_sendsOneByteAtATime()
{
    const QByteArray whole = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody(1))).body;
    setFault(QStringLiteral("hot"), QStringLiteral("trickle"), 2);
    QElapsedTimer clock;
    clock.start();
    const CallReply reply = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody(1)));
    QCOMPARE(reply.body, whole);
    QVERIFY(clock.elapsed() >= 2 * whole.size());
}

void TestDemoFaults::faultOfOneCall_leavesTheOthersAlone()
{
    setFault(QStringLiteral("hot"), QStringLiteral("http"), 500);
    QCOMPARE(ask().status, 200);
    const CallReply hot = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QCOMPARE(hot.status, 500);
}

void TestDemoFaults::faultOfAnyCall_isForAllAndNoneClearsAll()
{
    setFault(askCall, QStringLiteral("http"), 501);
    setFault(anyCall, QStringLiteral("http"), 502);
    const QByteArray body = compactJson(associationBody(QStringLiteral("a")));
    QCOMPARE(ask().status, 501);
    QCOMPARE(sendSigned(m_service.httpUrl(associationPath), body).status, 502);
    setFault(anyCall, QStringLiteral("none"));
    QCOMPARE(ask().status, 200);
    QCOMPARE(sendSigned(m_service.httpUrl(associationPath), body).status, 200);
}

void TestDemoFaults::timesIsCountedDown()
{
    QCOMPARE(m_service.setFault({{QStringLiteral("call"), askCall},
                                 {QStringLiteral("kind"), QStringLiteral("http")},
                                 {QStringLiteral("arg"), 500},
                                 {QStringLiteral("times"), 2}}),
             QByteArray());
    QCOMPARE(ask().status, 500);
    QCOMPARE(ask().status, 500);
    QCOMPARE(ask().status, 200);
}

void TestDemoFaults::faultAtStart_isInForceFromTheFirstRequest()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--fault"), QStringLiteral("ask=error:123"),
                           QStringLiteral("--fault"), QStringLiteral("any=http:418")}));
    QCOMPARE(sendSigned(service.httpUrl(askPath), compactJson(askBody(question))).errorCode(),
             QStringLiteral("123"));
    QCOMPARE(sendSigned(service.httpUrl(hotPath), compactJson(hotBody())).status, 418);
}

void TestDemoFaults::badFault_isRefusedWithASentence_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no JSON") << QByteArray("delay");
    QTest::newRow("no such call") << QByteArray(R"({"call":"cold","kind":"empty"})");
    QTest::newRow("no such kind") << QByteArray(R"({"call":"ask","kind":"lie"})");
    QTest::newRow("no kind") << QByteArray(R"({"call":"ask"})");
    QTest::newRow("text for a number") << QByteArray(R"({"call":"ask","kind":"delay","arg":"x"})");
    QTest::newRow("negative") << QByteArray(R"({"call":"ask","kind":"delay","arg":-1})");
    QTest::newRow("argument too many") << QByteArray(R"({"call":"ask","kind":"empty","arg":1})");
    QTest::newRow("zero times") << QByteArray(R"({"call":"ask","kind":"empty","times":0})");
}

void TestDemoFaults::badFault_isRefusedWithASentence()
{
    QFETCH(QByteArray, body);
    const QUrl url = m_service.httpUrl(QStringLiteral("/demo/faults"));
    const CallReply reply = sendPlain("PUT", url, body);
    QCOMPARE(reply.status, 400);
    QVERIFY(!reply.json().value(QLatin1String("error")).toString().isEmpty());
    QCOMPARE(ask().errorCode(), QStringLiteral("0"));
}

void TestDemoFaults::endingTheService_doesNotWaitForAnything()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--fault"), QStringLiteral("ask=no-answer")}));
    QTcpSocket idle;
    idle.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(service.httpPort()));
    QVERIFY(idle.waitForConnected(5000));
    QTcpSocket half;
    half.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(service.httpPort()));
    QVERIFY(half.waitForConnected(5000));
    half.write("POST /robot/v1/answers HTTP/1.1\r\nContent-Len");
    QVERIFY(half.waitForBytesWritten(5000));
    QVERIFY(!sendSigned(service.httpsUrl(askPath), compactJson(askBody(question)), {}, 100).inTime);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(service.stop(), 0);
    QVERIFY2(clock.elapsed() < 4000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_GUILESS_MAIN(TestDemoFaults)
#include "tst_demofaults.moc"
