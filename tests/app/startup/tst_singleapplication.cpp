#include "tests/support/childprocess.h"
#include "tests/support/processcontrol.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

namespace {

constexpr int patienceMs = 20'000; // only a failing test waits that long
constexpr int connectWaitMs = 500; // how long a new copy waits for the first one
constexpr int dataWaitMs = 1000;   // how long the first copy waits for data

const QString helper = QStringLiteral(MIRAVEL_SINGLECOPY);

#ifdef Q_OS_WIN
constexpr bool namesAreFiles = false; // but pipes, which end with their process
#else
constexpr bool namesAreFiles = true;
#endif
const char *const namesAreNoFiles = "Local names are no files on this system.";

/// One running copy of the helper program.
class Copy : public ChildProcess
{
public:
    Copy(const QString &program, const QString &temporaryFolder, const QString &window = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TMPDIR"), temporaryFolder);
        setProcessEnvironment(environment);
        start(program, window.isEmpty() ? QStringList() : QStringList(window));
    }

    /// Lets it end in an orderly way. True when it gave status 0.
    bool end()
    {
        closeWriteChannel();
        return endsWith(0);
    }
};

} // namespace

/// Copies of a program in separate processes. Each test has a private folder for local names and,
/// where names are no files, a program name of its own.
class TestSingleApplication : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void firstCopy_isNotRunningElsewhere();
    void secondCopy_findsTheFirstAndEnds();
    void everyFurtherCopy_findsTheFirst();
    void sameFileNameInAnotherFolder_isTheSameProgram();
    void otherFileName_isAnotherProgram();
    void firstCopyEnded_nextOneIsFirst();

    void secondCopy_bringsTheWindowToTheFront_data();
    void secondCopy_bringsTheWindowToTheFront();
    void secondCopyBeforeTheWindowIsSet_changesNothing();
    void secondCopyAfterTheWindowIsGone_changesNothing();
    void otherSideThatSendsData_isNotWaitedFor();
    void otherSideThatStaysSilent_isLeftAfterOneSecond();

    void staleNameOfACrashedCopy_isTakenOver();
    void copyThatDoesNotAccept_isTakenOver();
    void fileInPlaceOfTheName_isReplaced_data();
    void fileInPlaceOfTheName_isReplaced();
    void folderInPlaceOfTheName_isKeptAndTheCopyRunsUnguarded();
    void ownExecutableInPlaceOfTheName_isKept();
    void nameTooLongForTheSystem_runsUnguarded();

private:
    [[nodiscard]] QString names() const { return m_folder->filePath(QStringLiteral("names")); }
    /// The name under which a QLocalSocket reaches the first copy; its path where it is a file.
    [[nodiscard]] QString namePath() const
    {
        const QString name = QFileInfo(m_program).fileName();
        return namesAreFiles ? names() + QLatin1Char('/') + name : name;
    }
    /// A copy of the helper's file as \a relativePath under the test's folder.
    QString copyOfHelper(const QString &relativePath);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_program;
};

void TestSingleApplication::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir().mkpath(names()));
    m_program = copyOfHelper(QFileInfo(m_folder->path()).fileName() + QStringLiteral(".exe"));
    QVERIFY(!m_program.isEmpty());
}

QString TestSingleApplication::copyOfHelper(const QString &relativePath)
{
    const QString path = m_folder->filePath(relativePath);
    const bool copied = QDir().mkpath(QFileInfo(path).path()) && QFile::copy(helper, path);
    return copied ? path : QString();
}

void TestSingleApplication::firstCopy_isNotRunningElsewhere()
{
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QCOMPARE(QFile::exists(namePath()), namesAreFiles);
    QVERIFY(first.end());
}

void TestSingleApplication::secondCopy_findsTheFirstAndEnds()
{
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(m_program, names());
    QCOMPARE(second.nextLine(), QStringLiteral("running"));
    QVERIFY(second.endsWith(0));
    QVERIFY(first.end());
}

void TestSingleApplication::everyFurtherCopy_findsTheFirst()
{
    constexpr int furtherCopies = 5;
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    std::vector<std::unique_ptr<Copy>> further;
    further.reserve(furtherCopies);
    for (int i = 0; i < furtherCopies; ++i) {
        further.push_back(std::make_unique<Copy>(m_program, names()));
    }
    for (const auto &copy : further) {
        QCOMPARE(copy->nextLine(), QStringLiteral("running"));
        QVERIFY(copy->endsWith(0));
    }
}

