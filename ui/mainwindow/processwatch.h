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

/// Whether one of the programs runs that the window depends on: the VDI client alone when it
/// started the window (\a startedByVdiClient), otherwise either of \a programs. Blocks as
/// taskList() does, once.
[[nodiscard]] bool watchedProgramRuns(const WatchedPrograms &programs, bool startedByVdiClient,
                                      int limitMs = taskListLimitMs);
