#include "service/request/hotqueststhread.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QTest>

#include <memory>

/// One fetch, one emission, and then the worker is gone.
class TestHotQuestsThread : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void parent_isNotTheOwner();
    void result_arrivesOnTheMakersThreadAndTheWorkerGoes();
    void anyFailure_stillEmitsAnEmptyArray_data();
    void anyFailure_stillEmitsAnEmptyArray();
    void unreachableService_stillEmitsAnEmptyArray();
    void twoFetches_emitInTheOrderOfTheirEnds();
    void quitDuringTheReply_endsTheFetch();
    void quitDuringTheConnectionTest_endsTheFetch();
    void processExit_whileAFetchIsUnderWay_isClean();

private:
    QPointer<HotQuestsThread> startWorker();

    std::unique_ptr<TestConfig> m_config; // the installation in the working directory
    std::unique_ptr<LogCapture> m_log;
    QVector<QJsonArray> m_results;
    QVector<QThread *> m_threads; // on which they arrived
};

namespace {

constexpr int longMs = 20000;

/// The environment of a process that leaves its worker to the end of the process, on purpose.
QProcessEnvironment withoutLeakReports()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    return environment;
}

const QByteArray goodBody = R"({"errorCode":"0","result":["a","b"]})";

} // namespace

void TestHotQuestsThread::init()
{
    m_config = std::make_unique<TestConfig>();
    m_log = std::make_unique<LogCapture>();
    m_results.clear();
    m_threads.clear();
    m_config->enter();
    m_config->set(QStringLiteral("url/hoturl"), QStringLiteral("/hot"));
}

void TestHotQuestsThread::cleanup()
{
    m_log.reset();
    m_config.reset();
}

QPointer<HotQuestsThread> TestHotQuestsThread::startWorker()
{
    auto *const worker = new HotQuestsThread(this); // deletes itself
    connect(worker, &HotQuestsThread::hotQuests_signal, this, [this](const QJsonArray &questions) {
        m_results.append(questions);
        m_threads.append(QThread::currentThread());
    });
    connect(worker, &QThread::finished, worker, &QObject::deleteLater);
    worker->start();
    return worker;
}

void TestHotQuestsThread::parent_isNotTheOwner()
{
    auto owner = std::make_unique<QObject>();
    QPointer<HotQuestsThread> worker = new HotQuestsThread(owner.get());
    QVERIFY(!worker->parent());
    owner.reset();
    QVERIFY(worker);
    delete worker;
}

void TestHotQuestsThread::result_arrivesOnTheMakersThreadAndTheWorkerGoes()
{
    TestServer server;
    server.setReply(httpReply(goodBody));
    m_config->setServer(server.port());
    const QPointer<HotQuestsThread> worker = startWorker();
    QTRY_VERIFY_WITH_TIMEOUT(!worker, longMs);
    QCOMPARE(m_results.size(), 1);
    QCOMPARE(m_results.at(0), QJsonArray({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(m_threads.at(0), thread());
    QCOMPARE(m_log->foreignLines(), QStringList());
}

void TestHotQuestsThread::anyFailure_stillEmitsAnEmptyArray_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("no JSON") << httpReply("oops").bytes;
    QTest::newRow("no result") << httpReply(R"({"errorCode":"0"})").bytes;
    QTest::newRow("error") << httpReply("", "500 Internal Server Error").bytes;
    QTest::newRow("dropped") << droppedReply().bytes;
}

void TestHotQuestsThread::anyFailure_stillEmitsAnEmptyArray()
{
    QFETCH(QByteArray, reply);
    TestServer server;
    server.setReply({reply, false});
    m_config->setServer(server.port());
    startWorker();
    QTRY_COMPARE_WITH_TIMEOUT(m_results.size(), 1, longMs);
    QCOMPARE(m_results.at(0), QJsonArray());
}

void TestHotQuestsThread::unreachableService_stillEmitsAnEmptyArray()
{
    const RefusingPort refusing;
    m_config->setServer(refusing.port());
    QElapsedTimer clock;
    clock.start();
    const QPointer<HotQuestsThread> worker = startWorker();
    QTRY_VERIFY_WITH_TIMEOUT(!worker, longMs);
    QVERIFY(clock.elapsed() >= 1000);
    QCOMPARE(m_results.size(), 1);
    QCOMPARE(m_results.at(0), QJsonArray());
}

void TestHotQuestsThread::twoFetches_emitInTheOrderOfTheirEnds()
{
    TestServer server;
    server.setReplyFor("/slow", held(httpReply(R"({"errorCode":"0","result":["slow"]})")));
    server.setReplyFor("/quick", httpReply(R"({"errorCode":"0","result":["quick"]})"));
    m_config->setServer(server.port());
    m_config->set(QStringLiteral("url/hoturl"), QStringLiteral("/slow"));
    const QPointer<HotQuestsThread> slow = startWorker();
    QTRY_COMPARE_WITH_TIMEOUT(server.requests().size(), 1, longMs);
    m_config->set(QStringLiteral("url/hoturl"), QStringLiteral("/quick"));
    const QPointer<HotQuestsThread> quick = startWorker();
    QTRY_COMPARE_WITH_TIMEOUT(m_results.size(), 1, longMs);
    QVERIFY(slow);
    server.release();
    QTRY_COMPARE_WITH_TIMEOUT(m_results.size(), 2, longMs);
    QCOMPARE(m_results.at(0), QJsonArray({QStringLiteral("quick")}));
    QCOMPARE(m_results.at(1), QJsonArray({QStringLiteral("slow")}));
    QTRY_VERIFY(!slow && !quick);
}

void TestHotQuestsThread::quitDuringTheReply_endsTheFetch()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    m_config->setServer(server.port());
    const QPointer<HotQuestsThread> worker = startWorker();
    QTRY_COMPARE_WITH_TIMEOUT(server.requests().size(), 1, longMs);
    worker->quit();
    QVERIFY(worker->wait(longMs));
    QTRY_VERIFY(!worker);
    QCOMPARE(m_results, QVector<QJsonArray>({QJsonArray()}));
}

void TestHotQuestsThread::quitDuringTheConnectionTest_endsTheFetch()
{
    const RefusingPort refusing;
    m_config->setServer(refusing.port());
    QElapsedTimer clock;
    clock.start();
    const QPointer<HotQuestsThread> worker = startWorker();
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(QStringLiteral("debug: start ping")).size(), 1,
                              longMs);
    worker->quit();
    QVERIFY(worker->wait(longMs));
    QVERIFY(clock.elapsed() < 1000);
    QTRY_VERIFY(!worker);
    QCOMPARE(m_results, QVector<QJsonArray>({QJsonArray()}));
}

void TestHotQuestsThread::processExit_whileAFetchIsUnderWay_isClean()
{
    TestServer server;
    server.setReply(held(httpReply(goodBody)));
    m_config->setServer(server.port());
    QProcess process;
    process.setWorkingDirectory(m_config->root());
    process.setProcessEnvironment(withoutLeakReports());
    process.start(QStringLiteral(EXIT_PROBE),
                  {QStringLiteral("-platform"), QStringLiteral("offscreen")});
    QVERIFY(process.waitForStarted(longMs));
    QTRY_COMPARE_WITH_TIMEOUT(server.requests().size(), 1, longMs);
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(longMs));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    // Nothing is said after the request's last message.
    const QByteArrayList said = process.readAllStandardError().trimmed().split('\n');
    QVERIFY2(said.last().startsWith("mServerIP:"), said.last().constData());
}

QTEST_MAIN(TestHotQuestsThread)
#include "tst_hotqueststhread.moc"
