#include "ui/mainwindow/miravel.h"

#include "app/base/apppaths.h"
#include "app/base/logstream.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "app/base/texttools.h"
#include "localchannel/guardmessage.h"
#include "ui/answer/qaregion.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/mainwindow/focusorder.h"
#include "ui/mainwindow/frame/aboutmenu.h"
#include "ui/mainwindow/frame/screenwatch.h"
#include "ui/mainwindow/frame/titlebar.h"
#include "ui/mainwindow/frame/windowplace.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/input/inputpanel.h"
#include "ui/mainwindow/itreport.h"
#include "ui/mainwindow/suggestions/suggestionkeys.h"
#include "ui/mainwindow/suggestions/suggestions.h"
#include "ui/mainwindow/windowmodes.h"
#include "ui/preview/animationfile.h"
#include "ui/preview/imagedisplay.h"
#include "ui/style/tooltiplook.h"

#include <QCursor>
#include <QDir>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QTextEdit>

Miravel::Miravel(QWidget *parent)
    : QWidget(parent)
    , m_configPath(miravelConfigPath())
    , m_opensAboutMenu(opensAboutMenu())
    , m_form(buildWindowForm(*this, m_opensAboutMenu))
    , m_suggestions(
          std::make_unique<Suggestions>(m_form.inputPanel->input(), m_form.region, m_form.inner))
    , m_timers(this)
    , m_modes(std::make_unique<WindowModes>(m_form, m_timers))
    , m_drag(this)
{
    new ToolTipLook(this);
    connectTitleBar();
    connectTimers();
    connectInput();
    delete_gif();
    connectModes();
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
    const SettingsFile settings(m_configPath);
    return settings.value(settingsName(SettingsKey::AboutButton), 1).toInt() != 1;
}

void Miravel::connectTitleBar()
{
    connect(m_form.titleBar, &TitleBar::aboutClicked, this,
            m_opensAboutMenu ? &Miravel::about_menuClicked : &Miravel::about_clicked);
    connect(m_form.titleBar, &TitleBar::minimiseClicked, this, &Miravel::min_windows);
    connect(m_form.titleBar, &TitleBar::closeClicked, this, &Miravel::close_windows);
}

void Miravel::connectInput()
{
    const InputPanel *panel = m_form.inputPanel;
    panel->input()->installEventFilter(this);
    panel->input()->setFocus();                              // the user types at once
    new SuggestionKeys(panel->input(), m_suggestions.get()); // belongs to the input box
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

void Miravel::connectModes()
{
    connect(m_modes.get(), &WindowModes::questionClicked, this, &Miravel::hotRecom_list_click);
    connect(m_modes.get(), &WindowModes::nextLocalPageWanted, this,
            &Miravel::switchHotQuestionLocation_change);
    connect(m_modes.get(), &WindowModes::firstFetched, this, &Miravel::getHotQuestion_right);
    connect(m_modes.get(), &WindowModes::refetched, this, &Miravel::refreshHotQuestions);
    connect(m_modes.get(), &WindowModes::ready, this, &Miravel::rightRegionSuccess);
    connect(m_modes.get(), &WindowModes::callerGone, this, &Miravel::stopSuggestions);
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
    QDir folder(animationFolder);
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &file : files) {
        folder.remove(file);
    }
}

void Miravel::startForVdiClient()
{
    m_modes->startForVdiClient();
}

void Miravel::startForLauncher()
{
    m_modes->startForLauncher();
}

void Miravel::JudgeUser_ifLogined_ByConfig()
{
    m_modes->checkLogin();
}

void Miravel::detectionProcess_VdiAndOmbra()
{
    m_modes->checkPrograms();
}

void Miravel::refreshHotQuestionsTimer()
{
    m_modes->fetchAgain();
}

void Miravel::refreshLocalQA()
{
    m_modes->networkFailed();
}

void Miravel::getHotQuestion_thread_right()
{
    m_modes->fetchFirst();
}

void Miravel::getHotQuestion_right(QJsonArray hotQuestions)
{
    m_modes->takeFirst(hotQuestions);
}

void Miravel::refreshHotQuestions(QJsonArray hotQuestions)
{
    m_modes->takeRefresh(hotQuestions);
}

void Miravel::switchHotQuestionLocation_show()
{
    m_modes->openLocalList();
}

void Miravel::parseLocalQA()
{
    m_modes->readLibrary();
}

const QStringList &Miravel::questLocation() const
{
    return m_modes->library().questions();
}

const QStringList &Miravel::answerLocation() const
{
    return m_modes->library().answers();
}

void Miravel::showLocalQA()
{
    m_modes->showLibrary();
}

void Miravel::switchHotQuestionLocation_change()
{
    m_modes->showNextLocalPage();
}

void Miravel::hotRecom_list_click(QString question, qint64 questionId)
{
    m_form.inputPanel->input()->setFocus();
    m_modes->takeHotQuestion(question, questionId);
}

int Miravel::getLocationQuest_Num(QString question)
{
    return m_modes->placeInLibrary(question);
}

void Miravel::send_messages()
{
    const QString question = m_form.inputPanel->text().simplified();
    m_form.inputPanel->input()->clear();
    m_suggestions->close();
    m_form.inputPanel->input()->setFocus(); // the next key is typed, wherever the click was
    m_modes->askOrExplain(question, "send messages when not logged in, isGetHotQuests:",
                          "send messages by idp qa request, isGetHotQuests:");
}

void Miravel::showAssociation()
{
    TextInput_color();
    if (m_suggestions->textHasChanged() && m_modes->hotQuestionsReturned()) {
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
    m_form.inputPanel->input()->setFocus();
    m_form.region->Miss_RecomSend(question, QStringLiteral("associate"), QString(), id);
}

void Miravel::assoclose_windows()
{
    m_suggestions->close();
}

void Miravel::stopSuggestions()
{
    m_timers.associationTick.disconnect(this);
    m_timers.associationTick.stop();
    m_suggestions->stop(); // no tick would close them any more
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
    m_modes->askOrExplain(guardQuestion(obj),
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
    QWidget *neighbour
        = neighbourInReadingOrder({m_form.titleBar, m_form.region, m_suggestions->popup(),
                                   m_form.inputPanel, m_modes->column()},
                                  focusWidget(), next);
    if (neighbour == nullptr) {
        return false;
    }
    m_form.region->reveal(neighbour);
    neighbour->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void Miravel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        assoclose_windows();
    } else {
        QWidget::keyPressEvent(event);
    }
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
