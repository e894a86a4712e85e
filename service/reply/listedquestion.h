#pragma once

#include <QString>
#include <QVector>

class QJsonArray;
class QJsonValue;

/// A question that the service lists for the user to pick: a hot question, a suggestion for what is
/// typed, or a recommendation beside an answer.
struct ListedQuestion
{
    QString text;
    qint64 id = 0; ///< what the service knows it by; 0 for none
};

[[nodiscard]] inline bool operator==(const ListedQuestion &left, const ListedQuestion &right)
{
    return left.text == right.text && left.id == right.id;
}

// Each element of a list becomes a question, in order; what an element lacks, or has of another
// type, is empty or 0. The ids differ in name and width because they come from two calls: hot
// questions and suggestions have an "id" of 64 bits, recommendations a "questionId" of 32 bits, and
// both are asked with 64. A number that is no whole one, or does not fit the width, is 0.

/// Reads the hot questions or suggestions of a reply, objects with "question" and "id".
[[nodiscard]] QVector<ListedQuestion> readListedQuestions(const QJsonArray &questions);

/// Reads the recommendations of an answer, objects with "question" and "questionId"; none when
/// \a recommends is no array.
[[nodiscard]] QVector<ListedQuestion> readRecommendations(const QJsonValue &recommends);
