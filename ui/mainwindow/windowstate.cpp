#include "ui/mainwindow/windowstate.h"

#include "ui/mainwindow/processwatch.h"

WindowSteps WindowState::clientStarted()
{
    const WindowSteps steps = onlineMode();
    startedByVdiClient = true;
    return steps;
}

WindowSteps WindowState::launcherStarted()
{
    if (loggedIn) {
        return onlineMode();
    }
    startedByVdiClient = false;
    return offlineMode() << WindowStep::StartLoginPoll;
}

WindowSteps WindowState::loginChecked(bool foundLoggedIn)
{
    if (!foundLoggedIn) {
        neverLoggedOut = false;
        return {};
    }
    loggedIn = true;
    if (neverLoggedOut) {
        return {};
    }
    return onlineMode() << WindowStep::StopLoginPoll;
}

WindowSteps WindowState::firstFetchReturned(Fetched fetched, bool shortcut)
{
    isGetHotQuests = true;
    if (fetched == Fetched::Nothing) {
        netHotWork = true;
        return offlineMode();
    }
    WindowSteps steps{WindowStep::SayGreeting, WindowStep::ShowServiceQuestions,
                      WindowStep::ReportReady};
    if (!shortcut) {
        steps << WindowStep::StartProcessWatch;
    }
    return steps;
}

WindowSteps WindowState::refreshReturned(Fetched fetched)
{
    const bool wasOnline = getIDP;
    if (fetched == Fetched::Questions) {
        netHotWork = false;
        getIDP = true;
        if (wasOnline) {
            return {WindowStep::ShowServiceQuestions};
        }
        return {WindowStep::SayRefreshed, WindowStep::ScrollToBottom,
                WindowStep::ShowServiceQuestions};
    }
    if (!wasOnline) {
        return {};
    }
    return WindowSteps{WindowStep::SayRefreshFailed, WindowStep::ScrollToBottom}
             + localLibraryWanted()
        << WindowStep::LogFellBack;
}

WindowSteps WindowState::processesListed(const RunningPrograms &running)
{
    if (running.vdiClient || (running.launcher && !startedByVdiClient)) {
        return {};
    }
    return WindowSteps{WindowStep::StopSuggestions, WindowStep::StopProcessWatch} + offlineMode();
}

WindowSteps WindowState::networkFailed()
{
    if (!getIDP) {
        return {};
    }
    return WindowSteps{WindowStep::LogWasOnline} + localLibraryWanted();
}

WindowSteps WindowState::localLibraryWanted()
{
    getIDP = false;
    return {WindowStep::ShowLibrary};
}

WindowSteps WindowState::localListOpened(bool anyQuestion) const
{
    WindowSteps steps{netHotWork ? WindowStep::SayNoNetwork : WindowStep::SayNotLoggedIn};
    if (anyQuestion) {
        steps << WindowStep::ShowLocalQuestions << WindowStep::ReportReady;
    }
    return steps;
}

QuestionWay WindowState::questionTyped(bool empty) const
{
    if (empty) {
        return QuestionWay::Ignore;
    }
    return isGetHotQuests || netHotWork ? QuestionWay::Ask : QuestionWay::Explain;
}

WindowSteps WindowState::onlineMode()
{
    getIDP = true;
    startedByVdiClient = false;
    return {WindowStep::MakeColumn, WindowStep::FetchQuestions, WindowStep::StartHotRefresh};
}

WindowSteps WindowState::offlineMode()
{
    getIDP = false;
    return {WindowStep::ReadLibrary, WindowStep::MakeColumn, WindowStep::OpenLocalList};
}
