#include "tests/service/support/refusingport.h"
#include "tests/service/support/requestbench.h"
#include "tests/service/support/testgateway.h"

#include <QSet>
#include <QTest>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

/// Requests and resolutions on several threads at once, through one request object. The threads are
/// the standard library's, so that the thread sanitizer sees every step of them.
class TestConcurrentRequests : public QObject
{
    Q_OBJECT

private slots:
    void requests_getTheirOwnReplies();
    void requests_allHaveNoncesOfTheirOwn();
    void resolutions_ofAReachableServerAgree();
    void resolutions_askTheLibraryOneAtATime();
    void resolutionsAndRequests_runSideBySide();
    void request_goesWhereItsOwnResolutionLedWhileAnotherIsUnderWay();
    void request_afterItsOwnResolutionFailed_goesNowhere();
};

namespace {

constexpr int threadCount = 4;
constexpr int requestCount = 15; // of each thread
constexpr int longMs = 60000;
constexpr int http = 0;

void runAll(const std::function<void(int)> &work)
{
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
}

QByteArray post(httpsRequest &request, const QByteArray &path)
{
    QByteArray reply;
    request.SendHttpsRequest(QString::fromLatin1(path), http, longMs, &reply, "{}", true);
    return reply;
}

QByteArray pathOf(int thread)
{
    return "/thread" + QByteArray::number(thread);
}

QByteArray bodyOf(int thread)
{
    return "{\"errorCode\":\"0\",\"thread\":" + QByteArray::number(thread) + '}';
}

void setReplies(TestServer &server)
{
    for (int thread = 0; thread < threadCount; ++thread) {
        server.setReplyFor(pathOf(thread), httpReply(bodyOf(thread)));
    }
}

/// How many of a thread's requests got another body than theirs.
int wrongReplies(httpsRequest &request, int thread)
{
    int wrong = 0;
    for (int round = 0; round < requestCount; ++round) {
        wrong += post(request, pathOf(thread)) == bodyOf(thread) ? 0 : 1;
    }
    return wrong;
}

} // namespace

void TestConcurrentRequests::requests_getTheirOwnReplies()
{
    RequestBench bench;
    setReplies(bench.server);
    std::atomic<int> wrong = 0;
    runAll([&](int thread) { wrong += wrongReplies(bench.request, thread); });
    QCOMPARE(wrong.load(), 0);
    QCOMPARE(bench.server.requests().size(), threadCount * requestCount);
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: ")), QStringList());
    QCOMPARE(bench.log.foreignLines().join(QLatin1Char('|')), QString());
}

void TestConcurrentRequests::requests_allHaveNoncesOfTheirOwn()
{
    RequestBench bench;
    runAll([&](int thread) { wrongReplies(bench.request, thread); });
    QSet<QByteArray> nonces;
    for (const ReceivedRequest &received : bench.server.requests()) {
        nonces.insert(received.header("x-ca-nonce"));
    }
    QCOMPARE(nonces.size(), threadCount * requestCount);
}

void TestConcurrentRequests::resolutions_ofAReachableServerAgree()
{
    RequestBench bench;
    runAll([&](int) { bench.request.getUseful_IpPort(); });
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("127.0.0.1"));
    QCOMPARE(resolvedEndpoint().strPort, QString::number(bench.server.port()));
    QCOMPARE(bench.log.linesWith(QStringLiteral("info: can ping")).size(), threadCount);
}

void TestConcurrentRequests::resolutions_askTheLibraryOneAtATime()
{
    const TestGateway gateway("10.1.1.1", 443);
    const RefusingPort refusing;
    RequestBench bench(refusing.port());
    runAll([&](int) { bench.request.getUseful_IpPort(); });
    QStringList expected;
    for (int query = 0; query < threadCount; ++query) {
        expected += TestGateway::oneQuery();
    }
    QCOMPARE(gateway.calls(), expected); // whole queries, none inside another
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("10.1.1.1"));
}

void TestConcurrentRequests::resolutionsAndRequests_runSideBySide()
{
    RequestBench bench;
    setReplies(bench.server);
    std::atomic<int> wrong = 0;
    std::atomic<int> torn = 0;
    const std::vector<std::function<void()>> work
        = {[&] { bench.request.getUseful_IpPort(); },
           // With the fall-back every request has a whole endpoint, resolved or configured.
           [&] { wrong += wrongReplies(bench.request, 1); },
           [&] { wrong += wrongReplies(bench.request, 2); },
           [&] {
               const ServiceEndpoint seen = resolvedEndpoint();
               torn += seen.strAddr.isEmpty() == seen.strPort.isEmpty() ? 0 : 1;
               bench.request.getUseful_IpPort();
           }};
    runAll([&](int thread) { work.at(static_cast<std::size_t>(thread))(); });
    QCOMPARE(wrong.load(), 0);
    QCOMPARE(torn.load(), 0);
}

void TestConcurrentRequests::request_goesWhereItsOwnResolutionLedWhileAnotherIsUnderWay()
{
    RequestBench bench;
    setReplies(bench.server);
    bench.request.getUseful_IpPort();
    std::thread([] { setResolvedEndpoint({}); }).join(); // as any resolution begins
    QByteArray reply;
    bench.request.SendHttpsRequest(QString::fromLatin1(pathOf(0)), http, longMs, &reply, "{}",
                                   false);
    QCOMPARE(reply, bodyOf(0));
    QVERIFY(!resolvedEndpoint().isComplete()); // which is the other resolution's matter
}

void TestConcurrentRequests::request_afterItsOwnResolutionFailed_goesNowhere()
{
    RequestBench bench;
    bench.request.getUseful_IpPort();
    const RefusingPort refusing;
    bench.config.setServer(refusing.port());
    bench.request.getUseful_IpPort();
    QByteArray reply;
    bench.request.SendHttpsRequest(QString::fromLatin1(pathOf(0)), http, longMs, &reply, "{}",
                                   false);
    QCOMPARE(reply, QByteArray());
    QCOMPARE(bench.log.linesWith(QStringLiteral("info: url:http://:/thread0")).size(), 1);
}

QTEST_MAIN(TestConcurrentRequests)
#include "tst_concurrentrequests.moc"
