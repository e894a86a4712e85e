#pragma once

#include <QString>

#include <optional>

/// For how many bits the library at \a file is made, 32 or 64, as its first bytes tell; nothing for
/// a file of another kind, or none.
[[nodiscard]] std::optional<int> libraryBits(const QString &file);
