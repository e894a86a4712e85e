#include "app/base/apppaths.h"

QString miravelVersion;
QString logFolderPath;
QString configFilePath;

namespace {

const QLatin1String clientLayout("VELISTRA_NEW");
const QLatin1String shortcutLayout("INVIRTUAL_SHORTCUT");

/// The path of \a place, which lies beside the program's folder or in it.
QString placeIn(InstallationLayout layout, QLatin1String place)
{
    return layout == InstallationLayout::Client ? QLatin1String("../") + place : QString(place);
}

/// The path of \a place in the layout in force; empty when that is unknown.
QString installedPlace(QLatin1String place)
{
    const InstallationLayout layout = installationLayout();
    return layout == InstallationLayout::Unknown ? QString() : placeIn(layout, place);
}

} // namespace

void initAppPaths(const QString &callerType)
{
    miravelVersion = callerType.isEmpty() ? shortcutLayout : clientLayout;
    logFolderPath = installedPlace(QLatin1String("log/Miravel"));
    configFilePath = miravelConfigPath();
}

InstallationLayout installationLayout()
{
    if (miravelVersion == clientLayout) {
        return InstallationLayout::Client;
    }
    return miravelVersion == shortcutLayout ? InstallationLayout::Shortcut
                                            : InstallationLayout::Unknown;
}

QString miravelConfigPath()
{
    return installedPlace(QLatin1String("config/Miravel.ini"));
}

QString licenceTextPath()
{
    return installedPlace(QLatin1String("config/OpenSourceLicense.txt"));
}

QString clientSettingsPath()
{
    return placeIn(InstallationLayout::Client, QLatin1String("config/CommonTerminal.ini"));
}
