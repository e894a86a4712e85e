#include "ui/answer/bubble/messagebubble.h"

#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"

#include <QLabel>

namespace {

constexpr int itemWidth = 648;
constexpr int itemMargin = 50;
constexpr QPoint labelPlace(11, 10);
constexpr QPoint bubblePlace(83, 20);
constexpr QSize bubbleMargin(25, 22);

} // namespace

MessageBubble::MessageBubble(const QString &text, ConversationList *list)
    : ConversationItem(Speaker::AssistantMessage, list)
    , m_text(text)
{
    readAs(text);
    build();
}

QLabel *MessageBubble::text(int number) const
{
    return number == 0 ? m_label : nullptr;
}

void MessageBubble::build()
{
    QWidget *bubble = addBubble();
    m_label = makeBubbleLabel(styles::bubbleBoldText, bubble);
    addText(m_label, 0);
    setBubbleText(m_label, m_text);
    if (m_label->width() > textMaxWidth) {
        setWrappedText(m_label, m_text);
    }
    const QSize size = m_label->size();
    m_label->move(labelPlace);
    bubble->setGeometry({bubblePlace, size + bubbleMargin});
    setItemSize({itemWidth, size.height() + itemMargin});
}
