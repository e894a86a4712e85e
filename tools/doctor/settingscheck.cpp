#include "tools/doctor/settingscheck.h"

#include "tools/doctor/settingkinds.h"

#include <QSettings>

namespace {

struct Key
{
    const char *name;
    Complaint (*check)(const QString &value);
    const char *meaning; ///< completes "without it ..."
};

// Without these the program does not do its work.
constexpr Key needed[] = {
    {"IpAndPort/mserverip", checkHost, "the service is not found"},
    {"IpAndPort/mserverhttpsport", checkPort, "the service is not found"},
    {"ihttpInfo/iHttpMode", checkNumber, "plain http is used"},
    {"Authorization/tenantid", checkText, "the service refuses every request"},
    {"Authorization/xcafirst", checkBase64, "the service refuses every request"},
    {"Authorization/xcasecond", checkBase64, "the service refuses every request"},
    {"url/hoturl", checkPath, "there are no hot questions"},
    {"url/associateurl", checkPath, "there are no suggestions"},
    {"url/askquesturl", checkPath, "no question is answered"},
    {"url/itreporturl", checkAddress, "help and feedback open nothing"},
    {"HotRecommendation/channelId", checkNumber, "the service is told channel 0"},
    {"HotRecommendation/recommendSize", checkCount, "no hot questions are asked for"},
    {"ProblemAssociation/channelId", checkNumber, "the service is told channel 0"},
    {"ProblemAssociation/recommendSize", checkSuggestionCount, "no suggestions are asked for"},
    {"QuestAndAnw/channelId", checkNumber, "the service is told channel 0"},
    {"QuestAndAnw/currentDomain", checkText, "the service is told no domain"},
    {"QuestAndAnw/recommendSize", checkCount, "no related questions are asked for"},
    {"RobotId/robotId", checkText, "the service is told no robot"},
    {"SysguardPort/port1", checkPort, "the guard tool cannot post questions"},
};

// These have a good default.
constexpr Key optional[] = {
    {"Log/level", checkLevel, "only errors are logged"},
    {"Version/version", checkText, "the About dialog shows no version"},
    {"SysEnvironment/EnvType", checkNumber, "the about button opens the About dialog"},
};

const QString change = QStringLiteral("Change it in the settings file.");

Finding malformed(const QString &name, const Complaint &complaint)
{
    return toMend(name + QLatin1Char(' ') + complaint.what,
                  complaint.mend.isEmpty() ? change : complaint.mend);
}

/// Nothing for a key with which all is well.
Findings checkKey(const QSettings &settings, const Key &key, bool isNeeded)
{
    const QString name = QLatin1String(key.name);
    const QVariant value = settings.value(name);
    if (!value.isValid()) {
        const QString what
            = name + QStringLiteral(" is missing: without it ") + QLatin1String(key.meaning);
        const QString mend = QStringLiteral("Add it to the settings file.");
        return {isNeeded ? toMend(what, mend) : note(what, mend)};
    }
    if (value.type() == QVariant::StringList) {
        return {toMend(name + QStringLiteral(" is read as a list, which counts as empty"),
                       QStringLiteral("Put its value in double quotes: it has a comma in it."))};
    }
    const Complaint complaint = key.check(value.toString());
    return complaint.what.isEmpty() ? Findings() : Findings{malformed(name, complaint)};
}

} // namespace

Findings checkSettings(const QString &path)
{
    const QSettings settings(path, QSettings::IniFormat);
    Findings findings;
    int count = 0;
    for (const Key &key : needed) {
        findings += checkKey(settings, key, true);
        ++count;
    }
    for (const Key &key : optional) {
        findings += checkKey(settings, key, false);
        ++count;
    }
    if (settings.status() == QSettings::FormatError) {
        findings.append(toMend(QStringLiteral("some lines are neither [group] nor key=value"),
                               QStringLiteral("Look for lines without an equals sign.")));
    }
    const int wellFormed = count - static_cast<int>(findings.size());
    findings.prepend(good(QStringLiteral("keys with nothing to say about: %1 of %2")
                              .arg(qMax(wellFormed, 0))
                              .arg(count)));
    return findings;
}
