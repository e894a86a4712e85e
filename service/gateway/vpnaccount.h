#pragma once

#include "service/gateway/libraryreport.h"

#include <QString>

/// What vpnAccountState() gives when the VPN client, its library or the library's function is
/// missing.
constexpr int vpnLibraryMissing = -1;

/// The path of the installed VPN client's icon file, from its entry among the installed programs in
/// the Windows registry; empty when there is none. Any thread.
[[nodiscard]] QString vpnClientIconPath();

/// Asks "toolSDK.dll" of the VPN client, which lies in the folder of \a iconPath (up to its last
/// backslash), for the logged-in account, logs its name and gives the library's own state value
/// unchanged. The library stays loaded for the rest of the process. When it is there but cannot be
/// loaded, the system's reason is logged as a warning, once. Any thread, as far as the library
/// allows it.
[[nodiscard]] int vpnAccountState(const QString &iconPath);

/// What vpnAccountState() would find, without asking for the account. Any thread.
[[nodiscard]] LibraryReport examineVpnAccountLibrary(const QString &iconPath);
