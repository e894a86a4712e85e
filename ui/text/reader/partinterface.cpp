#include "ui/text/reader/partinterface.h"

#include "ui/text/reader/readgroup.h"

#include <QAbstractButton>
#include <QLabel>

PartInterface::PartInterface(QWidget *widget, QAccessible::Role role)
    : QAccessibleWidget(widget, role)
{
}

QAccessibleInterface *PartInterface::parent() const
{
    QWidget *group = groupAround(widget());
    return group == nullptr ? QAccessibleWidget::parent()
                            : QAccessible::queryAccessibleInterface(group);
}

QString PartInterface::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name) {
        return QAccessibleWidget::text(kind);
    }
    return name().trimmed(); // a text may end with the lines that keep it apart
}

QString PartInterface::name() const
{
    if (!widget()->accessibleName().isEmpty()) {
        return widget()->accessibleName();
    }
    if (const auto *button = qobject_cast<QAbstractButton *>(widget())) {
        return button->text();
    }
    const auto *label = qobject_cast<QLabel *>(widget());
    return label == nullptr ? QString() : label->text();
}

QStringList PartInterface::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (widget()->isEnabled() && qobject_cast<QAbstractButton *>(widget()) != nullptr) {
        names.prepend(pressAction());
    }
    return names;
}

void PartInterface::doAction(const QString &name)
{
    auto *button = qobject_cast<QAbstractButton *>(widget());
    if (button != nullptr && name == pressAction()) {
        button->click(); // does nothing for a disabled one
    } else {
        QAccessibleWidget::doAction(name);
    }
}
