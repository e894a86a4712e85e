#include "ui/answer/desktopuser.h"

#include "app/base/apppaths.h"
#include "app/base/settingskeys.h"

#include <QSettings>

QString desktopUserName()
{
    const InstallationLayout layout = installationLayout();
    if (layout == InstallationLayout::Client) {
        const QSettings settings(clientSettingsPath(), QSettings::IniFormat);
        return settings.value(settingsName(SettingsKey::LastUser)).toString();
    }
    if (layout == InstallationLayout::Shortcut) {
        const QSettings registry(QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\VDAgent\\LogonInfo"),
                                 QSettings::NativeFormat);
        return registry.value(QStringLiteral("iRAIUser"), QString()).toString();
    }
    return {};
}
