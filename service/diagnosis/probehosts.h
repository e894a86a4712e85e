#pragma once

#include <QString>

// The hosts that the network diagnosis pings. The maker's three are values of the build: the CMake
// cache variables MIRAVEL_WEB_PROBE_HOST, MIRAVEL_IT_PROBE_HOST and MIRAVEL_CLOUD_PROBE_HOST.

/// The maker's public web host.
[[nodiscard]] QString webProbeHost();

/// The maker's IT host.
[[nodiscard]] QString itProbeHost();

/// The maker's cloud-desktop host.
[[nodiscard]] QString cloudProbeHost();

/// Two public name servers that answer a ping from anywhere on the internet.
[[nodiscard]] QString publicDns1();
[[nodiscard]] QString publicDns2();
