#include "app/base/apppaths.h"
#include "tests/service/support/refusingport.h"
#include "tests/standins/standinfolder.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/hotquestions/loadingoverlay.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

/// The ways of the window between loading, the service and local answers.
class TestWindowModes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void timers_haveTheirPaces();
    void vdiStart_serviceUp();
    void vdiStart_overlayUntilTheFirstReply();
    void vdiStart_serviceDown_data();
    void vdiStart_serviceDown();
    void vdiStart_serviceUpLater_theRefreshSaysSo();
    void vdiStart_askedLate_afterAFailedFetch_isAnswered();
    void ombraStart_loggedOut_thenIn();
    void ombraStart_loggedOut_staysWhileThePollFindsNothing();
    void ombraStart_loggedIn_neverPolls();
    void ombraStart_withoutClientSettings_isLoggedOut();
    void refreshWithData_online_showsNoNote();
    void refreshWithoutData_online_fallsBackOnce();
    void refreshWithData_afterTheFallBack_saysSo();
    void overlappingRefreshes_eachShowTheirOwnResult();
    void refreshWhileAnAnswerIsAwaited();
    void refreshRunsEveryHalfHour_byTheTimer();
    void clientGone_fallsBack_andSuggestionsStop();
    void clientRuns_nothingChanges();
    void startedByTheClient_theLauncherDoesNotCount();
    void startedByTheLauncher_eitherProgramCounts();
    void taskListInOtherCase_countsAsGone();
    void taskListMissing_countsAsGone();
    void taskListOfAHundredMegabytes_isReadToItsEnd();
    void clientGoneWhileAnAnswerIsAwaited_theAnswerStillComes();
    void afterTheClientHasGone_aRefreshGoesOnlineAgain_withoutSuggestions();
    void shortcutInstallation_watchesNoProcess();
    void windowGoesWhileFetchesRun();

private:
    void restart(const QString &callerType);
    void runningPrograms(const QByteArray &list, const QByteArray &manner = "answer");
    [[nodiscard]] bool runs(const char *timer) const { return m_bench->timer(timer).isActive(); }
    void askPending(const std::function<void()> &meanwhile);

    std::unique_ptr<StandInFolder> m_commands;
    std::unique_ptr<WindowBench> m_bench;
    bool m_installed = false;
};

namespace {

const QByteArray client = "Velistra_VDI_Client.exe      4711 Console      1     52,104 K\r\n";
const QByteArray launcher = "Velistra.exe                 4712 Console      1     52,104 K\r\n";

constexpr int amplyMs = 60'000;
constexpr qint64 atOnceMs = 20'000;

QStringList firstRows(int count)
{
    QStringList rows;
    for (int i = 1; i <= count; ++i) {
        rows.append(QStringLiteral("%1. 问%1").arg(i));
    }
    return rows;
}

} // namespace

void TestWindowModes::init()
{
    m_commands = std::make_unique<StandInFolder>();
    m_installed = false;
    restart(QStringLiteral("vdi"));
}

void TestWindowModes::cleanup()
{
    m_bench.reset();
    m_commands.reset();
}

void TestWindowModes::restart(const QString &callerType)
{
    m_bench.reset();
    m_bench = std::make_unique<WindowBench>(callerType);
}

void TestWindowModes::runningPrograms(const QByteArray &list, const QByteArray &manner)
{
    if (!m_installed) {
        m_commands->install(QStringLiteral("tasklist"));
        m_installed = true;
    }
    m_commands->answer(QStringLiteral("default"), manner, list);
}

/// Asks a question whose answer comes only after \a meanwhile has been done.
void TestWindowModes::askPending(const std::function<void()> &meanwhile)
{
    m_bench->server().setReplyFor(
        WindowBench::askPath,
        held(httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})")));
    m_bench->onceRequested(WindowBench::askPath, 1, [this, meanwhile] {
        meanwhile();
        m_bench->server().release();
    });
    m_bench->send(QStringLiteral("先问"));
}

