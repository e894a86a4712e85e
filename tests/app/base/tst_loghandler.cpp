#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "tests/support/childprocess.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

namespace {

constexpr qint64 tenMebibytes = 10'485'760;
const char exampleFile[] = "main.cpp";
constexpr int exampleLine = 82;

QMessageLogContext exampleContext()
{
    return {exampleFile, exampleLine, "int main()", "default"};
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Makes \a path a file of \a bytes bytes without writing them.
bool makeFile(const QString &path, qint64 bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.resize(bytes);
}

} // namespace

/// What the log file holds after which messages. Each test has a log folder of its own.
class TestLogHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void beforeTheSetting_thresholdIsZeroAndPathIsEmpty();
    void levelName_givesTheThreshold_data();
    void levelName_givesTheThreshold();
    void messageType_givesPrefixAndLevel_data();
    void messageType_givesPrefixAndLevel();
    void messageAtTheThreshold_isWrittenAndBelowIsNot_data();
    void messageAtTheThreshold_isWrittenAndBelowIsNot();
    void unknownProperty_isNeverWritten_data();
    void unknownProperty_isNeverWritten();
    void unknownPropertyInOtherCase_isWritten();

    void sourceFile_isCutAtTheLastBackslashOnly_data();
    void sourceFile_isCutAtTheLastBackslashOnly();
    void line_hasTheFixedForm();
    void lineWithoutContext_hasAnEmptyFileAndLineZero();
    void time_isWrittenWith24HoursAndLeadingZeros();
    void placeMarkersInTheMessage_stay();
    void placeMarkerInTheFileName_isFilledByTheLaterValue();
    void message_isCutAtAnEmbeddedNul();

    void writtenLine_endsWithCarriageReturnAndLineFeed();
    void writtenLine_carriesTheCurrentTime();
    void writtenTime_movesOn();
    void chineseMessage_isWrittenInTheLocalesEncoding();
    void longMessage_isWrittenWhole();
    void installedHandler_namesTheCallersBareFileAndLine();
    void fatalMessage_isWrittenBeforeTheProcessEnds();
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
    [[nodiscard]] QString basePath() const { return m_folder->filePath(QStringLiteral("Miravel")); }
    [[nodiscard]] QString livePath() const { return basePath() + QStringLiteral(".log"); }
    [[nodiscard]] QString backupPath() const { return livePath() + QStringLiteral(".bk"); }
    void fillLiveLogSoThatNextLineGives(qint64 bytes);

    std::unique_ptr<QTemporaryDir> m_folder;
    qint32 m_firstThreshold = -1;
    QString m_firstPath;
};

void TestLogHandler::initTestCase()
{
    m_firstThreshold = logLevelThreshold;
    m_firstPath = logBasePath;
}

void TestLogHandler::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    initLogSetting(QStringLiteral("DEBUG"), basePath());
}

void TestLogHandler::cleanup()
{
    m_folder.reset();
}

void TestLogHandler::beforeTheSetting_thresholdIsZeroAndPathIsEmpty()
{
    QCOMPARE(m_firstThreshold, 0);
    QCOMPARE(m_firstPath, QString());
}

void TestLogHandler::levelName_givesTheThreshold_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<qint32>("threshold");
    QTest::newRow("DEBUG") << QStringLiteral("DEBUG") << 1;
    QTest::newRow("INFO") << QStringLiteral("INFO") << 2;
    QTest::newRow("WARN") << QStringLiteral("WARN") << 3;
    QTest::newRow("ERROR") << QStringLiteral("ERROR") << 4;
    QTest::newRow("FATAL") << QStringLiteral("FATAL") << 5;
    QTest::newRow("small letters") << QStringLiteral("warn") << 3;
    QTest::newRow("mixed letters") << QStringLiteral("Info") << 2;
    QTest::newRow("WARNING is no name") << QStringLiteral("WARNING") << 4;
    QTest::newRow("unknown") << QStringLiteral("TRACE") << 4;
    QTest::newRow("number") << QStringLiteral("1") << 4;
    QTest::newRow("blank before") << QStringLiteral(" DEBUG") << 4;
    QTest::newRow("empty") << QStringLiteral("") << 4;
    QTest::newRow("missing") << QString() << 4;
}

