#include "ui/answer/bubble/questionbubble.h"

#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"
#include "ui/text/textwrap.h"

#include <QLabel>

namespace {

constexpr QPoint labelPlace(12, 10);
constexpr int bubbleTop = 12;
constexpr int bubbleRight = 540; ///< left edge of a bubble whose text has no width

} // namespace

QuestionBubble::QuestionBubble(const QString &text, QWidget *parent)
    : TextBubble(Speaker::User, shownPart(text), parent)
{
    build();
}

QLabel *QuestionBubble::makeLabel(const QString &text, QWidget *bubble) const
{
    QLabel *label = makeBubbleLabel(styles::bubbleText, bubble);
    label->setTextFormat(Qt::PlainText);
    label->ensurePolished(); // or the metrics below are those of the application's font
    const QFontMetrics metrics = label->fontMetrics();
    if (metrics.horizontalAdvance(text) > textMaxWidth) {
        setWrappedText(label, brokenToWidth(metrics, text, textMaxWidth));
    } else {
        setBubbleText(label, text);
    }
    label->move(labelPlace);
    return label;
}

QPoint QuestionBubble::bubblePlace(int textWidth) const
{
    return {bubbleRight - textWidth, bubbleTop};
}
