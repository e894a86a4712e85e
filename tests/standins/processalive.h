#pragma once

#include <QtGlobal>

/// Whether process \a pid still exists; one that has ended but was never waited for counts too.
[[nodiscard]] bool isProcessAlive(qint64 pid);
