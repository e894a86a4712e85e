#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "tests/app/base/support/logfolder.h"
#include "tests/support/childprocess.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>

/// Which messages become which bytes of the log file. Each test has a log folder of its own.
class TestLogHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
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
    void message_isCutAtAnEmbeddedNul();
    void writtenLine_endsWithCarriageReturnAndLineFeed();
    void writtenLine_carriesTheCurrentTime();
    void writtenTime_movesOn();
    void chineseMessage_isWrittenInTheLocalesEncoding();
    void longMessage_isWrittenWhole();
    void installedHandler_namesTheCallersBareFileAndLine();
    void fatalMessage_isWrittenBeforeTheProcessEnds();

private:
    std::unique_ptr<LogFolder> m_log;
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
    m_log = std::make_unique<LogFolder>();
    initLogSetting(QStringLiteral("DEBUG"), m_log->base());
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
    initLogSetting(level, m_log->base());
    for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg}) {
        logMessageHandler(type, exampleContext(), QStringLiteral("text"));
    }
    QStringList prefixes;
    const QStringList lines = QString::fromUtf8(contentOf(m_log->live()))
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
    QVERIFY(!QFile::exists(m_log->live()));
}

void TestLogHandler::unknownPropertyInOtherCase_isWritten()
{
    logMessageHandler(QtWarningMsg, exampleContext(), QStringLiteral("unknown property"));
    logMessageHandler(QtWarningMsg, exampleContext(), QStringLiteral("Unknown Property"));
    QCOMPARE(contentOf(m_log->live()).count("\r\n"), 2);
}

void TestLogHandler::message_isCutAtAnEmbeddedNul()
{
    QString message = QStringLiteral("before");
    message += QChar(QChar::Null);
    message += QStringLiteral("after");
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(m_log->live()).endsWith("]: before\r\n"));
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
    const QString content = QString::fromUtf8(contentOf(m_log->live()));
    QVERIFY2(form.match(content).hasMatch(), qUtf8Printable(content));
}

void TestLogHandler::writtenLine_carriesTheCurrentTime()
{
    const QString before = logTimeText(QDateTime::currentDateTime());
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
    const QString after = logTimeText(QDateTime::currentDateTime());
    const QString time = QString::fromUtf8(contentOf(m_log->live()).mid(6, 19));
    QVERIFY2(before <= time && time <= after, qUtf8Printable(time));
}

void TestLogHandler::writtenTime_movesOn()
{
    constexpr int moreThanASecondMs = 3000;
    logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
    const QByteArray first = contentOf(m_log->live());
    const auto nextDiffers = [this, &first] {
        QFile::remove(m_log->live());
        logMessageHandler(QtInfoMsg, exampleContext(), QStringLiteral("text"));
        return contentOf(m_log->live()) > first;
    };
    QTRY_VERIFY_WITH_TIMEOUT(nextDiffers(), moreThanASecondMs);
}

void TestLogHandler::chineseMessage_isWrittenInTheLocalesEncoding()
{
    const QString message = QStringLiteral("\u60a8\u597d");
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(m_log->live()).endsWith("]: " + message.toLocal8Bit() + "\r\n"));
}

void TestLogHandler::longMessage_isWrittenWhole()
{
    const QString message(1'000'000, QLatin1Char('x'));
    logMessageHandler(QtInfoMsg, exampleContext(), message);
    QVERIFY(contentOf(m_log->live()).endsWith("]: " + message.toLatin1() + "\r\n"));
}

void TestLogHandler::installedHandler_namesTheCallersBareFileAndLine()
{
    const QtMessageHandler previous = qInstallMessageHandler(logMessageHandler);
    const int line = __LINE__ + 1;
    LOG_WARNING() << "state: " << true << ", text: " << QStringLiteral("a b") << 5;
    qInstallMessageHandler(previous);
    const QByteArray end = " tst_loghandler.cpp  line: " + QByteArray::number(line)
                         + "]: state: true, text: a b5\r\n";
    QVERIFY2(contentOf(m_log->live()).endsWith(end), contentOf(m_log->live()).constData());
}

void TestLogHandler::fatalMessage_isWrittenBeforeTheProcessEnds()
{
    ChildProcess process;
    process.start(
        QStringLiteral(MIRAVEL_LOGWRITER),
        {m_log->base(), QStringLiteral("a"), QStringLiteral("0"), QStringLiteral("fatal")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    const QByteArray content = contentOf(m_log->live());
    QVERIFY(content.startsWith("Fatal:["));
    QVERIFY(content.endsWith("]: the end\r\n"));
}

QTEST_GUILESS_MAIN(TestLogHandler)
#include "tst_loghandler.moc"
