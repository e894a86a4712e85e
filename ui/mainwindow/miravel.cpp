#include "ui/mainwindow/miravel.h"

#include "app/apppaths.h"
#include "app/logstream.h"
#include "app/texttools.h"
#include "ui/answer/qaregion.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/mainwindow/aboutmenu.h"
#include "ui/mainwindow/fixedmessages.h"
#include "ui/mainwindow/focusorder.h"
#include "ui/mainwindow/hotquestionscolumn.h"
#include "ui/mainwindow/inputpanel.h"
#include "ui/mainwindow/itreport.h"
#include "ui/mainwindow/loadingoverlay.h"
#include "ui/mainwindow/screens.h"
#include "ui/mainwindow/screenwatch.h"
#include "ui/mainwindow/suggestions.h"
#include "ui/mainwindow/titlebar.h"
#include "ui/preview/imagedisplay.h"

#include <QCursor>
#include <QDir>
#include <QGuiApplication>
#include <QInputMethod>
#include <QJsonArray>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTextEdit>

namespace {

const char *boolText(bool value)
{
    return value ? "true" : "false";
}

} // namespace

Miravel::Miravel(QWidget *parent)
    : QWidget(parent)
    , m_configPath(miravelConfigPath())
    , m_watchedPrograms{QStringLiteral("Velistra_VDI_Client.exe"), QStringLiteral("Velistra.exe")}
    , m_form(buildWindowForm(*this, opensAboutMenu()))
    , m_suggestions(
          std::make_unique<Suggestions>(m_form.inputPanel->input(), m_form.region, m_form.inner))
    , m_timers(this)
    , m_drag(this)
{
    connectTitleBar();
    connectTimers();
    connectInput();
    delete_gif();
    connect(&m_firstFetch, &HotFetch::fetched, this, &Miravel::getHotQuestion_right);
    connect(&m_refreshFetch, &HotFetch::fetched, this, &Miravel::refreshHotQuestions);
    // The screen's origin is left out on purpose: the window opens on the primary screen.
    move(centredPosition(screen()->geometry().size(), size()));
    raise();
    activateWindow();
    watchScreens();
    listenSysguardMessage_thread();
    connect(m_form.region, &QARegion::netproblem, this, &Miravel::refreshLocalQA);
}

Miravel::~Miravel() = default;

bool Miravel::opensAboutMenu() const
{
    const QSettings settings(m_configPath, QSettings::IniFormat);
    return settings.value(QStringLiteral("SysEnvironment/EnvType"), 1).toInt() != 1;
}

void Miravel::connectTitleBar()
{
    connect(m_form.titleBar, &TitleBar::aboutClicked, this,
            opensAboutMenu() ? &Miravel::about_menuClicked : &Miravel::about_clicked);
    connect(m_form.titleBar, &TitleBar::minimiseClicked, this, &Miravel::min_windows);
    connect(m_form.titleBar, &TitleBar::closeClicked, this, &Miravel::close_windows);
}

void Miravel::connectInput()
{
    const InputPanel *panel = m_form.inputPanel;
    panel->input()->installEventFilter(this);
    panel->input()->setFocus(); // the user types at once
    connect(panel, &InputPanel::sendClicked, this, &Miravel::send_messages);
    connect(panel, &InputPanel::menuRequested, this, &Miravel::inputEdit_rightMenu);
    connect(panel, &InputPanel::cutRequested, this, &Miravel::cut_slots);
    connect(panel, &InputPanel::copyRequested, this, &Miravel::copy_slots);
    connect(panel, &InputPanel::pasteRequested, this, &Miravel::paste_slots);
    connect(m_suggestions.get(), &Suggestions::questionClicked, this,
            &Miravel::association_list_click);
    connect(m_suggestions.get(), &Suggestions::closeClicked, this, &Miravel::assoclose_windows);
    m_timers.associationTick.start();
}

void Miravel::connectTimers()
{
    connect(&m_timers.associationTick, &QTimer::timeout, this, &Miravel::showAssociation);
    connect(&m_timers.loginPoll, &QTimer::timeout, this, &Miravel::JudgeUser_ifLogined_ByConfig);
    connect(&m_timers.processWatch, &QTimer::timeout, this, &Miravel::detectionProcess_VdiAndOmbra);
    connect(&m_timers.hotRefresh, &QTimer::timeout, this, &Miravel::refreshHotQuestionsTimer);
}

