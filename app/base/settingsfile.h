#pragma once

#include <QSettings>

/// A settings file in INI format, read and never written. Whatever is in it can be read: a value
/// that only harm is done with counts as missing, and so does all of a file beyond 64 MiB. Values
/// of the program that are lost thereby are named in the log, in one line each time the file is
/// read.
class SettingsFile final : public QSettings
{
public:
    /// \a path may name nothing: there are no values then.
    explicit SettingsFile(const QString &path);
};

/// Writes that line for the file at \a path, which was read before there was a log.
void logRefusedSettings(const QString &path);
