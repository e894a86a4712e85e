#pragma once

#include <QString>
#include <QVector>

/// One row of an answer.
struct ReplyPiece
{
    enum class Kind {
        Text,    ///< a paragraph of rich text
        Picture, ///< an inline picture
    };

    Kind kind;

    /// The piece as it stood between the paragraph tags of the reply.
    QString source;

    bool operator==(const ReplyPiece &other) const
    {
        return kind == other.kind && source == other.source;
    }
};

/// How much of one answer is shown: what is beyond is cut, since laying out millions of characters
/// or rows would freeze the window for minutes. No answer that is meant to be read comes near.
/// Characters are those outside tags, of which the dearest scripts take about 15 microseconds each
/// and one that turns the direction counts as five; with the tags there may be five times as many.
inline constexpr int maxAnswerCharacters = 40000;
inline constexpr int maxAnswerSource = 5 * maxAnswerCharacters;
inline constexpr int maxAnswerRows = 10000;

/// So many rows of an answer have a widget each; behind them paragraphs share one.
inline constexpr int maxOwnRows = 1000;
inline constexpr int paragraphsOfASharedRow = 100;

/// Cuts \a rows to what is shown. Returns whether anything was cut.
[[nodiscard]] bool limitRows(QVector<ReplyPiece> &rows);

/// Joins the paragraphs behind the first maxOwnRows rows into rows of many. Thousands of widgets
/// take seconds to make and hundreds of megabytes.
void joinFarRows(QVector<ReplyPiece> &rows);

/// Splits the rich text of a service's reply at every literal "<p>" and "</p>" into the rows of an
/// answer. Blank pieces, a lone "<br>" and pictures given by address show nothing and are left out.
[[nodiscard]] QVector<ReplyPiece> splitReply(const QString &reply);
