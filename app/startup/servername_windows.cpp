#include "app/startup/servername.h"

#include <QtGlobal>

bool isOwnFile(const QString &name)
{
    Q_UNUSED(name)
    return false;
}
