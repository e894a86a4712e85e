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

bool limitRows(QVector<ReplyPiece> &rows)
{
    int characters = 0;
    for (int i = 0; i < rows.size(); ++i) {
        ReplyPiece &row = rows[i];
        if (i == maxAnswerRows) {
            rows.resize(i);
            return true;
        }
        if (row.kind != ReplyPiece::Kind::Text) {
            continue;
        }
        const int room = maxAnswerCharacters - characters;
        if (row.source.size() > room) {
            row.source.truncate(room);
            rows.resize(room > 0 ? i + 1 : i);
            return true;
        }
        characters += row.source.size();
    }
    return false;
}

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
