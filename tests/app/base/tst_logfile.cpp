#include "app/base/loghandler.h"
#include "tests/app/base/support/logfolder.h"
#include "tests/support/childprocess.h"
#include "tests/support/ordinaryuser.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <vector>

/// When the log file is moved away, who shares it, and what happens when it cannot be written.
/// Each test has a log folder of its own.
class TestLogFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void severalProcesses_shareTheFileWithoutTornLines();
    void fileOneByteBelowTheLimit_isNotMoved();
    void fileAtTheLimit_becomesTheBackup();
    void rotation_replacesAnOlderBackup();
    void backupThatCannotBeRemoved_losesTheLiveLog();
    void missingFolder_dropsTheMessageAndIsNotCreated();
    void readOnlyFolder_dropsTheMessage();
    void folderInPlaceOfTheLog_dropsTheMessage();
    void fullDisk_dropsTheMessage();

private:
    void fillLiveLogSoThatNextLineGives(qint64 bytes);

    std::unique_ptr<LogFolder> m_log;
};

void TestLogFile::init()
{
    m_log = std::make_unique<LogFolder>();
    initLogSetting(QStringLiteral("DEBUG"), m_log->base());
}

/// Makes the live log so long that writing the message "x" leaves it at \a bytes bytes.
void TestLogFile::fillLiveLogSoThatNextLineGives(qint64 bytes)
{
    const QString time = logTimeText(QDateTime::currentDateTime());
    const QString line = formatLogLine(QtInfoMsg, time, exampleContext(), QStringLiteral("x\r\n"));
    QVERIFY(makeFile(m_log->live(), bytes - line.size()));
}

void TestLogFile::severalProcesses_shareTheFileWithoutTornLines()
{
    constexpr int messages = 400;
    const QStringList names = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (const QString &name : names) {
        processes.push_back(std::make_unique<ChildProcess>());
        processes.back()->start(QStringLiteral(MIRAVEL_LOGWRITER),
                                {m_log->base(), name, QString::number(messages)});
    }
    for (const auto &process : processes) {
        QVERIFY(process->endsWith(0));
    }
    const QString content = QString::fromUtf8(contentOf(m_log->live()));
    const QRegularExpression whole(QStringLiteral("^Debug:\\[[^\\[\\]]+\\]: [abc]-\\d+\\.$"));
    const QStringList lines = content.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), messages * names.size());
    for (const QString &line : lines) {
        QVERIFY2(whole.match(line).hasMatch(), qUtf8Printable(line));
    }
}

void TestLogFile::fileOneByteBelowTheLimit_isNotMoved()
{
    fillLiveLogSoThatNextLineGives(tenMebibytes - 1);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QCOMPARE(QFileInfo(m_log->live()).size(), tenMebibytes - 1);
    QVERIFY(!QFile::exists(m_log->backup()));
}

void TestLogFile::fileAtTheLimit_becomesTheBackup()
{
    fillLiveLogSoThatNextLineGives(tenMebibytes);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(m_log->live()));
    QCOMPARE(QFileInfo(m_log->backup()).size(), tenMebibytes);
    QVERIFY(contentOf(m_log->backup()).endsWith("]: x\r\n"));

    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("next"));
    QCOMPARE(contentOf(m_log->live()).count("\r\n"), 1);
    QCOMPARE(QFileInfo(m_log->backup()).size(), tenMebibytes);
}

void TestLogFile::rotation_replacesAnOlderBackup()
{
    QVERIFY(makeFile(m_log->backup(), tenMebibytes * 2));
    fillLiveLogSoThatNextLineGives(tenMebibytes + 1);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(m_log->live()));
    QCOMPARE(QFileInfo(m_log->backup()).size(), tenMebibytes + 1);
}

void TestLogFile::backupThatCannotBeRemoved_losesTheLiveLog()
{
    QVERIFY(QDir().mkpath(m_log->backup() + QStringLiteral("/inner")));
    fillLiveLogSoThatNextLineGives(tenMebibytes);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(m_log->live()));
    QVERIFY(QFileInfo(m_log->backup() + QStringLiteral("/inner")).isDir());

    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("next"));
    QVERIFY(contentOf(m_log->live()).endsWith("]: next\r\n"));
}

void TestLogFile::missingFolder_dropsTheMessageAndIsNotCreated()
{
    const QString folder = m_log->file(QStringLiteral("log"));
    initLogSetting(QStringLiteral("DEBUG"), folder + QStringLiteral("/Miravel"));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    QVERIFY(!QFile::exists(folder));

    QVERIFY(QDir().mkpath(folder));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    const QByteArray content = contentOf(folder + QStringLiteral("/Miravel.log"));
    QCOMPARE(content.count("\r\n"), 1);
    QVERIFY(content.endsWith("]: kept\r\n"));
}

void TestLogFile::readOnlyFolder_dropsTheMessage()
{
    const QFile::Permissions all = QFile::permissions(m_log->path());
    QVERIFY(QFile::setPermissions(m_log->path(), QFile::ReadOwner | QFile::ExeOwner
                                                     | QFile::ReadOther | QFile::ExeOther));
    bool ignored = false;
    {
        const OrdinaryUser user;
        ignored = makeFile(m_log->file(QStringLiteral("probe")), 0);
        logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    }
    QVERIFY(QFile::setPermissions(m_log->path(), all));
    if (ignored) {
        QSKIP("This user may write into a read-only folder.");
    }
    QVERIFY(!QFile::exists(m_log->live()));
}

void TestLogFile::folderInPlaceOfTheLog_dropsTheMessage()
{
    QVERIFY(QDir().mkpath(m_log->live()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    QVERIFY(QFileInfo(m_log->live()).isDir());
    QVERIFY(QDir(m_log->live()).isEmpty());

    QVERIFY(QDir().rmdir(m_log->live()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    QVERIFY(contentOf(m_log->live()).endsWith("]: kept\r\n"));
}

void TestLogFile::fullDisk_dropsTheMessage()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFile::exists(full)) {
        QSKIP("This system has no device that is always full.");
    }
    QVERIFY(QFile::link(full, m_log->live()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    logMessageHandler(QtCriticalMsg, exampleContext(), QString(100'000, QLatin1Char('x')));
    QCOMPARE(QFileInfo(m_log->live()).symLinkTarget(), full);

    QVERIFY(QFile::remove(m_log->live()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    QVERIFY(contentOf(m_log->live()).endsWith("]: kept\r\n"));
}

QTEST_GUILESS_MAIN(TestLogFile)
#include "tst_logfile.moc"
