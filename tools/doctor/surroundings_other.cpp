#include "tools/doctor/surroundings.h"

#include <QByteArray>
#include <QtGlobal>

void showNoWindow()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

void askForRights()
{
    // They are always asked for.
}
