#include "ui/style/compositor.h"

#include <qt_windows.h>

#include <dwmapi.h>

bool screenIsComposited()
{
    BOOL enabled = TRUE;
    return FAILED(DwmIsCompositionEnabled(&enabled)) || enabled != FALSE;
}
