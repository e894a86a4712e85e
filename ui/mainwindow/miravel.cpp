#include "ui/mainwindow/miravel.h"

#include "app/apppaths.h"
#include "app/logstream.h"
#include "app/texttools.h"
#include "localchannel/sysguardqueststhread.h"
#include "service/hotqueststhread.h"
#include "ui/answer/qaregion.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/mainwindow/hotpaging.h"
#include "ui/mainwindow/hotquestionscolumn.h"
#include "ui/mainwindow/inputpanel.h"
#include "ui/mainwindow/loadingoverlay.h"
#include "ui/mainwindow/titlebar.h"

#include <QApplication>
#include <QDir>
#include <QGridLayout>
#include <QJsonArray>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QSettings>
#include <QTextEdit>

namespace {

constexpr QSize windowSize(920, 640);
constexpr QRect regionPlace(2, 58, 646, 490);

constexpr int associationTickMs = 1000;
constexpr int loginPollMs = 60000;
constexpr int hotRefreshMs = 1800000;
constexpr unsigned long workerStopMs = 2000;

const char *boolText(bool value)
{
    return value ? "true" : "false";
}

} // namespace

Miravel::Miravel(QWidget *parent)
    : QWidget(parent)
    , m_configPath(miravelConfigPath())
{
    buildForm();
    buildTitleBar();
    m_region = new QARegion(m_inner);
    m_region->setGeometry(regionPlace);
    buildInput();
    delete_gif();
    connect(&m_hotRefresh, &QTimer::timeout, this, &Miravel::refreshHotQuestionsTimer);
    centreOnScreen();
    raise();
    activateWindow();
    listenSysguardMessage_thread();
}

Miravel::~Miravel()
{
    stopHotWorker(m_hotWorker);
    stopHotWorker(m_refreshWorker);
    m_guardThread->stop();
    if (m_guardThread->wait(workerStopMs)) {
        delete m_guardThread;
    }
}

void Miravel::stopHotWorker(const QPointer<HotQuestsThread> &worker)
{
    if (worker.isNull()) {
        return;
    }
    worker->disconnect(this);
    worker->quit(); // ends the waits inside the worker as well
    if (worker->wait(workerStopMs)) {
        delete worker;
    }
    // A worker that still runs is left alone: destroying a running thread would abort the program.
}

void Miravel::buildForm()
{
    if (objectName().isEmpty()) {
        setObjectName(QStringLiteral("Miravel"));
    }
    setFixedSize(windowSize);
    auto *layout = new QGridLayout(this);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    m_inner = new QWidget(this);
    m_inner->setFixedSize(windowSize);
    layout->addWidget(m_inner);
    setWindowTitle(tr("Miravel"));
    setAttribute(Qt::WA_QuitOnClose);
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
}

void Miravel::buildTitleBar()
{
    const QSettings settings(m_configPath, QSettings::IniFormat);
    const bool dialogDirectly
        = settings.value(QStringLiteral("SysEnvironment/EnvType"), 1).toInt() == 1;
    auto *bar = new TitleBar(dialogDirectly ? TitleBar::AboutButton::OpensDialog
                                            : TitleBar::AboutButton::OpensMenu,
                             m_inner);
    if (dialogDirectly) {
        connect(bar, &TitleBar::aboutClicked, this, &Miravel::about_clicked);
    }
    connect(bar, &TitleBar::minimiseClicked, this, &Miravel::min_windows);
    connect(bar, &TitleBar::closeClicked, this, &Miravel::close_windows);
}

void Miravel::buildInput()
{
    m_inputPanel = new InputPanel(m_inner);
    m_inputPanel->input()->installEventFilter(this);
    m_inputPanel->input()->setFocus(); // the user types at once
    connect(m_inputPanel, &InputPanel::sendClicked, this, &Miravel::send_messages);
    connect(&m_associationTick, &QTimer::timeout, this, &Miravel::showAssociation);
    m_associationTick.start(associationTickMs);
}

void Miravel::delete_gif()
{
    QDir folder(QStringLiteral("gif/"));
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &file : files) {
        folder.remove(file);
    }
}

void Miravel::centreOnScreen()
{
    // The screen's origin is left out on purpose: the window opens on the primary screen.
    const QSize available = screen()->geometry().size();
    move((available.width() - width()) / 2, (available.height() - height()) / 2);
}

void Miravel::startForVdiClient()
{
    getIDP = true;
    startedByVdiClient = true;
    panelReady = true;
    buildHotQuestions();
    m_hotRefresh.start(hotRefreshMs);
}

void Miravel::startForLauncher()
{
    JudgeUser_ifLogined_ByConfig();
    if (loggedIn) {
        switchToOnlineMode();
        return;
    }
    panelReady = true;
    getIDP = false;
    startedByVdiClient = false;
    buildHotQuestions();
    connect(&m_loginPoll, &QTimer::timeout, this, &Miravel::JudgeUser_ifLogined_ByConfig);
    m_loginPoll.start(loginPollMs);
}

