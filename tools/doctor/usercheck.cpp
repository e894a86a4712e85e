#include "tools/doctor/usercheck.h"

#include "app/base/apppaths.h"
#include "ui/answer/desktopuser.h"

#include <QFileInfo>

Findings checkUser()
{
    const bool fromClient = installationLayout() == InstallationLayout::Client;
    const QString place
        = fromClient ? QStringLiteral("the client's settings") : QStringLiteral("the registry");
    const QString name = desktopUserName();
    if (!name.isEmpty()) {
        return {good(QStringLiteral("the user's name in %1: %2").arg(place, name))};
    }
    if (fromClient && !QFileInfo(clientSettingsPath()).isFile()) {
        return {}; // that has been noted
    }
    return {note(QStringLiteral("there is no user's name in ") + place,
                 fromClient
                     ? QStringLiteral("The virtual-desktop client writes it at the log-in. Until "
                                      "then questions are asked without a name.")
                     : QStringLiteral("The agent of the virtual desktop writes iRAIUser below "
                                      "Software\\VDAgent\\LogonInfo at the log-in. Until then "
                                      "questions are asked without a name."))};
}
