#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <memory>

/// The window when no program runs any more that it depends on.
class TestCallerGone : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clientGone_fallsBack_andSuggestionsStop();
    void clientGoneWhileSuggestionsAreFetched_showsNone();
    void clientRuns_nothingChanges();
    void startedByTheClient_theLauncherDoesNotCount();
    void startedByTheLauncher_eitherProgramCounts();
    void taskListInOtherCase_countsAsGone();
    void taskListMissing_countsAsGone();
    void taskListOfAHundredMegabytes_isReadToItsEnd();
    void clientGoneWhileAnAnswerIsAwaited_theAnswerStillComes();
    void afterTheClientHasGone_aRefreshGoesOnlineAgain_withoutSuggestions();

private:
    void programsAre(const QByteArray &list, const QByteArray &manner = "answer");

    std::unique_ptr<StandInFolder> m_commands;
    std::unique_ptr<WindowBench> m_bench;
    bool m_installed = false;
};

namespace {

const QByteArray client = "Velistra_VDI_Client.exe      4711 Console      1     52,104 K\r\n";
const QByteArray launcher = "Velistra.exe                 4712 Console      1     52,104 K\r\n";

constexpr qint64 atOnceMs = 20'000;

} // namespace

void TestCallerGone::init()
{
    m_commands = std::make_unique<StandInFolder>();
    m_installed = false;
    m_bench = std::make_unique<WindowBench>();
}

void TestCallerGone::cleanup()
{
    m_bench.reset();
    m_commands.reset();
}

void TestCallerGone::programsAre(const QByteArray &list, const QByteArray &manner)
{
    if (!m_installed) {
        m_commands->install(QStringLiteral("tasklist"));
        m_installed = true;
    }
    m_commands->answer(QStringLiteral("default"), manner, list);
}

void TestCallerGone::clientGone_fallsBack_andSuggestionsStop()
{
    programsAre("System    4 Services    0    1,028 K\r\n");
    m_bench->startGreeted();
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    QVERIFY(m_bench->popup() != nullptr);
    const QPointer<HotQuestionsColumn> column = m_bench->window().findChild<HotQuestionsColumn *>();
    const LogCapture log;
    m_bench->hurry("processWatch");
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
    QVERIFY(!m_bench->runs("processWatch"));
    QVERIFY(!m_bench->runs("associationTick"));
    QVERIFY(m_bench->popup() == nullptr);
    QVERIFY(column.isNull());
    QCOMPARE(log.linesWith(QStringLiteral("info: Get Location")),
             QStringList{QStringLiteral("info: Get Location hot issues ! "
                                        "Location_hot_questions_num: (%d)0netHotWork：false")});
    QCOMPARE(m_commands->calls().size(), 1);
    m_bench->hurry("associationTick");
    m_bench->timer("associationTick").start();
    m_bench->input()->setPlainText(QStringLiteral("ab"));
    QTest::qWait(0);
    QCOMPARE(m_bench->bodies(WindowBench::suggestPath).size(), 1); // it is connected to nothing
}

void TestCallerGone::clientGoneWhileSuggestionsAreFetched_showsNone()
{
    programsAre("explorer.exe\r\n");
    m_bench->startGreeted();
    m_bench->timer("associationTick").stop(); // the test ticks itself
    m_bench->server().setReplyFor(
        WindowBench::suggestPath,
        held(httpReply(R"({"errorCode":"0","result":[{"question":"late","id":1}]})")));
    m_bench->onceRequested(WindowBench::suggestPath, 1, [this] {
        m_bench->window().detectionProcess_VdiAndOmbra();
        m_bench->server().release();
    });
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
    QVERIFY(m_bench->popup() == nullptr);
    m_bench->window().showAssociation_process();
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->bodies(WindowBench::suggestPath).size(), 1);
}

void TestCallerGone::clientRuns_nothingChanges()
{
    programsAre(client);
    m_bench->startGreeted();
    m_bench->hurry("processWatch");
    QTRY_VERIFY(m_commands->calls().size() >= 3);
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(m_bench->runs("associationTick"));
}

void TestCallerGone::startedByTheClient_theLauncherDoesNotCount()
{
    programsAre(launcher);
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
}

void TestCallerGone::startedByTheLauncher_eitherProgramCounts()
{
    m_bench.reset();
    m_bench = std::make_unique<WindowBench>(QStringLiteral("ombra"));
    m_bench->setLoginState(1);
    m_bench->window().startForLauncher();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    programsAre(launcher);
    m_bench->window().detectionProcess_VdiAndOmbra();
    programsAre(client);
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    programsAre("explorer.exe\r\n");
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
}

void TestCallerGone::taskListInOtherCase_countsAsGone()
{
    programsAre(client.toLower() + client.toUpper());
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(!m_bench->runs("processWatch"));
}

void TestCallerGone::taskListMissing_countsAsGone()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own tasklist");
#endif
    m_bench->startGreeted();
    QElapsedTimer clock;
    clock.start();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(clock.elapsed() < atOnceMs);
    QVERIFY(!m_bench->runs("processWatch"));
}

void TestCallerGone::taskListOfAHundredMegabytes_isReadToItsEnd()
{
    programsAre(client, "flood 100");
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(m_bench->runs("processWatch"));
}

void TestCallerGone::clientGoneWhileAnAnswerIsAwaited_theAnswerStillComes()
{
    programsAre("explorer.exe\r\n");
    m_bench->startGreeted();
    m_bench->askPending([this] { m_bench->window().detectionProcess_VdiAndOmbra(); });
    QCOMPARE(m_bench->messages().size(), 3);
    QCOMPARE(m_bench->messages().at(1), notLoggedInText);
    QVERIFY(m_bench->messages().at(2).startsWith(QStringLiteral("您好，未找到匹配的问题")));
}

void TestCallerGone::afterTheClientHasGone_aRefreshGoesOnlineAgain_withoutSuggestions()
{
    programsAre("explorer.exe\r\n");
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(m_bench->runs("hotRefresh"));
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
    QVERIFY(!m_bench->runs("associationTick"));
    QVERIFY(!m_bench->runs("processWatch"));
}

QTEST_MAIN(TestCallerGone)
#include "tst_callergone.moc"