void TestLogHandler::levelName_givesTheThreshold()
{
    QFETCH(QString, level);
    QFETCH(qint32, threshold);
    initLogSetting(level, QStringLiteral("log/Miravel"));
    QCOMPARE(logLevelThreshold, threshold);
    QCOMPARE(logBasePath, QStringLiteral("log/Miravel"));
}

void TestLogHandler::messageType_givesPrefixAndLevel_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<qint32>("number");
    QTest::newRow("debug") << int(QtDebugMsg) << QStringLiteral("Debug:") << 1;
    QTest::newRow("info") << int(QtInfoMsg) << QStringLiteral("Info:") << 2;
    QTest::newRow("warning") << int(QtWarningMsg) << QStringLiteral("Warning:") << 3;
    QTest::newRow("critical") << int(QtCriticalMsg) << QStringLiteral("Critical:") << 4;
    QTest::newRow("fatal") << int(QtFatalMsg) << QStringLiteral("Fatal:") << 5;
    QTest::newRow("any other value") << 7 << QStringLiteral("Critical:") << 4;
}

void TestLogHandler::messageType_givesPrefixAndLevel()
{
    QFETCH(int, type);
    QFETCH(QString, prefix);
    QFETCH(qint32, number);
    const MessageLevel level = msgTypeToLevel(static_cast<QtMsgType>(type));
    QCOMPARE(QString(level.prefix), prefix);
    QCOMPARE(level.number, number);
}

void TestLogHandler::messageAtTheThreshold_isWrittenAndBelowIsNot_data()
{
    QTest::addColumn<QString>("level");
    QTest::addColumn<QStringList>("written");
    const QStringList all
        = {QStringLiteral("Debug:"), QStringLiteral("Info:"), QStringLiteral("Warning:"),
           QStringLiteral("Critical:"), QStringLiteral("Fatal:")};
    QTest::newRow("DEBUG") << QStringLiteral("DEBUG") << all;
    QTest::newRow("INFO") << QStringLiteral("INFO") << QStringList(all.mid(1));
    QTest::newRow("WARN") << QStringLiteral("WARN") << QStringList(all.mid(2));
    QTest::newRow("ERROR") << QStringLiteral("ERROR") << QStringList(all.mid(3));
    QTest::newRow("FATAL") << QStringLiteral("FATAL") << QStringList(all.mid(4));
    QTest::newRow("missing") << QString() << QStringList(all.mid(3));
}

void TestLogHandler::messageAtTheThreshold_isWrittenAndBelowIsNot()
{
    QFETCH(QString, level);
    QFETCH(QStringList, written);
    initLogSetting(level, basePath());
    for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg}) {
        logMessageHandler(type, exampleContext(), QStringLiteral("text"));
    }
    QStringList prefixes;
    const QStringList lines = QString::fromUtf8(contentOf(livePath()))
                                  .split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        prefixes << line.left(line.indexOf(QLatin1Char('[')));
    }
    QCOMPARE(prefixes, written);
    for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg}) {
        QCOMPARE(isLogged(type), written.contains(msgTypeToLevel(type).prefix));
    }
}

void TestLogHandler::unknownProperty_isNeverWritten_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("message");
    QTest::newRow("warning") << int(QtWarningMsg) << QStringLiteral("Unknown property colour");
    QTest::newRow("alone") << int(QtDebugMsg) << QStringLiteral("Unknown property");
    QTest::newRow("anywhere") << int(QtCriticalMsg) << QStringLiteral("label: Unknown property.");
    QTest::newRow("fatal") << int(QtFatalMsg) << QStringLiteral("Unknown propertyname");
}

void TestLogHandler::unknownProperty_isNeverWritten()
{
    QFETCH(int, type);
    QFETCH(QString, message);
    logMessageHandler(static_cast<QtMsgType>(type), exampleContext(), message);
    QVERIFY(!QFile::exists(livePath()));
}

