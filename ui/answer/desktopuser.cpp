#include "ui/answer/desktopuser.h"

#include "app/base/apppaths.h"

#include <QSettings>

QString desktopUserName()
{
    if (miravelVersion == QLatin1String("VELISTRA_NEW")) {
        const QSettings settings(clientSettingsPath(), QSettings::IniFormat);
        return settings.value(QStringLiteral("RemLastUser/lastuser")).toString();
    }
    if (miravelVersion == QLatin1String("INVIRTUAL_SHORTCUT")) {
        const QSettings registry(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\VDAgent\\LogonInfo"),
                                 QSettings::NativeFormat);
        return registry.value(QStringLiteral("iRAIUser"), QString()).toString();
    }
    return {};
}
