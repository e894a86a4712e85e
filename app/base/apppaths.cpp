#include "app/base/apppaths.h"

QString miravelVersion;
QString logFolderPath;
QString configFilePath;

namespace {

const QLatin1String clientLayout("VELISTRA_NEW");
const QLatin1String shortcutLayout("INVIRTUAL_SHORTCUT");
const QLatin1String clientConfig("../config/Miravel.ini");
const QLatin1String shortcutConfig("config/Miravel.ini");

} // namespace

void initAppPaths(const QString &callerType)
{
    if (callerType.isEmpty()) {
        miravelVersion = shortcutLayout;
        logFolderPath = QStringLiteral("log/Miravel");
        configFilePath = shortcutConfig;
    } else {
        miravelVersion = clientLayout;
        logFolderPath = QStringLiteral("../log/Miravel");
        configFilePath = clientConfig;
    }
}

QString miravelConfigPath()
{
    if (miravelVersion == clientLayout) {
        return clientConfig;
    }
    if (miravelVersion == shortcutLayout) {
        return shortcutConfig;
    }
    return {};
}

QString clientSettingsPath()
{
    return QStringLiteral("../config/CommonTerminal.ini");
}
