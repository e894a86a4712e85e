#include "tests/support/processcontrol.h"

#ifdef Q_OS_WIN

bool canSuspendProcesses()
{
    return false;
}

bool suspendProcess(qint64 pid)
{
    Q_UNUSED(pid)
    return false;
}

bool resumeProcess(qint64 pid)
{
    Q_UNUSED(pid)
    return false;
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
