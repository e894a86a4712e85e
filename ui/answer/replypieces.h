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

/// Splits the rich text of a service's reply at every literal "<p>" and "</p>" into the rows of an
/// answer. Blank pieces, a lone "<br>" and pictures given by address show nothing and are left out.
[[nodiscard]] QVector<ReplyPiece> splitReply(const QString &reply);
