#pragma once

#include <QtGlobal>

/// Whether this system can stop a process without ending it.
[[nodiscard]] bool canSuspendProcesses();

/// Stops process \a pid as if it hung, until resumeProcess() or its end. False when that failed.
[[nodiscard]] bool suspendProcess(qint64 pid);

/// Lets a suspended process \a pid go on. False when that failed.
[[nodiscard]] bool resumeProcess(qint64 pid);
