#pragma once

#include "tools/doctor/finding.h"

class httpsRequest;

/// Resolves the endpoint as the program does and says which one it is, or why there is none. Takes
/// some seconds when nothing answers.
[[nodiscard]] Findings checkEndpoint(httpsRequest &request);
