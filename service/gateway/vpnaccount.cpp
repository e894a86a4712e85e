#include "service/gateway/vpnaccount.h"

#include "app/base/logstream.h"
#include "app/base/machineregistry.h"
#include "app/base/texttools.h"
#include "service/gateway/clientlibrary.h"

#include <QByteArray>

namespace {

constexpr int accountBytes = 64;

using GetAccountFunction = int (*)(char *buffer, int *bufferBytes);

constexpr char functionName[] = "getAccount";

QString libraryPath(const QString &iconPath)
{
    return iconPath.left(iconPath.lastIndexOf(QLatin1Char('\\'))) + QStringLiteral("\\toolSDK.dll");
}

} // namespace

QString vpnClientIconPath()
{
    return machineRegistryText(QStringLiteral("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\"
                                              "Uninstall\\Ostrel NORVIK VPN"),
                               QStringLiteral("DisplayIcon"));
}

int vpnAccountState(const QString &iconPath)
{
    if (iconPath.isEmpty()) {
        return vpnLibraryMissing; // not installed; a library in the drive's root is none of its
    }
    // Never unloaded: it may run threads of its own.
    ClientLibrary library(libraryPath(iconPath));
    if (!library.load()) {
        library.warnOnce();
        return vpnLibraryMissing;
    }
    const auto getAccount = reinterpret_cast<GetAccountFunction>(library.resolve(functionName));
    if (!getAccount) {
        return vpnLibraryMissing;
    }
    QByteArray account(accountBytes, '\0');
    int size = accountBytes;
    const int state = getAccount(account.data(), &size);
    LOG_DEBUG() << "account" << utf8UpToNul(account);
    return state;
}

LibraryReport examineVpnAccountLibrary(const QString &iconPath)
{
    return iconPath.isEmpty() ? LibraryReport()
                              : examineLibrary({libraryPath(iconPath)}, {functionName});
}
