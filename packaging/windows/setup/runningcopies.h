#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// One running copy of the program.
struct RunningCopy
{
    DWORD process = 0;
    DWORD session = 0;
    std::wstring arguments;
};

/// The copies that were started from this file, in every session that this process may see.
std::vector<RunningCopy> runningCopies(const std::wstring &program);

/// Asks the copies in this process's own session to close, as their close button does: each of
/// their windows gets WM_CLOSE. Does not wait.
void askToClose(const std::vector<DWORD> &processes);

/// Asks the copies to close, each in its session, again once a second, and waits until all have
/// ended or the time is over. Nothing is ended by force. Gives how many have ended. \a
/// helper is this library's file, whose askInSession is run in other sessions.
std::size_t closeCopies(const std::vector<RunningCopy> &copies, const std::wstring &helper,
                        DWORD milliseconds);

/// Starts the program as the user of the copy's session did; false when it could not be started.
bool startInSession(const std::wstring &program, const RunningCopy &copy);
