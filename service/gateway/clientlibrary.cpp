#include "service/gateway/clientlibrary.h"

#include "app/base/logstream.h"

#include <QDir>
#include <QFileInfo>

#include <mutex>
#include <set>

namespace {

struct Told
{
    std::mutex mutex;
    std::set<QString> texts; // guarded by mutex
};

bool isNew(const QString &text)
{
    // Never destroyed: a worker may still warn while the statics of the process go.
    static auto *const told = new Told;
    const std::lock_guard<std::mutex> lock(told->mutex);
    return told->texts.insert(text).second;
}

} // namespace

ClientLibrary::ClientLibrary(const QString &file)
    : m_file(file)
{
}

bool ClientLibrary::load()
{
    m_reason.clear();
    return loadFile();
}

bool ClientLibrary::isThere() const
{
    return QDir::isAbsolutePath(m_file) && QFileInfo(m_file).isFile();
}

QString ClientLibrary::problem() const
{
    if (m_reason.isEmpty() || !isThere()) {
        return {};
    }
    return QDir::toNativeSeparators(m_file) + QStringLiteral(": ") + m_reason;
}

void ClientLibrary::warnOnce() const
{
    const QString text = problem();
    if (!text.isEmpty() && isNew(text)) {
        LOG_WARNING() << "A library of the VPN client cannot be loaded. " << text;
    }
}
