#include "ui/mainwindow/processwatch.h"
#include "ui/mainwindow/windowstate.h"

#include <QTest>

#include <array>
#include <functional>

namespace {

using Step = WindowStep;

constexpr int flagCount = 6;
constexpr int stateCount = 1 << flagCount;

WindowState stateOf(int bits)
{
    const auto bit = [bits](int place) {
        return (bits >> place & 1) != 0;
    };
    return {bit(0), bit(1), bit(2), bit(3), bit(4), bit(5)};
}

std::array<bool, flagCount> flags(const WindowState &state)
{
    return {state.isGetHotQuests,     state.netHotWork,     state.getIDP,
            state.startedByVdiClient, state.neverLoggedOut, state.loggedIn};
}

QByteArray shown(const WindowState &state)
{
    const std::array<const char *, flagCount> names{"isGetHotQuests", "netHotWork",
                                                    "getIDP",         "startedByVdiClient",
                                                    "neverLoggedOut", "loggedIn"};
    QByteArray text = "in the state";
    for (size_t i = 0; i < names.size(); ++i) {
        text += QByteArray(flags(state).at(i) ? " +" : " -") + names.at(i);
    }
    return text;
}

using Event = std::function<WindowSteps(WindowState &state)>;

/// Changes the state as the event must, and returns the steps that must follow.
using Expectation = Event;

/// Lets \a event happen in every state there can be.
void expectInEveryState(const Event &event, const Expectation &expectation)
{
    for (int bits = 0; bits < stateCount; ++bits) {
        const WindowState before = stateOf(bits);
        WindowState expected = before;
        const WindowSteps expectedSteps = expectation(expected);
        WindowState after = before;
        const WindowSteps steps = event(after);
        QVERIFY2(steps == expectedSteps, ("other steps " + shown(before)).constData());
        QVERIFY2(flags(after) == flags(expected), ("another state " + shown(before)).constData());
    }
}

const WindowSteps online{Step::MakeColumn, Step::FetchQuestions, Step::StartHotRefresh};
const WindowSteps offline{Step::ReadLibrary, Step::MakeColumn, Step::OpenLocalList};

} // namespace

/// The ways of the window between loading, the service and local answers, as a value.
class TestWindowState : public QObject
{
    Q_OBJECT

private slots:
    void atFirst_nothingIsKnown();
    void clientStarted_everywhere();
    void launcherStarted_everywhere();
    void foundLoggedOut_everywhere();
    void foundLoggedIn_everywhere();
    void firstFetchWithQuestions_everywhere();
    void firstFetchWithoutQuestions_everywhere();
    void refreshWithQuestions_everywhere();
    void refreshWithoutQuestions_everywhere();
    void processesListed_everywhere_data();
    void processesListed_everywhere();
    void networkFailed_everywhere();
    void localLibraryWanted_everywhere();
    void localListOpened_everywhere();
    void questionTyped_everywhere();

    void startByTheClient_isForgottenWithTheNextLogin();
    void loggedInAtTheStart_isNoReasonToSwitchAgain();
    void loggedOutLater_keepsTheService();
    void loginPoll_runsFromALoggedOutStartToTheLogin();
    void failedFirstFetch_leavesALateSuccessWithoutANote();
    void networkProblemWhileLoading_outlastsTheFirstFetch();
    void refreshAfterAFallBack_bringsBackNeitherWatchNorSuggestions();
    void secondFailure_saysNothing();
};

void TestWindowState::atFirst_nothingIsKnown()
{
    WindowState state;
    QCOMPARE(flags(state), flags({false, false, false, false, true, false}));
    QCOMPARE(state.questionTyped(false), QuestionWay::Explain);
}

void TestWindowState::clientStarted_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.clientStarted(); },
                       [](WindowState &state) {
                           state.getIDP = true;
                           state.startedByVdiClient = true;
                           return online;
                       });
}

void TestWindowState::launcherStarted_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.launcherStarted(); },
                       [](WindowState &state) {
                           state.getIDP = state.loggedIn;
                           state.startedByVdiClient = false;
                           return state.loggedIn
                                    ? online
                                    : WindowSteps{Step::ReadLibrary, Step::MakeColumn,
                                                  Step::OpenLocalList, Step::StartLoginPoll};
                       });
}

void TestWindowState::foundLoggedOut_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.loginChecked(false); },
                       [](WindowState &state) {
                           state.neverLoggedOut = false;
                           return WindowSteps();
                       });
}

void TestWindowState::foundLoggedIn_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.loginChecked(true); },
                       [](WindowState &state) {
                           state.loggedIn = true;
                           if (state.neverLoggedOut) {
                               return WindowSteps();
                           }
                           state.getIDP = true;
                           state.startedByVdiClient = false;
                           return WindowSteps{Step::MakeColumn, Step::FetchQuestions,
                                              Step::StartHotRefresh, Step::StopLoginPoll};
                       });
}

