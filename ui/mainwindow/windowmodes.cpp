#include "ui/mainwindow/windowmodes.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "service/reply/listedquestion.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/fixedmessages.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/hotquestions/loadingoverlay.h"
#include "ui/mainwindow/windowtimers.h"

#include <QJsonArray>
#include <QSettings>

namespace {

const char *boolText(bool value)
{
    return value ? "true" : "false";
}

} // namespace

WindowModes::WindowModes(const WindowForm &form, WindowTimers &timers)
    : m_form(form)
    , m_timers(timers)
    , m_watchedPrograms{QStringLiteral("Velistra_VDI_Client.exe"), QStringLiteral("Velistra.exe")}
{
    connect(&m_firstFetch, &HotFetch::fetched, this, &WindowModes::getHotQuestion_right);
    connect(&m_refreshFetch, &HotFetch::fetched, this, &WindowModes::refreshHotQuestions);
}

WindowModes::~WindowModes() = default;

void WindowModes::startForVdiClient()
{
    getIDP = true;
    startedByVdiClient = true;
    panelReady = true;
    buildHotQuestions();
    m_timers.hotRefresh.start();
}

void WindowModes::startForLauncher()
{
    JudgeUser_ifLogined_ByConfig();
    if (loggedIn) {
        switchToOnlineMode();
        return;
    }
    startedByVdiClient = false;
    switchToOfflineMode();
    m_timers.loginPoll.start();
}

void WindowModes::JudgeUser_ifLogined_ByConfig()
{
    const QSettings settings(clientSettingsPath(), QSettings::IniFormat);
    if (settings.value(QStringLiteral("LoginMode/loginstate")).toInt() == 0) {
        LOG_INFO() << "Account not logged in!";
        neverLoggedOut = false;
        return;
    }
    LOG_INFO() << "Account is logged in!";
    loggedIn = true;
    if (!neverLoggedOut) {
        switchToOnlineMode();
        m_timers.loginPoll.stop();
    }
}

void WindowModes::switchToOnlineMode()
{
    getIDP = true;
    startedByVdiClient = false;
    panelReady = true;
    buildHotQuestions();
    m_timers.hotRefresh.start();
}

void WindowModes::switchToOfflineMode()
{
    getIDP = false;
    panelReady = true;
    m_library.parseLocalQA();
    buildHotQuestions();
}

void WindowModes::detectionProcess_VdiAndOmbra()
{
    if (watchedProgramRuns(m_watchedPrograms, startedByVdiClient)) {
        return;
    }
    emit callerGone();
    m_timers.processWatch.stop();
    switchToOfflineMode();
}

void WindowModes::buildHotQuestions()
{
    delete m_hotColumn;
    m_hotColumn = new HotQuestionsColumn(m_form.inner);
    connect(m_hotColumn, &HotQuestionsColumn::questionClicked, this, &WindowModes::questionClicked);
    m_hotColumn->show();
    if (getIDP) {
        getHotQuestion_thread_right();
    } else {
        switchHotQuestionLocation_show();
    }
}

void WindowModes::getHotQuestion_thread_right()
{
    m_overlay = std::make_unique<LoadingOverlay>(m_hotColumn, m_form.inner);
    LOG_INFO() << "begin to start qthread for get hot questions";
    m_firstFetch.start();
}

void WindowModes::refreshHotQuestionsTimer()
{
    LOG_INFO() << "refresh hot questions timer by a new qthread";
    m_refreshFetch.start();
}

void WindowModes::getHotQuestion_right(const QJsonArray &hotQuestions)
{
    m_overlay.reset();
    isGetHotQuests = true;
    if (hotQuestions.isEmpty()) {
        LOG_WARNING() << "Network problem! failed to get hot issues.";
        netHotWork = true;
        switchToOfflineMode();
        return;
    }
    LOG_INFO() << "Get hot issues successfully! hot_questions_num: (%d)" << hotQuestions.size();
    m_form.region->addRobotMessage(fixedmessages::greeting());
    m_hotColumn->showServiceQuestions(readListedQuestions(hotQuestions));
    emit rightRegionSuccess();
    if (miravelVersion != QLatin1String("INVIRTUAL_SHORTCUT")) {
        m_timers.processWatch.start();
    }
}

