#pragma once

#include <QtGlobal>

/// Whether the other end of the connected, non-blocking socket \a descriptor has closed or cut the
/// connection and nothing is left to read. Takes nothing out of the socket. Any thread.
[[nodiscard]] bool peerHasLeft(qintptr descriptor);
