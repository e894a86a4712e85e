#include "app/startup/foreground.h"

void letPeerComeToFront(qintptr descriptor)
{
    Q_UNUSED(descriptor)
}
