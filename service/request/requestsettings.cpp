#include "service/request/requestsettings.h"

#include "service/request/requestsigning.h"

#include <QSettings>

namespace {

QString text(const QSettings &settings, const QString &key)
{
    return settings.value(key).toString();
}

ServiceEndpoint configuredServer(const QSettings &settings)
{
    return {text(settings, QStringLiteral("IpAndPort/mserverip")),
            text(settings, QStringLiteral("IpAndPort/mserverhttpsport"))};
}

} // namespace

RequestSettings readRequestSettings(const QString &configPath)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    return {configuredServer(settings), text(settings, QStringLiteral("Authorization/tenantid")),
            decodedCredential(text(settings, QStringLiteral("Authorization/xcafirst"))),
            decodedCredential(text(settings, QStringLiteral("Authorization/xcasecond")))};
}

ServiceEndpoint readConfiguredServer(const QString &configPath)
{
    return configuredServer(QSettings(configPath, QSettings::IniFormat));
}
