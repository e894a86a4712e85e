#include "service/reply/answer.h"

#include "service/reply/replyreading.h"

#include <QJsonObject>

namespace {

AnswerKind kindNamed(const QString &name)
{
    if (name == QLatin1String("QA_NORMAL_RESULT")) {
        return AnswerKind::Plain;
    }
    if (name == QLatin1String("MULTI_QA_RESULT")) {
        return AnswerKind::WithRecommendations;
    }
    return name == QLatin1String("NO_RESULT") ? AnswerKind::NoMatch : AnswerKind::Unknown;
}

} // namespace

Answer readAnswer(const QJsonDocument &reply)
{
    const QJsonObject result = resultOf(reply).toObject();
    Answer answer;
    answer.kindName = result.value(QLatin1String("resultType")).toString();
    answer.kind = kindNamed(answer.kindName);
    answer.title = result.value(QLatin1String("standardQuestion")).toString();
    answer.text = result.value(QLatin1String("reply")).toString();
    answer.recommendations = readRecommendations(result.value(QLatin1String("recommends")));
    return answer;
}
