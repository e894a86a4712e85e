#include "app/startup/foreground.h"

#include <windows.h>

void letPeerComeToFront(qintptr descriptor)
{
    ULONG peer = 0;
    if (GetNamedPipeServerProcessId(reinterpret_cast<HANDLE>(descriptor), &peer) != 0) {
        AllowSetForegroundWindow(peer);
    }
}
