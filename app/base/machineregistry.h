#pragma once

#include <QString>

/// The text of the value \a name in the registry key \a key below HKEY_LOCAL_MACHINE, e.g.
/// "Software\\VDAgent\\LogonInfo"; empty when there is none. A number gives its decimal digits,
/// other kinds of values nothing.
///
/// Programs of 32 and 64 bits write into two views of the registry; the 64-bit view is asked first,
/// the other one when that has no such value. Read anew with every call; nothing is ever written,
/// whatever the process may do. Elsewhere than on Windows the key is a settings file of its full
/// name in the working directory. Any thread.
[[nodiscard]] QString machineRegistryText(const QString &key, const QString &name);
