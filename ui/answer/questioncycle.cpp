#include "ui/answer/questioncycle.h"

#include "app/base/logstream.h"
#include "ui/answer/desktopuser.h"

#include <QJsonDocument>
#include <QJsonObject>

QuestionCycle::QuestionCycle(QObject *parent)
    : QObject(parent)
    , userName(desktopUserName())
{
    if (userName.isEmpty()) {
        LOG_WARNING() << "Get the username failed.";
    }
}

void QuestionCycle::ask(const QString &question, const QString &source,
                        const QString &originalQuestion, qint64 questionId)
{
    const QJsonDocument document
        = m_service.Ask_And_Answer(question, userName, source, originalQuestion, questionId);
    const QJsonObject result = document.object().value(QLatin1String("result")).toObject();
    tellResult(question, result);
    emit replied(result.value(QLatin1String("reply")).toString());
}

void QuestionCycle::tellResult(const QString &question, const QJsonObject &result)
{
    const QString standardQuestion = result.value(QLatin1String("standardQuestion")).toString();
    const QString reply = result.value(QLatin1String("reply")).toString();
    const QJsonArray recommends = result.value(QLatin1String("recommends")).toArray();
    const QString resultType = result.value(QLatin1String("resultType")).toString();
    LOG_DEBUG() << "nSize_Recom:" << recommends.size() << "reply_Type:" << resultType;
    if (resultType == QLatin1String("QA_NORMAL_RESULT")) {
        emit normalResult(question, standardQuestion, reply);
    } else if (resultType == QLatin1String("MULTI_QA_RESULT")) {
        emit multiResult(question, standardQuestion, reply, recommends);
    } else if (resultType == QLatin1String("NO_RESULT")) {
        emit noResult(recommends.size(), recommends, question);
    }
}

QJsonArray QuestionCycle::suggestionsFor(const QString &text)
{
    return m_service.association_questions(text);
}

bool QuestionCycle::isServiceFound() const
{
    return !m_endpoint.resolvedAddr().isEmpty();
}
