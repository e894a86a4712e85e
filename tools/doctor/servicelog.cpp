#include "tools/doctor/servicelog.h"

#include <QStringList>

#include <cstdio>
#include <mutex>

namespace {

struct Caught
{
    std::mutex mutex;
    QStringList messages; // this and the next are guarded by mutex
    bool printed = false;
};

Caught &caught()
{
    static Caught all;
    return all;
}

void take(QtMsgType, const QMessageLogContext &, const QString &message)
{
    Caught &all = caught();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.messages.append(message);
    if (all.printed) {
        std::fprintf(stderr, "        | %s\n", message.toUtf8().constData());
    }
}

} // namespace

ServiceLog::ServiceLog(bool printed)
{
    clear();
    {
        const std::lock_guard<std::mutex> lock(caught().mutex);
        caught().printed = printed;
    }
    m_previous = qInstallMessageHandler(take);
}

ServiceLog::~ServiceLog()
{
    qInstallMessageHandler(m_previous);
}

void ServiceLog::clear()
{
    const std::lock_guard<std::mutex> lock(caught().mutex);
    caught().messages.clear();
}

QString ServiceLog::after(const QString &start) const
{
    const std::lock_guard<std::mutex> lock(caught().mutex);
    for (const QString &message : qAsConst(caught().messages)) {
        if (message.startsWith(start)) {
            return message.mid(start.size());
        }
    }
    return {};
}
