#include "tests/support/installation.h"
#include "tests/support/processcontrol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

Q_DECLARE_METATYPE(Installation::Layout)

namespace {

using Layout = Installation::Layout;

const QString callerLine = QStringLiteral("Caller Type: ");
const QString layoutLine = QStringLiteral("miravelVersion: ");
const QString vdi = QStringLiteral("--Type=vdi");
const QString ombra = QStringLiteral("--Type=ombra");
const QString clientVersion = QStringLiteral("VELISTRA_NEW");
const QString shortcutVersion = QStringLiteral("INVIRTUAL_SHORTCUT");

/// Whether \a line is the whole start-up line with \a message, written by the entry function.
bool isStartupLine(const QString &line, const QString &message)
{
    const QRegularExpression form(
        QStringLiteral(
            "^Info:\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d main\\.cpp  line: [1-9]\\d*\\]: ")
        + QRegularExpression::escape(message) + QLatin1Char('$'));
    return form.match(line).hasMatch();
}

/// Whether the log begins with the two start-up lines.
bool beginsWithStartup(const QStringList &lines, const QString &caller, const QString &version)
{
    return lines.size() >= 2 && isStartupLine(lines.at(0), callerLine + caller)
        && isStartupLine(lines.at(1), layoutLine + version);
}

} // namespace

/// The real program, started from outside as its callers start it.
class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void caller_decidesLayoutAndLogLines_data();
    void caller_decidesLayoutAndLogLines();
    void unknownCaller_endsWithStatusZeroAndTwoLines_data();
    void unknownCaller_endsWithStatusZeroAndTwoLines();
    void unknownOption_endsWithAMessageAndNoLog_data();
    void unknownOption_endsWithAMessageAndNoLog();
    void textBesideTheOption_isIgnored();
    void qtVariablesOfTheCaller_haveNoEffect();
    void secondStart_endsWithStatusZeroAfterItsTwoLines_data();
    void secondStart_endsWithStatusZeroAfterItsTwoLines();
    void startAfterACrash_becomesTheFirst();
    void startBesideAHungCopy_endsWithStatusZero();
    void folderForNamesThatIsTheProgramsOwn_keepsTheProgram();
};

void TestStartup::caller_decidesLayoutAndLogLines_data()
{
    QTest::addColumn<Layout>("layout");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("caller");
    QTest::addColumn<QString>("version");
    const QString type = QStringLiteral("--Type");
    QTest::newRow("no option") << Layout::Shortcut << QStringList() << QString() << shortcutVersion;
    QTest::newRow("empty value") << Layout::Shortcut << QStringList(type + QLatin1Char('='))
                                 << QString() << shortcutVersion;
    QTest::newRow("vdi") << Layout::Client << QStringList(vdi) << QStringLiteral("vdi")
                         << clientVersion;
    QTest::newRow("vdi as a word of its own")
        << Layout::Client << QStringList({type, QStringLiteral("vdi")}) << QStringLiteral("vdi")
        << clientVersion;
    QTest::newRow("ombra") << Layout::Client << QStringList(ombra) << QStringLiteral("ombra")
                           << clientVersion;
}

void TestStartup::caller_decidesLayoutAndLogLines()
{
    QFETCH(Layout, layout);
    QFETCH(QStringList, arguments);
    QFETCH(QString, caller);
    QFETCH(QString, version);
    Installation installation(layout);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
    ChildProcess &program = installation.start(arguments);
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(installation.waitForLogLines(layoutLine));
    QVERIFY(program.isRunning());
    QVERIFY2(beginsWithStartup(installation.logLines(), caller, version),
             qPrintable(installation.logLines().join(QLatin1Char('\n'))));
}

void TestStartup::unknownCaller_endsWithStatusZeroAndTwoLines_data()
{
    QTest::addColumn<QString>("caller");
    QTest::newRow("capitals") << QStringLiteral("VDI");
    QTest::newRow("mixed letters") << QStringLiteral("Ombra");
    QTest::newRow("any text") << QStringLiteral("abc");
    QTest::newRow("blank") << QStringLiteral(" ");
    QTest::newRow("place marker") << QStringLiteral("%1%4");
}

void TestStartup::unknownCaller_endsWithStatusZeroAndTwoLines()
{
    QFETCH(QString, caller);
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("DEBUG")));
    ChildProcess &program = installation.start({QStringLiteral("--Type=") + caller});
    QVERIFY(program.endsWith(0));
    QCOMPARE(program.readAllStandardOutput() + program.readAllStandardError(), QByteArray());
    QVERIFY(beginsWithStartup(installation.logLines(), caller, clientVersion));
    QCOMPARE(installation.logLines().size(), 2);
    QVERIFY(!QFile::exists(installation.localName()));
}

void TestStartup::unknownOption_endsWithAMessageAndNoLog_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown") << QStringLiteral("--colour=red") << QByteArray("colour");
    QTest::newRow("other case") << QStringLiteral("--type=vdi") << QByteArray("type");
    QTest::newRow("there is no help") << QStringLiteral("--help") << QByteArray("help");
    QTest::newRow("value missing") << QStringLiteral("--Type") << QByteArray("Type");
}

