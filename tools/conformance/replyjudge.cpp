#include "tools/conformance/replyjudge.h"

#include "service/reply/replyreading.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTextCodec>

namespace {

constexpr int statusOk = 200;

Envelope unreadable(const QString &what, const QString &mend)
{
    return {{toMend(what, mend)}, QJsonValue(QJsonValue::Undefined)};
}

QString inTimeComplaint(const Response &response, int limitMs)
{
    const QString seconds = QString::number(limitMs / 1000.0);
    return response.body.isEmpty() ? QStringLiteral("no reply within %1 s").arg(seconds)
                                   : QStringLiteral("no whole reply within %1 s: %2 bytes came")
                                         .arg(seconds)
                                         .arg(response.body.size());
}

/// What keeps \a bytes from being UTF-8; empty when they are.
QString utf8Fault(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    static_cast<void>(
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state));
    if (state.invalidChars != 0) {
        return QStringLiteral("the reply is not UTF-8");
    }
    return state.remainingChars != 0
             ? QStringLiteral("the reply ends inside a character, at byte %1").arg(bytes.size())
             : QString();
}

bool holdsNul(const QJsonValue &value)
{
    if (value.isString()) {
        return value.toString().contains(QChar(u'\0'));
    }
    if (value.isArray()) {
        for (const QJsonValue element : value.toArray()) {
            if (holdsNul(element)) {
                return true;
            }
        }
    }
    const QJsonObject object = value.toObject();
    for (const QJsonValue &member : object) {
        if (holdsNul(member)) {
            return true;
        }
    }
    return false;
}

/// What keeps the bytes of a reply from being read; empty when they can be.
Envelope judgeBytes(const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        return unreadable(QStringLiteral("the reply has no body"),
                          QStringLiteral("Answer every request with JSON."));
    }
    const int nul = bytes.indexOf('\0');
    if (nul >= 0) {
        return unreadable(QStringLiteral("there is a NUL byte at byte %1 of the reply").arg(nul),
                          QStringLiteral("The client reads a reply only up to it: send none."));
    }
    const QString utf8 = utf8Fault(bytes);
    if (!utf8.isEmpty()) {
        return unreadable(utf8, QStringLiteral("Write whole JSON in UTF-8 (RFC 8259)."));
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::DeepNesting) {
        return unreadable(QStringLiteral("the reply is nested too deep to be read"),
                          QStringLiteral("Nest objects and lists as the protocol shows them."));
    }
    if (error.error != QJsonParseError::NoError) {
        return unreadable(QStringLiteral("the reply is no JSON, at byte %1: %2")
                              .arg(error.offset)
                              .arg(error.errorString()),
                          QStringLiteral("Send whole JSON, and nothing before or behind it."));
    }
    if (!document.isObject()) {
        return unreadable(QStringLiteral("the reply is JSON, but no object"),
                          QStringLiteral("Give it the form of section 4 of the protocol."));
    }
    return {{}, document.object()};
}

Envelope judgeFrame(const QJsonObject &reply, const QByteArray &bytes)
{
    const QJsonValue code = reply.value(QLatin1String("errorCode"));
    if (!code.isString()) {
        return unreadable(QStringLiteral("errorCode is missing or no text"),
                          QStringLiteral("A good reply has the text \"0\" there, not a number."));
    }
    if (code.toString() != QLatin1String("0")) {
        return unreadable(
            QStringLiteral("a right request is refused: errorCode \"%1\", %2")
                .arg(code.toString(), reply.value(QLatin1String("errorMsg")).toString()),
            QStringLiteral("Compare tenant, key, secret and clock, then section 2 "
                           "and 3 of the protocol."));
    }
    Envelope envelope{{}, reply.value(QLatin1String("result"))};
    if (!bytes.contains("\"errorCode\":\"0\"")) {
        envelope.complaints.append(
            toMend(QStringLiteral("the reply is written with blanks"),
                   QStringLiteral("The client looks for exactly \"errorCode\":\"0\" and logs "
                                  "everything else as a failure: write compact JSON.")));
    }
    if (holdsNul(reply)) {
        envelope.complaints.append(toMend(QStringLiteral("a text holds a NUL character"),
                                          QStringLiteral("Send no \\u0000.")));
    }
    return envelope;
}

bool isRefusal(const QJsonObject &reply)
{
    const QJsonValue code = reply.value(QLatin1String("errorCode"));
    return code.isString() && !code.toString().isEmpty()
        && reply.value(QLatin1String("errorMsg")).isString()
        && reply.value(QLatin1String("result")).isNull();
}

Finding graded(bool must, const QString &what, const QString &mend)
{
    return must ? toMend(what, mend) : note(what, mend);
}

} // namespace

Envelope judgeEnvelope(const Response &response, int limitMs)
{
    if (!response.inTime) {
        return unreadable(inTimeComplaint(response, limitMs),
                          QStringLiteral("Answer whole and in time: section 1 of the protocol."));
    }
    if (!response.error.isEmpty()) {
        return unreadable(QStringLiteral("the connection broke: %1, %2 bytes came")
                              .arg(response.error)
                              .arg(response.body.size()),
                          QStringLiteral("Send the whole reply, as long as it says it is."));
    }
    if (response.status != statusOk) {
        return unreadable(QStringLiteral("HTTP status %1 for a right request, %2")
                              .arg(response.status)
                              .arg(refusalWords(response)),
                          QStringLiteral("A right request is answered with status 200."));
    }
    const Envelope bytes = judgeBytes(response.body);
    return bytes.result.isObject() ? judgeFrame(bytes.result.toObject(), response.body) : bytes;
}

Findings judgeRefusal(const Response &response, int limitMs, bool must, const QString &secret,
                      const QByteArray &rightSignature)
{
    if (!response.inTime) {
        return {toMend(inTimeComplaint(response, limitMs),
                       QStringLiteral("Refuse at once, with a reply."))};
    }
    Findings complaints;
    if ((!secret.isEmpty() && response.body.contains(secret.toUtf8()))
        || (!rightSignature.isEmpty() && response.body.contains(rightSignature))) {
        complaints.append(toMend(QStringLiteral("the refusal gives away a secret"),
                                 QStringLiteral("Tell neither the secret nor what the right "
                                                "signature would have been.")));
    }
    const QJsonObject reply = parseReply(response.body).document.object();
    if (reply.value(QLatin1String("errorCode")).toString() == QLatin1String("0")) {
        complaints.append(graded(must, QStringLiteral("it is accepted"),
                                 QStringLiteral("Refuse it: section 5 of the protocol.")));
    } else if (!isRefusal(reply)) {
        complaints.append(graded(
            must,
            QStringLiteral("it is refused, but not in words: HTTP status %1, %2 bytes%3")
                .arg(response.status)
                .arg(response.body.size())
                .arg(response.error.isEmpty() ? QString() : QStringLiteral(", ") + response.error),
            QStringLiteral("Refuse with {\"errorCode\":\"…\",\"errorMsg\":\"…\","
                           "\"result\":null}.")));
    }
    return complaints;
}

QString refusalWords(const Response &response)
{
    const QJsonDocument document = parseReply(response.body).document;
    const ReplyStatus status = readStatus(document);
    if (status.errorCode.isEmpty()) {
        return QStringLiteral("without words of its own");
    }
    return QStringLiteral("errorCode \"%1\", %2").arg(status.errorCode, status.errorMessage);
}
