#pragma once

/// How long a process may live on, in ms, once its last window has closed.
inline constexpr int mostMsAfterLastWindow = 3000;

/// Sees to it that the process has ended \a limitMs from now, with the exit status 0, whatever
/// still hangs in it: Qt waits for host look-ups when the application object goes, and a library of
/// others may never return. Returns at once; what ends the process in good time makes it
/// unnecessary. Any thread.
void endWithin(int limitMs);

/// Ends the process at once with \a status: nothing of it runs any more, no destructor and no
/// library's own end.
[[noreturn]] void endNow(int status);
