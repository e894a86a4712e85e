#pragma once

#include <QString>

/// Puts the shared library \a library into the folder \a folder/client as "toolSDK.dll", as an
/// installed VPN client has it, and gives the path of the icon file beside it, with a backslash.
/// (Where a backslash does not part folders, it is a character of the library's name.)
[[nodiscard]] QString installVpnClient(const QString &folder, const QString &library);

/// Whether registerVpnClient() can be used here: not on Windows, where it would change the
/// machine's own registry.
[[nodiscard]] bool canRegisterVpnClient();

/// Makes \a iconPath the icon of the installed VPN client, for programs that run in the working
/// directory: elsewhere than on Windows, a file there stands for the registry key.
void registerVpnClient(const QString &iconPath);