void WindowModes::refreshHotQuestions(const QJsonArray &hotQuestions)
{
    if (hotQuestions.isEmpty()) {
        LOG_INFO() << "failed to get hot issues";
        if (getIDP) {
            m_form.region->addRobotMessage(fixedmessages::refreshFailed());
            m_form.region->scrollToBottom();
            showLocalQA();
            LOG_INFO() << "before hot issues online, now refresh LocalQA";
        }
        return;
    }
    LOG_INFO() << "Get hot issues successfully, refresh";
    if (!getIDP) {
        m_form.region->addRobotMessage(fixedmessages::refreshed());
        m_form.region->scrollToBottom();
    }
    netHotWork = false;
    getIDP = true;
    m_hotColumn->showServiceQuestions(readListedQuestions(hotQuestions));
}

void WindowModes::switchHotQuestionLocation_show()
{
    LOG_INFO() << "Get Location hot issues ! Location_hot_questions_num: (%d)" << m_library.size()
               << "netHotWork：" << boolText(netHotWork);
    m_form.region->addRobotMessage(netHotWork ? fixedmessages::noNetwork()
                                              : fixedmessages::notLoggedIn());
    if (m_library.size() > 0) {
        m_hotColumn->showLocalQuestions(m_library.questLocation());
        emit rightRegionSuccess();
    }
}

void WindowModes::showLocalQA()
{
    getIDP = false;
    panelReady = true;
    LOG_INFO() << "questLocation size" << m_library.size();
    if (m_library.size() < 1) {
        m_library.parseLocalQA();
        LOG_INFO() << "parse localQuest. questLocation size" << m_library.size();
    }
    m_hotColumn->showLocalQuestions(m_library.questLocation());
}

void WindowModes::refreshLocalQA()
{
    LOG_INFO() << "get network problem signal";
    if (!getIDP) {
        return;
    }
    LOG_INFO() << "before getIDP = " << boolText(getIDP) << ", show LocalQA";
    showLocalQA();
}

void WindowModes::switchHotQuestionLocation_change()
{
    m_hotColumn->showNextPage();
}

void WindowModes::hotRecom_list_click(const QString &question, qint64 questionId)
{
    LOG_INFO() << "hotRecom click."
               << "question: " << question << "questionId: " << questionId;
    LOG_INFO() << "getIDP: " << boolText(getIDP);
    if (getIDP) {
        m_form.region->Miss_RecomSend(question, QStringLiteral("hotquestion"), QString(),
                                      questionId);
        return;
    }
    const int place = getLocationQuest_Num(question);
    LOG_INFO() << "locatNum: " << place;
    if (place >= 0) {
        m_form.region->addQuestionBubble(question);
        m_form.region->showAnswer(question, m_library.answerLocation().at(place));
    }
}

int WindowModes::getLocationQuest_Num(const QString &question) const
{
    return m_library.questLocation().indexOf(question);
}

void WindowModes::askOrExplain(const QString &question, const char *explainedLog,
                               const char *askedLog)
{
    if (question.isEmpty()) {
        return;
    }
    const bool mayAsk = isGetHotQuests || netHotWork;
    LOG_INFO() << (mayAsk ? askedLog : explainedLog) << boolText(isGetHotQuests)
               << ". netHotWork:" << boolText(netHotWork);
    if (mayAsk) {
        m_form.region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
        return;
    }
    m_form.region->addQuestionBubble(question);
    m_form.region->addRobotMessage(fixedmessages::notLoggedIn());
    m_form.region->scrollToBottom();
}
