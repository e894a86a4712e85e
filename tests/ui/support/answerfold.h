#pragma once

#include <QString>
#include <QVector>

/// A line of text or a picture of an answer, in px from the top of the answer's content.
struct SeenRow
{
    int top = 0;
    int bottom = 0; ///< the first px below it
    bool isPicture = false;
};

/// What a reader sees of an answer before unfolding it.
struct AnswerFold
{
    QVector<SeenRow> rows; ///< from top to bottom, also those that are not seen
    int fold = 0;          ///< where the open bar begins, in px as the rows; 0 without a bar
    int height = 0;        ///< of the content in px

    /// What is wrong at the fold, in words; empty when no row is cut by it. A line of text may
    /// reach \a slack px over it.
    [[nodiscard]] QString mistake(int slack = 0) const;
};

/// Shows an answer as the conversation does, with a box of recommendations when \a hasRecommends,
/// and measures it.
[[nodiscard]] AnswerFold measureFold(const QString &question, const QString &reply,
                                     bool hasRecommends);