void TestWindowModes::timers_haveTheirPaces()
{
    QCOMPARE(m_bench->timer("associationTick").interval(), 1000);
    QCOMPARE(m_bench->timer("loginPoll").interval(), 60'000);
    QCOMPARE(m_bench->timer("processWatch").interval(), 60'000);
    QCOMPARE(m_bench->timer("hotRefresh").interval(), 1'800'000);
    QVERIFY(runs("associationTick"));
    QVERIFY(!runs("loginPoll"));
    QVERIFY(!runs("processWatch"));
    QVERIFY(!runs("hotRefresh"));
}

void TestWindowModes::vdiStart_serviceUp()
{
    const LogCapture log;
    QSignalSpy ready(&m_bench->window(), &Miravel::rightRegionSuccess);
    m_bench->startGreeted();
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    QCOMPARE(m_bench->hotRows(), firstRows(16));
    QCOMPARE(ready.count(), 1);
    QVERIFY(runs("hotRefresh"));
    QVERIFY(runs("processWatch"));
    QVERIFY(!runs("loginPoll"));
    QCOMPARE(log.linesWith(QStringLiteral("info: begin")),
             QStringList{QStringLiteral("info: begin to start qthread for get hot questions")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")),
             QStringList{
                 QStringLiteral("info: Get hot issues successfully! hot_questions_num: (%d)40")});
}

void TestWindowModes::vdiStart_overlayUntilTheFirstReply()
{
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        held(httpReply(R"({"errorCode":"0","result":[{"id":1,"question":"问1"}]})")));
    m_bench->window().startForVdiClient();
    const auto *movie = m_bench->window().findChild<QMovie *>();
    QVERIFY(movie != nullptr);
    const auto *label = qobject_cast<QLabel *>(movie->parent());
    QCOMPARE(label->geometry(), QRect(385, 190, 150, 260));
    QCOMPARE(label->parentWidget()->geometry(), QRect(0, 0, 920, 640));
    QCOMPARE(label->parentWidget()->styleSheet(),
             QStringLiteral("QWidget{background-color: rgba(17,17,17,20%);}"));
    QVERIFY(movie->isValid());
    m_bench->server().release();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(m_bench->window().findChild<QMovie *>() == nullptr);
}

void TestWindowModes::vdiStart_serviceDown_data()
{
    QTest::addColumn<bool>("refused");
    QTest::newRow("nobody listens") << true;
    QTest::newRow("the reply is an error") << false;
}

void TestWindowModes::vdiStart_serviceDown()
{
    QFETCH(bool, refused);
    const RefusingPort closed;
    m_bench->serveHotQuestions(0);
    if (refused) {
        m_bench->config().setServer(closed.port());
    }
    const LogCapture log;
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    QCOMPARE(log.linesWith(QStringLiteral("warning: Network")),
             QStringList{QStringLiteral("warning: Network problem! failed to get hot issues.")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get Location")),
             QStringList{QStringLiteral("info: Get Location hot issues ! "
                                        "Location_hot_questions_num: (%d)0netHotWork：true")});
    QVERIFY(m_bench->window().findChild<QMovie *>() == nullptr);
    QVERIFY(!runs("processWatch"));
    QVERIFY(runs("hotRefresh"));
}

void TestWindowModes::vdiStart_serviceUpLater_theRefreshSaysSo()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    m_bench->serveHotQuestions(40);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{noNetworkText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), firstRows(16));
    QCOMPARE(log.linesWith(QStringLiteral("info: refresh")),
             QStringList{QStringLiteral("info: refresh hot questions timer by a new qthread")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")),
             QStringList{QStringLiteral("info: Get hot issues successfully, refresh")});
    QTest::mouseClick(m_bench->hotRow(2), Qt::LeftButton);
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 1);
}

void TestWindowModes::vdiStart_askedLate_afterAFailedFetch_isAnswered()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    const LogCapture log;
    m_bench->send(QStringLiteral("问"));
    QCOMPARE(log.linesWith(QStringLiteral("info: send")),
             QStringList{QStringLiteral("info: send messages by idp qa request, "
                                        "isGetHotQuests:true. netHotWork:true")});
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 1);
}

