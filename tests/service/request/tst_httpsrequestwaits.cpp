#include "tests/service/support/refusingport.h"
#include "tests/service/support/requestbench.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <functional>

/// How a request waits: its time limit, waits within waits, and the end of the application.
class TestHttpsRequestWaits : public QObject
{
    Q_OBJECT

private slots:
    void replyLaterThanTheLimit_isDiscardedAndTheBufferKept();
    void replyLaterThanTheLimit_closesTheConnection();
    void halfABodyAtTheLimit_isDiscarded();
    void lateReplies_areNotTakenForThatOfTheNextRequest();
    void events_areHandledMeanwhile();
    void outerReplyThatEndsInAnInnerWait_isInTime();
    void outerReplyLaterThanItsLimitInAnInnerWait_isTooLate();
    void nestedRequests_getTheirOwnReplies();
    void quitDuringTheReply_endsAtOnceAndClaimsNoSuccess();
    void quitDuringTheConnectionTest_endsAtOnceAndClaimsNoSuccess();
    void afterQuit_requestsDoNotWait();
};

namespace {

constexpr int shortMs = 100;
constexpr int longMs = 60000;
constexpr int pollMs = 5;

const QByteArray goodBody = R"({"errorCode":"0","result":[]})";

/// Calls \a action once, as soon as \a condition holds.
class When : public QTimer
{
public:
    When(std::function<bool()> condition, std::function<void()> action)
        : m_condition(std::move(condition))
        , m_action(std::move(action))
    {
        connect(this, &QTimer::timeout, this, [this] { check(); });
        start(pollMs);
    }

private:
    void check()
    {
        if (m_condition()) {
            stop();
            m_action();
        }
    }

    std::function<bool()> m_condition;
    std::function<void()> m_action;
};

} // namespace

void TestHttpsRequestWaits::replyLaterThanTheLimit_isDiscardedAndTheBufferKept()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    QElapsedTimer clock;
    clock.start();
    const SentRequest sent = bench.post("/slow", shortMs);
    QVERIFY(clock.elapsed() >= shortMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
    QCOMPARE(bench.log.lines().constLast(), QStringLiteral("warning: HTTPS request timeout."));
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: ")).size(), 1);
    bench.server.release();
}

void TestHttpsRequestWaits::replyLaterThanTheLimit_closesTheConnection()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    // A busy machine may not even have sent the request within the first limit.
    for (int ms = shortMs; ms < longMs && bench.server.requests().isEmpty(); ms *= 2) {
        QCOMPARE(bench.post("/slow", ms).result, -1);
    }
    QVERIFY(!bench.server.requests().isEmpty());
    QTRY_COMPARE(bench.server.leftWhileHeld(), bench.server.requests().size());
}

void TestHttpsRequestWaits::halfABodyAtTheLimit_isDiscarded()
{
    RequestBench bench;
    bench.server.setReply(heldInTheMiddle(goodBody));
    const SentRequest sent = bench.post("/slow", shortMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
}

void TestHttpsRequestWaits::lateReplies_areNotTakenForThatOfTheNextRequest()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    QCOMPARE(bench.post("/a", shortMs).result, -1);
    QCOMPARE(bench.post("/b", shortMs).result, -1);
    bench.server.release();
    bench.server.setReplyFor("/c", httpReply(R"({"errorCode":"0","result":[3]})"));
    const SentRequest third = bench.post("/c", longMs);
    QCOMPARE(third.result, 0);
    QCOMPARE(third.reply, QByteArray(R"({"errorCode":"0","result":[3]})"));
}

void TestHttpsRequestWaits::events_areHandledMeanwhile()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    const When arrived([&bench] { return !bench.server.requests().isEmpty(); },
                       [&bench] { bench.server.release(); });
    const SentRequest sent = bench.post("/slow", longMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, goodBody);
}

