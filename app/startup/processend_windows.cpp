#include "app/startup/processend.h"

#include <windows.h>

void endNow(int status)
{
    // ExitProcess() would call into every library first, and one of them may be what hangs.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    for (;;) {
        Sleep(INFINITE); // the call above does not return to a thread that it has ended
    }
}
