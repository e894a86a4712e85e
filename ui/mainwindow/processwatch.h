#pragma once

#include <QByteArray>
#include <QString>

/// The executables that the window watches, e.g. "client.exe".
struct WatchedPrograms
{
    QString vdiClient;
    QString launcher;
};

/// How long the list of running processes is waited for, in ms.
constexpr int taskListLimitMs = 30'000;

/// What the command "tasklist" prints, up to the first NUL byte. Empty when it cannot start or does
/// not finish within \a limitMs milliseconds, for which the calling thread is blocked at most.
[[nodiscard]] QByteArray taskList(int limitMs = taskListLimitMs);

/// Whether \a taskList contains the name \a executable, written in the same case.
[[nodiscard]] bool isListed(const QByteArray &taskList, const QString &executable);

/// Which of them run.
struct RunningPrograms
{
    bool vdiClient;
    bool launcher;
};

/// Which of \a programs run. Blocks as taskList() does, once.
[[nodiscard]] RunningPrograms runningPrograms(const WatchedPrograms &programs,
                                              int limitMs = taskListLimitMs);
