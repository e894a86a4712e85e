#include "ui/text/reader/linkinterface.h"

#include "ui/text/linkaddress.h"

#include <QLabel>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

LinkInterface::LinkInterface(QLabel *label, const ReadLink &link)
    : m_label(label)
    , m_link(link)
{
}

QAccessibleInterface *LinkInterface::childAt(int x, int y) const
{
    Q_UNUSED(x)
    Q_UNUSED(y)
    return nullptr;
}

QAccessibleInterface *LinkInterface::parent() const
{
    return QAccessible::queryAccessibleInterface(m_label);
}

QAccessibleInterface *LinkInterface::child(int index) const
{
    Q_UNUSED(index)
    return nullptr;
}

int LinkInterface::indexOfChild(const QAccessibleInterface *child) const
{
    Q_UNUSED(child)
    return -1;
}

QString LinkInterface::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return m_link.text;
    case QAccessible::Value:
        return readableAddress(m_link.address);
    default:
        return {};
    }
}

void LinkInterface::setText(QAccessible::Text kind, const QString &text)
{
    Q_UNUSED(kind)
    Q_UNUSED(text)
}

QRect LinkInterface::rect() const
{
    const auto *document = m_label.isNull() ? nullptr : m_label->findChild<QTextDocument *>();
    if (document == nullptr) {
        return {};
    }
    const QTextBlock block = document->findBlock(m_link.position);
    const int position = m_link.position - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(position);
    if (!line.isValid()) {
        return {};
    }
    const qreal left = line.cursorToX(position);
    const qreal right = line.cursorToX(position + m_link.text.size());
    const QPointF corner = block.layout()->position() + QPointF(left, line.y());
    const QRect place = QRectF(corner, QSizeF(right - left, line.height())).toAlignedRect();
    return {m_label->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::State LinkInterface::state() const
{
    QAccessible::State state;
    state.linked = true;
    state.readOnly = true;
    state.invalid = m_label.isNull();
    state.invisible = m_label.isNull() || !m_label->isVisible();
    state.focusable = true;
    state.focused = !m_label.isNull() && m_label->hasFocus() && m_label->hasSelectedText()
                 && m_label->selectionStart() == m_link.position;
    return state;
}

void *LinkInterface::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                : nullptr;
}

QStringList LinkInterface::actionNames() const
{
    return {pressAction()};
}

void LinkInterface::doAction(const QString &name)
{
    if (name == pressAction() && !m_label.isNull()) {
        emit m_label->linkActivated(m_link.address);
    }
}

QStringList LinkInterface::keyBindingsForAction(const QString &name) const
{
    Q_UNUSED(name)
    return {};
}
