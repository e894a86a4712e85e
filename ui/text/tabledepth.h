#pragma once

#include <QString>

/// \a html as it is, or its bare text, with a warning in the log, when tables in it lie so deep in
/// each other that laying them out would take for ever: every level more than doubles the time.
[[nodiscard]] QString withoutDeepTables(const QString &html);