void Miravel::watchScreens()
{
    auto *watch = new ScreenWatch(this);
    connect(watch, &ScreenWatch::screensChanged, this, &Miravel::slotResize);
    connect(watch, &ScreenWatch::logicalDotsPerInchChanged, this,
            &Miravel::OnLogicalDotsPerInchChanged);
}

void Miravel::delete_gif()
{
    QDir folder(QStringLiteral("gif/"));
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &file : files) {
        folder.remove(file);
    }
}

void Miravel::startForVdiClient()
{
    getIDP = true;
    startedByVdiClient = true;
    panelReady = true;
    buildHotQuestions();
    m_timers.hotRefresh.start();
}

void Miravel::startForLauncher()
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
        m_timers.loginPoll.stop();
    }
}

void Miravel::switchToOnlineMode()
{
    getIDP = true;
    startedByVdiClient = false;
    panelReady = true;
    buildHotQuestions();
    m_timers.hotRefresh.start();
}

void Miravel::switchToOfflineMode()
{
    getIDP = false;
    panelReady = true;
    m_library.parseLocalQA();
    buildHotQuestions();
}

void Miravel::detectionProcess_VdiAndOmbra()
{
    if (watchedProgramRuns(m_watchedPrograms, startedByVdiClient)) {
        return;
    }
    m_timers.associationTick.disconnect(this);
    m_timers.associationTick.stop();
    m_suggestions->close(); // no tick would close them any more
    m_timers.processWatch.stop();
    switchToOfflineMode();
}

void Miravel::buildHotQuestions()
{
    delete m_hotColumn;
    m_hotColumn = new HotQuestionsColumn(m_form.inner);
    connect(m_hotColumn, &HotQuestionsColumn::questionClicked, this, &Miravel::hotRecom_list_click);
    m_hotColumn->show();
    if (getIDP) {
        getHotQuestion_thread_right();
    } else {
        switchHotQuestionLocation_show();
    }
}

void Miravel::getHotQuestion_thread_right()
{
    m_overlay = std::make_unique<LoadingOverlay>(m_hotColumn, m_form.inner);
    LOG_INFO() << "begin to start qthread for get hot questions";
    m_firstFetch.start();
}

void Miravel::refreshHotQuestionsTimer()
{
    LOG_INFO() << "refresh hot questions timer by a new qthread";
    m_refreshFetch.start();
}

void Miravel::getHotQuestion_right(const QJsonArray &hotQuestions)
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
    m_hotColumn->showServiceQuestions(hotQuestions);
    emit rightRegionSuccess();
    if (miravelVersion != QLatin1String("INVIRTUAL_SHORTCUT")) {
        m_timers.processWatch.start();
    }
}

void Miravel::refreshHotQuestions(const QJsonArray &hotQuestions)
{
    if (hotQuestions.isEmpty()) {
        LOG_WARNING() << "failed to get hot issues";
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
    m_hotColumn->showServiceQuestions(hotQuestions);
}

void Miravel::switchHotQuestionLocation_show()
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

void Miravel::showLocalQA()
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

void Miravel::refreshLocalQA()
{
    LOG_INFO() << "get network problem signal";
    if (!getIDP) {
        return;
    }
    LOG_INFO() << "before getIDP = " << boolText(getIDP) << ", show LocalQA";
    showLocalQA();
}

void Miravel::switchHotQuestionLocation_change()
{
    m_hotColumn->showNextPage();
}

void Miravel::hotRecom_list_click(QString question, qint64 questionId)
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

int Miravel::getLocationQuest_Num(QString question)
{
    return m_library.questLocation().indexOf(question);
}

void Miravel::send_messages()
{
    const QString question = m_form.inputPanel->input()->toPlainText().simplified();
    m_form.inputPanel->input()->clear();
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
        m_form.region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
        return;
    }
    m_form.region->addQuestionBubble(question);
    m_form.region->addRobotMessage(fixedmessages::notLoggedIn());
    m_form.region->scrollToBottom();
}

void Miravel::showAssociation()
{
    TextInput_color();
    if (m_suggestions->textHasChanged() && isGetHotQuests) {
        showAssociation_process();
    }
}

void Miravel::showAssociation_process()
{
    TextInput_color();
    m_suggestions->fetch();
}

void Miravel::association_list_click(QString question, qint64 id)
{
    m_suggestions->closeForQuestion();
    m_form.inputPanel->input()->clear();
    m_form.region->Miss_RecomSend(question, QStringLiteral("associate"), QString(), id);
}

