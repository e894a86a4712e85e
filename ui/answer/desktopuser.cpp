#include "ui/answer/desktopuser.h"

#include "app/base/apppaths.h"
#include "app/base/machineregistry.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"

QString desktopUserName()
{
    const InstallationLayout layout = installationLayout();
    if (layout == InstallationLayout::Client) {
        const SettingsFile settings(clientSettingsPath());
        return settings.value(settingsName(SettingsKey::LastUser)).toString();
    }
    if (layout == InstallationLayout::Shortcut) {
        return machineRegistryText(QStringLiteral("Software\\VDAgent\\LogonInfo"),
                                   QStringLiteral("iRAIUser"));
    }
    return {};
}
