#pragma once

#include <QString>

/// About what Qt takes to read and lay out the markup of \a html, in microseconds of an ordinary
/// machine, the characters themselves left out. The scan ends, with a higher sum than \a most, as
/// soon as that is passed.
[[nodiscard]] double markupCost(const QString &html, double most);

/// What a person reads of \a html, again as rich text: entities stay, elements go, and line breaks
/// stand where blocks met. The cost grows linearly with the text.
[[nodiscard]] QString bareText(const QString &html);
