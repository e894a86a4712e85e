#pragma once

#include <QRect>

/// How much of a tall answer is shown.
enum class FoldState {
    Unfolded, ///< the content is low enough to be shown whole, without a bar
    Folded,   ///< only the beginning, with the open bar below it
    Opened,   ///< the whole, with the retract bar below it
};

/// Where the pieces of an answer lie, in px inside its item widget (bubble, recommendation box) or
/// inside its bubble (title, separator, content, bars).
struct AnswerGeometry
{
    QRect title;
    QRect titleSeparator;
    QRect content;
    QRect bubble;
    QRect recommendBox; ///< null for an answer without recommendations
    QRect openBar;      ///< null unless shown
    QRect retractBar;   ///< null unless shown
    int itemHeight;
};

/// The state in which an answer with content of \a contentHeight px is first shown.
[[nodiscard]] FoldState initialFoldState(int contentHeight);

/// The places for the state \a fold of an answer whose title takes \a titleTerm px and whose
/// content takes \a contentHeight px.
[[nodiscard]] AnswerGeometry answerGeometry(FoldState fold, bool hasRecommends, int titleTerm,
                                            int contentHeight);
