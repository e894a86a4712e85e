#pragma once

#include <QString>

/// Whether a table in \a html has borders, margins or paddings so wide, or so far below nothing,
/// that Qt would look for a place for its cells for ever.
[[nodiscard]] bool hasHugeTables(const QString &html);
