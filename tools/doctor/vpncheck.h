#pragma once

#include "tools/doctor/finding.h"

/// Looks whether the libraries of the VPN client that are on this machine can be loaded, as the
/// program loads them.
[[nodiscard]] Findings checkVpnLibraries();
