#include "service/reply/suggestedquestion.h"

#include <QJsonObject>
#include <QVariant>

#include <cmath>

namespace {

qint64 integralId(const QJsonValue &value)
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

} // namespace

SuggestedQuestion readSuggestedQuestion(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    return {object.value(QLatin1String("question")).toString(),
            integralId(object.value(QLatin1String("id")))};
}
