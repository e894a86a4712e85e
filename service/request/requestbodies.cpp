#include "service/request/requestbodies.h"

#include "app/base/texttools.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject commonMembers(const CallSettings &settings)
{
    return {{QStringLiteral("channelId"), settings.channelId},
            {QStringLiteral("recommendSize"), settings.recommendSize},
            {QStringLiteral("robotId"), wholeCharacters(settings.robotId)}};
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// The serialiser writes every number by way of a double, which holds 53 bits only. Quotes inside
// texts are escaped, so the member's name with its colon stands in the body exactly once.
void setQuestionId(QByteArray &body, qint64 questionId)
{
    body.replace("\"questionId\":0", "\"questionId\":" + QByteArray::number(questionId));
}

} // namespace

QByteArray hotQuestionsBody(const CallSettings &settings)
{
    return compact(commonMembers(settings));
}

QByteArray associationBody(const CallSettings &settings, const QString &text)
{
    QJsonObject body = commonMembers(settings);
    body.insert(QStringLiteral("text"), wholeCharacters(text));
    return compact(body);
}

QByteArray askBody(const CallSettings &settings, const AskFields &fields)
{
    QJsonObject body = commonMembers(settings);
    body.insert(QStringLiteral("rawQuery"), wholeCharacters(fields.rawQuery));
    body.insert(QStringLiteral("currentDomain"), wholeCharacters(fields.currentDomain));
    body.insert(QStringLiteral("accountId"), wholeCharacters(fields.accountId));
    body.insert(QStringLiteral("source"), wholeCharacters(fields.source));
    body.insert(QStringLiteral("originalQuestion"), wholeCharacters(fields.originalQuestion));
    body.insert(QStringLiteral("questionId"), 0);
    QByteArray bytes = compact(body);
    setQuestionId(bytes, fields.questionId);
    return bytes;
}
