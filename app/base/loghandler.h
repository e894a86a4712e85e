#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

class QDateTime;

/// What a message type means in the log.
struct MessageLevel
{
    QLatin1String prefix; ///< first word of the line, e.g. "Info:"
    qint32 number;        ///< 1 (debug) to 5 (fatal), compared with logLevelThreshold
};

/// Messages of a lower level number are dropped: 1 to 5, or 0 until initLogSetting() has run. Like
/// logBasePath it is written on the main thread before the handler is installed, only read later.
extern qint32 logLevelThreshold;

/// Path of the log file without its extension: the live log is this + ".log", the backup this +
/// ".log.bk". Empty until initLogSetting() has run.
extern QString &logBasePath;

/// Sets the threshold from a level name ("DEBUG", "INFO", "WARN", "ERROR" or "FATAL" in any case;
/// anything else counts as "ERROR") and the base path. Call it once, before the handler is
/// installed.
void initLogSetting(const QString &level, const QString &basePath);

/// The level names, the lowest first.
[[nodiscard]] QStringList logLevelNames();

/// The handler for qInstallMessageHandler(): appends one line to the live log. Callable from any
/// thread; one mutex guards the file. Drops what is below the threshold, the style sheet engine's
/// "Unknown property" complaints, and, silently, what cannot be written.
void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);

/// False when the handler drops every message of \a type: what goes into one need not be found out.
[[nodiscard]] bool isLogged(QtMsgType type);

/// Prefix and level number of \a type; an unknown type counts as critical.
[[nodiscard]] MessageLevel msgTypeToLevel(QtMsgType type);

/// What follows the last backslash of \a path, or all of it when there is none. A slash is no
/// separator here.
[[nodiscard]] QString sourceFileName(const QString &path);

/// \a time as it stands in a log line, "yyyy-MM-dd hh:mm:ss".
[[nodiscard]] QString logTimeText(const QDateTime &time);

/// The line that the handler writes for a message, without its line end: prefix, time, source file,
/// line number and text. The text ends at its first NUL character. Place markers such as "%1" in it
/// are not filled.
[[nodiscard]] QString formatLogLine(QtMsgType type, const QString &time,
                                    const QMessageLogContext &context, const QString &message);

/// Moves the live log over the backup, whatever each step gives: when the backup cannot be
/// replaced, the live log is removed all the same. The handler calls it with its mutex held;
/// nothing here logs.
void backupLogFile();
