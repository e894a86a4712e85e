#include "tools/conformance/answerjudge.h"
#include "ui/answer/content/replypieces.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturereading.h"

#include <QBuffer>
#include <QImageReader>
#include <QRegularExpression>

namespace {

const QString pictureMend = QStringLiteral(
    "A picture is a paragraph of its own, exactly <p><img src=\"data:image/png;base64,…\" "
    "style=\"max-width:100%;\"/></p>, with png, jpeg or gif.");

struct Paragraphs
{
    QStringList inside;
    QStringList between;
};

/// Cuts as the client does, at every literal tag.
Paragraphs paragraphsOf(const QString &reply)
{
    Paragraphs found;
    int from = 0;
    bool inside = false;
    while (from >= 0) {
        const QString tag = inside ? QStringLiteral("</p>") : QStringLiteral("<p>");
        const int end = reply.indexOf(tag, from);
        (inside ? found.inside : found.between).append(reply.mid(from, end < 0 ? -1 : end - from));
        inside = !inside;
        from = end < 0 ? -1 : end + tag.size();
    }
    return found;
}

/// What is wrong with the picture data of a paragraph; empty when nothing is.
QString pictureFault(const QByteArray &data, const QString &type)
{
    QByteArray bytes = data;
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format(); // empty for none that is known
    if (format.isEmpty() || !reader.canRead()) {
        return QStringLiteral("a picture cannot be read");
    }
    if (format != type.toLatin1()) {
        return QStringLiteral("a picture says image/%1 and is %2").arg(type, QLatin1String(format));
    }
    if (!isDecodable(pictureSize(data))) {
        return QStringLiteral("a picture would take more than 256 MiB");
    }
    return decodeImage(data).isNull() ? QStringLiteral("a picture is damaged") : QString();
}

/// What is wrong with a paragraph that holds the letters "img"; empty when it is a picture as the
/// client shows it.
QString imageParagraphFault(const QString &paragraph)
{
    static const QRegularExpression form(
        QStringLiteral("\\A<img src=\"data:image/(png|jpeg|gif);base64,[A-Za-z0-9+/]*={0,2}\" "
                       "style=\"max-width:100%;\"/>\\z"));
    if (!paragraph.contains(QLatin1String("data:image"))) {
        return QStringLiteral("a paragraph with the letters \"img\" and no picture data: it is "
                              "not shown");
    }
    const QRegularExpressionMatch match = form.match(paragraph);
    if (!match.hasMatch()) {
        return QStringLiteral("a picture is not written in the one form that is shown");
    }
    const QByteArray text = inlinePictureText(paragraph).toLatin1();
    const auto decoded
        = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        return QStringLiteral("the data of a picture are no Base64");
    }
    return pictureFault(*decoded, match.captured(1));
}

void judgePictures(Findings &findings, const QStringList &paragraphs)
{
    for (int i = 0; i < paragraphs.size(); ++i) {
        if (!paragraphs.at(i).contains(QLatin1String("img"))) {
            continue;
        }
        const QString fault = imageParagraphFault(paragraphs.at(i));
        if (!fault.isEmpty()) {
            findings.append(
                toMend(QStringLiteral("paragraph %1: ").arg(i + 1) + fault, pictureMend));
        }
    }
}

bool isShownBetween(const QString &text)
{
    const QString plain = text.trimmed();
    return !plain.isEmpty();
}

void judgeParagraphs(Findings &findings, const Paragraphs &paragraphs, const QString &reply)
{
    static const QRegularExpression withAttributes(QStringLiteral("<p\\s[^>]*>"));
    if (reply.contains(withAttributes)) {
        findings.append(toMend(QStringLiteral("a paragraph tag has attributes"),
                               QStringLiteral("The client cuts the text at <p> and </p> alone.")));
    }
    for (const QString &between : paragraphs.between) {
        if (isShownBetween(between)) {
            findings.append(
                toMend(QStringLiteral("there is text outside the paragraphs"),
                       QStringLiteral("Put everything into <p>…</p> and nothing between.")));
            return;
        }
    }
}

void judgeLinks(Findings &findings, const QString &reply)
{
    static const QRegularExpression link(QStringLiteral("<a\\s[^>]*href\\s*=\\s*[\"']([^\"']*)"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression opened(QStringLiteral("\\A(https?|mailto):"),
                                           QRegularExpression::CaseInsensitiveOption);
    for (auto found = link.globalMatch(reply); found.hasNext();) {
        const QString target = found.next().captured(1);
        if (!target.contains(opened)) {
            findings.append(note(QStringLiteral("a link leads to %1").arg(target.left(80)),
                                 QStringLiteral("Only http, https and mailto links open.")));
            return;
        }
    }
}

} // namespace

Findings judgeReplyText(const QString &reply)
{
    if (reply.isEmpty()) {
        return {};
    }
    Findings findings;
    QVector<ReplyPiece> rows = splitReply(reply);
    if (rows.isEmpty()) {
        findings.append(toMend(QStringLiteral("nothing of the reply is shown"),
                               QStringLiteral("Give it a paragraph with words or a picture.")));
    }
    if (limitRows(rows)) {
        findings.append(toMend(QStringLiteral("the reply is too long, its end is not shown"),
                               QStringLiteral("The window shows %1 characters (%2 with the tags) "
                                              "and %3 paragraphs.")
                                   .arg(maxAnswerCharacters)
                                   .arg(maxAnswerSource)
                                   .arg(maxAnswerRows)));
    }
    const Paragraphs paragraphs = paragraphsOf(reply);
    judgeParagraphs(findings, paragraphs, reply);
    judgePictures(findings, paragraphs.inside);
    judgeLinks(findings, reply);
    return findings;
}
