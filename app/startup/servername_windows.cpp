#include "app/startup/servername.h"

bool isOwnFile(const QString &name)
{
    Q_UNUSED(name)
    return false;
}
