#include "service/reply/replyreading.h"

#include "app/base/texttools.h"

#include <QJsonObject>

ParsedReply parseReply(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(utf8UpToNul(bytes).toUtf8(), &error);
    return {document, error.error};
}

ReplyStatus readStatus(const QJsonDocument &document)
{
    const QJsonObject reply = document.object();
    return {reply.value(QLatin1String("errorCode")).toString(),
            reply.value(QLatin1String("errorMsg")).toString()};
}

QJsonValue resultOf(const QJsonDocument &document)
{
    return document.object().value(QLatin1String("result"));
}

QJsonArray resultArray(const QJsonDocument &document)
{
    return resultOf(document).toArray();
}
