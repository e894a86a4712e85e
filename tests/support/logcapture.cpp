#include "tests/support/logcapture.h"

#include <QRegularExpression>

#include <mutex>

namespace {

struct Caught
{
    std::mutex mutex;
    QStringList own; // this and the next are guarded by mutex
    QStringList foreign;
};

Caught &caught()
{
    static Caught lines;
    return lines;
}

QString levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug: ");
    case QtInfoMsg:
        return QStringLiteral("info: ");
    case QtWarningMsg:
        return QStringLiteral("warning: ");
    default:
        return QStringLiteral("graver: ");
    }
}

void take(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    Caught &lines = caught();
    const std::lock_guard<std::mutex> lock(lines.mutex);
    // Qt itself is built without file names in its messages.
    (context.file ? lines.own : lines.foreign).append(levelName(type) + text);
}

} // namespace

LogCapture::LogCapture()
{
    clear();
    m_previous = qInstallMessageHandler(take);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
}

QStringList LogCapture::lines() const
{
    const std::lock_guard<std::mutex> lock(caught().mutex);
    return caught().own;
}

QStringList LogCapture::timelessLines() const
{
    static const QRegularExpression time(QStringLiteral("\\d\\d:\\d\\d:\\d\\d\\.\\d{3}$"));
    return lines().replaceInStrings(time, QStringLiteral("<time>"));
}

QStringList LogCapture::linesWith(const QString &start) const
{
    QStringList found;
    for (const QString &line : lines()) {
        if (line.startsWith(start)) {
            found.append(line);
        }
    }
    return found;
}

QStringList LogCapture::foreignLines() const
{
    const std::lock_guard<std::mutex> lock(caught().mutex);
    return caught().foreign;
}

void LogCapture::clear()
{
    const std::lock_guard<std::mutex> lock(caught().mutex);
    caught().own.clear();
    caught().foreign.clear();
}
