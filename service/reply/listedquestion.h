#pragma once

#include <QString>

class QJsonValue;

/// A question that the service suggests: a hot question or one that fits what is typed.
struct SuggestedQuestion
{
    QString text;
    qint64 id = 0;
};

/// Reads the service's object with "question" and "id". Anything missing or of another type is
/// empty or 0; an id is any integral number within 64 bits.
[[nodiscard]] SuggestedQuestion readSuggestedQuestion(const QJsonValue &value);
