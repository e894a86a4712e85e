#pragma once

#include <QRegularExpression>
#include <QString>

/// Marks in suggested questions what matches the typed text, which is used as a regular expression
/// as it stands, without regard to case. A pattern that is invalid or runs away marks nothing; no
/// pattern takes longer than a blink.
class SuggestionHighlight
{
public:
    explicit SuggestionHighlight(const QString &typed);

    /// \a text as rich text with its matches in blue; empty when there are none.
    [[nodiscard]] QString apply(const QString &text);

private:
    QRegularExpression m_pattern;
    bool m_givenUp = false; ///< the pattern is of no use; the same for every text
};
