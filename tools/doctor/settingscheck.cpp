#include "tools/doctor/settingscheck.h"

#include "app/base/settingscontent.h"
#include "app/base/settingsfile.h"
#include "app/base/settingskeys.h"
#include "tools/doctor/settingkinds.h"

#include <QFile>

namespace {

Complaint check(SettingsKind kind, const QString &value)
{
    switch (kind) {
    case SettingsKind::Text:
        return checkText(value);
    case SettingsKind::Host:
        return checkHost(value);
    case SettingsKind::Port:
        return checkPort(value);
    case SettingsKind::Number:
        return checkNumber(value);
    case SettingsKind::Quantity:
        return checkQuantity(value);
    case SettingsKind::SuggestionQuantity:
        return checkSuggestionQuantity(value);
    case SettingsKind::Path:
        return checkPath(value);
    case SettingsKind::Address:
        return checkAddress(value);
    case SettingsKind::Base64:
        return checkBase64(value);
    case SettingsKind::LogLevel:
        return checkLevel(value);
    }
    return {};
}

const QString change = QStringLiteral("Change it in the settings file.");

Finding malformed(const QString &name, const Complaint &complaint)
{
    return toMend(name + QLatin1Char(' ') + complaint.what,
                  complaint.mend.isEmpty() ? change : complaint.mend);
}

SettingsContent contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readSettings(file.readAll()) : SettingsContent();
}

/// Nothing for a key with which all is well.
Findings checkKey(const SettingsFile &settings, const QStringList &refused,
                  const SettingsEntry &entry)
{
    const QString name = QLatin1String(entry.name);
    const QVariant value = settings.value(name);
    if (refused.contains(name)) {
        return {toMend(
            name + QStringLiteral(" is neither text nor number, which counts as missing"), change)};
    }
    if (!value.isValid()) {
        const QString what
            = name + QStringLiteral(" is missing: without it ") + QLatin1String(entry.without);
        const QString mend = QStringLiteral("Add it to the settings file.");
        return {entry.need == SettingsNeed::Needed ? toMend(what, mend) : note(what, mend)};
    }
    if (value.type() == QVariant::StringList) {
        return {toMend(name + QStringLiteral(" is read as a list, which counts as empty"),
                       QStringLiteral("Put its value in double quotes: it has a comma in it."))};
    }
    const Complaint complaint = check(entry.kind, value.toString());
    return complaint.what.isEmpty() ? Findings() : Findings{malformed(name, complaint)};
}

} // namespace

Findings checkSettings(const QString &path)
{
    const SettingsFile settings(path);
    const SettingsContent content = contentOf(path);
    Findings findings;
    int count = 0;
    for (const SettingsEntry &entry : settingsTable) {
        if (entry.need != SettingsNeed::WrittenByClient) {
            findings += checkKey(settings, content.refused, entry);
            ++count;
        }
    }
    if (!content.isWellFormed) {
        findings.append(toMend(QStringLiteral("some lines are neither [group] nor key=value"),
                               QStringLiteral("Look for lines without an equals sign.")));
    }
    const int wellFormed = count - static_cast<int>(findings.size());
    findings.prepend(good(QStringLiteral("keys with nothing to say about: %1 of %2")
                              .arg(qMax(wellFormed, 0))
                              .arg(count)));
    return findings;
}
