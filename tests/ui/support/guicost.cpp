#include "tests/ui/support/guicost.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <ctime>

namespace {

constexpr int turns = 20;
constexpr int patientMs = 60'000; // only a failing test waits that long

qint64 cost(const std::function<void()> &action)
{
    const qint64 before = threadTimeMs();
    action();
    return threadTimeMs() - before;
}

} // namespace

qint64 threadTimeMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

qint64 longestStallMs(const std::function<void()> &action, const std::function<bool()> &isDone)
{
    qint64 longest = cost(action);
    QElapsedTimer clock;
    clock.start();
    const auto goesOn = [&](int turn) {
        return turn < turns || (isDone && !isDone() && clock.elapsed() < patientMs);
    };
    for (int turn = 0; goesOn(turn); ++turn) {
        longest = qMax(longest, cost([] {
                           QCoreApplication::sendPostedEvents();
                           QCoreApplication::processEvents();
                       }));
        QThread::msleep(1); // leaves the processor to the threads that work for the window
    }
    return longest;
}

int slowness()
{
    return qMax(1, qEnvironmentVariableIntValue("MIRAVEL_TEST_SLOWNESS"));
}

void resetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        file.write("5");
    }
}

qint64 peakMemoryMb()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').first().toLongLong() / 1024;
        }
    }
    return 0;
}
