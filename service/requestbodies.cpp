#include "service/requestbodies.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonObject commonMembers(const CallSettings &settings)
{
    return {{QStringLiteral("channelId"), settings.channelId},
            {QStringLiteral("recommendSize"), settings.recommendSize},
            {QStringLiteral("robotId"), settings.robotId}};
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray hotQuestionsBody(const CallSettings &settings)
{
    return compact(commonMembers(settings));
}

QByteArray associationBody(const CallSettings &settings, const QString &text)
{
    QJsonObject body = commonMembers(settings);
    body.insert(QStringLiteral("text"), text);
    return compact(body);
}

QByteArray askBody(const CallSettings &settings, const AskFields &fields)
{
    QJsonObject body = commonMembers(settings);
    body.insert(QStringLiteral("rawQuery"), fields.rawQuery);
    body.insert(QStringLiteral("currentDomain"), fields.currentDomain);
    body.insert(QStringLiteral("accountId"), fields.accountId);
    body.insert(QStringLiteral("source"), fields.source);
    body.insert(QStringLiteral("originalQuestion"), fields.originalQuestion);
    body.insert(QStringLiteral("questionId"), fields.questionId);
    return compact(body);
}
