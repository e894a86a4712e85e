#include "service/reply/listedquestion.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariant>

namespace {

qint64 wideId(const QJsonValue &value)
{
    // What the reader of JSON keeps as a real has a fraction or is too large.
    const QVariant number = value.toVariant();
    return number.type() == QVariant::LongLong ? number.toLongLong() : 0;
}

qint64 narrowId(const QJsonValue &value)
{
    return value.toInt();
}

QVector<ListedQuestion> readQuestions(const QJsonArray &questions, QLatin1String idMember,
                                      qint64 (*readId)(const QJsonValue &))
{
    QVector<ListedQuestion> read;
    read.reserve(questions.size());
    for (const QJsonValue &element : questions) {
        const QJsonObject question = element.toObject();
        read.append({question.value(QLatin1String("question")).toString(),
                     readId(question.value(idMember))});
    }
    return read;
}

} // namespace

QVector<ListedQuestion> readListedQuestions(const QJsonArray &questions)
{
    return readQuestions(questions, QLatin1String("id"), wideId);
}

QVector<ListedQuestion> readRecommendations(const QJsonValue &recommends)
{
    return readQuestions(recommends.toArray(), QLatin1String("questionId"), narrowId);
}
