#include "ui/answer/list/conversationitem.h"

#include "ui/style/styles.h"

#include <QLabel>
#include <QListWidgetItem>

#include <algorithm>

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

const QLatin1String userIcon("QLabel{border-image: url(:/Images/icon-user.png);}");
const QLatin1String robotIcon("QLabel{border-image: url(:/Images/icon-robot.png);}");
const QLatin1String rightTriangle("QLabel{border-image: url(:/Images/icon-triangle_right.png);}");
const QLatin1String leftTriangle("QLabel{border-image: url(:/Images/icon-triangle_left.png);}");

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

ConversationItem::ConversationItem(Speaker speaker, QWidget *parent)
    : QWidget(parent)
    , m_speaker(speaker)
{
    setContentsMargins(0, 0, 0, 0);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(styles::whiteItem);
    addSpeaker();
}

void ConversationItem::joinListAs(QListWidgetItem *item)
{
    m_item = item;
    m_item->setSizeHint(size());
    m_item->setData(Qt::AccessibleTextRole, accessibleName());
}

QLabel *ConversationItem::text(int number) const
{
    Q_UNUSED(number)
    return nullptr;
}

void ConversationItem::wake()
{
    if (m_awake) {
        return;
    }
    m_awake = true;
    addSpeaker();
    rebuild();
    const auto made = findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *widget : made) {
        widget->show();
    }
}

bool ConversationItem::sleep()
{
    if (m_awake && canSleep() && !isInUse()) {
        m_awake = false;
        forget();
        qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
    }
    return !m_awake;
}

bool ConversationItem::isInUse() const
{
    const QWidget *focus = window()->focusWidget();
    if (underMouse() || (focus != nullptr && isAncestorOf(focus))) {
        return true;
    }
    const auto labels = findChildren<QLabel *>();
    return std::any_of(labels.cbegin(), labels.cend(),
                       [](const QLabel *label) { return label->hasSelectedText(); });
}

QString ConversationItem::readName() const
{
    return (m_speaker == Speaker::User ? tr("您：%1") : tr("Miravel：%1")).arg(accessibleName());
}

int ConversationItem::partCount()
{
    if (!m_awake) {
        wake();
        emit wokenByReader();
    }
    return readCount();
}

QWidget *ConversationItem::part(int number)
{
    return number < partCount() ? readPart(number) : nullptr;
}

void ConversationItem::addSpeaker()
{
    const SpeakerColumn column = columnOf(m_speaker);
    addPicture(this, column.icon, column.iconStyle);
    addPicture(this, column.triangle, column.triangleStyle);
}

void ConversationItem::setItemHeight(int height)
{
    setFixedSize(itemWidth, height);
    if (m_item != nullptr) {
        m_item->setSizeHint(size());
    }
}

QWidget *ConversationItem::addBubble()
{
    auto *bubble = new QWidget(this);
    bubble->setStyleSheet(columnOf(m_speaker).bubbleStyle);
    return bubble;
}

void ConversationItem::addText(QLabel *label, int number)
{
    connect(label, &QWidget::customContextMenuRequested, this,
            [this, number] { emit copyMenuRequested(number); });
}
