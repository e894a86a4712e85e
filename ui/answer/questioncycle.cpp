#include "ui/answer/questioncycle.h"

#include "app/base/logstream.h"
#include "ui/answer/desktopuser.h"
#include "ui/answer/questionlimit.h"

#include <QJsonDocument>

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
    if (m_underWay >= mostQuestionsUnderWay()) {
        LOG_WARNING() << "question is not sent, so many wait: " << m_underWay;
        emit notSent();
        return;
    }
    ++m_underWay;
    emit asking();
    const QJsonDocument reply
        = m_service.Ask_And_Answer(question, userName, source, originalQuestion, questionId);
    emit waitEnded();
    --m_underWay;
    const Answer answer = readAnswer(reply);
    tellResult(question, answer);
    emit replied(answer.text);
}

void QuestionCycle::tellResult(const QString &question, const Answer &answer)
{
    LOG_DEBUG() << "nSize_Recom:" << answer.recommendations.size()
                << "reply_Type:" << answer.kindName;
    switch (answer.kind) {
    case AnswerKind::Plain:
        emit normalResult(question, answer.title, answer.text);
        break;
    case AnswerKind::WithRecommendations:
        emit multiResult(question, answer);
        break;
    case AnswerKind::NoMatch:
        emit noResult(answer.recommendations.size(), answer.recommendations, question);
        break;
    case AnswerKind::Unknown:
        break;
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
