#pragma once

#include <QString>

class QFontMetrics;

/// \a text broken into lines of less than \a width px, by the rule as it is told: a text that fits
/// stays as it is; otherwise widths of single characters are added up until they reach the width,
/// the line ends one character before the one that reached it, and the rest is broken in turn. A
/// line may be empty that way; the one behind it takes a character all the same. The cost grows
/// with the square of the text.
[[nodiscard]] QString plainlyBroken(const QFontMetrics &metrics, const QString &text, int width);
