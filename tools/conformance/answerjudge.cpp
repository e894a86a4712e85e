#include "tools/conformance/answerjudge.h"

#include "service/reply/answer.h"
#include "tools/conformance/listjudge.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

Answer read(const QJsonValue &result)
{
    return readAnswer(QJsonDocument(QJsonObject{{QStringLiteral("result"), result}}));
}

void judgeTexts(Findings &findings, const QJsonObject &result, const Answer &answer)
{
    if (!result.value(QLatin1String("standardQuestion")).isString()) {
        findings.append(toMend(QStringLiteral("standardQuestion is missing or no text"),
                               QStringLiteral("It is the title of the answer; \"\" for none.")));
    }
    if (answer.text.isEmpty()) {
        findings.append(toMend(QStringLiteral("reply is missing, empty or no text"),
                               QStringLiteral("The user is told that nothing was found. Give "
                                              "every result a reply, NO_RESULT too.")));
    }
}

void judgeKind(Findings &findings, const Answer &answer)
{
    const QString never = QStringLiteral("Only MULTI_QA_RESULT and NO_RESULT show them.");
    if (answer.kind == AnswerKind::Unknown) {
        findings.append(
            toMend(QStringLiteral("resultType is \"%1\"").arg(answer.kindName),
                   QStringLiteral("The client knows QA_NORMAL_RESULT, MULTI_QA_RESULT and "
                                  "NO_RESULT, in these letters, and shows nothing else.")));
    } else if (answer.kind == AnswerKind::WithRecommendations && answer.recommendations.isEmpty()) {
        findings.append(note(QStringLiteral("MULTI_QA_RESULT without a recommendation"),
                             QStringLiteral("An empty box is shown: QA_NORMAL_RESULT fits.")));
    } else if (answer.kind == AnswerKind::Plain && !answer.recommendations.isEmpty()) {
        findings.append(note(QStringLiteral("QA_NORMAL_RESULT with recommendations"), never));
    }
}

} // namespace

Findings judgeAnswer(const QJsonValue &result, int asked)
{
    if (!result.isObject()) {
        return {toMend(QStringLiteral("result is missing or no object"),
                       QStringLiteral("An answer is an object: section 4 of the protocol."))};
    }
    const Answer answer = read(result);
    Findings findings;
    judgeKind(findings, answer);
    judgeTexts(findings, result.toObject(), answer);
    findings += judgeRecommendations(result.toObject().value(QLatin1String("recommends")), asked);
    return findings + judgeReplyText(answer.text);
}
