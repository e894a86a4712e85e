#pragma once

#include <QString>

class StandInRegistry;

/// Puts the shared library \a library into the folder \a folder/client as "toolSDK.dll", as an
/// installed VPN client has it, and gives the path of the icon file beside it, with a backslash.
/// (Where a backslash does not part folders, it is a character of the library's name.)
[[nodiscard]] QString installVpnClient(const QString &folder, const QString &library);

/// Makes \a iconPath the icon of the VPN client that is installed on this machine, in \a registry.
void registerVpnClient(StandInRegistry &registry, const QString &iconPath);