void TestLogHandler::unknownPropertyInOtherCase_isWritten()
{
    logMessageHandler(QtWarningMsg, exampleContext(), QStringLiteral("unknown property"));
    logMessageHandler(QtWarningMsg, exampleContext(), QStringLiteral("Unknown Property"));
    QCOMPARE(contentOf(livePath()).count("\r\n"), 2);
}

void TestLogHandler::sourceFile_isCutAtTheLastBackslashOnly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    const QString slashes = QStringLiteral("EnvironmentalTest/netstatetestthread.cpp");
    QTest::newRow("backslashes") << QStringLiteral("D:\\build\\src\\main.cpp")
                                 << QStringLiteral("main.cpp");
    QTest::newRow("slashes") << slashes << slashes;
    QTest::newRow("both") << QStringLiteral("D:\\build\\src/main.cpp")
                          << QStringLiteral("src/main.cpp");
    QTest::newRow("bare") << QStringLiteral("main.cpp") << QStringLiteral("main.cpp");
    QTest::newRow("backslash at the end") << QStringLiteral("D:\\build\\") << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TestLogHandler::sourceFile_isCutAtTheLastBackslashOnly()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QVERIFY(sourceFileName(path) == name);
    const QByteArray file = path.toUtf8();
    const QMessageLogContext context(file.constData(), exampleLine, "", "default");
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("now"), context, QString()),
             QStringLiteral("Info:[now ") + name + QStringLiteral("  line: 82]: "));
}

void TestLogHandler::line_hasTheFixedForm()
{
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("2024-03-05 09:15:02"), exampleContext(),
                           QStringLiteral("Caller Type: vdi")),
             QStringLiteral("Info:[2024-03-05 09:15:02 main.cpp  line: 82]: Caller Type: vdi"));
}

void TestLogHandler::lineWithoutContext_hasAnEmptyFileAndLineZero()
{
    QCOMPARE(formatLogLine(QtWarningMsg, QStringLiteral("2024-03-05 09:15:02"),
                           QMessageLogContext(), QStringLiteral("text")),
             QStringLiteral("Warning:[2024-03-05 09:15:02   line: 0]: text"));
}

void TestLogHandler::time_isWrittenWith24HoursAndLeadingZeros()
{
    const QDate date(2024, 3, 5);
    QCOMPARE(logTimeText(QDateTime(date, QTime(9, 5, 2, 999))),
             QStringLiteral("2024-03-05 09:05:02"));
    QCOMPARE(logTimeText(QDateTime(date, QTime(21, 0))), QStringLiteral("2024-03-05 21:00:00"));
    QCOMPARE(logTimeText(QDateTime(date, QTime(0, 0))), QStringLiteral("2024-03-05 00:00:00"));
}

void TestLogHandler::placeMarkersInTheMessage_stay()
{
    const QString message = QStringLiteral("%1 100% %2%3 %4 %% %L1 %99");
    const QString line = formatLogLine(QtInfoMsg, QStringLiteral("now"), exampleContext(), message);
    QCOMPARE(line, QStringLiteral("Info:[now main.cpp  line: 82]: ") + message);
}

void TestLogHandler::placeMarkerInTheFileName_isFilledByTheLaterValue()
{
    const QMessageLogContext context("%4.cpp", exampleLine, "", "default");
    QCOMPARE(formatLogLine(QtInfoMsg, QStringLiteral("now"), context, QStringLiteral("text")),
             QStringLiteral("Info:[now text.cpp  line: 82]: text"));
}

void TestLogHandler::message_isCutAtAnEmbeddedNul()
{
    QString message = QStringLiteral("before");
    message += QChar(QChar::Null);
    message += QStringLiteral("after");
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(livePath()).endsWith("]: before\r\n"));
}

