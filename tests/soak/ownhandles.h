#pragma once

#include <QString>

/// What this process holds of Windows' objects: "handles H, GDI objects G, user objects U". Empty
/// on other systems, where whoever drives the program can count from outside. Under Wine, which
/// does not tell user objects, U is 0.
[[nodiscard]] QString ownHandles();
