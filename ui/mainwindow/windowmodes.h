#pragma once

#include "locallibrary/locallibrary.h"
#include "ui/mainwindow/hotquestions/hotfetch.h"
#include "ui/mainwindow/processwatch.h"
#include "ui/mainwindow/windowform.h"

#include <QObject>

#include <memory>

class HotQuestionsColumn;
class LoadingOverlay;
struct WindowTimers;

/// Decides whether questions go to the service or are answered from what is at hand, and shows the
/// hot questions of the one or the other. Loading: the service is asked for the first time. Online:
/// it has answered. Offline: the local library is shown. The operations of the window with the same
/// names lead here. GUI thread.
class WindowModes : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(WindowModes)

public:
    /// Works on the widgets of \a form and the timers of the same window, which outlives this.
    WindowModes(const WindowForm &form, WindowTimers &timers);

    /// Waits at most 2 s for the fetches that still run.
    ~WindowModes() override;

    void startForVdiClient();
    void startForLauncher();
    void JudgeUser_ifLogined_ByConfig();
    void detectionProcess_VdiAndOmbra();
    void refreshHotQuestionsTimer();
    void refreshLocalQA();
    void getHotQuestion_thread_right();
    void getHotQuestion_right(const QJsonArray &hotQuestions);
    void refreshHotQuestions(const QJsonArray &hotQuestions);
    void switchHotQuestionLocation_show();
    void showLocalQA();
    void switchHotQuestionLocation_change();
    void hotRecom_list_click(const QString &question, qint64 questionId);
    [[nodiscard]] int getLocationQuest_Num(const QString &question) const;

    /// Answers \a question, or says why it cannot be asked yet. The two texts begin the log line.
    void askOrExplain(const QString &question, const char *explainedLog, const char *askedLog);

    /// Whether the first fetch of hot questions has returned, with or without any.
    [[nodiscard]] bool hotQuestionsReturned() const { return isGetHotQuests; }

    /// The column of hot questions, made anew with each change of the mode; null before the start.
    [[nodiscard]] HotQuestionsColumn *column() const { return m_hotColumn; }

signals:
    void questionClicked(const QString &question, qint64 questionId);

    /// The answer region is ready for questions of others.
    void rightRegionSuccess();

    /// No program runs any more that the window depends on.
    void callerGone();

private:
    void switchToOnlineMode();
    void switchToOfflineMode();
    void buildHotQuestions();

    WindowForm m_form;
    WindowTimers &m_timers;
    WatchedPrograms m_watchedPrograms;
    bool isGetHotQuests = false;     ///< the first hot-questions fetch has returned
    bool netHotWork = false;         ///< the last hot-questions fetch failed
    bool getIDP = false;             ///< questions and hot list come from the service
    bool startedByVdiClient = false; ///< only the client's process counts as the caller
    bool panelReady = false;
    bool neverLoggedOut = true; ///< no login check has found the desktop logged out
    bool loggedIn = false;      ///< a login check has found the desktop logged in
    LocalLibrary m_library;

    HotQuestionsColumn *m_hotColumn = nullptr;
    std::unique_ptr<LoadingOverlay> m_overlay;
    HotFetch m_firstFetch;
    HotFetch m_refreshFetch;
};
