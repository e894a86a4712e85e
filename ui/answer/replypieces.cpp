#include "ui/answer/replypieces.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

bool isPictureCandidate(const QString &piece)
{
    return piece.contains(QLatin1String("img")) || piece == QLatin1String("<br>")
        || piece.trimmed().isEmpty();
}

bool holdsPictureData(const QString &piece)
{
    return piece.contains(QLatin1String("data:image"));
}

} // namespace

QVector<ReplyPiece> splitReply(const QString &reply)
{
    static const QRegularExpression paragraphTags(QStringLiteral("(\\<p>|\\</p>)"));
    QVector<ReplyPiece> rows;
    const QStringList pieces = reply.split(paragraphTags);
    for (const QString &piece : pieces) {
        if (!isPictureCandidate(piece)) {
            rows.append({ReplyPiece::Kind::Text, piece});
        } else if (holdsPictureData(piece)) {
            rows.append({ReplyPiece::Kind::Picture, piece});
        }
    }
    return rows;
}
