#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "tests/app/base/support/logfolder.h"
#include "tests/support/childprocess.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr int threads = 8;
constexpr int messagesPerThread = 400;

QStringList linesOf(const QString &path)
{
    const QByteArray content = contentOf(path);
    return QString::fromUtf8(content.mid(content.lastIndexOf('\0') + 1))
        .split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
}

/// Logs \a messages from each of all threads at once, with \a padding behind each, and waits for
/// them.
void logFromManyThreads(int messages, const QString &padding = QString())
{
    std::atomic<int> ready = 0;
    std::vector<std::thread> workers;
    workers.reserve(threads);
    for (int number = 0; number < threads; ++number) {
        workers.emplace_back([number, messages, padding, &ready] {
            ++ready;
            while (ready < threads) {
                std::this_thread::yield();
            }
            for (int i = 0; i < messages; ++i) {
                LOG_INFO() << "message " << number << "-" << i << "." << padding;
            }
        });
    }
    for (std::thread &worker : workers) {
        worker.join();
    }
}

} // namespace

/// Messages of many threads at once in the one log file.
class TestLogThreads : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void manyThreads_writeEveryLineWholeAndOnce();
    void manyThreads_loseNoLineAcrossARotation();
    void manyThreads_tearNoLineAcrossManyRotations();
    void firstMessages_ofManyThreads_carryTheTime();

private:
    void checkWhole(const QStringList &lines);

    std::unique_ptr<LogFolder> m_log;
    QtMessageHandler m_previous = nullptr;
    QSet<QString> m_messages; // found in the lines checked so far
};

void TestLogThreads::init()
{
    m_log = std::make_unique<LogFolder>();
    m_messages.clear();
    initLogSetting(QStringLiteral("INFO"), m_log->base());
    m_previous = qInstallMessageHandler(logMessageHandler);
}

void TestLogThreads::cleanup()
{
    qInstallMessageHandler(m_previous);
}

void TestLogThreads::checkWhole(const QStringList &lines)
{
    static const QRegularExpression whole(
        QStringLiteral("^Info:\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d "
                       "tst_logthreads.cpp  line: \\d+\\]: (message \\d-\\d+\\.)x*$"));
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = whole.match(line);
        QVERIFY2(match.hasMatch(), qUtf8Printable(line));
        QVERIFY2(!m_messages.contains(match.captured(1)), qUtf8Printable(line));
        m_messages.insert(match.captured(1));
    }
}

void TestLogThreads::manyThreads_writeEveryLineWholeAndOnce()
{
    logFromManyThreads(messagesPerThread);
    checkWhole(linesOf(m_log->live()));
    QCOMPARE(m_messages.size(), threads * messagesPerThread);
}

void TestLogThreads::manyThreads_loseNoLineAcrossARotation()
{
    constexpr qint64 roomBeforeRotation = 50'000; // less than the lines need
    QVERIFY(makeFile(m_log->live(), tenMebibytes - roomBeforeRotation));
    logFromManyThreads(messagesPerThread);
    QVERIFY(QFileInfo(m_log->backup()).size() >= tenMebibytes);
    checkWhole(linesOf(m_log->backup()));
    checkWhole(linesOf(m_log->live()));
    QCOMPARE(m_messages.size(), threads * messagesPerThread);
}

void TestLogThreads::manyThreads_tearNoLineAcrossManyRotations()
{
    constexpr int messages = 30;
    constexpr int paddingLength = 200'000; // 48 MB in all, more than four times the limit
    logFromManyThreads(messages, QString(paddingLength, QLatin1Char('x')));
    QVERIFY(QFileInfo(m_log->backup()).size() >= tenMebibytes);
    QVERIFY(QFileInfo(m_log->live()).size() < tenMebibytes);
    const QStringList kept = linesOf(m_log->backup()) + linesOf(m_log->live());
    checkWhole(kept);
    QCOMPARE(m_messages.size(), kept.size());
}

void TestLogThreads::firstMessages_ofManyThreads_carryTheTime()
{
#ifdef Q_OS_WIN
    QSKIP("takes hundreds of processes, which are slow to start here");
#else
    // Qt's calendars are made once in a process; of 200, one or two lost the time of a line.
    constexpr int processes = 200;
    constexpr int together = 4;
    constexpr int patienceMs = 120'000;
    // A shell starts them, so that the process that the thread sanitizer watches is forked once.
    ChildProcess shell;
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-ec"),
                 QStringLiteral("for i in $(seq $3); do \"$0\" \"$1\" m $2 together; done"),
                 QStringLiteral(MIRAVEL_LOGWRITER), m_log->base(), QString::number(together),
                 QString::number(processes)});
    QVERIFY2(shell.endsWith(EXIT_SUCCESS, patienceMs), shell.readAllStandardError().constData());
    const QStringList lines = linesOf(m_log->live());
    QCOMPARE(lines.size(), processes * together);
    for (const QString &line : lines) {
        QVERIFY2(!line.contains(QLatin1String("[ ")), qUtf8Printable(line));
    }
#endif
}

QTEST_GUILESS_MAIN(TestLogThreads)
#include "tst_logthreads.moc"
