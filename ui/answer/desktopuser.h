#pragma once

#include <QString>

/// The name of the user logged in to the virtual desktop, by which questions are asked: from the
/// client's settings file, or from the registry when the program was started by a shortcut. Empty
/// when it is not known. Read anew with every call.
[[nodiscard]] QString desktopUserName();
