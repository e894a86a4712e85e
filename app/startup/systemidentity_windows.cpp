#include "app/base/logstream.h"
#include "app/startup/restartarguments.h"
#include "app/startup/systemidentity.h"

#include <windows.h>
#include <shobjidl.h>

void introduceToSystem()
{
    // The package gives the shortcut the same identity.
    const HRESULT named = SetCurrentProcessExplicitAppUserModelID(L"Miravel.Assistant");
    if (FAILED(named)) {
        LOG_DEBUG() << "no start menu identity: " << named;
    }
    const std::wstring arguments = restartArguments(GetCommandLineW());
    const HRESULT registered
        = RegisterApplicationRestart(arguments.c_str(), RESTART_NO_CRASH | RESTART_NO_HANG);
    if (FAILED(registered)) {
        LOG_DEBUG() << "no restart after an update: " << registered;
    }
}
