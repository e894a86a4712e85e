#pragma once

#include "tools/doctor/finding.h"

/// By which name the user's questions are asked, and where it was found.
[[nodiscard]] Findings checkUser();
