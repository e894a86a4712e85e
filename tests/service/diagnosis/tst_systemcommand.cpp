#include "service/diagnosis/systemcommand.h"
#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

namespace {

constexpr int amplyMs = 20'000;
constexpr int shortMs = 200;
constexpr qint64 atOnceMs = 20'000; // below any patience of Qt, above a slow machine
constexpr int endless = 1'000'000;  // MiB

const QString command = QStringLiteral("standin");
const QString key = QStringLiteral("default");

} // namespace

/// Commands of every manner, real processes all.
class TestSystemCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void command_isRunWithItsArguments();
    void outputOfAFailingCommand_isKept();
    void missingCommand_neitherStartsNorKeepsWaiting();
    void commandThatReadsItsInput_endsWhenItIsClosed();
    void largeOutput_isKeptWhole();
    void outputBeyondTheLimit_countsAsNeverFinishing();
    void hangingCommand_isWaitedForNoLongerThanAsked_data();
    void hangingCommand_isWaitedForNoLongerThanAsked();
    void outputBeforeTheHang_isThere();
    void limitBelowZero_isNoWaitAtAll();
    void hangingCommand_isGoneWithItsObject_data();
    void hangingCommand_isGoneWithItsObject();

private:
    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

void TestSystemCommand::init()
{
    m_folder = std::make_unique<StandInFolder>();
    m_folder->install(command);
    m_log = std::make_unique<LogCapture>();
}

void TestSystemCommand::cleanup()
{
    QCOMPARE(m_log->foreignLines(), QStringList()); // Qt complains of abandoned processes
    QVERIFY(!m_folder->isAnyAlive());
    m_log.reset();
    m_folder.reset();
}

void TestSystemCommand::command_isRunWithItsArguments()
{
    m_folder->answer(QStringLiteral("a"), "answer", "yes");
    SystemCommand run(command, {QStringLiteral("a"), QStringLiteral("-n"), QStringLiteral("1")});
    QVERIFY(run.startedWithin(amplyMs));
    QVERIFY(run.finishedWithin(amplyMs));
    QCOMPARE(run.output(), QByteArray("yes"));
    QCOMPARE(m_folder->calls(), QStringList(QStringLiteral("a -n 1")));
}

void TestSystemCommand::outputOfAFailingCommand_isKept()
{
    m_folder->answer(key, "fail", "no");
    SystemCommand run(command);
    QVERIFY(run.finishedWithin(amplyMs));
    QCOMPARE(run.output(), QByteArray("no"));
}

void TestSystemCommand::missingCommand_neitherStartsNorKeepsWaiting()
{
    QElapsedTimer clock;
    clock.start();
    SystemCommand run(QStringLiteral("no-such-command"));
    QVERIFY(!run.startedWithin(amplyMs));
    QVERIFY(run.finishedWithin(amplyMs));
    QCOMPARE(run.output(), QByteArray());
    QVERIFY(clock.elapsed() < atOnceMs);
}

void TestSystemCommand::commandThatReadsItsInput_endsWhenItIsClosed()
{
    m_folder->answer(key, "reader", "read");
    SystemCommand run(command);
    QVERIFY(run.startedWithin(amplyMs));
    run.closeInput();
    QVERIFY(run.finishedWithin(amplyMs));
    QCOMPARE(run.output(), QByteArray("read"));
}

void TestSystemCommand::largeOutput_isKeptWhole()
{
    constexpr int mebibytes = 8; // far more than a pipe holds
    m_folder->answer(key, "flood 8", "end");
    SystemCommand run(command);
    QVERIFY(run.finishedWithin(amplyMs));
    const QByteArray output = run.output();
    QVERIFY(output.size() >= mebibytes * 1024 * 1024);
    QVERIFY(output.endsWith("end"));
}

void TestSystemCommand::outputBeyondTheLimit_countsAsNeverFinishing()
{
    m_folder->answer(key, "flood 8", "end");
    SystemCommand run(command, {}, 1'000'000);
    QVERIFY(!run.finishedWithin(amplyMs));
}

void TestSystemCommand::hangingCommand_isWaitedForNoLongerThanAsked_data()
{
    QTest::addColumn<QByteArray>("manner");
    QTest::newRow("says nothing") << QByteArray("late 60000");
    QTest::newRow("has answered") << QByteArray("linger");
    QTest::newRow("ignores requests to end") << QByteArray("stubborn");
    QTest::newRow("has closed its output") << QByteArray("mute");
    QTest::newRow("prints without end") << "flood " + QByteArray::number(endless);
    QTest::newRow("waits for input") << QByteArray("reader");
}

void TestSystemCommand::hangingCommand_isWaitedForNoLongerThanAsked()
{
    QFETCH(QByteArray, manner);
    m_folder->answer(key, manner, "hello");
    QElapsedTimer clock;
    clock.start();
    {
        SystemCommand run(command);
        QVERIFY(run.startedWithin(amplyMs));
        QVERIFY(!run.finishedWithin(shortMs));
    }
    QVERIFY(clock.elapsed() < atOnceMs);
}

void TestSystemCommand::outputBeforeTheHang_isThere()
{
    m_folder->answer(key, "linger", "hello");
    SystemCommand run(command);
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT(!run.finishedWithin(1) && (output += run.output()) == "hello",
                             amplyMs);
}

void TestSystemCommand::limitBelowZero_isNoWaitAtAll()
{
    m_folder->answer(key, "linger", "hello");
    QElapsedTimer clock;
    clock.start();
    SystemCommand run(command);
    QVERIFY(run.startedWithin(amplyMs));
    QVERIFY(!run.finishedWithin(-1));
    QVERIFY(clock.elapsed() < atOnceMs);
}

void TestSystemCommand::hangingCommand_isGoneWithItsObject_data()
{
    QTest::addColumn<bool>("waitForStart");
    QTest::newRow("once it has started") << true;
    QTest::newRow("while it still starts") << false;
}

void TestSystemCommand::hangingCommand_isGoneWithItsObject()
{
    QFETCH(bool, waitForStart);
    m_folder->answer(key, "stubborn", "hello");
    QElapsedTimer clock;
    clock.start();
    {
        SystemCommand run(command);
        QVERIFY(!waitForStart || run.startedWithin(amplyMs));
    }
    QVERIFY(clock.elapsed() < atOnceMs);
}

QTEST_GUILESS_MAIN(TestSystemCommand)
#include "tst_systemcommand.moc"