void Miravel::JudgeUser_ifLogined_ByConfig()
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
        m_loginPoll.stop();
    }
}

void Miravel::switchToOnlineMode()
{
    getIDP = true;
    startedByVdiClient = false;
    panelReady = true;
    buildHotQuestions();
    m_hotRefresh.start(hotRefreshMs);
}

void Miravel::buildHotQuestions()
{
    delete m_hotColumn;
    m_hotColumn = new HotQuestionsColumn(m_inner);
    connect(m_hotColumn, &HotQuestionsColumn::questionClicked, this, &Miravel::hotRecom_list_click);
    connect(m_hotColumn, &HotQuestionsColumn::nextPageRequested, this, &Miravel::showNextHotPage);
    m_hotColumn->show();
    if (getIDP) {
        getHotQuestion_thread_right();
    } else {
        switchHotQuestionLocation_show();
    }
}

void Miravel::getHotQuestion_thread_right()
{
    m_overlay = std::make_unique<LoadingOverlay>(m_hotColumn, m_inner);
    LOG_INFO() << "begin to start qthread for get hot questions";
    m_hotWorker = startHotWorker(&Miravel::getHotQuestion_right);
}

void Miravel::refreshHotQuestionsTimer()
{
    LOG_INFO() << "refresh hot questions timer by a new qthread";
    m_refreshWorker = startHotWorker(&Miravel::refreshHotQuestions);
}

HotQuestsThread *Miravel::startHotWorker(void (Miravel::*result)(const QJsonArray &))
{
    // No owner: a worker outlives a window that goes, and deletes itself when it has finished.
    auto *worker = new HotQuestsThread(this);
    connect(worker, &HotQuestsThread::hotQuests_signal, this, result);
    connect(worker, &HotQuestsThread::finished, worker, &QObject::deleteLater);
    worker->start();
    return worker;
}

void Miravel::getHotQuestion_right(const QJsonArray &hotQuestions)
{
    m_overlay.reset();
    isGetHotQuests = true;
    if (hotQuestions.isEmpty()) {
        LOG_WARNING() << "Network problem! failed to get hot issues.";
        netHotWork = true;
        getIDP = false;
        panelReady = true;
        buildHotQuestions();
        return;
    }
    LOG_INFO() << "Get hot issues successfully! hot_questions_num: (%d)" << hotQuestions.size();
    m_region->addRobotMessage(tr("您好，我是Miravel，请简要描述您的问题或错误提示!"));
    showServiceQuestions(hotQuestions);
    emit rightRegionSuccess();
}

void Miravel::refreshHotQuestions(const QJsonArray &hotQuestions)
{
    if (!m_refreshWorker.isNull()) {
        m_refreshWorker->quit();
        m_refreshWorker->wait(); // it has sent its result and is about to end
    }
    if (hotQuestions.isEmpty()) {
        LOG_WARNING() << "failed to get hot issues";
        if (getIDP) {
            m_region->addRobotMessage(tr("热门问题刷新失败，您可在“热门问答”区域查看常见问题。"));
            m_region->scrollToBottom();
            showLocalQA();
            LOG_INFO() << "before hot issues online, now refresh LocalQA";
        }
        return;
    }
    LOG_INFO() << "Get hot issues successfully, refresh";
    if (!getIDP) {
        m_region->addRobotMessage(tr("热门问题刷新成功。"));
        m_region->scrollToBottom();
    }
    netHotWork = false;
    getIDP = true;
    showServiceQuestions(hotQuestions);
}

void Miravel::showServiceQuestions(const QJsonArray &hotQuestions)
{
    m_hotQuestions = hotQuestions;
    hotPage = 0;
    m_hotColumn->setNextPageVisible(true);
    m_hotColumn->showServicePage(m_hotQuestions, hotPage);
}

void Miravel::showNextHotPage()
{
    if (!getIDP) {
        switchHotQuestionLocation_change();
        return;
    }
    hotPage = nextServicePage(hotPage, m_hotQuestions.size());
    m_hotColumn->showServicePage(m_hotQuestions, hotPage);
}

