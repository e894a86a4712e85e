#include "ui/answer/content/replypieces.h"

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

/// Where a paragraph tag stands; at the end, and of no length, when there is none.
struct ParagraphTag
{
    int position;
    int length;
};

/// The first paragraph tag in \a reply from \a from on. A reply may hold megabytes of picture data,
/// in which there is no "<": nothing passes them faster than looking for that.
ParagraphTag nextTag(const QString &reply, int from)
{
    const QLatin1String opening("<p>");
    const QLatin1String closing("</p>");
    for (int at = reply.indexOf(QLatin1Char('<'), from); at >= 0;
         at = reply.indexOf(QLatin1Char('<'), at + 1)) {
        const QStringRef rest = reply.midRef(at, closing.size());
        if (rest.startsWith(opening)) {
            return {at, opening.size()};
        }
        if (rest == closing) {
            return {at, closing.size()};
        }
    }
    return {reply.size(), 0};
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
    QVector<ReplyPiece> rows;
    int begin = 0;
    while (begin >= 0) {
        const ParagraphTag tag = nextTag(reply, begin);
        const QString piece = reply.mid(begin, tag.position - begin);
        if (!isPictureCandidate(piece)) {
            rows.append({ReplyPiece::Kind::Text, piece});
        } else if (holdsPictureData(piece)) {
            rows.append({ReplyPiece::Kind::Picture, piece});
        }
        begin = tag.length > 0 ? tag.position + tag.length : -1;
    }
    return rows;
}
