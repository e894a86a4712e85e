#include "ui/answer/bubble/messagebubble.h"

#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QLabel>

namespace {

constexpr QPoint labelPlace(11, 10);
constexpr QPoint bubbleCorner(83, 20);

} // namespace

MessageBubble::MessageBubble(const QString &text, QWidget *parent)
    : TextBubble(Speaker::AssistantMessage, text, parent)
{
    build();
}

QLabel *MessageBubble::makeLabel(const QString &text, QWidget *bubble) const
{
    QLabel *label = makeBubbleLabel(styles::bubbleBoldText, bubble);
    setBubbleText(label, text);
    if (label->width() > textMaxWidth) {
        setWrappedText(label, text);
    }
    label->move(labelPlace);
    return label;
}

QPoint MessageBubble::bubblePlace(int textWidth) const
{
    Q_UNUSED(textWidth)
    return bubbleCorner;
}
