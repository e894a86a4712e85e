#include "ui/answer/bubble/questionbubble.h"

#include "ui/style/styles.h"
#include "ui/text/bubblelabel.h"
#include "ui/text/textwrap.h"

#include <QLabel>

namespace {

constexpr int itemWidth = 648;
constexpr int itemMargin = 50;
constexpr QPoint labelPlace(12, 10);
constexpr int bubbleTop = 12;
constexpr int bubbleRight = 540; ///< left edge of a bubble whose text has no width
constexpr QSize bubbleMargin(25, 22);

} // namespace

QuestionBubble::QuestionBubble(const QString &text, ConversationList *list)
    : ConversationItem(Speaker::User, list)
    , m_text(shownPart(text))
{
    readAs(m_text);
    build();
}

QLabel *QuestionBubble::text(int number) const
{
    return number == 0 ? m_label : nullptr;
}

void QuestionBubble::build()
{
    QWidget *bubble = addBubble();
    m_label = makeBubbleLabel(styles::bubbleText, bubble);
    addText(m_label, 0);
    m_label->setTextFormat(Qt::PlainText);
    m_label->ensurePolished(); // or the metrics below are those of the application's font
    const QFontMetrics metrics = m_label->fontMetrics();
    if (metrics.horizontalAdvance(m_text) > textMaxWidth) {
        setWrappedText(m_label, wrapToWidth(metrics, m_text, textMaxWidth));
    } else {
        setBubbleText(m_label, m_text);
    }
    const QSize size = m_label->size();
    m_label->move(labelPlace);
    bubble->setGeometry({QPoint(bubbleRight - size.width(), bubbleTop), size + bubbleMargin});
    setItemSize({itemWidth, size.height() + itemMargin});
}
