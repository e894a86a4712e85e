#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

/// What a settings file says.
struct SettingsContent
{
    QSettings::SettingsMap values; ///< by "group/name"; a value of several pieces is a list
    QStringList refused;           ///< names of the values that are not read, see settingsValue()
    bool isWellFormed = true;      ///< whether every line is a [group] or has an equals sign
};

/// Reads the \a bytes of a settings file as Qt reads its INI files, but for two things: a value
/// that it takes danger to read is left out, and the pieces of a list are always texts. Any thread.
[[nodiscard]] SettingsContent readSettings(QByteArray bytes);
