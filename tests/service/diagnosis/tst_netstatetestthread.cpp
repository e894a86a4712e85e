#include "service/diagnosis/netstatetestthread.h"
#include "service/diagnosis/probehosts.h"
#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

namespace {

constexpr int untouched = -7;
constexpr qint64 hungMs = 20'000; // no probe may take as long, on however slow a machine

const QString host = QStringLiteral("h.example");

QByteArray answerFrom(const QByteArray &address)
{
    return "\nPinging h [" + address + "] with 32 bytes of data:\nReply from " + address
         + ": bytes=32 time=3ms TTL=64\n    Packets: Sent = 1, Received = 1, Lost = 0 (0% loss),\n";
}

QStringList onePingOfEach(const QStringList &hosts)
{
    QStringList calls;
    for (const QString &name : hosts) {
        calls.append(name + QStringLiteral(" -n 1"));
    }
    return calls;
}

struct Result
{
    bool answered = false;
    QString address = QStringLiteral("before");
    int averageMs = untouched;
    int lossPercent = untouched;
};

Result ping(int count = 1)
{
    Result result;
    result.answered = NetStateTestThread::Ping(host, result.address, &result.averageMs, count,
                                               &result.lossPercent);
    return result;
}

bool isUntouched(const Result &result)
{
    return result.address == QStringLiteral("before") && result.averageMs == untouched
        && result.lossPercent == untouched;
}

} // namespace

/// Single pings and the network judgement, with a stand-in for the ping program.
class TestNetStateTestThread : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void ping_isCalledWithHostAndCount();
    void answer_fillsAllResults();
    void answerInTheLocalEncoding_isUnderstood();
    void lossNotAskedFor_isNotParsed();
    void answerWithAnErrorStatus_counts();
    void pingThatEndsWithAnError_fails();
    void pingThatAnswersNothing_fails();
    void missingPing_fails();
    void pingThatNeverExits_failsAfterASecond_data();
    void pingThatNeverExits_failsAfterASecond();
    void pingTwice_mayTakeTwoSeconds();
    void pingNoTimes_failsAtOnce_data();
    void pingNoTimes_failsAtOnce();
    void pingThatPrintsALot_isUnderstood();
    void judgement_followsTheFirstAnswer_data();
    void judgement_followsTheFirstAnswer();
    void judgementWithoutAnyAnswer_isNoNetwork();
    void judgementWithoutPing_isNoNetwork();
    void judgementKeepsNothing_fromTheRunBefore();

private:
    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

void TestNetStateTestThread::init()
{
    m_folder = std::make_unique<StandInFolder>();
    const QString test = QLatin1String(QTest::currentTestFunction());
    if (test != QStringLiteral("missingPing_fails")
        && test != QStringLiteral("judgementWithoutPing_isNoNetwork")) {
        m_folder->install(QStringLiteral("ping"));
    }
    m_log = std::make_unique<LogCapture>();
}

void TestNetStateTestThread::cleanup()
{
    QCOMPARE(m_log->foreignLines(), QStringList()); // Qt complains of abandoned processes
    QVERIFY(!m_folder->isAnyAlive());
    m_log.reset();
    m_folder.reset();
}

void TestNetStateTestThread::ping_isCalledWithHostAndCount()
{
    m_folder->answer(host, "answer", answerFrom("203.0.113.9"));
    QVERIFY(ping(3).answered);
    QCOMPARE(m_folder->calls(), QStringList(QStringLiteral("h.example -n 3")));
}

void TestNetStateTestThread::answer_fillsAllResults()
{
    m_folder->answer(host, "answer", answerFrom("203.0.113.9"));
    const Result result = ping();
    QVERIFY(result.answered);
    QCOMPARE(result.address, QStringLiteral("203.0.113.9"));
    QCOMPARE(result.averageMs, 0); // the summary is not in Chinese
    QCOMPARE(result.lossPercent, 0);
    QCOMPARE(m_log->lines(), QStringList());
}

