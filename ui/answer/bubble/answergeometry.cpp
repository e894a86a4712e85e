#include "ui/answer/bubble/answergeometry.h"

#include "ui/text/bubblelabel.h"

namespace {

constexpr int foldThreshold = 151;

constexpr int bubbleLeft = 83;
constexpr int bubbleTop = 10;
constexpr int bubbleWidth = 469;
constexpr int innerLeft = 11;
constexpr int titleTop = 7;
constexpr int separatorGap = 12;
constexpr int contentGap = 25;
constexpr int recommendBoxHeight = 255;

/// What the three states differ in, for one kind of answer. Heights in px; where the title and the
/// content are shown whole, their own heights are added.
struct StateMeasures
{
    int bubbleHeight;
    int recommendTop;
    int itemHeight;
    QRect openBar;
    QRect retractBar;
};

QRect bar(int top, int height)
{
    return {0, top, bubbleWidth, height};
}

StateMeasures measures(FoldState fold, bool hasRecommends, int whole)
{
    switch (fold) {
    case FoldState::Folded:
        return hasRecommends ? StateMeasures{210, 220, 485, bar(160, 50), {}}
                             : StateMeasures{202, 0, 230, bar(155, 48), {}};
    case FoldState::Opened:
        return hasRecommends
                 ? StateMeasures{whole + 80, whole + 90, whole + 355, {}, bar(whole + 36, 70)}
                 : StateMeasures{whole + 80, 0, whole + 100, {}, bar(whole + 36, 46)};
    case FoldState::Unfolded:
        break;
    }
    return {whole + 48, whole + 48, whole + (hasRecommends ? 323 : 68), {}, {}};
}

} // namespace

FoldState initialFoldState(int contentHeight)
{
    return contentHeight < foldThreshold ? FoldState::Unfolded : FoldState::Folded;
}

AnswerGeometry answerGeometry(FoldState fold, bool hasRecommends, int titleTerm, int contentHeight)
{
    const StateMeasures state = measures(fold, hasRecommends, titleTerm + contentHeight);
    AnswerGeometry places;
    places.title = {innerLeft, titleTop, textMaxWidth, titleTerm};
    places.titleSeparator = {innerLeft, titleTerm + separatorGap, textMaxWidth, 1};
    places.content = {innerLeft, titleTerm + contentGap, textMaxWidth, contentHeight};
    places.bubble = {bubbleLeft, bubbleTop, bubbleWidth, state.bubbleHeight};
    if (hasRecommends) {
        places.recommendBox = {bubbleLeft, state.recommendTop, bubbleWidth, recommendBoxHeight};
    }
    places.openBar = state.openBar;
    places.retractBar = state.retractBar;
    places.itemHeight = state.itemHeight;
    return places;
}
