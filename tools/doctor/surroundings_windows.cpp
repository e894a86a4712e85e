#include "tools/doctor/surroundings.h"

#include <qglobal.h>

extern Q_CORE_EXPORT int qt_ntfs_permission_lookup; // Qt documents it as such, without a header

void showNoWindow()
{
    // Every session of Windows has a screen, and the other platforms of Qt are not shipped.
}

bool comesWithTheFont()
{
    return true;
}

void askForRights()
{
    ++qt_ntfs_permission_lookup;
}
