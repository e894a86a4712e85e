#include "ui/text/reader/readgroup.h"

#include <QWidget>

QWidget *groupAround(const QWidget *widget)
{
    QWidget *around = widget->isWindow() ? nullptr : widget->parentWidget();
    while (around != nullptr && dynamic_cast<ReadGroup *>(around) == nullptr) {
        around = around->isWindow() ? nullptr : around->parentWidget();
    }
    return around;
}
