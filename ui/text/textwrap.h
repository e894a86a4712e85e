#pragma once

#include <QString>

class QFontMetrics;

/// A bubble shows no more characters than these of one question or title.
inline constexpr int maxShownCharacters = 20000;

/// \a text as far as a bubble shows it, with an ellipsis where it is cut. Laying out a megabyte
/// takes many seconds.
[[nodiscard]] QString shownPart(const QString &text);

/// Breaks \a text into lines of less than \a width px by the widths of its single characters, as
/// question bubbles show it: each line ends one character before the one at which the sum of widths
/// reaches \a width. A text that fits as a whole comes back unchanged. A line that could hold no
/// character is left empty and the next one takes one character, so it ends for every font; the
/// cost grows linearly with the text. A surrogate pair counts as one character.
[[nodiscard]] QString brokenToWidth(const QFontMetrics &metrics, const QString &text, int width);
