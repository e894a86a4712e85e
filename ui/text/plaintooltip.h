#pragma once

#include <QString>

/// \a text as a tool tip that shows it as it is, even where it looks like markup. One longer than
/// any row is cut.
[[nodiscard]] QString plainToolTip(const QString &text);
