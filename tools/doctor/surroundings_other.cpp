#include "tools/doctor/surroundings.h"

#include <QByteArray>
#include <QtGlobal>

void showNoWindow()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

bool comesWithTheFont()
{
    return false;
}

void askForRights()
{
    // They are always asked for.
}
