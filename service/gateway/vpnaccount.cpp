#include "service/gateway/vpnaccount.h"

#include "app/base/logstream.h"
#include "app/base/texttools.h"

#include <QByteArray>
#include <QLibrary>
#include <QSettings>

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace {

constexpr int accountBytes = 64;

using GetAccountFunction = int (*)(char *buffer, int *bufferBytes);

struct Kept
{
    std::mutex mutex;
    std::vector<std::unique_ptr<QObject>> objects; // guarded by mutex
};

/// Keeps \a object for the rest of the process. The client's library is never to be unloaded: it
/// may run threads of its own.
template <typename Object>
Object &keep(std::unique_ptr<Object> object)
{
    // Never destroyed: nor is the library to go while the statics of the process do.
    static auto *const kept = new Kept;
    Object &reference = *object;
    const std::lock_guard<std::mutex> lock(kept->mutex);
    kept->objects.push_back(std::move(object));
    return reference;
}

QString libraryPath(const QString &iconPath)
{
    return iconPath.left(iconPath.lastIndexOf(QLatin1Char('\\'))) + QStringLiteral("\\toolSDK.dll");
}

} // namespace

QString vpnClientIconPath()
{
    const auto &settings = keep(std::make_unique<QSettings>(
        QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\"
                       "Uninstall\\Ostrel NORVIK VPN"),
        QSettings::NativeFormat));
    return settings.value(QStringLiteral("DisplayIcon")).toString();
}

int vpnAccountState(const QString &iconPath)
{
    if (iconPath.isEmpty()) {
        return vpnLibraryMissing; // not installed; a library in the drive's root is none of its
    }
    auto &library = keep(std::make_unique<QLibrary>(libraryPath(iconPath)));
    const auto getAccount = reinterpret_cast<GetAccountFunction>(library.resolve("getAccount"));
    if (!getAccount) {
        return vpnLibraryMissing;
    }
    QByteArray account(accountBytes, '\0');
    int size = accountBytes;
    const int state = getAccount(account.data(), &size);
    LOG_DEBUG() << "account" << utf8UpToNul(account);
    return state;
}
