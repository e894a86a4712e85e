#pragma once

#include "tools/doctor/finding.h"

/// Looks for the files and folders of the installation whose program folder is the working
/// directory. initAppPaths() must have run. Reads only.
[[nodiscard]] Findings checkInstallation();
