#pragma once

#include "locallibrary/locallibrary.h"
#include "ui/mainwindow/hotquestions/hotfetch.h"
#include "ui/mainwindow/processwatch.h"
#include "ui/mainwindow/windowform.h"
#include "ui/mainwindow/windowstate.h"

#include <QObject>

#include <memory>

class HotQuestionsColumn;
class LoadingOverlay;
struct WindowTimers;

/// Tells WindowState what happens and carries out what it decides: shows the hot questions of the
/// service or of the local library, says why, and starts and stops the timers. Before the start
/// everything that needs a mode does nothing. GUI thread.
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

    /// Reads from the client's settings whether the desktop is logged in.
    void checkLogin();

    /// Looks whether a program still runs that the window depends on. Blocks as taskList() does.
    void checkPrograms();

    /// A question has found the service unreachable.
    void networkFailed();

    /// Fetches the hot questions for the first time, under a veil; firstFetched() tells the end.
    void fetchFirst();

    /// Fetches them anew; refetched() tells the end.
    void fetchAgain();

    /// What the one and the other have brought; nothing on any failure.
    void takeFirst(const QJsonArray &hotQuestions);
    void takeRefresh(const QJsonArray &hotQuestions);

    /// Says why local questions are shown, and shows them as far as there are any.
    void openLocalList();

    /// Shows the local questions in place of the service's.
    void showLibrary();
    void showNextLocalPage();

    /// Reads the files of the local library.
    void readLibrary();
    [[nodiscard]] const LocalLibrary &library() const { return m_library; }

    /// Answers a clicked hot question, or asks it.
    void takeHotQuestion(const QString &question, qint64 questionId);

    /// Where \a question is in the local library, or -1.
    [[nodiscard]] int placeInLibrary(const QString &question) const;

    /// Answers \a question, or says why it cannot be asked yet. The two texts begin the log line.
    void askOrExplain(const QString &question, const char *explainedLog, const char *askedLog);

    /// Whether the first fetch of hot questions has returned, with or without any.
    [[nodiscard]] bool hotQuestionsReturned() const { return m_state.isGetHotQuests; }

    /// The column of hot questions, made anew with each change of the mode; null before the start.
    [[nodiscard]] HotQuestionsColumn *column() const { return m_column; }

signals:
    void questionClicked(const QString &question, qint64 questionId);
    void nextLocalPageWanted();
    void firstFetched(const QJsonArray &hotQuestions);
    void refetched(const QJsonArray &hotQuestions);

    /// The conversation is ready for questions of others.
    void ready();

    /// No program runs any more that the window depends on.
    void callerGone();

private:
    /// Whether there is a column, which comes with the first mode and is only replaced after that.
    [[nodiscard]] bool hasStarted() const { return m_column != nullptr; }

    void carryOut(const WindowSteps &steps, const QJsonArray &hotQuestions = {});
    void carryOut(WindowStep step, const QJsonArray &hotQuestions);
    void makeColumn();
    void readAndShowLibrary();

    WindowForm m_form;
    WindowTimers &m_timers;
    WatchedPrograms m_watchedPrograms;
    WindowState m_state;
    LocalLibrary m_library;

    HotQuestionsColumn *m_column = nullptr;
    std::unique_ptr<LoadingOverlay> m_overlay;
    HotFetch m_firstFetch;
    HotFetch m_refreshFetch;
};
