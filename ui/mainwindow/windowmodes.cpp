#include "ui/mainwindow/windowmodes.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "service/reply/listedquestion.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/fixedmessages.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/hotquestions/loadingoverlay.h"
#include "ui/mainwindow/input/inputpanel.h"
#include "ui/mainwindow/windowtimers.h"

#include <QJsonArray>
#include <QTextEdit>

namespace {

const char *boolText(bool value)
{
    return value ? "true" : "false";
}

Fetched fetchedOf(const QJsonArray &hotQuestions)
{
    return hotQuestions.isEmpty() ? Fetched::Nothing : Fetched::Questions;
}

} // namespace

WindowModes::WindowModes(const WindowForm &form, WindowTimers &timers)
    : m_form(form)
    , m_timers(timers)
    , m_watchedPrograms{QStringLiteral("Velistra_VDI_Client.exe"), QStringLiteral("Velistra.exe")}
{
    connect(&m_firstFetch, &HotFetch::fetched, this, &WindowModes::firstFetched);
    connect(&m_refreshFetch, &HotFetch::fetched, this, &WindowModes::refetched);
}

WindowModes::~WindowModes() = default;

void WindowModes::startForVdiClient()
{
    carryOut(m_state.clientStarted());
}

void WindowModes::startForLauncher()
{
    checkLogin();
    carryOut(m_state.launcherStarted());
}

void WindowModes::checkLogin()
{
    const SettingsFile settings(clientSettingsPath());
    const bool loggedIn = settings.value(settingsName(SettingsKey::LoginState)).toInt() != 0;
    LOG_INFO() << (loggedIn ? "Account is logged in!" : "Account not logged in!");
    carryOut(m_state.loginChecked(loggedIn));
}

void WindowModes::checkPrograms()
{
    if (!hasStarted()) {
        return;
    }
    carryOut(m_state.processesListed(runningPrograms(m_watchedPrograms)));
}

void WindowModes::networkFailed()
{
    LOG_INFO() << "get network problem signal";
    carryOut(m_state.networkFailed());
}

void WindowModes::fetchFirst()
{
    if (!hasStarted()) {
        return;
    }
    m_overlay = std::make_unique<LoadingOverlay>(m_column, m_form.inner);
    LOG_INFO() << "begin to start qthread for get hot questions";
    m_firstFetch.start();
}

void WindowModes::fetchAgain()
{
    if (!hasStarted()) {
        return;
    }
    LOG_INFO() << "refresh hot questions timer by a new qthread";
    m_refreshFetch.start();
}

void WindowModes::takeFirst(const QJsonArray &hotQuestions)
{
    if (!hasStarted()) {
        return;
    }
    m_overlay.reset();
    if (hotQuestions.isEmpty()) {
        LOG_WARNING() << "Network problem! failed to get hot issues.";
    } else {
        LOG_INFO() << "Get hot issues successfully! hot_questions_num: (%d)" << hotQuestions.size();
    }
    const bool shortcut = installationLayout() == InstallationLayout::Shortcut;
    carryOut(m_state.firstFetchReturned(fetchedOf(hotQuestions), shortcut), hotQuestions);
}

void WindowModes::takeRefresh(const QJsonArray &hotQuestions)
{
    if (!hasStarted()) {
        return;
    }
    LOG_INFO() << (hotQuestions.isEmpty() ? "failed to get hot issues"
                                          : "Get hot issues successfully, refresh");
    carryOut(m_state.refreshReturned(fetchedOf(hotQuestions)), hotQuestions);
}

void WindowModes::openLocalList()
{
    if (!hasStarted()) {
        return;
    }
    LOG_INFO() << "Get Location hot issues ! Location_hot_questions_num: (%d)" << m_library.size()
               << "netHotWork：" << boolText(m_state.netHotWork);
    carryOut(m_state.localListOpened(m_library.size() > 0));
}

void WindowModes::showLibrary()
{
    if (!hasStarted()) {
        return;
    }
    carryOut(m_state.localLibraryWanted());
}

void WindowModes::showNextLocalPage()
{
    if (!hasStarted()) {
        return;
    }
    m_column->showNextLocalPage();
}

void WindowModes::readLibrary()
{
    m_library.read();
}

