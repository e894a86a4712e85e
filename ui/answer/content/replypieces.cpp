#include "ui/answer/content/replypieces.h"

#include "ui/text/textwrap.h"

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

/// A place in a text, and what the characters outside tags before it cost.
struct Extent
{
    int length;
    int characters;
};

/// The longest beginning of \a text that has characters outside tags for at most \a most letters.
Extent beginning(const QStringRef &text, int most)
{
    Extent extent{0, 0};
    bool inTag = false;
    for (; extent.length < text.size(); ++extent.length) {
        const QChar character = text.at(extent.length);
        if (character == QLatin1Char('<')) {
            inTag = true;
        } else if (character == QLatin1Char('>') && inTag) {
            inTag = false;
        } else if (!inTag) {
            extent.characters += layoutCost(character);
            if (extent.characters > most) {
                return {extent.length, most};
            }
        }
    }
    return extent;
}

} // namespace

bool limitRows(QVector<ReplyPiece> &rows)
{
    int characters = 0;
    int source = 0;
    for (int i = 0; i < rows.size(); ++i) {
        ReplyPiece &row = rows[i];
        if (i == maxAnswerRows) {
            rows.resize(i);
            return true;
        }
        if (row.kind != ReplyPiece::Kind::Text) {
            continue;
        }
        const Extent shown = beginning(row.source.leftRef(maxAnswerSource - source),
                                       maxAnswerCharacters - characters);
        if (row.source.size() > shown.length) {
            row.source.truncate(shown.length);
            rows.resize(shown.length > 0 ? i + 1 : i);
            return true;
        }
        source += shown.length;
        characters += shown.characters;
    }
    return false;
}

void joinFarRows(QVector<ReplyPiece> &rows)
{
    QVector<ReplyPiece> joined = rows.mid(0, maxOwnRows);
    int paragraphs = 0; // in the last row, 0 when it takes no more
    for (int i = maxOwnRows; i < rows.size(); ++i) {
        const ReplyPiece &row = rows.at(i);
        const bool isText = row.kind == ReplyPiece::Kind::Text;
        if (isText && paragraphs > 0 && paragraphs < paragraphsOfASharedRow) {
            joined.last().source += QLatin1String("</p><p>") + row.source;
            ++paragraphs;
        } else {
            joined.append(row);
            paragraphs = isText ? 1 : 0;
        }
    }
    rows = joined;
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