void TestNetStateTestThread::answerInTheLocalEncoding_isUnderstood()
{
    const QString output = QStringLiteral("正在 Ping h.example [10.1.2.3]\n"
                                          "来自 10.1.2.3 的回复: 字节=32 时间=12ms\n"
                                          "丢失 = 1 (50% 丢失)，\n平均 = 12ms\n");
    if (QString::fromLocal8Bit(output.toLocal8Bit()) != output) {
        QSKIP("the local encoding has no Chinese characters");
    }
    m_folder->answer(host, "answer", output.toLocal8Bit());
    const Result result = ping();
    QVERIFY(result.answered);
    QCOMPARE(result.address, QStringLiteral("10.1.2.3"));
    QCOMPARE(result.averageMs, 12);
    QCOMPARE(result.lossPercent, 50);
}

void TestNetStateTestThread::lossNotAskedFor_isNotParsed()
{
    m_folder->answer(host, "answer", answerFrom("203.0.113.9"));
    QString address;
    int averageMs = untouched;
    QVERIFY(NetStateTestThread::Ping(host, address, &averageMs, 1, nullptr));
    QCOMPARE(address, QStringLiteral("203.0.113.9"));
}

void TestNetStateTestThread::answerWithAnErrorStatus_counts()
{
    m_folder->answer(host, "fail", answerFrom("203.0.113.9"));
    QVERIFY(ping().answered);
}

void TestNetStateTestThread::pingThatEndsWithAnError_fails()
{
    const Result result = ping();
    QVERIFY(!result.answered);
    QVERIFY(isUntouched(result));
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: Ping h.example failed")));
}

void TestNetStateTestThread::pingThatAnswersNothing_fails()
{
    m_folder->answer(host, "answer", "");
    QVERIFY(!ping().answered);
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: Ping h.example failed")));
}

void TestNetStateTestThread::missingPing_fails()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own ping");
#endif
    const Result result = ping();
    QVERIFY(!result.answered);
    QVERIFY(isUntouched(result));
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("debug: Ping h.example start failed!")));
}

void TestNetStateTestThread::pingThatNeverExits_failsAfterASecond_data()
{
    QTest::addColumn<QByteArray>("manner");
    QTest::newRow("says nothing") << QByteArray("late 60000");
    QTest::newRow("has answered, ignores requests to end") << QByteArray("stubborn");
    QTest::newRow("prints without end") << QByteArray("flood 1000000");
}

void TestNetStateTestThread::pingThatNeverExits_failsAfterASecond()
{
    QFETCH(QByteArray, manner);
    m_folder->answer(host, manner, answerFrom("203.0.113.9"));
    QElapsedTimer clock;
    clock.start();
    const Result result = ping();
    QVERIFY(!result.answered);
    QVERIFY(isUntouched(result));
    QVERIFY(clock.elapsed() < hungMs);
    QCOMPARE(m_log->lines(),
             QStringList(QStringLiteral("debug: Ping h.example waitForFinished failed!")));
}

void TestNetStateTestThread::pingTwice_mayTakeTwoSeconds()
{
    m_folder->answer(host, "late 1100", answerFrom("203.0.113.9"));
    QVERIFY(ping(2).answered);
}

void TestNetStateTestThread::pingNoTimes_failsAtOnce_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("none") << 0;
    QTest::newRow("less than none") << -1;
}

void TestNetStateTestThread::pingNoTimes_failsAtOnce()
{
    QFETCH(int, count);
    m_folder->answer(host, "stubborn", answerFrom("203.0.113.9"));
    QVERIFY(!ping(count).answered);
    QCOMPARE(m_log->lines(),
             QStringList(QStringLiteral("debug: Ping h.example waitForFinished failed!")));
}

