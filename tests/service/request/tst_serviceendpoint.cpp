#include "service/request/serviceendpoint.h"

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

/// The process-wide endpoint.
class TestServiceEndpoint : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void endpoint_isEmptyAtFirst();
    void endpoint_isKeptUnchanged();
    void complete_needsBothHalves();
    void readers_neverSeeHalvesOfTwoResolutions();
};

namespace {

constexpr int writerCount = 3;
constexpr int readerCount = 3;
constexpr int roundCount = 3000;

bool fitsTogether(const ServiceEndpoint &endpoint)
{
    return endpoint.strAddr == endpoint.strPort;
}

void resolveAgainAndAgain(int writer)
{
    const QString text = QString::number(writer);
    for (int round = 0; round < roundCount; ++round) {
        setResolvedEndpoint({});
        setResolvedEndpoint({text, text});
    }
}

} // namespace

void TestServiceEndpoint::init()
{
    setResolvedEndpoint({});
}

void TestServiceEndpoint::endpoint_isEmptyAtFirst()
{
    QCOMPARE(resolvedEndpoint().strAddr, QString());
    QCOMPARE(resolvedEndpoint().strPort, QString());
}

void TestServiceEndpoint::endpoint_isKeptUnchanged()
{
    setResolvedEndpoint({QStringLiteral(" Host "), QStringLiteral("443 ")});
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral(" Host "));
    QCOMPARE(resolvedEndpoint().strPort, QStringLiteral("443 "));
}

void TestServiceEndpoint::complete_needsBothHalves()
{
    const QString text = QStringLiteral("x");
    QVERIFY(ServiceEndpoint({text, text}).isComplete());
    QVERIFY(!ServiceEndpoint({text, QString()}).isComplete());
    QVERIFY(!ServiceEndpoint({QString(), text}).isComplete());
    QVERIFY(!ServiceEndpoint().isComplete());
}

void TestServiceEndpoint::readers_neverSeeHalvesOfTwoResolutions()
{
    std::atomic<int> torn = 0;
    const auto readAgainAndAgain = [&torn] {
        for (int round = 0; round < roundCount; ++round) {
            torn += fitsTogether(resolvedEndpoint()) ? 0 : 1;
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(writerCount + readerCount);
    for (int writer = 0; writer < writerCount; ++writer) {
        threads.emplace_back(resolveAgainAndAgain, writer);
    }
    for (int reader = 0; reader < readerCount; ++reader) {
        threads.emplace_back(readAgainAndAgain);
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(torn.load(), 0);
    QVERIFY(resolvedEndpoint().isComplete());
}

QTEST_GUILESS_MAIN(TestServiceEndpoint)
#include "tst_serviceendpoint.moc"
