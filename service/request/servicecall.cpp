#include "service/request/servicecall.h"

#include <QSettings>

namespace {

QString readText(const QSettings &settings, const char *key)
{
    return settings.value(QLatin1String(key)).toString();
}

CallSettings readCallSettings(const QSettings &settings, QLatin1String group)
{
    return {settings.value(group + QLatin1String("/channelId")).toInt(),
            settings.value(group + QLatin1String("/recommendSize")).toInt(),
            readText(settings, "RobotId/robotId")};
}

int readHttpMode(const QSettings &settings)
{
    return settings.value(QStringLiteral("ihttpInfo/iHttpMode")).toInt();
}

} // namespace

ServiceCall hotCall(const QString &configPath)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, QLatin1String("HotRecommendation"));
    return {readText(settings, "url/hoturl"), hotQuestionsBody(call), readHttpMode(settings)};
}

ServiceCall associationCall(const QString &configPath, const QString &text)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, QLatin1String("ProblemAssociation"));
    return {readText(settings, "url/associateurl"), associationBody(call, text),
            readHttpMode(settings)};
}

ServiceCall askCall(const QString &configPath, AskFields fields)
{
    const QSettings settings(configPath, QSettings::IniFormat);
    const auto call = readCallSettings(settings, QLatin1String("QuestAndAnw"));
    fields.currentDomain = readText(settings, "QuestAndAnw/currentDomain");
    return {readText(settings, "url/askquesturl"), askBody(call, fields), readHttpMode(settings)};
}