void TestWindowModes::ombraStart_loggedOut_thenIn()
{
    restart(QStringLiteral("ombra"));
    m_bench->hurry("loginPoll");
    const LogCapture log;
    m_bench->window().startForLauncher();
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QCOMPARE(log.lines().value(0), QStringLiteral("info: Account not logged in!"));
    QVERIFY(runs("loginPoll"));
    QVERIFY(!runs("hotRefresh"));
    const QPointer<HotQuestionsColumn> local = m_bench->window().findChild<HotQuestionsColumn *>();
    m_bench->setLoginState(1);
    QTRY_COMPARE(m_bench->messages(), (QStringList{notLoggedInText, greetingText}));
    QCOMPARE(log.linesWith(QStringLiteral("info: Account is")),
             QStringList{QStringLiteral("info: Account is logged in!")});
    QVERIFY(!runs("loginPoll"));
    QVERIFY(runs("hotRefresh"));
    QVERIFY(local.isNull());
    QCOMPARE(m_bench->window().findChildren<HotQuestionsColumn *>().size(), 1);
    QCOMPARE(m_bench->hotRows(), firstRows(16));
    QCOMPARE(m_bench->bodies(WindowBench::hotPath).size(), 1);
}

void TestWindowModes::ombraStart_loggedOut_staysWhileThePollFindsNothing()
{
    restart(QStringLiteral("ombra"));
    m_bench->hurry("loginPoll");
    const LogCapture log;
    m_bench->window().startForLauncher();
    QTRY_VERIFY(log.linesWith(QStringLiteral("info: Account not logged in!")).size() > 5);
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QCOMPARE(m_bench->server().connectionCount(), 0);
    m_bench->send(QStringLiteral("问"));
    QCOMPARE(m_bench->messages(), (QStringList{notLoggedInText, notLoggedInText}));
}

void TestWindowModes::ombraStart_loggedIn_neverPolls()
{
    restart(QStringLiteral("ombra"));
    m_bench->setLoginState(1);
    m_bench->hurry("loginPoll");
    m_bench->window().startForLauncher();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(!runs("loginPoll"));
    QVERIFY(runs("hotRefresh"));
    QVERIFY(runs("processWatch"));
}

void TestWindowModes::ombraStart_withoutClientSettings_isLoggedOut()
{
    restart(QStringLiteral("ombra"));
    m_bench->removeClientSettings();
    const LogCapture log;
    m_bench->window().startForLauncher();
    QCOMPARE(log.lines().value(0), QStringLiteral("info: Account not logged in!"));
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QVERIFY(runs("loginPoll"));
}

void TestWindowModes::refreshWithData_online_showsNoNote()
{
    m_bench->startGreeted();
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
    m_bench->serveHotQuestions(10);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问1"));
    QCOMPARE(m_bench->hotRows().at(10), QStringLiteral("11. "));
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
}

void TestWindowModes::refreshWithoutData_online_fallsBackOnce()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    QVERIFY(!log.lines().filter(QStringLiteral("failed to get hot issues")).isEmpty());
    QVERIFY(!log.lines()
                 .filter(QStringLiteral("before hot issues online, now refresh LocalQA"))
                 .isEmpty());
    QVERIFY(m_bench->hotRow(1) == nullptr || m_bench->hotRows().first() != firstRows(1).first());

    const LogCapture second;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_VERIFY(!second.lines().filter(QStringLiteral("failed to get hot issues")).isEmpty());
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    QVERIFY(second.lines().filter(QStringLiteral("now refresh LocalQA")).isEmpty());
}

void TestWindowModes::refreshWithData_afterTheFallBack_saysSo()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    m_bench->serveHotQuestions(40);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(),
                 (QStringList{greetingText, refreshFailedText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), firstRows(16));
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
}

void TestWindowModes::overlappingRefreshes_eachShowTheirOwnResult()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        held(httpReply(R"({"errorCode":"0","result":[{"id":1,"question":"早"}]})")));
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->bodies(WindowBench::hotPath).size(), 2);
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        httpReply(R"({"errorCode":"0","result":[{"id":2,"question":"晚"}]})"));
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 晚"));
    m_bench->server().release();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 早"));
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")).size(), 2);
    QCOMPARE(m_bench->messages(), QStringList{greetingText}); // none of the two was cut short
}

void TestWindowModes::refreshWhileAnAnswerIsAwaited()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    askPending([this] {
        m_bench->window().refreshHotQuestionsTimer();
        QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    });
    QCOMPARE(m_bench->messages().size(), 3);
    QVERIFY(m_bench->messages().last().startsWith(QStringLiteral("您好，未找到匹配的问题")));
}

void TestWindowModes::refreshRunsEveryHalfHour_byTheTimer()
{
    m_bench->hurry("hotRefresh");
    m_bench->startGreeted();
    QTRY_VERIFY(m_bench->bodies(WindowBench::hotPath).size() > 3);
    // Refreshes at this pace overlap: one may find the address empty that another resolves.
    QCOMPARE(m_bench->messages().first(), greetingText);
}

