#include "service/request/requestsettings.h"

#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "service/request/requestsigning.h"

namespace {

QString text(const SettingsFile &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toString();
}

ServiceEndpoint configuredServer(const SettingsFile &settings)
{
    return {text(settings, SettingsKey::ServerAddress), text(settings, SettingsKey::ServerPort)};
}

} // namespace

RequestSettings readRequestSettings(const QString &configPath)
{
    const SettingsFile settings(configPath);
    return {configuredServer(settings), text(settings, SettingsKey::TenantId),
            decodedCredential(text(settings, SettingsKey::ApplicationKey)),
            decodedCredential(text(settings, SettingsKey::ApplicationSecret))};
}

ServiceEndpoint readConfiguredServer(const QString &configPath)
{
    return configuredServer(SettingsFile(configPath));
}
