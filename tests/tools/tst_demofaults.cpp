#include "faulttest.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTest>

/// Every way in which the demo service can be told to misbehave.
class TestDemoFaults : public FaultTest
{
    Q_OBJECT

private slots:
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

private:
    /// Sends a good question and leaves the socket open.
    bool sendQuestion(QTcpSocket &socket) const;

    /// All bytes of one answer until the service closes the connection.
    QByteArray readAnswer() const;
};

namespace {

QString replyText(const CallReply &reply)
{
    return reply.result().toObject().value(QLatin1String("reply")).toString();
}

} // namespace

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
    QVERIFY(clock.elapsed() >= qint64(2) * whole.size());
}

QTEST_GUILESS_MAIN(TestDemoFaults)
#include "tst_demofaults.moc"
