#pragma once

#include <QtGlobal>

/// A loopback port that nobody listens on, outside the range from which the system gives ports to
/// clients, so that it stays free until the caller listens on it.
[[nodiscard]] quint16 freePort();
