#include "service/reply/replyreading.h"

#include "app/base/texttools.h"

#include <QJsonObject>

ParsedReply parseReply(const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(utf8UpToNul(bytes).toUtf8(), &error);
    return {document, error.error};
}

QJsonArray resultArray(const QJsonDocument &document)
{
    return document.object().value(QLatin1String("result")).toArray();
}
