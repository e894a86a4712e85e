#include "app/base/machineregistry.h"

#include <QSettings>

QString machineRegistryText(const QString &key, const QString &name)
{
    const QSettings file(QStringLiteral("HKEY_LOCAL_MACHINE\\") + key, QSettings::NativeFormat);
    return file.value(name).toString();
}