void TestLogHandler::writtenLine_endsWithCarriageReturnAndLineFeed()
{
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("one"));
    logMessageHandler(QtInfoMsg, exampleContext(), QString());
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("two\nlines"));
    const QRegularExpression form(QStringLiteral("^Info:\\[[^]]+\\]: one\r\n"
                                                 "Info:\\[[^]]+\\]: \r\n"
                                                 "Info:\\[[^]]+\\]: two\nlines\r\n$"),
                                  QRegularExpression::DotMatchesEverythingOption);
    const QString content = QString::fromUtf8(contentOf(livePath()));
    QVERIFY2(form.match(content).hasMatch(), qUtf8Printable(content));
}

void TestLogHandler::writtenLine_carriesTheCurrentTime()
{
    const QString before = logTimeText(QDateTime::currentDateTime());
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
    const QString after = logTimeText(QDateTime::currentDateTime());
    const QString time = QString::fromUtf8(contentOf(livePath()).mid(6, 19));
    QVERIFY2(before <= time && time <= after, qUtf8Printable(time));
}

void TestLogHandler::writtenTime_movesOn()
{
    constexpr int moreThanASecondMs = 3000;
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
    const QByteArray first = contentOf(livePath());
    const auto nextDiffers = [this, &first] {
        QFile::remove(livePath());
        logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
        return contentOf(livePath()) > first;
    };
    QTRY_VERIFY_WITH_TIMEOUT(nextDiffers(), moreThanASecondMs);
}

void TestLogHandler::chineseMessage_isWrittenInTheLocalesEncoding()
{
    const QString message = QStringLiteral("\u60a8\u597d");
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(livePath()).endsWith("]: " + message.toLocal8Bit() + "\r\n"));
}

void TestLogHandler::longMessage_isWrittenWhole()
{
    const QString message(1'000'000, QLatin1Char('x'));
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(livePath()).endsWith("]: " + message.toLatin1() + "\r\n"));
}

void TestLogHandler::installedHandler_namesTheCallersBareFileAndLine()
{
    const QtMessageHandler previous = qInstallMessageHandler(logMessageHandler);
    const int line = __LINE__ + 1;
    LOG_WARNING() << "state: " << true << ", text: " << QStringLiteral("a b") << 5;
    qInstallMessageHandler(previous);
    const QByteArray end = " tst_loghandler.cpp  line: " + QByteArray::number(line)
                         + "]: state: true, text: a b5\r\n";
    QVERIFY2(contentOf(livePath()).endsWith(end), contentOf(livePath()).constData());
}

void TestLogHandler::fatalMessage_isWrittenBeforeTheProcessEnds()
{
    ChildProcess process;
    process.start(QStringLiteral(MIRAVEL_LOGWRITER),
                  {basePath(), QStringLiteral("a"), QStringLiteral("0"), QStringLiteral("fatal")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    const QByteArray content = contentOf(livePath());
    QVERIFY(content.startsWith("Fatal:["));
    QVERIFY(content.endsWith("]: the end\r\n"));
}

void TestLogHandler::severalProcesses_shareTheFileWithoutTornLines()
{
#ifdef Q_OS_WIN
    QSKIP("The toolkit appends by seeking here: lines written in one instant may be lost.");
#endif
    constexpr int messages = 400;
    const QStringList names = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (const QString &name : names) {
        processes.push_back(std::make_unique<ChildProcess>());
        processes.back()->start(QStringLiteral(MIRAVEL_LOGWRITER),
                                {basePath(), name, QString::number(messages)});
    }
    for (const auto &process : processes) {
        QVERIFY(process->endsWith(0));
    }
    const QString content = QString::fromUtf8(contentOf(livePath()));
    const QRegularExpression whole(QStringLiteral("^Debug:\\[[^\\[\\]]+\\]: [abc]-\\d+\\.$"));
    const QStringList lines = content.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), messages * names.size());
    for (const QString &line : lines) {
        QVERIFY2(whole.match(line).hasMatch(), qUtf8Printable(line));
    }
}

/// Makes the live log so long that writing the message "x" leaves it at \a bytes bytes.
void TestLogHandler::fillLiveLogSoThatNextLineGives(qint64 bytes)
{
    const QString time = logTimeText(QDateTime::currentDateTime());
    const QString line = formatLogLine(QtInfoMsg, time, exampleContext(), QStringLiteral("x\r\n"));
    QVERIFY(makeFile(livePath(), bytes - line.size()));
}

