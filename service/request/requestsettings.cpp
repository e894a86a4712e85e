#include "service/request/requestsettings.h"

#include "app/base/settingskeys.h"
#include "service/request/requestsigning.h"

#include <QSettings>

namespace {

QString text(const QSettings &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toString();
}

ServiceEndpoint configuredServer(const QSettings &settings)
{
    return {text(settings, SettingsKey::ServerAddress), text(settings, SettingsKey::ServerPort)};
}

} // namespace

RequestSettings readRequestSettings(const QString &configPath)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    return {configuredServer(settings), text(settings, SettingsKey::TenantId),
            decodedCredential(text(settings, SettingsKey::ApplicationKey)),
            decodedCredential(text(settings, SettingsKey::ApplicationSecret))};
}

ServiceEndpoint readConfiguredServer(const QString &configPath)
{
    return configuredServer(QSettings(configPath, QSettings::IniFormat));
}
