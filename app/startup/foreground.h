#pragma once

#include <QtGlobal>

/// Lets the process at the other end of a connected local socket take the foreground, a right that
/// only a process which the user has just started can hand on. \a descriptor is that of the socket.
/// Does nothing but on Windows.
void letPeerComeToFront(qintptr descriptor);