void TestLogHandler::fileOneByteBelowTheLimit_isNotMoved()
{
    fillLiveLogSoThatNextLineGives(tenMebibytes - 1);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QCOMPARE(QFileInfo(livePath()).size(), tenMebibytes - 1);
    QVERIFY(!QFile::exists(backupPath()));
}

void TestLogHandler::fileAtTheLimit_becomesTheBackup()
{
    fillLiveLogSoThatNextLineGives(tenMebibytes);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(livePath()));
    QCOMPARE(QFileInfo(backupPath()).size(), tenMebibytes);
    QVERIFY(contentOf(backupPath()).endsWith("]: x\r\n"));

    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("next"));
    QCOMPARE(contentOf(livePath()).count("\r\n"), 1);
    QCOMPARE(QFileInfo(backupPath()).size(), tenMebibytes);
}

void TestLogHandler::rotation_replacesAnOlderBackup()
{
    QVERIFY(makeFile(backupPath(), tenMebibytes * 2));
    fillLiveLogSoThatNextLineGives(tenMebibytes + 1);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(livePath()));
    QCOMPARE(QFileInfo(backupPath()).size(), tenMebibytes + 1);
}

void TestLogHandler::backupThatCannotBeRemoved_losesTheLiveLog()
{
    QVERIFY(QDir().mkpath(backupPath() + QStringLiteral("/inner")));
    fillLiveLogSoThatNextLineGives(tenMebibytes);
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("x"));
    QVERIFY(!QFile::exists(livePath()));
    QVERIFY(QFileInfo(backupPath() + QStringLiteral("/inner")).isDir());

    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("next"));
    QVERIFY(contentOf(livePath()).endsWith("]: next\r\n"));
}

void TestLogHandler::missingFolder_dropsTheMessageAndIsNotCreated()
{
    const QString folder = m_folder->filePath(QStringLiteral("log"));
    initLogSetting(QStringLiteral("DEBUG"), folder + QStringLiteral("/Miravel"));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    QVERIFY(!QFile::exists(folder));

    QVERIFY(QDir().mkpath(folder));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    const QByteArray content = contentOf(folder + QStringLiteral("/Miravel.log"));
    QCOMPARE(content.count("\r\n"), 1);
    QVERIFY(content.endsWith("]: kept\r\n"));
}

void TestLogHandler::readOnlyFolder_dropsTheMessage()
{
    const QFile::Permissions all = QFile::permissions(m_folder->path());
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    const bool ignored = makeFile(m_folder->filePath(QStringLiteral("probe")), 0);
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    QVERIFY(QFile::setPermissions(m_folder->path(), all));
    if (ignored) {
        QSKIP("This user may write into a read-only folder.");
    }
    QVERIFY(!QFile::exists(livePath()));
}

void TestLogHandler::folderInPlaceOfTheLog_dropsTheMessage()
{
    QVERIFY(QDir().mkpath(livePath()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    QVERIFY(QFileInfo(livePath()).isDir());
    QVERIFY(QDir(livePath()).isEmpty());

    QVERIFY(QDir().rmdir(livePath()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    QVERIFY(contentOf(livePath()).endsWith("]: kept\r\n"));
}

void TestLogHandler::fullDisk_dropsTheMessage()
{
    const QString full = QStringLiteral("/dev/full");
    if (!QFile::exists(full)) {
        QSKIP("This system has no device that is always full.");
    }
    QVERIFY(QFile::link(full, livePath()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("lost"));
    logMessageHandler(QtCriticalMsg, exampleContext(), QString(100'000, QLatin1Char('x')));
    QCOMPARE(QFileInfo(livePath()).symLinkTarget(), full);

    QVERIFY(QFile::remove(livePath()));
    logMessageHandler(QtCriticalMsg, exampleContext(), QStringLiteral("kept"));
    QVERIFY(contentOf(livePath()).endsWith("]: kept\r\n"));
}

QTEST_GUILESS_MAIN(TestLogHandler)
#include "tst_loghandler.moc"
