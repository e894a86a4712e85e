#pragma once

#include "service/reply/listedquestion.h"

#include <QString>
#include <QVector>

class QJsonDocument;

/// What the service makes of a question.
enum class AnswerKind {
    Unknown,             ///< none of those below, or none named
    Plain,               ///< understood
    WithRecommendations, ///< understood, and there are questions to recommend beside it
    NoMatch,             ///< not understood; there may be questions to recommend
};

/// The service's answer to a question.
struct Answer
{
    AnswerKind kind = AnswerKind::Unknown;
    QString kindName; ///< in the service's own word, also for an unknown kind
    QString title;    ///< the question as the service knows it; may be empty
    QString text;     ///< rich text; empty when the service has none
    QVector<ListedQuestion> recommendations;
};

/// Reads the whole reply to a question. What is missing, or of another type, is empty; a document
/// without an object "result" gives the empty answer of unknown kind. Kinds are compared with
/// regard to case.
[[nodiscard]] Answer readAnswer(const QJsonDocument &reply);
