#include "service/diagnosis/netstatetestthread.h"
#include "service/diagnosis/probehosts.h"
#include "tests/standins/standinfolder.h"
#include "tests/standins/standinregistry.h"
#include "tests/standins/standinvpnclient.h"
#include "tests/support/logcapture.h"

#include <QRegularExpression>
#include <QTest>
#include <QThread>
#include <QVector>

#include <memory>

namespace {

constexpr int amplyMs = 30'000;
constexpr int vpnState = 4;

QByteArray answerFrom(const QByteArray &address)
{
    return "Pinging h [" + address + "] with 32 bytes of data:\nReply: time=3ms TTL=64\n";
}

QStringList diagnosisLines(const QStringList &lines)
{
    return lines.filter(QStringLiteral("debug: "))
        .filter(QRegularExpression(QStringLiteral("^(?!debug: Ping )")));
}

/// One diagnosis, run in a worker thread that begins and ends with this object. Its findings are
/// taken on the thread that made it.
class DiagnosisRun : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(DiagnosisRun)

public:
    DiagnosisRun()
    {
        connect(&m_diagnosis, &NetStateTestThread::netStateInfo_signal, this, &DiagnosisRun::take);
        connect(&m_worker, &QThread::started, &m_diagnosis, &NetStateTestThread::netStateInfo_get);
        m_diagnosis.moveToThread(&m_worker);
        m_worker.start();
    }

    ~DiagnosisRun() override
    {
        m_worker.quit();
        m_worker.wait();
    }

    /// The four values of the signal, waited for; none when it never came, or on a wrong thread.
    QVector<int> findings()
    {
        return QTest::qWaitFor([this] { return !m_findings.isEmpty(); }, amplyMs) ? m_findings
                                                                                  : QVector<int>();
    }

private:
    void take(int netJudg, int localState, int desktopServerState, int norvikState)
    {
        if (QThread::currentThread() == thread()) {
            m_findings = {netJudg, localState, desktopServerState, norvikState};
        }
    }

    QThread m_worker;
    NetStateTestThread m_diagnosis;
    QVector<int> m_findings;
};

} // namespace

/// The whole diagnosis, run in a worker thread, reported to the main thread.
class TestNetStateInfo : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void allWell_isReportedAcrossThreads();
    void nothingAnswers_isReported();
    void findings_areIndependentOfEachOther();
    void twoRunsAtOnce_doNotMeet();

private:
    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

void TestNetStateInfo::init()
{
    m_folder = std::make_unique<StandInFolder>();
    m_folder->install(QStringLiteral("ping"));
    m_log = std::make_unique<LogCapture>();
}

void TestNetStateInfo::cleanup()
{
    QCOMPARE(m_log->foreignLines(), QStringList());
    QVERIFY(!m_folder->isAnyAlive());
    m_log.reset();
    m_folder.reset();
}

void TestNetStateInfo::allWell_isReportedAcrossThreads()
{
    for (const QString &host : {webProbeHost(), itProbeHost(), cloudProbeHost()}) {
        m_folder->answer(host, "answer", answerFrom("10.1.2.3"));
    }
    if (StandInRegistry::whyNot() != nullptr) {
        QSKIP(StandInRegistry::whyNot());
    }
    QStringList lines{QStringLiteral("debug: InternalExternal_netJudg:0"),
                      QStringLiteral("debug: Local network status:1"),
                      QStringLiteral("debug: Cloud desktop server status:1")};
    qputenv("STANDIN_STATE", QByteArray::number(vpnState));
    qputenv("STANDIN_ACCOUNT", "zhangsan");
    StandInRegistry registry;
    registerVpnClient(registry,
                      installVpnClient(m_folder->path(), QStringLiteral(STANDIN_TOOLSDK)));
    lines.append(QStringLiteral("debug: accountzhangsan"));
    lines.append(QStringLiteral("debug: NORVIK status:%1").arg(vpnState));
    QCOMPARE(DiagnosisRun().findings(), (QVector<int>{0, 1, 1, vpnState}));
    QCOMPARE(m_log->lines(), lines);
}

void TestNetStateInfo::nothingAnswers_isReported()
{
    QCOMPARE(DiagnosisRun().findings(), (QVector<int>{2, 0, 0, -1}));
    QCOMPARE(m_folder->calls().size(), 7);
    QCOMPARE(diagnosisLines(m_log->lines()),
             (QStringList{QStringLiteral("debug: InternalExternal_netJudg:2"),
                          QStringLiteral("debug: Local network status:0"),
                          QStringLiteral("debug: Cloud desktop server status:0"),
                          QStringLiteral("debug: NORVIK status:-1")}));
}

void TestNetStateInfo::findings_areIndependentOfEachOther()
{
    m_folder->answer(publicDns1(), "answer", answerFrom(publicDns1().toLatin1()));
    m_folder->answer(cloudProbeHost(), "answer", answerFrom("203.0.113.9"));
    QCOMPARE(DiagnosisRun().findings(), (QVector<int>{1, 0, 1, -1}));
    const QString once = QStringLiteral(" -n 1");
    QCOMPARE(m_folder->calls(),
             (QStringList{webProbeHost() + once, itProbeHost() + once, publicDns1() + once,
                          itProbeHost() + once, cloudProbeHost() + once}));
}

void TestNetStateInfo::twoRunsAtOnce_doNotMeet()
{
    m_folder->answer(webProbeHost(), "answer", answerFrom("10.1.2.3"));
    DiagnosisRun first;
    DiagnosisRun second;
    QCOMPARE(first.findings(), (QVector<int>{0, 0, 0, -1}));
    QCOMPARE(second.findings(), (QVector<int>{0, 0, 0, -1}));
}

QTEST_GUILESS_MAIN(TestNetStateInfo)
#include "tst_netstateinfo.moc"
