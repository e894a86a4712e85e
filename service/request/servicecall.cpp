#include "service/request/servicecall.h"

#include "app/base/settingskeys.h"

#include <QSettings>

namespace {

QString readText(const QSettings &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toString();
}

int readNumber(const QSettings &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toInt();
}

CallSettings readCallSettings(const QSettings &settings, SettingsKey channel, SettingsKey count)
{
    return {readNumber(settings, channel), readNumber(settings, count),
            readText(settings, SettingsKey::Robot)};
}

int readHttpMode(const QSettings &settings)
{
    return readNumber(settings, SettingsKey::HttpMode);
}

} // namespace

ServiceCall hotCall(const QString &configPath)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, SettingsKey::HotChannel, SettingsKey::HotCount);
    return {readText(settings, SettingsKey::HotPath), hotQuestionsBody(call),
            readHttpMode(settings)};
}

ServiceCall associationCall(const QString &configPath, const QString &text)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, SettingsKey::AssociationChannel,
                                       SettingsKey::AssociationCount);
    return {readText(settings, SettingsKey::AssociationPath), associationBody(call, text),
            readHttpMode(settings)};
}

ServiceCall askCall(const QString &configPath, AskFields fields)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, SettingsKey::AskChannel, SettingsKey::AskCount);
    fields.currentDomain = readText(settings, SettingsKey::AskDomain);
    return {readText(settings, SettingsKey::AskPath), askBody(call, fields),
            readHttpMode(settings)};
}
