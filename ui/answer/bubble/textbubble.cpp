#include "ui/answer/bubble/textbubble.h"

#include <QLabel>

namespace {

constexpr int itemMargin = 50;
constexpr QSize bubbleMargin(25, 22);

} // namespace

TextBubble::TextBubble(Speaker speaker, const QString &text, QWidget *parent)
    : ConversationItem(speaker, parent)
    , m_text(text)
{
    setAccessibleName(text);
}

QLabel *TextBubble::text(int number) const
{
    return number == 0 ? m_label : nullptr;
}

QWidget *TextBubble::readPart(int number) const
{
    return text(number);
}

void TextBubble::build()
{
    QWidget *bubble = addBubble();
    m_label = makeLabel(m_text, bubble);
    addText(m_label, 0);
    bubble->setGeometry({bubblePlace(m_label->width()), m_label->size() + bubbleMargin});
    setItemHeight(m_label->height() + itemMargin);
}
