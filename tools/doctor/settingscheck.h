#pragma once

#include "tools/doctor/finding.h"

/// Looks at every key of the settings file \a path: whether it is there and whether its value can
/// mean what it should. Names no secret. Good keys are summed up in one finding.
[[nodiscard]] Findings checkSettings(const QString &path);