void TestWindowState::firstFetchWithQuestions_everywhere()
{
    for (const bool shortcut : {true, false}) {
        expectInEveryState(
            [shortcut](WindowState &state) {
                return state.firstFetchReturned(Fetched::Questions, shortcut);
            },
            [shortcut](WindowState &state) {
                state.isGetHotQuests = true; // and nothing else, whatever was before
                return shortcut ? WindowSteps{Step::SayGreeting, Step::ShowServiceQuestions,
                                              Step::ReportReady}
                                : WindowSteps{Step::SayGreeting, Step::ShowServiceQuestions,
                                              Step::ReportReady, Step::StartProcessWatch};
            });
    }
}

void TestWindowState::firstFetchWithoutQuestions_everywhere()
{
    for (const bool shortcut : {true, false}) {
        expectInEveryState(
            [shortcut](WindowState &state) {
                return state.firstFetchReturned(Fetched::Nothing, shortcut);
            },
            [](WindowState &state) {
                state.isGetHotQuests = true;
                state.netHotWork = true;
                state.getIDP = false;
                return offline;
            });
    }
}

void TestWindowState::refreshWithQuestions_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.refreshReturned(Fetched::Questions); },
                       [](WindowState &state) {
                           const bool wasLocal = !state.getIDP;
                           state.netHotWork = false;
                           state.getIDP = true;
                           return wasLocal ? WindowSteps{Step::SayRefreshed, Step::ScrollToBottom,
                                                         Step::ShowServiceQuestions}
                                           : WindowSteps{Step::ShowServiceQuestions};
                       });
}

void TestWindowState::refreshWithoutQuestions_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.refreshReturned(Fetched::Nothing); },
                       [](WindowState &state) {
                           const bool wasLocal = !state.getIDP;
                           state.getIDP = false; // netHotWork stays as it was
                           return wasLocal
                                    ? WindowSteps()
                                    : WindowSteps{Step::SayRefreshFailed, Step::ScrollToBottom,
                                                  Step::ShowLibrary, Step::LogFellBack};
                       });
}

void TestWindowState::processesListed_everywhere_data()
{
    QTest::addColumn<bool>("client");
    QTest::addColumn<bool>("launcher");
    QTest::addColumn<bool>("goneForClientStart");
    QTest::addColumn<bool>("goneForLauncherStart");
    QTest::newRow("both run") << true << true << false << false;
    QTest::newRow("the client runs") << true << false << false << false;
    QTest::newRow("the launcher runs") << false << true << true << false;
    QTest::newRow("none runs") << false << false << true << true;
}

void TestWindowState::processesListed_everywhere()
{
    QFETCH(bool, client);
    QFETCH(bool, launcher);
    QFETCH(bool, goneForClientStart);
    QFETCH(bool, goneForLauncherStart);
    expectInEveryState(
        [client, launcher](WindowState &state) {
            return state.processesListed({client, launcher});
        },
        [goneForClientStart, goneForLauncherStart](WindowState &state) {
            if (!(state.startedByVdiClient ? goneForClientStart : goneForLauncherStart)) {
                return WindowSteps();
            }
            state.getIDP = false; // who started the program is not forgotten
            return WindowSteps{Step::StopSuggestions, Step::StopProcessWatch, Step::ReadLibrary,
                               Step::MakeColumn, Step::OpenLocalList};
        });
}

void TestWindowState::networkFailed_everywhere()
{
    expectInEveryState(
        [](WindowState &state) { return state.networkFailed(); },
        [](WindowState &state) {
            const bool wasLocal = !state.getIDP;
            state.getIDP = false; // netHotWork speaks of hot questions alone
            return wasLocal ? WindowSteps() : WindowSteps{Step::LogWasOnline, Step::ShowLibrary};
        });
}

void TestWindowState::localLibraryWanted_everywhere()
{
    expectInEveryState([](WindowState &state) { return state.localLibraryWanted(); },
                       [](WindowState &state) {
                           state.getIDP = false;
                           return WindowSteps{Step::ShowLibrary};
                       });
}

void TestWindowState::localListOpened_everywhere()
{
    for (const bool any : {true, false}) {
        expectInEveryState(
            [any](WindowState &state) { return state.localListOpened(any); },
            [any](const WindowState &state) {
                const Step why = state.netHotWork ? Step::SayNoNetwork : Step::SayNotLoggedIn;
                return any ? WindowSteps{why, Step::ShowLocalQuestions, Step::ReportReady}
                           : WindowSteps{why};
            });
    }
}

void TestWindowState::questionTyped_everywhere()
{
    for (int bits = 0; bits < stateCount; ++bits) {
        const WindowState state = stateOf(bits);
        const bool nothingReturned = !state.isGetHotQuests && !state.netHotWork;
        QVERIFY(state.questionTyped(true) == QuestionWay::Ignore);
        QVERIFY2(state.questionTyped(false)
                     == (nothingReturned ? QuestionWay::Explain : QuestionWay::Ask),
                 shown(state).constData());
    }
}