void TestSingleApplication::sameFileNameInAnotherFolder_isTheSameProgram()
{
    const QString elsewhere
        = copyOfHelper(QStringLiteral("other/") + QFileInfo(m_program).fileName());
    QVERIFY(!elsewhere.isEmpty());
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(elsewhere, names());
    QCOMPARE(second.nextLine(), QStringLiteral("running"));
}

void TestSingleApplication::otherFileName_isAnotherProgram()
{
    const QString name = QStringLiteral("other-") + QFileInfo(m_program).fileName();
    const QString renamed = copyOfHelper(name);
    QVERIFY(!renamed.isEmpty());
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy other(renamed, names());
    QCOMPARE(other.nextLine(), QStringLiteral("first"));
    QCOMPARE(QFile::exists(names() + QLatin1Char('/') + name), namesAreFiles);
}

void TestSingleApplication::firstCopyEnded_nextOneIsFirst()
{
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QVERIFY(first.end());
    QVERIFY(!QFile::exists(namePath()));
    Copy next(m_program, names());
    QCOMPARE(next.nextLine(), QStringLiteral("first"));
}

void TestSingleApplication::secondCopy_bringsTheWindowToTheFront_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QStringList>("events");
    const QString raised = QStringLiteral("raised");
    const QString normal = QStringLiteral("normal");
    const QString active = QStringLiteral("active");
    QTest::newRow("minimised") << QStringLiteral("minimised")
                               << QStringList({raised, normal, active});
    QTest::newRow("maximised") << QStringLiteral("maximised")
                               << QStringList({raised, normal, active});
    QTest::newRow("normal") << QStringLiteral("normal") << QStringList({raised, active});
}

void TestSingleApplication::secondCopy_bringsTheWindowToTheFront()
{
    QFETCH(QString, state);
    QFETCH(QStringList, events);
    Copy first(m_program, names(), state);
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(m_program, names());
    QCOMPARE(second.nextLine(), QStringLiteral("running"));
    for (const QString &event : events) {
        QCOMPARE(first.nextLine(), event);
    }
    QVERIFY(first.end());
}

void TestSingleApplication::secondCopyBeforeTheWindowIsSet_changesNothing()
{
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QLocalSocket socket;
    socket.connectToServer(namePath());
    QVERIFY(socket.waitForConnected(patienceMs));
    QVERIFY(socket.waitForDisconnected(patienceMs));
    QVERIFY(first.end());
    QCOMPARE(first.nextLine(), QString());
}

void TestSingleApplication::secondCopyAfterTheWindowIsGone_changesNothing()
{
    Copy first(m_program, names(), QStringLiteral("gone"));
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QLocalSocket socket;
    socket.connectToServer(namePath());
    QVERIFY(socket.waitForConnected(patienceMs));
    QVERIFY(socket.waitForDisconnected(patienceMs));
    QVERIFY(first.end());
    QCOMPARE(first.nextLine(), QString());
}

void TestSingleApplication::otherSideThatSendsData_isNotWaitedFor()
{
    Copy first(m_program, names(), QStringLiteral("minimised"));
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QLocalSocket socket;
    socket.connectToServer(namePath());
    QVERIFY(socket.waitForConnected(patienceMs));
    socket.write("x");
    QVERIFY(socket.waitForDisconnected(patienceMs));
    QCOMPARE(first.nextLine(), QStringLiteral("raised"));
}

