#include "service/reply/listedquestion.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVariant>

#include <cmath>

namespace {

qint64 wideId(const QJsonValue &value)
{
    if (!value.isDouble()) {
        return 0;
    }
    const QVariant number = value.toVariant();
    if (number.type() == QVariant::LongLong) {
        return number.toLongLong();
    }
    const double real = value.toDouble();
    // 2^63 itself no longer fits; doubles next to it are 1024 apart.
    constexpr double limit = 9223372036854775808.0;
    const bool fits = real >= -limit && real < limit && std::floor(real) == real;
    return fits ? static_cast<qint64>(real) : 0;
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