void TestHttpsRequestWaits::outerReplyThatEndsInAnInnerWait_isInTime()
{
    RequestBench bench;
    bench.server.setReplyFor("/outer", httpReply(goodBody));
    bench.server.setReplyFor("/inner", held(httpReply(goodBody)));
    constexpr int outerMs = 500;
    constexpr int innerMs = 2 * outerMs;
    SentRequest inner;
    QTimer::singleShot(0, this, [&] { inner = bench.post("/inner", innerMs); });
    QElapsedTimer clock;
    clock.start();
    const SentRequest outer = bench.post("/outer", outerMs);
    QVERIFY(clock.elapsed() >= innerMs); // its limit passed while the inner one waited
    QCOMPARE(inner.result, -1);
    QCOMPARE(outer.result, 0);
    QCOMPARE(outer.reply, goodBody);
}

void TestHttpsRequestWaits::outerReplyLaterThanItsLimitInAnInnerWait_isTooLate()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    TestServer innerServer;
    innerServer.setReply(held(httpReply(goodBody)));
    SentRequest inner;
    QTimer::singleShot(0, this, [&] {
        setResolvedEndpoint(loopback(innerServer.port()));
        inner = bench.post("/inner", 6 * shortMs);
    });
    QTimer::singleShot(3 * shortMs, this, [&] { bench.server.release(); });
    const SentRequest outer = bench.post("/outer", shortMs);
    QCOMPARE(inner.result, -1);
    QCOMPARE(outer.result, -1);
    QCOMPARE(outer.reply, QByteArray("before"));
}

void TestHttpsRequestWaits::nestedRequests_getTheirOwnReplies()
{
    RequestBench bench;
    bench.server.setReplyFor("/outer", held(httpReply("{\"errorCode\":\"0\",\"outer\":1}")));
    bench.server.setReplyFor("/inner", httpReply("{\"errorCode\":\"0\",\"inner\":1}"));
    SentRequest inner;
    const When arrived([&bench] { return !bench.server.requests().isEmpty(); },
                       [&] {
                           inner = bench.post("/inner", longMs);
                           bench.server.release();
                       });
    const SentRequest outer = bench.post("/outer", longMs);
    QCOMPARE(inner.reply, QByteArray("{\"errorCode\":\"0\",\"inner\":1}"));
    QCOMPARE(outer.reply, QByteArray("{\"errorCode\":\"0\",\"outer\":1}"));
    QCOMPARE(bench.server.requests().size(), 2);
}

void TestHttpsRequestWaits::quitDuringTheReply_endsAtOnceAndClaimsNoSuccess()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    SentRequest sent;
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(0, this, [&] { sent = bench.post("/slow", longMs); });
    const When arrived([&bench] { return !bench.server.requests().isEmpty(); },
                       [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    QVERIFY(clock.elapsed() < longMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
    QCOMPARE(bench.log.lines().constLast(),
             QStringLiteral("info: HTTPS request given up, the program ends."));
    QTRY_COMPARE(bench.server.leftWhileHeld(), 1);
}

void TestHttpsRequestWaits::quitDuringTheConnectionTest_endsAtOnceAndClaimsNoSuccess()
{
    const RefusingPort refusing;
    httpsRequest request;
    const LogCapture log;
    bool connected = false;
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(0, this, [&] {
        QTimer::singleShot(shortMs, qApp, &QCoreApplication::quit);
        connected = request.NetSocketConnect(QStringLiteral("127.0.0.1"), refusing.port());
    });
    QCoreApplication::exec();
    QVERIFY(clock.elapsed() < 1000);
    QVERIFY(!connected);
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("info: connection test given up, the program ends.")}));
}

void TestHttpsRequestWaits::afterQuit_requestsDoNotWait()
{
    RequestBench bench;
    bench.server.setReply(held(httpReply(goodBody)));
    SentRequest sent;
    QTimer::singleShot(0, this, [&] {
        QCoreApplication::quit();
        sent = bench.post("/slow", longMs);
    });
    QElapsedTimer clock;
    clock.start();
    QCoreApplication::exec();
    QVERIFY(clock.elapsed() < longMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
}

QTEST_MAIN(TestHttpsRequestWaits)
#include "tst_httpsrequestwaits.moc"
