#pragma once

#include "tools/doctor/finding.h"

/// Looks at what the program needs of the machine: the port for the guard tool, as the settings
/// file \a path names it, and the folder of moving pictures. Changes nothing.
[[nodiscard]] Findings checkMachine(const QString &path);
