#include "ui/text/reader/readgroup.h"

#include <QWidget>

void forgetEarlyInterface(QWidget *group)
{
    if (QAccessible::isActive()) { // else nobody was told
        QAccessibleInterface *early = QAccessible::queryAccessibleInterface(group);
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(early));
    }
}

QWidget *groupAround(const QWidget *widget)
{
    QWidget *around = widget->isWindow() ? nullptr : widget->parentWidget();
    while (around != nullptr && dynamic_cast<ReadGroup *>(around) == nullptr) {
        around = around->isWindow() ? nullptr : around->parentWidget();
    }
    return around;
}
