#include "ui/style/compositor.h"

#include <QX11Info>

bool screenIsComposited()
{
    // Asks who owns the selection _NET_WM_CM_S0. Only X11 has screens without a compositor.
    return !QX11Info::isPlatformX11() || QX11Info::isCompositingManagerRunning();
}
