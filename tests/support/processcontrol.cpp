#include "tests/support/processcontrol.h"

#ifdef Q_OS_WIN

#include <windows.h>

namespace {

/// The system's own functions for a whole process, which no header declares.
bool tellProcess(const char *function, qint64 pid)
{
    using Function = LONG(NTAPI *)(HANDLE);
    const auto call = reinterpret_cast<Function>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), function)));
    const HANDLE process = OpenProcess(PROCESS_SUSPEND_RESUME, FALSE, static_cast<DWORD>(pid));
    const bool done = call != nullptr && process != nullptr && call(process) >= 0;
    if (process != nullptr) {
        CloseHandle(process);
    }
    return done;
}

} // namespace

bool canSuspendProcesses()
{
    return true;
}

bool suspendProcess(qint64 pid)
{
    return tellProcess("NtSuspendProcess", pid);
}

bool resumeProcess(qint64 pid)
{
    return tellProcess("NtResumeProcess", pid);
}

#else

#include <sys/types.h>

#include <csignal>

bool canSuspendProcesses()
{
    return true;
}

bool suspendProcess(qint64 pid)
{
    return pid > 0 && kill(static_cast<pid_t>(pid), SIGSTOP) == 0;
}

bool resumeProcess(qint64 pid)
{
    return pid > 0 && kill(static_cast<pid_t>(pid), SIGCONT) == 0;
}

#endif
