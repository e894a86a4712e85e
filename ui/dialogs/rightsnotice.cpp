#include "ui/dialogs/rightsnotice.h"

#include <QCoreApplication>

QString rightsNotice()
{
    return QCoreApplication::translate("AboutDialog", MIRAVEL_RIGHTS_NOTICE);
}
