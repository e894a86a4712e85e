#include "service/request/httpsrequest.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

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
    void init();
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
constexpr int http = 0;

const QByteArray goodBody = R"({"errorCode":"0","result":[]})";

struct Sent
{
    int result = 1;
    QByteArray reply = "before";
};

Sent post(const TestConfig &config, const char *path, int timeoutMs)
{
    httpsRequest request;
    request.configPath = config.path();
    Sent sent;
    sent.result
        = request.SendHttpsRequest(QLatin1String(path), http, timeoutMs, &sent.reply, "{}", true);
    return sent;
}

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

void TestHttpsRequestWaits::init()
{
    setResolvedEndpoint({});
}

void TestHttpsRequestWaits::replyLaterThanTheLimit_isDiscardedAndTheBufferKept()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QElapsedTimer clock;
    clock.start();
    const Sent sent = post(config, "/slow", shortMs);
    QVERIFY(clock.elapsed() >= shortMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
    QCOMPARE(log.lines().constLast(), QStringLiteral("warning: HTTPS request timeout."));
    QCOMPARE(log.linesWith(QStringLiteral("warning: ")).size(), 1);
    server.release();
}

void TestHttpsRequestWaits::replyLaterThanTheLimit_closesTheConnection()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QCOMPARE(post(config, "/slow", shortMs).result, -1);
    QTRY_COMPARE(server.leftWhileHeld(), 1);
}

void TestHttpsRequestWaits::halfABodyAtTheLimit_isDiscarded()
{
    TestServer server;
    server.setReply(heldInTheMiddle(goodBody));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    const Sent sent = post(config, "/slow", shortMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
}

void TestHttpsRequestWaits::lateReplies_areNotTakenForThatOfTheNextRequest()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    QCOMPARE(post(config, "/a", shortMs).result, -1);
    QCOMPARE(post(config, "/b", shortMs).result, -1);
    server.release();
    server.setReplyFor("/c", httpReply(R"({"errorCode":"0","result":[3]})"));
    const Sent third = post(config, "/c", longMs);
    QCOMPARE(third.result, 0);
    QCOMPARE(third.reply, QByteArray(R"({"errorCode":"0","result":[3]})"));
}

void TestHttpsRequestWaits::events_areHandledMeanwhile()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    const When arrived([&server] { return !server.requests().isEmpty(); },
                       [&server] { server.release(); });
    const Sent sent = post(config, "/slow", longMs);
    QCOMPARE(sent.result, 0);
    QCOMPARE(sent.reply, goodBody);
}

void TestHttpsRequestWaits::outerReplyThatEndsInAnInnerWait_isInTime()
{
    TestServer quick;
    quick.setReply(httpReply(goodBody));
    TestServer slow;
    slow.setReply(held(httpReply(goodBody)));
    TestConfig outerConfig;
    outerConfig.setServer(quick.port());
    TestConfig innerConfig;
    innerConfig.setServer(slow.port());
    const LogCapture log;
    constexpr int outerMs = 500;
    Sent inner;
    QTimer::singleShot(0, this, [&] { inner = post(innerConfig, "/inner", 2 * outerMs); });
    QElapsedTimer clock;
    clock.start();
    const Sent outer = post(outerConfig, "/outer", outerMs);
    QVERIFY(clock.elapsed() >= 2 * outerMs); // its limit passed while the inner one waited
    QCOMPARE(inner.result, -1);
    QCOMPARE(outer.result, 0);
    QCOMPARE(outer.reply, goodBody);
}

void TestHttpsRequestWaits::outerReplyLaterThanItsLimitInAnInnerWait_isTooLate()
{
    TestServer outerServer;
    outerServer.setReply(held(httpReply(goodBody)));
    TestServer innerServer;
    innerServer.setReply(held(httpReply(goodBody)));
    TestConfig outerConfig;
    outerConfig.setServer(outerServer.port());
    TestConfig innerConfig;
    innerConfig.setServer(innerServer.port());
    const LogCapture log;
    Sent inner;
    QTimer::singleShot(0, this, [&] { inner = post(innerConfig, "/inner", 6 * shortMs); });
    QTimer::singleShot(3 * shortMs, this, [&] { outerServer.release(); });
    const Sent outer = post(outerConfig, "/outer", shortMs);
    QCOMPARE(inner.result, -1);
    QCOMPARE(outer.result, -1);
    QCOMPARE(outer.reply, QByteArray("before"));
}

void TestHttpsRequestWaits::nestedRequests_getTheirOwnReplies()
{
    TestServer server;
    server.setReplyFor("/outer", held(httpReply("{\"errorCode\":\"0\",\"outer\":1}")));
    server.setReplyFor("/inner", httpReply("{\"errorCode\":\"0\",\"inner\":1}"));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    Sent inner;
    const When arrived([&server] { return !server.requests().isEmpty(); },
                       [&] {
                           inner = post(config, "/inner", longMs);
                           server.release();
                       });
    const Sent outer = post(config, "/outer", longMs);
    QCOMPARE(inner.reply, QByteArray("{\"errorCode\":\"0\",\"inner\":1}"));
    QCOMPARE(outer.reply, QByteArray("{\"errorCode\":\"0\",\"outer\":1}"));
    QCOMPARE(server.requests().size(), 2);
}

void TestHttpsRequestWaits::quitDuringTheReply_endsAtOnceAndClaimsNoSuccess()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    Sent sent;
    QElapsedTimer clock;
    clock.start();
    QTimer::singleShot(0, this, [&] { sent = post(config, "/slow", longMs); });
    const When arrived([&server] { return !server.requests().isEmpty(); },
                       [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    QVERIFY(clock.elapsed() < longMs);
    QCOMPARE(sent.result, -1);
    QCOMPARE(sent.reply, QByteArray("before"));
    QCOMPARE(log.lines().constLast(),
             QStringLiteral("info: HTTPS request given up, the program ends."));
    QTRY_COMPARE(server.leftWhileHeld(), 1);
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
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    TestConfig config;
    config.setServer(server.port());
    const LogCapture log;
    Sent sent;
    QTimer::singleShot(0, this, [&] {
        QCoreApplication::quit();
        sent = post(config, "/slow", longMs);
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