void WindowModes::takeHotQuestion(const QString &question, qint64 questionId)
{
    LOG_INFO() << "hotRecom click."
               << "question: " << question << "questionId: " << questionId;
    LOG_INFO() << "getIDP: " << boolText(m_state.getIDP);
    if (m_state.getIDP) {
        m_form.region->Miss_RecomSend(question, QStringLiteral("hotquestion"), QString(),
                                      questionId);
        return;
    }
    const int place = placeInLibrary(question);
    LOG_INFO() << "locatNum: " << place;
    if (place >= 0) {
        m_form.region->addQuestionBubble(question);
        m_form.region->showAnswer(question, m_library.answers().at(place));
    }
}

int WindowModes::placeInLibrary(const QString &question) const
{
    return m_library.questions().indexOf(question);
}

void WindowModes::askOrExplain(const QString &question, const char *explainedLog,
                               const char *askedLog)
{
    const QuestionWay way = m_state.questionTyped(question.isEmpty());
    if (way == QuestionWay::Ignore) {
        return;
    }
    const bool mayAsk = way == QuestionWay::Ask;
    LOG_INFO() << (mayAsk ? askedLog : explainedLog) << boolText(m_state.isGetHotQuests)
               << ". netHotWork:" << boolText(m_state.netHotWork);
    if (mayAsk) {
        m_form.region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
        return;
    }
    m_form.region->addQuestionBubble(question);
    m_form.region->addRobotMessage(fixedmessages::notLoggedIn());
    m_form.region->scrollToBottom();
}

void WindowModes::carryOut(const WindowSteps &steps, const QJsonArray &hotQuestions)
{
    for (const WindowStep step : steps) {
        carryOut(step, hotQuestions);
    }
}

void WindowModes::carryOut(WindowStep step, const QJsonArray &hotQuestions)
{
    switch (step) {
    case WindowStep::SayGreeting:
        return m_form.region->addRobotMessage(fixedmessages::greeting());
    case WindowStep::SayNotLoggedIn:
        return m_form.region->addRobotMessage(fixedmessages::notLoggedIn());
    case WindowStep::SayNoNetwork:
        return m_form.region->addRobotMessage(fixedmessages::noNetwork());
    case WindowStep::SayRefreshFailed:
        return m_form.region->addRobotMessage(fixedmessages::refreshFailed());
    case WindowStep::SayRefreshed:
        return m_form.region->addRobotMessage(fixedmessages::refreshed());
    case WindowStep::ScrollToBottom:
        return m_form.region->scrollToBottom();
    case WindowStep::ReportReady:
        return emit ready();
    case WindowStep::MakeColumn:
        return makeColumn();
    case WindowStep::FetchQuestions:
        return fetchFirst();
    case WindowStep::ShowServiceQuestions:
        return m_column->showServiceQuestions(readListedQuestions(hotQuestions));
    case WindowStep::ReadLibrary:
        return readLibrary();
    case WindowStep::OpenLocalList:
        return openLocalList();
    case WindowStep::ShowLocalQuestions:
        return m_column->showLocalQuestions(m_library.questions());
    case WindowStep::ShowLibrary:
        return readAndShowLibrary();
    case WindowStep::StartHotRefresh:
        return m_timers.hotRefresh.start();
    case WindowStep::StartLoginPoll:
        return m_timers.loginPoll.start();
    case WindowStep::StopLoginPoll:
        return m_timers.loginPoll.stop();
    case WindowStep::StartProcessWatch:
        return m_timers.processWatch.start();
    case WindowStep::StopProcessWatch:
        return m_timers.processWatch.stop();
    case WindowStep::StopSuggestions:
        return emit callerGone();
    case WindowStep::LogWasOnline:
        LOG_INFO() << "before getIDP = " << boolText(true) << ", show LocalQA";
        return;
    case WindowStep::LogFellBack:
        LOG_INFO() << "before hot issues online, now refresh LocalQA";
        return;
    }
}

void WindowModes::makeColumn()
{
    if (m_column != nullptr && m_column->isAncestorOf(m_column->window()->focusWidget())) {
        m_form.inputPanel->input()->setFocus(); // or it is passed on to the title bar
    }
    delete m_column;
    m_column = new HotQuestionsColumn(m_form.inner);
    connect(m_column, &HotQuestionsColumn::questionClicked, this, &WindowModes::questionClicked);
    connect(m_column, &HotQuestionsColumn::nextLocalPageWanted, this,
            &WindowModes::nextLocalPageWanted);
    m_column->show();
}

void WindowModes::readAndShowLibrary()
{
    LOG_INFO() << "questLocation size" << m_library.size();
    if (m_library.size() < 1) {
        readLibrary();
        LOG_INFO() << "parse localQuest. questLocation size" << m_library.size();
    }
    m_column->showLocalQuestions(m_library.questions());
}