void Miravel::assoclose_windows()
{
    m_suggestions->close();
}

void Miravel::listenSysguardMessage_thread()
{
    LOG_INFO() << "begin to start qthread for listen sysguard message";
    m_guardThread.reset(new SysguardQuestsThread(this));
    SysguardQuestsThread *const guard = m_guardThread.get();
    connect(this, &Miravel::rightRegionSuccess, guard,
            &SysguardQuestsThread::rightRegionIniSuccess);
    connect(guard, &SysguardQuestsThread::sysQuests_signal, this, &Miravel::sendSysguardQuest);
    // Queued: the next question is not asked inside the one that has just been dealt with, so any
    // number of them needs no more stack than one.
    connect(this, &Miravel::QAFinished, guard, &SysguardQuestsThread::QAFinishedNestQuest,
            Qt::QueuedConnection);
    connect(qGuiApp, &QGuiApplication::lastWindowClosed, guard, &SysguardQuestsThread::stop);
    guard->start();
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
    m_form.inputPanel->applyTypingStyle();
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

void Miravel::about_menuClicked()
{
    auto *menu = new AboutMenu(this);
    connect(menu, &AboutMenu::helpRequested, this, &Miravel::itReport_url);
    connect(menu, &AboutMenu::aboutRequested, this, &Miravel::about_clicked);
    m_form.titleBar->aboutButton()->setMenu(menu);
    menu->popup(QCursor::pos());
}

void Miravel::itReport_url()
{
    if (itReportHasSite(m_diagnosis)) {
        openItReportSite(m_configPath);
    } else {
        m_form.region->addRobotMessage(callItSupportText());
    }
}

void Miravel::inputEdit_rightMenu()
{
    m_form.inputPanel->openMenu();
}

void Miravel::cut_slots()
{
    m_form.inputPanel->cut();
}

void Miravel::copy_slots()
{
    m_form.inputPanel->copy();
}

void Miravel::paste_slots()
{
    m_form.inputPanel->paste();
}

void Miravel::slotResize()
{
    const QSize area = sizeOfScreenAtOrigin(screenPlaces());
    LOG_DEBUG() << "get rect of primaryScreen, width:" << area.width()
                << " height:" << area.height();
    QCursor::setPos(1, 1);
    const QPoint place = centredPosition(area, size());
    LOG_DEBUG() << "Move Miravel to OriginX:" << place.x() << "OriginY:" << place.y();
    placeAnew(*this, place);
    slotResize_ImagePreviewWid(area.width(), area.height());
}

void Miravel::slotResize_ImagePreviewWid(int width, int height)
{
    ImageDisplay *preview = m_form.region->preview();
    if (preview == nullptr || !preview->isVisible()) {
        return;
    }
    const QPoint place = centredPosition({width, height}, preview->size());
    LOG_DEBUG() << "Move picture preview window of Miravel to OriginX:" << place.x()
                << "OriginY:" << place.y();
    placeAnew(*preview, place);
}

void Miravel::OnLogicalDotsPerInchChanged()
{
    showAnew(*this);
}

bool Miravel::eventFilter(QObject *watched, QEvent *event)
{
    QTextEdit *input = m_form.inputPanel->input();
    if (watched == input && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Return) {
        if (m_form.inputPanel->isComposing()) {
            QGuiApplication::inputMethod()->commit(); // the key ends the word that is composed
        } else {
            send_messages();
        }
        return true;
    }
    if (watched == input && event->type() == QEvent::FocusOut && !m_form.inputPanel->isMenuOpen()) {
        input->moveCursor(QTextCursor::End);
    }
    return QWidget::eventFilter(watched, event);
}

bool Miravel::focusNextPrevChild(bool next)
{
    QWidget *neighbour = neighbourInReadingOrder(
        {m_form.titleBar, m_form.region, m_suggestions->popup(), m_form.inputPanel, m_hotColumn},
        focusWidget(), next);
    if (neighbour == nullptr) {
        return false;
    }
    neighbour->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void Miravel::mousePressEvent(QMouseEvent *event)
{
    m_drag.press(*event);
}

void Miravel::mouseMoveEvent(QMouseEvent *event)
{
    m_drag.move(*event);
}

void Miravel::mouseReleaseEvent(QMouseEvent *event)
{
    Q_UNUSED(event)
    m_drag.release();
}
