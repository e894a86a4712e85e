#pragma once

#include <QString>

/// The maker's rights notice, without the copyright sign: a value of the build, the CMake cache
/// variable MIRAVEL_RIGHTS_NOTICE.
[[nodiscard]] QString rightsNotice();
