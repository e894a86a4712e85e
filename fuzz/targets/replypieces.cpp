#include "ui/answer/content/replypieces.h"

#include "fuzz/support/check.h"
#include "fuzz/support/target.h"
#include "ui/answer/picture/base64.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturereading.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

using Kind = ReplyPiece::Kind;

constexpr int shortInput = 40;
constexpr qint64 mostDecodedPixels = 1'000'000; ///< more would only take the fuzzer's time

QVector<ReplyPiece> plainlySplit(const QString &reply)
{
    static const QRegularExpression tags(QStringLiteral("(\\<p>|\\</p>)"));
    QVector<ReplyPiece> rows;
    for (const QString &piece : reply.split(tags)) {
        const bool candidate = piece.simplified().isEmpty() || piece.contains(QLatin1String("img"))
                            || piece == QLatin1String("<br>");
        if (!candidate) {
            rows.append({Kind::Text, piece});
        } else if (piece.contains(QLatin1String("data:image"))) {
            rows.append({Kind::Picture, piece});
        }
    }
    return rows;
}

QString plainPictureText(const QString &piece)
{
    const QString after = piece.section(QStringLiteral("base64,"), 1, 1);
    return after.section(QStringLiteral("\" style="), 0, 0);
}

QString textOf(const QVector<ReplyPiece> &rows)
{
    QString text;
    for (const ReplyPiece &row : rows) {
        if (row.kind == Kind::Text) {
            text += row.source;
        }
    }
    return text;
}

QVector<ReplyPiece> picturesIn(const QVector<ReplyPiece> &rows)
{
    QVector<ReplyPiece> pictures;
    for (const ReplyPiece &row : rows) {
        if (row.kind == Kind::Picture) {
            pictures.append(row);
        }
    }
    return pictures;
}

int textRowsOf(const QVector<ReplyPiece> &rows)
{
    return rows.size() - picturesIn(rows).size();
}

/// Whether the texts of \a rows stand in \a text, one behind the other.
bool holdsInOrder(const QString &text, const QVector<ReplyPiece> &rows)
{
    int at = 0;
    for (const ReplyPiece &row : rows) {
        if (row.kind == Kind::Text) {
            at = text.indexOf(row.source, at);
            if (at < 0) {
                return false;
            }
            at += row.source.size();
        }
    }
    return true;
}

void checkLimits(const QVector<ReplyPiece> &all)
{
    QVector<ReplyPiece> shown = all;
    const bool cut = limitRows(shown);
    check(shown.size() <= maxAnswerRows, "rows are limited");
    check(textOf(all).startsWith(textOf(shown)), "what is shown is a beginning");
    check(cut == (shown != all), "a cut is told");

    QVector<ReplyPiece> joined = shown;
    joinFarRows(joined);
    check(joined.mid(0, maxOwnRows) == shown.mid(0, maxOwnRows), "near rows stay as they are");
    check(picturesIn(joined) == picturesIn(shown), "pictures have a row each");
    check(holdsInOrder(textOf(joined), shown), "joining loses no text");
    const int tags = (textRowsOf(shown) - textRowsOf(joined)) * QStringLiteral("</p><p>").size();
    check(textOf(joined).size() == textOf(shown).size() + tags, "joining adds tags only");
}

void checkPicture(const QString &piece)
{
    const QStringRef text = inlinePictureText(piece);
    check(text == plainPictureText(piece), "the data end at the closing quote");
    check(isAnimatedPicture(piece) == piece.contains(QLatin1String("data:image/gif")),
          "an animation is known by its type");

    const QByteArray bytes = bytesOfBase64(text);
    const QSize size = pictureSize(bytes);
    const QSize label = pictureLabelSize(size);
    check(label.width() >= 0 && label.width() <= 430 && label.height() >= 0
              && label.height() <= 110,
          "a picture's label has its limits");
    if (pixelsOf(size) <= mostDecodedPixels) {
        const QImage image = decodeImage(bytes);
        check(image.isNull() || size.isEmpty() || image.width() <= size.width(),
              "a picture is not wider than its header says");
    }
}

} // namespace

/// A reply split into rows, and the pictures in it, against their description.
void runTarget(const QByteArray &input)
{
    const QString reply = QString::fromUtf8(input);
    const QVector<ReplyPiece> rows = splitReply(reply);
    check(rows == plainlySplit(reply), "a reply is split at its paragraph tags");
    checkLimits(rows);
    if (!rows.isEmpty() && input.size() < shortInput) {
        // More rows than an input is long enough for.
        QVector<ReplyPiece> many;
        while (many.size() < maxOwnRows + paragraphsOfASharedRow + 9) {
            many += rows;
        }
        checkLimits(many);
    }
    for (const ReplyPiece &row : rows) {
        if (row.kind == Kind::Picture) {
            checkPicture(row.source);
        }
    }
}
