#include "app/base/loghandler.h"

#include "app/base/fileappend.h"
#include "app/base/texttools.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <mutex>

qint32 logLevelThreshold = 0;

// Never destroyed: Qt's own static objects still log after ours are gone.
QString &logBasePath = *new QString;

namespace {

enum Level : qint32 { Debug = 1, Info, Warning, Critical, Fatal };

constexpr Level defaultThreshold = Critical;
constexpr qint64 largestLogBytes = 10'485'759; // one more makes 10 MiB, which is moved away

struct LevelName
{
    QLatin1String name;
    Level level;
};

// "WARN", although the line's prefix is "Warning:".
const LevelName levelNames[] = {
    {QLatin1String("DEBUG"), Debug},  {QLatin1String("INFO"), Info},
    {QLatin1String("WARN"), Warning}, {QLatin1String("ERROR"), Critical},
    {QLatin1String("FATAL"), Fatal},
};

std::mutex &logMutex()
{
    static std::mutex mutex;
    return mutex;
}

QString liveLogPath()
{
    return logBasePath + QLatin1String(".log");
}

void appendToLiveLog(const QByteArray &line)
{
    const QString path = liveLogPath();
    if (appendToFile(path, line) && QFileInfo(path).size() > largestLogBytes) {
        backupLogFile();
    }
}

/// The current time for a log line. Asking for the time zone takes about as long as writing a line,
/// so each thread keeps the text for the rest of its second.
QString currentTimeText()
{
    struct Kept
    {
        qint64 second;
        char text[32]; // plain, because what ends with the thread may still log
    };
    thread_local Kept kept = {-1, {}};
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (now != kept.second) {
        const QByteArray text = logTimeText(QDateTime::fromSecsSinceEpoch(now)).toLatin1();
        qstrncpy(kept.text, text.constData(), sizeof(kept.text));
        kept.second = now;
    }
    return QString::fromLatin1(kept.text);
}

} // namespace

void initLogSetting(const QString &level, const QString &basePath)
{
    const QString wanted = level.toUpper();
    logLevelThreshold = defaultThreshold;
    for (const LevelName &known : levelNames) {
        if (wanted == known.name) {
            logLevelThreshold = known.level;
        }
    }
    logBasePath = basePath;
    // The first date that is written makes Qt's calendars. When two threads do so at once, one of
    // them gets an empty text.
    static_cast<void>(logTimeText(QDateTime::currentDateTime()));
}

QStringList logLevelNames()
{
    QStringList names;
    for (const LevelName &known : levelNames) {
        names.append(known.name);
    }
    return names;
}

void logMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    // The cheap test comes first: most messages end here.
    if (!isLogged(type) || message.contains(QLatin1String("Unknown property"), Qt::CaseSensitive)) {
        return;
    }
    const QString line = formatLogLine(type, currentTimeText(), context, message);
    // In the encoding of the system's locale, as a text stream without a codec writes.
    const QByteArray bytes = line.toLocal8Bit() + "\r\n";
    const std::lock_guard<std::mutex> lock(logMutex());
    appendToLiveLog(bytes);
}

bool isLogged(QtMsgType type)
{
    return msgTypeToLevel(type).number >= logLevelThreshold;
}

MessageLevel msgTypeToLevel(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return {QLatin1String("Debug:"), Debug};
    case QtInfoMsg:
        return {QLatin1String("Info:"), Info};
    case QtWarningMsg:
        return {QLatin1String("Warning:"), Warning};
    case QtFatalMsg:
        return {QLatin1String("Fatal:"), Fatal};
    case QtCriticalMsg:
        break;
    }
    return {QLatin1String("Critical:"), Critical};
}

QString sourceFileName(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('\\')) + 1);
}

QString logTimeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QString formatLogLine(QtMsgType type, const QString &time, const QMessageLogContext &context,
                      const QString &message)
{
    const QString source = QStringLiteral("%1  line: %2")
                               .arg(sourceFileName(QString::fromUtf8(context.file)))
                               .arg(context.line);
    const QString text = utf8UpToNul(message.toUtf8());
    const QLatin1Char marker('%');
    if (!source.contains(marker) && !time.contains(marker)) {
        // The same as below, but filling the pattern takes as long as writing the line.
        return msgTypeToLevel(type).prefix + QLatin1Char('[') + time + QLatin1Char(' ') + source
             + QLatin1String("]: ") + text;
    }
    // The message is filled in last: what looks like a place marker in it stays as it is.
    return QStringLiteral("%1[%2 %3]: %4").arg(msgTypeToLevel(type).prefix, time, source).arg(text);
}

void backupLogFile()
{
    const QString live = liveLogPath();
    const QString backup = live + QLatin1String(".bk");
    QFile::remove(backup);
    QFile::copy(live, backup);
    QFile::remove(live);
}
