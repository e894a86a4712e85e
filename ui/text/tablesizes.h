#pragma once

#include <QString>

/// Whether tables in \a html have more cells than Qt lays out in reasonable time, or borders,
/// margins or paddings so wide, or so far below nothing, that it would look for a place for them
/// for ever.
[[nodiscard]] bool hasHugeTables(const QString &html);
