#pragma once

#include <QString>

class QFontMetrics;

/// A bubble shows no more characters than these of one question or title; one that turns the
/// direction or joins others counts as five.
inline constexpr int maxShownCharacters = 20000;

/// How many letters \a character counts as: laying out one that turns the direction or joins others
/// takes as long as five.
[[nodiscard]] int layoutCost(QChar character);

/// \a text as far as a bubble shows it, with an ellipsis where it is cut, and without runs of
/// marks. Laying out a megabyte takes many seconds.
[[nodiscard]] QString shownPart(const QString &text);

/// \a text without what follows the first hundred of a run of combining marks and characters of no
/// width: they take thirty times as long to draw as letters, and nobody can read them.
[[nodiscard]] QString withoutMarkRuns(const QString &text);

/// No row of one line has room for more characters than these, however narrow: what is beyond needs
/// no measuring, which takes seconds for a megabyte.
inline constexpr int mostOfARow = 4000;

/// \a text where a row of one line may have room for it, else a beginning of it, with an ellipsis,
/// that is longer than every row.
[[nodiscard]] QString rowPart(const QString &text);

/// Breaks \a text into lines of less than \a width px by the widths of its single characters, as
/// question bubbles show it: each line ends one character before the one at which the sum of widths
/// reaches \a width. A text that fits as a whole comes back unchanged. A line that could hold no
/// character is left empty and the next one takes one character, so it ends for every font; the
/// cost grows linearly with the text. A surrogate pair counts as one character.
[[nodiscard]] QString brokenToWidth(const QFontMetrics &metrics, const QString &text, int width);