void Miravel::switchHotQuestionLocation_show()
{
    LOG_INFO() << "Get Location hot issues ! Location_hot_questions_num: (%d)"
               << questLocation.size() - 1 << "netHotWork：" << boolText(netHotWork);
    const QString explanation = netHotWork
                                  ? tr("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                                       "您可在“热门问答”区域查看常见问题。")
                                  : notLoggedInText();
    m_region->addRobotMessage(explanation);
    hotPage = 0;
    if (questLocation.size() > 1) {
        m_hotColumn->setNextPageVisible(true);
        m_hotColumn->showLocalPage(questLocation, hotPage);
        emit rightRegionSuccess();
    }
}

void Miravel::showLocalQA()
{
    getIDP = false;
    panelReady = true;
    LOG_INFO() << "questLocation size" << questLocation.size() - 1;
    hotPage = 0;
    m_hotColumn->setNextPageVisible(true);
    m_hotColumn->showLocalPage(questLocation, hotPage);
}

void Miravel::switchHotQuestionLocation_change()
{
    hotPage = nextLocalPage(hotPage, questLocation.size());
    m_hotColumn->showLocalPage(questLocation, hotPage);
}

void Miravel::hotRecom_list_click(QString question, qint64 questionId)
{
    LOG_INFO() << "hotRecom click."
               << "question: " << question << "questionId: " << questionId;
    LOG_INFO() << "getIDP: " << boolText(getIDP);
    if (getIDP) {
        m_region->Miss_RecomSend(question, QStringLiteral("hotquestion"), QString(), questionId);
        return;
    }
    const int place = getLocationQuest_Num(question);
    LOG_INFO() << "locatNum: " << place;
    if (place >= 0) {
        m_region->addQuestionBubble(question);
        m_region->showAnswer(question, answerLocation.at(place));
    }
}

int Miravel::getLocationQuest_Num(QString question)
{
    return questLocation.indexOf(question);
}

QString Miravel::notLoggedInText()
{
    return tr("您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。"
              "您可在“热门问答”区域查看常见问题。"
              "我将会在您登录鉴权后，提供更多智能服务。");
}

void Miravel::send_messages()
{
    const QString question = m_inputPanel->input()->toPlainText().simplified();
    m_inputPanel->input()->clear();
    askOrExplain(question, "send messages when not logged in, isGetHotQuests:",
                 "send messages by idp qa request, isGetHotQuests:");
}

void Miravel::askOrExplain(const QString &question, const char *explainedLog, const char *askedLog)
{
    if (question.isEmpty()) {
        return;
    }
    const bool mayAsk = isGetHotQuests || netHotWork;
    LOG_INFO() << (mayAsk ? askedLog : explainedLog) << boolText(isGetHotQuests)
               << ". netHotWork:" << boolText(netHotWork);
    if (mayAsk) {
        m_region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
        return;
    }
    m_region->addQuestionBubble(question);
    m_region->addRobotMessage(notLoggedInText());
    m_region->scrollToBottom();
}

void Miravel::showAssociation()
{
    TextInput_color();
}

void Miravel::listenSysguardMessage_thread()
{
    LOG_INFO() << "begin to start qthread for listen sysguard message";
    m_guardThread = new SysguardQuestsThread(this);
    connect(this, &Miravel::rightRegionSuccess, m_guardThread,
            &SysguardQuestsThread::rightRegionIniSuccess);
    connect(m_guardThread, &SysguardQuestsThread::sysQuests_signal, this,
            &Miravel::sendSysguardQuest);
    // Queued: the next question is not asked inside the one that has just been dealt with, so any
    // number of them needs no more stack than one.
    connect(this, &Miravel::QAFinished, m_guardThread, &SysguardQuestsThread::QAFinishedNestQuest,
            Qt::QueuedConnection);
    connect(qApp, &QGuiApplication::lastWindowClosed, m_guardThread, &SysguardQuestsThread::stop);
    m_guardThread->start();
}

void Miravel::sendSysguardQuest(QJsonObject obj)
{
    LOG_INFO() << "send Sysguard Quest: " << timeOfDay();
    askOrExplain(throughLocalEncoding(obj.value(QLatin1String("question")).toString()),
                 "send messages(Sysguard) when not logged in, isGetHotQuests:",
                 "send messages(Sysguard) by idp qa request, isGetHotQuests:");
    LOG_INFO() << "send QAFinished signal";
    emit QAFinished();
}

void Miravel::TextInput_color()
{
    m_inputPanel->applyTypingStyle();
}

void Miravel::close_windows()
{
    LOG_INFO() << "click to Close the window";
    close();
}

void Miravel::min_windows()
{
    showMinimized();
}

void Miravel::about_clicked()
{
    LOG_DEBUG() << "click to about btn";
    auto *dialog = new AboutDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(true);
    dialog->show();
}

bool Miravel::eventFilter(QObject *watched, QEvent *event)
{
    QTextEdit *input = m_inputPanel->input();
    if (watched == input) {
        if (event->type() == QEvent::KeyPress
            && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Return) {
            send_messages();
            return true;
        }
        if (event->type() == QEvent::FocusOut && !menuOpen) {
            input->moveCursor(QTextCursor::End);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void Miravel::mousePressEvent(QMouseEvent *event)
{
    m_dragOffset = event->globalPos() - pos();
}

void Miravel::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() == Qt::LeftButton && !isMaximized() && !m_dragOffset.isNull()) {
        move(event->globalPos() - m_dragOffset);
    }
}

void Miravel::mouseReleaseEvent(QMouseEvent *event)
{
    Q_UNUSED(event)
    m_dragOffset = QPoint();
}
