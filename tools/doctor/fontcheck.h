#pragma once

#include "tools/doctor/finding.h"

/// Whether the machine has the font that the program asks for, and what stands in for it.
[[nodiscard]] Findings checkFont();
