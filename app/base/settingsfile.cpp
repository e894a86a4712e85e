#include "app/base/settingsfile.h"

#include "app/base/logstream.h"
#include "app/base/settingscontent.h"
#include "app/base/settingskeys.h"

#include <QFile>

#include <algorithm>

namespace {

constexpr qint64 largestBytes = 64LL * 1024 * 1024;

// Names of keys are told apart as in Qt's own INI files.
#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity keyCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity keyCase = Qt::CaseSensitive;
#endif

bool isOurs(const QString &name)
{
    return std::any_of(std::begin(settingsTable), std::end(settingsTable),
                       [&name](const SettingsEntry &entry) {
                           return name.compare(QLatin1String(entry.name), keyCase) == 0;
                       });
}

QStringList refusedOfOurs(const SettingsContent &content)
{
    QStringList names;
    std::copy_if(content.refused.begin(), content.refused.end(), std::back_inserter(names), isOurs);
    names.removeDuplicates();
    return names;
}

SettingsContent readDevice(QIODevice &device)
{
    const QByteArray bytes = device.read(largestBytes + 1);
    if (bytes.size() > largestBytes) {
        LOG_CRITICAL() << "A settings file of more than 64 MiB is not read.";
        return {};
    }
    SettingsContent content = readSettings(bytes);
    const QStringList refused = refusedOfOurs(content);
    if (!refused.isEmpty()) {
        LOG_CRITICAL() << "Settings are neither text nor number and count as missing: "
                       << refused.join(QLatin1String(", "));
    }
    return content;
}

bool readInto(QIODevice &device, QSettings::SettingsMap &values)
{
    values = readDevice(device).values;
    return true; // Qt would drop every value
}

QSettings::Format harmlessIni()
{
    static const QSettings::Format registered
        = QSettings::registerFormat(QStringLiteral("ini"), readInto, nullptr, keyCase);
    return registered;
}

} // namespace

SettingsFile::SettingsFile(const QString &path)
    : QSettings(path, harmlessIni())
{
}

void logRefusedSettings(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        (void)readDevice(file);
    }
}
