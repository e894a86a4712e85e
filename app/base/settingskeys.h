#pragma once

#include <QLatin1String>

/// The keys of the settings files, in the order of settingsTable. A new key is one line here, one
/// there, and one in docs/configuration.md; nothing else lists them.
enum class SettingsKey {
    ServerAddress,
    ServerPort,
    HttpMode,
    TenantId,
    ApplicationKey,
    ApplicationSecret,
    HotPath,
    AssociationPath,
    AskPath,
    ItReportAddress,
    HotChannel,
    HotCount,
    AssociationChannel,
    AssociationCount,
    AskChannel,
    AskDomain,
    AskCount,
    Robot,
    GuardPort,
    LogLevel,
    ShownVersion,
    AboutButton,
    LoginState,
    LastUser,
    Count ///< how many there are, itself no key
};

/// What the value of a key is.
enum class SettingsKind {
    Text,
    Host,
    Port,   ///< 1 to 65535
    Number, ///< a whole number, not negative
    Quantity,
    SuggestionQuantity, ///< as many as the suggestion popup has rows for
    Path,               ///< of a call, put directly behind host and port
    Address,            ///< with its scheme
    Base64,
    LogLevel
};

/// Whether an installation works without a key. Those of the virtual-desktop client come and go
/// with its own settings file.
enum class SettingsNeed { Needed, HasDefault, WrittenByClient };

struct SettingsEntry
{
    SettingsKey key;
    const char *name; ///< "group/name", as QSettings takes it
    SettingsKind kind;
    SettingsNeed need;
    const char *without; ///< completes "without it ..."
};

/// Every key that the program reads.
inline constexpr SettingsEntry settingsTable[] = {
    {SettingsKey::ServerAddress, "IpAndPort/mserverip", SettingsKind::Host, SettingsNeed::Needed,
     "the service is not found"},
    {SettingsKey::ServerPort, "IpAndPort/mserverhttpsport", SettingsKind::Port,
     SettingsNeed::Needed, "the service is not found"},
    {SettingsKey::HttpMode, "ihttpInfo/iHttpMode", SettingsKind::Number, SettingsNeed::Needed,
     "plain http is used"},
    {SettingsKey::TenantId, "Authorization/tenantid", SettingsKind::Text, SettingsNeed::Needed,
     "the service refuses every request"},
    {SettingsKey::ApplicationKey, "Authorization/xcafirst", SettingsKind::Base64,
     SettingsNeed::Needed, "the service refuses every request"},
    {SettingsKey::ApplicationSecret, "Authorization/xcasecond", SettingsKind::Base64,
     SettingsNeed::Needed, "the service refuses every request"},
    {SettingsKey::HotPath, "url/hoturl", SettingsKind::Path, SettingsNeed::Needed,
     "there are no hot questions"},
    {SettingsKey::AssociationPath, "url/associateurl", SettingsKind::Path, SettingsNeed::Needed,
     "there are no suggestions"},
    {SettingsKey::AskPath, "url/askquesturl", SettingsKind::Path, SettingsNeed::Needed,
     "no question is answered"},
    {SettingsKey::ItReportAddress, "url/itreporturl", SettingsKind::Address, SettingsNeed::Needed,
     "help and feedback open nothing"},
    {SettingsKey::HotChannel, "HotRecommendation/channelId", SettingsKind::Number,
     SettingsNeed::Needed, "the service is told channel 0"},
    {SettingsKey::HotCount, "HotRecommendation/recommendSize", SettingsKind::Quantity,
     SettingsNeed::Needed, "no hot questions are asked for"},
    {SettingsKey::AssociationChannel, "ProblemAssociation/channelId", SettingsKind::Number,
     SettingsNeed::Needed, "the service is told channel 0"},
    {SettingsKey::AssociationCount, "ProblemAssociation/recommendSize",
     SettingsKind::SuggestionQuantity, SettingsNeed::Needed, "no suggestions are asked for"},
    {SettingsKey::AskChannel, "QuestAndAnw/channelId", SettingsKind::Number, SettingsNeed::Needed,
     "the service is told channel 0"},
    {SettingsKey::AskDomain, "QuestAndAnw/currentDomain", SettingsKind::Text, SettingsNeed::Needed,
     "the service is told no domain"},
    {SettingsKey::AskCount, "QuestAndAnw/recommendSize", SettingsKind::Quantity,
     SettingsNeed::Needed, "no related questions are asked for"},
    {SettingsKey::Robot, "RobotId/robotId", SettingsKind::Text, SettingsNeed::Needed,
     "the service is told no robot"},
    {SettingsKey::GuardPort, "SysguardPort/port1", SettingsKind::Port, SettingsNeed::Needed,
     "the guard tool cannot post questions"},
    {SettingsKey::LogLevel, "Log/level", SettingsKind::LogLevel, SettingsNeed::HasDefault,
     "only errors are logged"},
    {SettingsKey::ShownVersion, "Version/version", SettingsKind::Text, SettingsNeed::HasDefault,
     "the About dialog shows no version"},
    {SettingsKey::AboutButton, "SysEnvironment/EnvType", SettingsKind::Number,
     SettingsNeed::HasDefault, "the about button opens the About dialog"},
    {SettingsKey::LoginState, "LoginMode/loginstate", SettingsKind::Number,
     SettingsNeed::WrittenByClient, "the desktop counts as logged out"},
    {SettingsKey::LastUser, "RemLastUser/lastuser", SettingsKind::Text,
     SettingsNeed::WrittenByClient, "the user has no name"},
};

/// Whether settingsTable holds every key once, at its own place.
constexpr bool settingsTableIsWhole()
{
    int place = 0;
    for (const SettingsEntry &entry : settingsTable) {
        if (entry.key != static_cast<SettingsKey>(place)) {
            return false;
        }
        ++place;
    }
    return place == static_cast<int>(SettingsKey::Count);
}
static_assert(settingsTableIsWhole());

/// The name of \a key as QSettings takes it.
[[nodiscard]] inline QLatin1String settingsName(SettingsKey key)
{
    return QLatin1String(settingsTable[static_cast<int>(key)].name);
}