void TestStartup::unknownOption_endsWithAMessageAndNoLog()
{
    QFETCH(QString, argument);
    QFETCH(QByteArray, message);
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("DEBUG")));
    // The platform comes before the argument, which would otherwise take it as its value.
    installation.setPlatform(QString());
    ChildProcess &program
        = installation.start({QStringLiteral("-platform"), QStringLiteral("offscreen"), argument});
    QVERIFY(program.endsWith(EXIT_FAILURE));
    QVERIFY(program.readAllStandardError().contains(message));
    QVERIFY(!QFile::exists(installation.logPath()));

    // What it left behind does not hinder the next start.
    installation.setPlatform(QStringLiteral("offscreen"));
    installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
}

void TestStartup::textBesideTheOption_isIgnored()
{
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
    installation.start({QStringLiteral("text"), vdi, QStringLiteral("more")});
    QVERIFY(installation.waitForLogLines(layoutLine));
    QVERIFY(beginsWithStartup(installation.logLines(), QStringLiteral("vdi"), clientVersion));
}

void TestStartup::qtVariablesOfTheCaller_haveNoEffect()
{
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("DEBUG")));
    // The first two would fill the output and the log, the third would end the program at the
    // offscreen platform's complaint that it cannot raise a window.
    QProcessEnvironment &environment = installation.environment();
    environment.insert(QStringLiteral("QT_DEBUG_PLUGINS"), QStringLiteral("1"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.*=true"));
    environment.insert(QStringLiteral("QT_FATAL_WARNINGS"), QStringLiteral("1"));
    ChildProcess &program = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(installation.waitForLogLines(QStringLiteral("raise()")));
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(program.isRunning());
    QCOMPARE(program.readAllStandardOutput() + program.readAllStandardError(), QByteArray());
    QCOMPARE(installation.logLinesWith(QStringLiteral("QFactoryLoader")), QStringList());
}

void TestStartup::secondStart_endsWithStatusZeroAfterItsTwoLines_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("caller");
    QTest::newRow("vdi") << vdi << QStringLiteral("vdi");
    QTest::newRow("ombra") << ombra << QStringLiteral("ombra");
}

void TestStartup::secondStart_endsWithStatusZeroAfterItsTwoLines()
{
    QFETCH(QString, argument);
    QFETCH(QString, caller);
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
    ChildProcess &first = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    // Whatever the first logs at its start is written by then.
    QVERIFY(installation.waitForLogLines(QStringLiteral("failed to get hot issues.")));

    ChildProcess &second = installation.start({argument});
    QVERIFY(second.endsWith(0));
    QVERIFY(first.isRunning());
    const QStringList callers = installation.logLinesWith(callerLine);
    const QStringList versions = installation.logLinesWith(layoutLine);
    QCOMPARE(callers.size(), 2);
    QCOMPARE(versions.size(), 2);
    QVERIFY(isStartupLine(callers.at(1), callerLine + caller));
    QVERIFY(isStartupLine(versions.at(1), layoutLine + clientVersion));
}

void TestStartup::startAfterACrash_becomesTheFirst()
{
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    ChildProcess &first = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    first.crash();
    QVERIFY(!first.isRunning());

    ChildProcess &second = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(second.isRunning());
    QVERIFY(installation.start({vdi}).endsWith(0));
    QVERIFY(second.isRunning());
}

void TestStartup::startBesideAHungCopy_endsWithStatusZero()
{
    if (!canSuspendProcesses()) {
        QSKIP("A process cannot be suspended here.");
    }
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
    ChildProcess &hung = installation.start({vdi});
    QVERIFY(installation.waitUntilAnswering());
    QTRY_COMPARE(installation.logLinesWith(callerLine).size(), 1); // it may answer before
    QVERIFY(suspendProcess(hung.processId()));
    // The system accepts the connection in the hung copy's place.
    QVERIFY(installation.start({vdi}).endsWith(0));
    QCOMPARE(installation.logLinesWith(callerLine).size(), 2);
    QVERIFY(resumeProcess(hung.processId()));
    QVERIFY(installation.waitUntilAnswering());
    QVERIFY(hung.isRunning());
}

void TestStartup::folderForNamesThatIsTheProgramsOwn_keepsTheProgram()
{
#ifdef Q_OS_WIN
    QSKIP("Local names are no files on this system.");
#endif
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    QVERIFY(installation.setValue(QStringLiteral("Log/level"), QStringLiteral("INFO")));
    installation.environment().insert(QStringLiteral("TMPDIR"), installation.programFolder());
    const qint64 size = QFileInfo(installation.programPath()).size();
    for (int copies = 1; copies <= 2; ++copies) {
        ChildProcess &program = installation.start({vdi});
        QVERIFY(installation.waitForLogLines(layoutLine, copies));
        QVERIFY(program.isRunning());
    }
    QVERIFY(QFileInfo(installation.programPath()).isFile());
    QCOMPARE(QFileInfo(installation.programPath()).size(), size);
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
