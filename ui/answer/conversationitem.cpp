#include "ui/answer/conversationitem.h"

#include "ui/answer/conversationlist.h"
#include "ui/style/styles.h"

#include <QLabel>

namespace {

/// Where a speaker's icon and triangle stand in the item, in px, and how they look.
struct SpeakerColumn
{
    QRect icon;
    QRect triangle;
    QLatin1String iconStyle;
    QLatin1String triangleStyle;
    QLatin1String bubbleStyle;
};

constexpr QLatin1String userIcon("QLabel{border-image: url(:/Images/icon-user.png);}");
constexpr QLatin1String robotIcon("QLabel{border-image: url(:/Images/icon-robot.png);}");
constexpr QLatin1String
    rightTriangle("QLabel{border-image: url(:/Images/icon-triangle_right.png);}");
constexpr QLatin1String leftTriangle("QLabel{border-image: url(:/Images/icon-triangle_left.png);}");

SpeakerColumn columnOf(ConversationItem::Speaker speaker)
{
    switch (speaker) {
    case ConversationItem::Speaker::User:
        return {{582, 10, 42, 42}, {565, 25, 9, 16}, userIcon, rightTriangle, styles::userBubble};
    case ConversationItem::Speaker::AssistantMessage:
        return {
            {22, 20, 42, 42}, {74, 32, 9, 18}, robotIcon, leftTriangle, styles::assistantBubble};
    case ConversationItem::Speaker::AssistantAnswer:
        break;
    }
    return {{22, 10, 42, 42}, {74, 22, 9, 18}, robotIcon, leftTriangle, styles::assistantBubble};
}

void addPicture(QWidget *parent, const QRect &place, const QString &style)
{
    auto *label = new QLabel(parent);
    label->setStyleSheet(style);
    label->setGeometry(place);
}

} // namespace

ConversationItem::ConversationItem(Speaker speaker, ConversationList *list)
    : QWidget(list->sheet())
    , m_speaker(speaker)
    , m_list(list)
{
    setContentsMargins(0, 0, 0, 0);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(styles::whiteItem);
    const SpeakerColumn column = columnOf(speaker);
    addPicture(this, column.icon, column.iconStyle);
    addPicture(this, column.triangle, column.triangleStyle);
}

void ConversationItem::setItemSize(const QSize &size)
{
    setFixedSize(size);
    if (m_item != nullptr) {
        m_item->setSizeHint(size);
    }
}

void ConversationItem::appendToList()
{
    m_item = m_list->append(this);
    m_item->setData(Qt::AccessibleTextRole, accessibleName());
}

QWidget *ConversationItem::addBubble()
{
    auto *bubble = new QWidget(this);
    bubble->setStyleSheet(columnOf(m_speaker).bubbleStyle);
    return bubble;
}
