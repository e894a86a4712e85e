#include "tools/doctor/surroundings.h"

void showNoWindow()
{
    // Every session of Windows has a screen, and the other platforms of Qt are not shipped.
}