void TestSingleApplication::otherSideThatStaysSilent_isLeftAfterOneSecond()
{
    Copy first(m_program, names(), QStringLiteral("minimised"));
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QElapsedTimer time;
    time.start();
    QLocalSocket socket;
    socket.connectToServer(namePath());
    QVERIFY(socket.waitForConnected(patienceMs));
    QVERIFY(socket.waitForDisconnected(patienceMs));
    QVERIFY2(time.elapsed() >= dataWaitMs, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(first.nextLine(), QStringLiteral("raised"));
    QCOMPARE(first.nextLine(), QStringLiteral("normal"));
}

void TestSingleApplication::staleNameOfACrashedCopy_isTakenOver()
{
    Copy crashed(m_program, names());
    QCOMPARE(crashed.nextLine(), QStringLiteral("first"));
    crashed.crash();
    QCOMPARE(QFile::exists(namePath()), namesAreFiles);

    Copy next(m_program, names());
    QCOMPARE(next.nextLine(), QStringLiteral("first"));
    Copy third(m_program, names());
    QCOMPARE(third.nextLine(), QStringLiteral("running"));
}

void TestSingleApplication::copyThatDoesNotAccept_isTakenOver()
{
    constexpr int moreThanWaitingRoom = 200;
    if (!canSuspendProcesses()) {
        QSKIP("A process cannot be suspended here.");
    }
    Copy hung(m_program, names());
    QCOMPARE(hung.nextLine(), QStringLiteral("first"));
    QVERIFY(suspendProcess(hung.processId()));
    // The system itself accepts connections until the waiting room is full.
    std::vector<std::unique_ptr<QLocalSocket>> waiting;
    bool full = false;
    while (!full && waiting.size() < moreThanWaitingRoom) {
        waiting.push_back(std::make_unique<QLocalSocket>());
        waiting.back()->connectToServer(namePath());
        full = waiting.back()->state() != QLocalSocket::ConnectedState;
    }
    QVERIFY(full);

    QElapsedTimer time;
    time.start();
    Copy next(m_program, names());
    QCOMPARE(next.nextLine(), QStringLiteral("first"));
    QVERIFY2(time.elapsed() >= connectWaitMs, qPrintable(QString::number(time.elapsed())));
    Copy third(m_program, names());
    QCOMPARE(third.nextLine(), QStringLiteral("running"));
    QVERIFY(resumeProcess(hung.processId()));
}

void TestSingleApplication::fileInPlaceOfTheName_isReplaced_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::newRow("file") << false;
    QTest::newRow("link to a file") << true;
}

void TestSingleApplication::fileInPlaceOfTheName_isReplaced()
{
    if (!namesAreFiles) {
        QSKIP(namesAreNoFiles);
    }
    QFETCH(bool, isLink);
    QFile file(isLink ? m_folder->filePath(QStringLiteral("precious.txt")) : namePath());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("precious") > 0);
    file.close();
    if (isLink) {
        QVERIFY(QFile::link(file.fileName(), namePath()));
    }

    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(m_program, names());
    QCOMPARE(second.nextLine(), QStringLiteral("running"));
    QVERIFY(first.end());
    if (isLink) { // what it led to is not the name
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("precious"));
    }
}

void TestSingleApplication::folderInPlaceOfTheName_isKeptAndTheCopyRunsUnguarded()
{
    if (!namesAreFiles) {
        QSKIP(namesAreNoFiles);
    }
    QVERIFY(QDir().mkpath(namePath()));
    Copy first(m_program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(m_program, names());
    QCOMPARE(second.nextLine(), QStringLiteral("first"));
    QVERIFY(first.end());
    QVERIFY(second.end());
    QVERIFY(QFileInfo(namePath()).isDir());
}

void TestSingleApplication::ownExecutableInPlaceOfTheName_isKept()
{
    if (!namesAreFiles) {
        QSKIP(namesAreNoFiles);
    }
    const QString program
        = copyOfHelper(QStringLiteral("names/") + QFileInfo(m_program).fileName());
    QVERIFY(!program.isEmpty());
    Copy first(program, names());
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    QVERIFY(first.end());
    QCOMPARE(QFileInfo(program).size(), QFileInfo(helper).size());
    Copy again(program, names());
    QCOMPARE(again.nextLine(), QStringLiteral("first"));
}

void TestSingleApplication::nameTooLongForTheSystem_runsUnguarded()
{
    if (!namesAreFiles) {
        QSKIP(namesAreNoFiles);
    }
    constexpr int moreThanASocketPath = 120;
    const QString deep = m_folder->filePath(QString(moreThanASocketPath, QLatin1Char('d')));
    QVERIFY(QDir().mkpath(deep));
    Copy first(m_program, deep);
    QCOMPARE(first.nextLine(), QStringLiteral("first"));
    Copy second(m_program, deep);
    QCOMPARE(second.nextLine(), QStringLiteral("first"));
    QVERIFY(first.end());
    QVERIFY(second.end());
    QVERIFY(!QFile::exists(deep + QLatin1Char('/') + QFileInfo(m_program).fileName()));
}

QTEST_GUILESS_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
