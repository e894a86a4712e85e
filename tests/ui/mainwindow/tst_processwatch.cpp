#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"
#include "ui/mainwindow/processwatch.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

namespace {

constexpr int amplyMs = 60'000;
constexpr int shortMs = 200;
constexpr qint64 atOnceMs = 20'000; // below the full patience, above a slow machine

constexpr int hundredMegabytes = 100'000'000;

const QString key = QStringLiteral("default");
const WatchedPrograms programs{QStringLiteral("Velistra_VDI_Client.exe"),
                               QStringLiteral("Velistra.exe")};

const QByteArray head
    = "\r\nImage Name                     PID Session Name        Session#    Mem "
      "Usage\r\n========================= ======== ================ =========== "
      "============\r\nSystem                           4 Services                 "
      "  0      1,028 K\r\n";

QByteArray line(const QByteArray &program)
{
    return program.leftJustified(25) + "     4711 Console                    1     52,104 K\r\n";
}

} // namespace

/// Which programs run, as the system's own list tells.
class TestProcessWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void name_isLookedForInTheSameCase_data();
    void name_isLookedForInTheSameCase();
    void bothPrograms_areLookedFor_data();
    void bothPrograms_areLookedFor();
    void list_isAskedForOnce();
    void list_endsAtTheFirstNul();
    void listOfAFailingCommand_counts();
    void missingCommand_givesNoList();
    void hangingCommand_givesNoList_data();
    void hangingCommand_givesNoList();
    void hundredMegabytes_areSearched();
    void largeOutput_isReadToItsEnd();

private:
    std::unique_ptr<StandInFolder> m_folder;
    std::unique_ptr<LogCapture> m_log;
};

void TestProcessWatch::init()
{
    m_folder = std::make_unique<StandInFolder>();
    if (QLatin1String(QTest::currentTestFunction())
        != QStringLiteral("missingCommand_givesNoList")) {
        m_folder->install(QStringLiteral("tasklist"));
    }
    m_log = std::make_unique<LogCapture>();
}

void TestProcessWatch::cleanup()
{
    QCOMPARE(m_log->foreignLines(), QStringList()); // Qt complains of abandoned processes
    QVERIFY(!m_folder->isAnyAlive());
    m_log.reset();
    m_folder.reset();
}

void TestProcessWatch::name_isLookedForInTheSameCase_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<bool>("listed");
    QTest::newRow("the program") << head + line("Velistra.exe") << true;
    QTest::newRow("lower case") << head + line("velistra.exe") << false;
    QTest::newRow("upper case") << head + line("VELISTRA.EXE") << false;
    QTest::newRow("within a longer name") << head + line("OldVelistra.exe") << true;
    QTest::newRow("the client's name does not hold the launcher's")
        << head + line("Velistra_VDI_Client.exe") << false;
    QTest::newRow("another program") << head + line("explorer.exe") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestProcessWatch::name_isLookedForInTheSameCase()
{
    QFETCH(QByteArray, list);
    QFETCH(bool, listed);
    QCOMPARE(isListed(list, programs.launcher), listed);
    QVERIFY(!isListed(list, QString()));
}

void TestProcessWatch::bothPrograms_areLookedFor_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<bool>("client");
    QTest::addColumn<bool>("launcher");
    const QByteArray client = head + line("Velistra_VDI_Client.exe");
    const QByteArray launcher = head + line("Velistra.exe");
    QTest::newRow("the client runs") << client << true << false;
    QTest::newRow("the launcher runs") << launcher << false << true;
    QTest::newRow("both run") << client + line("Velistra.exe") << true << true;
    QTest::newRow("none runs") << head << false << false;
}

void TestProcessWatch::bothPrograms_areLookedFor()
{
    QFETCH(QByteArray, list);
    QFETCH(bool, client);
    QFETCH(bool, launcher);
    m_folder->answer(key, "answer", list);
    const RunningPrograms running = runningPrograms(programs);
    QCOMPARE(running.vdiClient, client);
    QCOMPARE(running.launcher, launcher);
}

void TestProcessWatch::list_isAskedForOnce()
{
    m_folder->answer(key, "answer", head);
    QVERIFY(!runningPrograms(programs).launcher);
    QCOMPARE(m_folder->calls(), QStringList{QString()});
}

void TestProcessWatch::list_endsAtTheFirstNul()
{
    m_folder->answer(key, "answer", line("Velistra.exe") + '\0' + line("Velistra_VDI_Client.exe"));
    const RunningPrograms running = runningPrograms(programs);
    QVERIFY(running.launcher);
    QVERIFY(!running.vdiClient);
}

void TestProcessWatch::listOfAFailingCommand_counts()
{
    m_folder->answer(key, "fail", line("Velistra_VDI_Client.exe"));
    QVERIFY(runningPrograms(programs).vdiClient);
}

void TestProcessWatch::missingCommand_givesNoList()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own tasklist");
#endif
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(taskList(), QByteArray());
    QVERIFY(!runningPrograms(programs).vdiClient);
    QVERIFY(clock.elapsed() < atOnceMs);
}

void TestProcessWatch::hangingCommand_givesNoList_data()
{
    QTest::addColumn<QByteArray>("manner");
    QTest::newRow("before its output") << QByteArray("late 60000");
    QTest::newRow("after its output") << QByteArray("linger");
    QTest::newRow("printing without end") << QByteArray("flood 1000000");
    QTest::newRow("waiting for input") << QByteArray("reader");
}

void TestProcessWatch::hangingCommand_givesNoList()
{
    QFETCH(QByteArray, manner);
    m_folder->answer(key, manner, line("Velistra_VDI_Client.exe"));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!runningPrograms(programs, shortMs).vdiClient);
    QVERIFY(clock.elapsed() < atOnceMs);
}

void TestProcessWatch::hundredMegabytes_areSearched()
{
    const QByteArray filler(hundredMegabytes, 'V');
    QVERIFY(isListed(filler + line("Velistra.exe"), programs.launcher));
    QVERIFY(!isListed(filler, programs.launcher));
}

void TestProcessWatch::largeOutput_isReadToItsEnd()
{
    m_folder->answer(key, "flood 8", line("Velistra_VDI_Client.exe"));
    QVERIFY(runningPrograms(programs, amplyMs).vdiClient);
}

QTEST_GUILESS_MAIN(TestProcessWatch)
#include "tst_processwatch.moc"
