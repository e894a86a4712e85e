#pragma once

#include <QVector>

struct RunningPrograms;

/// What the window does when something has happened.
enum class WindowStep {
    SayGreeting,      ///< the service is there
    SayNotLoggedIn,   ///< why questions have to wait
    SayNoNetwork,     ///< why the local questions are shown
    SayRefreshFailed, ///< the service's questions give way to the local ones
    SayRefreshed,     ///< the service's questions are back
    ScrollToBottom,   ///< shows the end of the conversation
    ReportReady,      ///< the conversation is ready for the guard tool's questions

    MakeColumn,           ///< an empty column of hot questions in place of the one before
    FetchQuestions,       ///< asks the service for the first time, under a veil
    ShowServiceQuestions, ///< the first page of what was fetched
    ReadLibrary,          ///< reads the files of the local library
    OpenLocalList,        ///< localListOpened() says how
    ShowLocalQuestions,   ///< the first page of the local library
    ShowLibrary,          ///< the same, after reading the library if it has not been read

    StartHotRefresh,
    StartLoginPoll,
    StopLoginPoll,
    StartProcessWatch,
    StopProcessWatch,
    StopSuggestions, ///< for good

    LogWasOnline, ///< says in the log that a network problem ends online mode
    LogFellBack,  ///< says in the log that a failed refresh has ended it
};

/// The steps after an event, in the order in which they are taken.
using WindowSteps = QVector<WindowStep>;

/// What a fetch of hot questions has brought. Every failure brings nothing.
enum class Fetched { Nothing, Questions };

/// What is done with a question that is typed or comes from the guard tool.
enum class QuestionWay { Ignore, Explain, Ask };

/// What the window knows about its mode. Loading: the service is asked for the first time. Online:
/// it has answered. Offline: the local library is shown. Each function is an event: it changes the
/// state and returns what the window has to do. A value without threads, clocks and widgets.
struct WindowState
{
    bool isGetHotQuests = false;     ///< the first fetch of hot questions has returned
    bool netHotWork = false;         ///< the last fetch of hot questions failed
    bool getIDP = false;             ///< questions and hot list come from the service
    bool startedByVdiClient = false; ///< only the client's process counts in the process watch
    bool neverLoggedOut = true;      ///< no login check has found the desktop logged out
    bool loggedIn = false;           ///< a login check has found the desktop logged in

    /// The virtual-desktop client has started the program.
    [[nodiscard]] WindowSteps clientStarted();

    /// The launcher has started the program, and the login has been checked for the first time.
    [[nodiscard]] WindowSteps launcherStarted();

    /// A login check has found the desktop logged in, or out. Only one that follows upon a
    /// logged-out one brings the window online.
    [[nodiscard]] WindowSteps loginChecked(bool foundLoggedIn);

    /// The first fetch has returned. A program that runs from a \a shortcut depends on no other
    /// program, so none is watched.
    [[nodiscard]] WindowSteps firstFetchReturned(Fetched fetched, bool shortcut);

    /// A later fetch has returned.
    [[nodiscard]] WindowSteps refreshReturned(Fetched fetched);

    /// The process watch has found these programs \a running.
    [[nodiscard]] WindowSteps processesListed(const RunningPrograms &running);

    /// A question has found the service unreachable.
    [[nodiscard]] WindowSteps networkFailed();

    /// The local questions are to be shown in place of the service's.
    [[nodiscard]] WindowSteps localLibraryWanted();

    /// The column has been made for local questions, of which there are any or not.
    [[nodiscard]] WindowSteps localListOpened(bool anyQuestion) const;

    /// What is done with a question, \a empty or not. A failed fetch lets questions go to the
    /// service all the same.
    [[nodiscard]] QuestionWay questionTyped(bool empty) const;

private:
    /// Enters the mode in which the service is used, or the one in which it is not.
    [[nodiscard]] WindowSteps onlineMode();
    [[nodiscard]] WindowSteps offlineMode();
};
