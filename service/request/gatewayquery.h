#pragma once

#include "service/gateway/korvpntool.h"

#include <optional>

/// How long the VPN client's library may take for an answer, in ms.
inline constexpr int gatewayLimitMs = 10000;

/// Asks the VPN client's library for the selected gateway on a thread of its own and waits at most
/// \a limitMs for its answer in a nested event loop: the library is not ours and may hang, and the
/// thread that asks may be the window's. Nothing when no gateway is selected or the time is over,
/// which is logged; a thread that hangs in the library is left alone. Any thread.
[[nodiscard]] std::optional<KorGateway> askGatewayLibrary(int limitMs = gatewayLimitMs);
