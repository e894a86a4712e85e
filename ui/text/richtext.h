#pragma once

#include <QString>

/// \a text in a form that a label which knows rich text shows as it is, blanks included: itself
/// where it does not look like markup.
[[nodiscard]] QString asTyped(const QString &text);

/// What a person reads of \a text in a label which knows rich text. Reads nothing that it names.
[[nodiscard]] QString readableText(const QString &text);