void TestNetStateTestThread::pingThatPrintsALot_isUnderstood()
{
    constexpr int count = 60; // as many seconds as a busy machine may need for it
    m_folder->answer(host, "flood 8", answerFrom("203.0.113.9"));
    const Result result = ping(count);
    QVERIFY(result.answered);
    QCOMPARE(result.address, QStringLiteral("203.0.113.9"));
}

void TestNetStateTestThread::judgement_followsTheFirstAnswer_data()
{
    const QString web = webProbeHost();
    const QString it = itProbeHost();
    const QString dns1 = QStringLiteral("8.8.8.8");
    const QString dns2 = QStringLiteral("114.114.114.114");
    const QString cloud = cloudProbeHost();
    const QByteArray inside = "10.1.2.3";
    const QByteArray outside = "203.0.113.9";

    QTest::addColumn<QString>("answering");
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<int>("judgement");
    QTest::addColumn<QStringList>("probed");
    QTest::newRow("web host, internal address") << web << inside << 0 << QStringList{web};
    QTest::newRow("web host, other address") << web << outside << 1 << QStringList{web};
    QTest::newRow("web host, address that only looks alike")
        << web << QByteArray("100.1.2.3") << 1 << QStringList{web};
    QTest::newRow("web host, internal address further on")
        << web << QByteArray("203.10.1.2") << 1 << QStringList{web};
    QTest::newRow("IT host, internal address") << it << inside << 0 << QStringList{web, it};
    QTest::newRow("IT host, other address") << it << outside << 1 << QStringList{web, it};
    QTest::newRow("first public name server")
        << dns1 << QByteArray("8.8.8.8") << 1 << QStringList{web, it, dns1};
    QTest::newRow("first public name server behind an internal address")
        << dns1 << inside << 1 << QStringList{web, it, dns1};
    QTest::newRow("second public name server")
        << dns2 << QByteArray("114.114.114.114") << 1 << QStringList{web, it, dns1, dns2};
    QTest::newRow("cloud-desktop host only, internal address")
        << cloud << inside << 0 << QStringList{web, it, dns1, dns2, cloud};
    QTest::newRow("cloud-desktop host only, other address")
        << cloud << outside << 1 << QStringList{web, it, dns1, dns2, cloud};
}

void TestNetStateTestThread::judgement_followsTheFirstAnswer()
{
    QFETCH(QString, answering);
    QFETCH(QByteArray, address);
    QFETCH(int, judgement);
    QFETCH(QStringList, probed);
    m_folder->answer(answering, "answer", answerFrom(address));
    NetStateTestThread diagnosis;
    QCOMPARE(diagnosis.InternalExternal_netJudg(), judgement);
    QCOMPARE(m_folder->calls(), onePingOfEach(probed));
}

void TestNetStateTestThread::judgementWithoutAnyAnswer_isNoNetwork()
{
    NetStateTestThread diagnosis;
    QCOMPARE(diagnosis.InternalExternal_netJudg(), 2);
    QCOMPARE(m_folder->calls(), onePingOfEach({webProbeHost(), itProbeHost(), publicDns1(),
                                               publicDns2(), cloudProbeHost()}));
}

void TestNetStateTestThread::judgementWithoutPing_isNoNetwork()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own ping");
#endif
    NetStateTestThread diagnosis;
    QCOMPARE(diagnosis.InternalExternal_netJudg(), 2);
    QCOMPARE(m_log->linesWith(QStringLiteral("debug: Ping ")).size(), 5);
}

void TestNetStateTestThread::judgementKeepsNothing_fromTheRunBefore()
{
    NetStateTestThread diagnosis;
    m_folder->answer(webProbeHost(), "answer", answerFrom("10.1.2.3"));
    QCOMPARE(diagnosis.InternalExternal_netJudg(), 0);
    m_folder->answer(webProbeHost(), "answer", answerFrom("203.0.113.9"));
    QCOMPARE(diagnosis.InternalExternal_netJudg(), 1);
}

QTEST_GUILESS_MAIN(TestNetStateTestThread)
#include "tst_netstatetestthread.moc"
