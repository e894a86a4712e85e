#include "app/base/machineregistry.h"
#include "app/base/settingsfile.h"

QString machineRegistryText(const QString &key, const QString &name)
{
    const SettingsFile file(QStringLiteral("HKEY_LOCAL_MACHINE\\") + key);
    return file.value(name).toString();
}
