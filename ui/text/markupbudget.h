#pragma once

#include <QString>

/// What Qt's rich text may spend on the markup of one answer. Elements in each other, entries of a
/// list, cells and style rules cost it far more than the characters they are written with, partly
/// with the square of their number; a few kilobytes can keep the window busy for minutes.
class MarkupBudget
{
public:
    /// \a html as it is, or, when its markup costs more than is left, the text in it without the
    /// markup, as rich text, with a warning in the log.
    [[nodiscard]] QString affordable(const QString &html);

private:
    double m_left = 300'000; ///< microseconds of an ordinary machine
};