void TestWindowModes::clientGone_fallsBack_andSuggestionsStop()
{
    runningPrograms("System    4 Services    0    1,028 K\r\n");
    m_bench->startGreeted();
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation();
    QVERIFY(m_bench->popup() != nullptr);
    const QPointer<HotQuestionsColumn> column = m_bench->window().findChild<HotQuestionsColumn *>();
    const LogCapture log;
    m_bench->hurry("processWatch");
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
    QVERIFY(!runs("processWatch"));
    QVERIFY(!runs("associationTick"));
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

void TestWindowModes::clientRuns_nothingChanges()
{
    runningPrograms(client);
    m_bench->startGreeted();
    m_bench->hurry("processWatch");
    QTRY_VERIFY(m_commands->calls().size() >= 3);
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(runs("associationTick"));
}

void TestWindowModes::startedByTheClient_theLauncherDoesNotCount()
{
    runningPrograms(launcher);
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
}

void TestWindowModes::startedByTheLauncher_eitherProgramCounts()
{
    restart(QStringLiteral("ombra"));
    m_bench->setLoginState(1);
    m_bench->window().startForLauncher();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    runningPrograms(launcher);
    m_bench->window().detectionProcess_VdiAndOmbra();
    runningPrograms(client);
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    runningPrograms("explorer.exe\r\n");
    m_bench->window().detectionProcess_VdiAndOmbra();
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText}));
}

void TestWindowModes::taskListInOtherCase_countsAsGone()
{
    runningPrograms(client.toLower() + client.toUpper());
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(!runs("processWatch"));
}

void TestWindowModes::taskListMissing_countsAsGone()
{
#ifdef Q_OS_WIN
    QSKIP("Windows always finds its own tasklist");
#endif
    m_bench->startGreeted();
    QElapsedTimer clock;
    clock.start();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(clock.elapsed() < atOnceMs);
    QVERIFY(!runs("processWatch"));
}

void TestWindowModes::taskListOfAHundredMegabytes_isReadToItsEnd()
{
    runningPrograms(client, "flood 100");
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(runs("processWatch"));
}

void TestWindowModes::clientGoneWhileAnAnswerIsAwaited_theAnswerStillComes()
{
    runningPrograms("explorer.exe\r\n");
    m_bench->startGreeted();
    askPending([this] { m_bench->window().detectionProcess_VdiAndOmbra(); });
    QCOMPARE(m_bench->messages().size(), 3);
    QCOMPARE(m_bench->messages().at(1), notLoggedInText);
    QVERIFY(m_bench->messages().at(2).startsWith(QStringLiteral("您好，未找到匹配的问题")));
}

void TestWindowModes::afterTheClientHasGone_aRefreshGoesOnlineAgain_withoutSuggestions()
{
    runningPrograms("explorer.exe\r\n");
    m_bench->startGreeted();
    m_bench->window().detectionProcess_VdiAndOmbra();
    QVERIFY(runs("hotRefresh"));
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, notLoggedInText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), firstRows(16));
    QVERIFY(!runs("associationTick"));
    QVERIFY(!runs("processWatch"));
}

void TestWindowModes::shortcutInstallation_watchesNoProcess()
{
    restart(QString());
    QVERIFY(QDir(m_bench->config().root())
                .rename(QStringLiteral("config"), QStringLiteral("Miravel/config")));
    m_bench->makeWindow();
    m_bench->startGreeted();
    QVERIFY(!runs("processWatch"));
    QVERIFY(runs("hotRefresh"));
}

void TestWindowModes::windowGoesWhileFetchesRun()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(WindowBench::hotPath, held(httpReply("{}")));
    m_bench->window().refreshHotQuestionsTimer();
    m_bench->window().refreshHotQuestionsTimer();
    m_bench->window().startForVdiClient();
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->bodies(WindowBench::hotPath).size(), 4, amplyMs);
    const LogCapture log;
    QElapsedTimer clock;
    clock.start();
    m_bench->dropWindow();
    QVERIFY(clock.elapsed() < amplyMs);
    QTRY_COMPARE(m_bench->server().leftWhileHeld(), 3);
    QCOMPARE(log.foreignLines(), QStringList());
}

QTEST_MAIN(TestWindowModes)
#include "tst_windowmodes.moc"
