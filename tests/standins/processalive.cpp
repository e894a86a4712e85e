#include "tests/standins/processalive.h"

#ifdef Q_OS_WIN

#include <windows.h>

bool isProcessAlive(qint64 pid)
{
    const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(pid));
    if (!process) {
        return false;
    }
    const bool alive = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return alive;
}

#else

#include <csignal>

bool isProcessAlive(qint64 pid)
{
    return ::kill(static_cast<pid_t>(pid), 0) == 0;
}

#endif
