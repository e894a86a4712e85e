#include "service/request/servicecall.h"

#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"

namespace {

QString readText(const SettingsFile &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toString();
}

int readNumber(const SettingsFile &settings, SettingsKey key)
{
    return settings.value(settingsName(key)).toInt();
}

CallSettings readCallSettings(const SettingsFile &settings, SettingsKey channel, SettingsKey count)
{
    return {readNumber(settings, channel), readNumber(settings, count),
            readText(settings, SettingsKey::Robot)};
}

int readHttpMode(const SettingsFile &settings)
{
    return readNumber(settings, SettingsKey::HttpMode);
}

} // namespace

ServiceCall hotCall(const QString &configPath)
{
    const SettingsFile settings(configPath);
    const auto call = readCallSettings(settings, SettingsKey::HotChannel, SettingsKey::HotCount);
    return {readText(settings, SettingsKey::HotPath), hotQuestionsBody(call),
            readHttpMode(settings)};
}

ServiceCall associationCall(const QString &configPath, const QString &text)
{
    const SettingsFile settings(configPath);
    const auto call = readCallSettings(settings, SettingsKey::AssociationChannel,
                                       SettingsKey::AssociationCount);
    return {readText(settings, SettingsKey::AssociationPath), associationBody(call, text),
            readHttpMode(settings)};
}

ServiceCall askCall(const QString &configPath, AskFields fields)
{
    const SettingsFile settings(configPath);
    const auto call = readCallSettings(settings, SettingsKey::AskChannel, SettingsKey::AskCount);
    fields.currentDomain = readText(settings, SettingsKey::AskDomain);
    return {readText(settings, SettingsKey::AskPath), askBody(call, fields),
            readHttpMode(settings)};
}