void TestWindowState::startByTheClient_isForgottenWithTheNextLogin()
{
    const RunningPrograms onlyLauncher{false, true};
    WindowState state;
    QCOMPARE(state.clientStarted(), online);
    WindowState relogged = state;
    QCOMPARE(state.processesListed(onlyLauncher).value(0), Step::StopSuggestions);
    QCOMPARE(relogged.loginChecked(false), WindowSteps());
    QCOMPARE(relogged.loginChecked(true), online + WindowSteps{Step::StopLoginPoll});
    QCOMPARE(relogged.processesListed(onlyLauncher), WindowSteps());
}

void TestWindowState::loggedInAtTheStart_isNoReasonToSwitchAgain()
{
    WindowState state;
    QCOMPARE(state.loginChecked(true), WindowSteps());
    QCOMPARE(state.launcherStarted(), online);
    QCOMPARE(state.loginChecked(true), WindowSteps());
}

void TestWindowState::loggedOutLater_keepsTheService()
{
    WindowState state;
    QCOMPARE(state.loginChecked(true), WindowSteps());
    QCOMPARE(state.launcherStarted(), online);
    QCOMPARE(state.loginChecked(false), WindowSteps());
    QVERIFY(state.getIDP);
    QVERIFY(state.loggedIn);
}

void TestWindowState::loginPoll_runsFromALoggedOutStartToTheLogin()
{
    WindowState state;
    QCOMPARE(state.loginChecked(false), WindowSteps());
    QCOMPARE(state.launcherStarted(), offline + WindowSteps{Step::StartLoginPoll});
    QCOMPARE(state.localListOpened(true).value(0), Step::SayNotLoggedIn);
    QCOMPARE(state.loginChecked(false), WindowSteps());
    QCOMPARE(state.questionTyped(false), QuestionWay::Explain);
    QCOMPARE(state.loginChecked(true), online + WindowSteps{Step::StopLoginPoll});
    QCOMPARE(state.questionTyped(false), QuestionWay::Explain); // loading
    QVERIFY(state.firstFetchReturned(Fetched::Questions, false).contains(Step::StartProcessWatch));
    QCOMPARE(state.questionTyped(false), QuestionWay::Ask);
}

void TestWindowState::failedFirstFetch_leavesALateSuccessWithoutANote()
{
    WindowState state;
    QCOMPARE(state.clientStarted(), online);
    QCOMPARE(state.firstFetchReturned(Fetched::Nothing, false), offline);
    QCOMPARE(state.localListOpened(true).value(0), Step::SayNoNetwork);
    QCOMPARE(state.questionTyped(false), QuestionWay::Ask);
    QVERIFY(state.refreshReturned(Fetched::Questions).contains(Step::SayRefreshed));
    QCOMPARE(state.refreshReturned(Fetched::Questions), WindowSteps{Step::ShowServiceQuestions});
    QVERIFY(!state.netHotWork);
}

void TestWindowState::networkProblemWhileLoading_outlastsTheFirstFetch()
{
    WindowState state;
    QCOMPARE(state.clientStarted(), online);
    QCOMPARE(state.networkFailed(), (WindowSteps{Step::LogWasOnline, Step::ShowLibrary}));
    QCOMPARE(state.firstFetchReturned(Fetched::Questions, true).value(0), Step::SayGreeting);
    QVERIFY(!state.getIDP);
    QVERIFY(state.refreshReturned(Fetched::Questions).contains(Step::SayRefreshed));
}

void TestWindowState::refreshAfterAFallBack_bringsBackNeitherWatchNorSuggestions()
{
    WindowState state;
    QCOMPARE(state.clientStarted(), online);
    QVERIFY(state.firstFetchReturned(Fetched::Questions, false).contains(Step::StartProcessWatch));
    QCOMPARE(state.processesListed({false, false}),
             (WindowSteps{Step::StopSuggestions, Step::StopProcessWatch}) + offline);
    QCOMPARE(state.localListOpened(true).value(0), Step::SayNotLoggedIn);
    QCOMPARE(state.refreshReturned(Fetched::Questions),
             (WindowSteps{Step::SayRefreshed, Step::ScrollToBottom, Step::ShowServiceQuestions}));
    QVERIFY(state.getIDP);
}

void TestWindowState::secondFailure_saysNothing()
{
    WindowState state;
    QCOMPARE(state.clientStarted(), online);
    QVERIFY(state.firstFetchReturned(Fetched::Questions, false).contains(Step::SayGreeting));
    QVERIFY(state.refreshReturned(Fetched::Nothing).contains(Step::SayRefreshFailed));
    QCOMPARE(state.refreshReturned(Fetched::Nothing), WindowSteps());
    QCOMPARE(state.networkFailed(), WindowSteps());
    QVERIFY(!state.netHotWork); // only a failed first fetch is a reason to speak of the network
}

QTEST_APPLESS_MAIN(TestWindowState)
#include "tst_windowstate.moc"
