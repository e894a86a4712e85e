#include "tests/support/childprocess.h"

#include <QDeadlineTimer>

#ifdef Q_OS_LINUX
#include <sys/prctl.h>

#include <csignal>
#endif

namespace {

constexpr int killPatienceMs = 10'000;

} // namespace

ChildProcess::ChildProcess(QObject *parent)
    : QProcess(parent)
{
}

ChildProcess::~ChildProcess()
{
    crash();
}

void ChildProcess::crash()
{
    if (state() != NotRunning) {
        kill();
        waitForFinished(killPatienceMs);
    }
}

bool ChildProcess::endsWith(int status, int patienceMs)
{
    const bool ended = state() == NotRunning || waitForFinished(patienceMs);
    return ended && exitStatus() == NormalExit && exitCode() == status;
}

QString ChildProcess::nextLine(int patienceMs)
{
    const QDeadlineTimer deadline(patienceMs);
    while (!canReadLine() && waitForReadyRead(static_cast<int>(deadline.remainingTime()))) { }
    return QString::fromLocal8Bit(readLine()).trimmed();
}

bool ChildProcess::isRunning()
{
    if (state() != NotRunning) {
        waitForFinished(0); // takes notice of an end so far
    }
    return state() != NotRunning; // a process still being started counts
}

void ChildProcess::setupChildProcess()
{
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}
