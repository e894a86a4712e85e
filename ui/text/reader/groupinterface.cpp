#include "ui/text/reader/groupinterface.h"

#include "ui/text/reader/readgroup.h"

#include <QWidget>

GroupInterface::GroupInterface(QWidget *widget)
    : PartInterface(widget, dynamic_cast<ReadGroup *>(widget)->readRole())
{
}

/// Null while the widget is being destroyed, when readers may still ask.
ReadGroup *GroupInterface::group() const
{
    return dynamic_cast<ReadGroup *>(widget());
}

QString GroupInterface::text(QAccessible::Text kind) const
{
    const ReadGroup *const read = group();
    return kind == QAccessible::Name && read != nullptr ? read->readName()
                                                        : PartInterface::text(kind);
}

int GroupInterface::childCount() const
{
    ReadGroup *const read = group();
    return read == nullptr ? 0 : read->partCount();
}

QAccessibleInterface *GroupInterface::child(int index) const
{
    ReadGroup *const read = group();
    if (read == nullptr || index < 0 || index >= read->partCount()) {
        return nullptr;
    }
    return QAccessible::queryAccessibleInterface(read->part(index));
}

int GroupInterface::indexOfChild(const QAccessibleInterface *child) const
{
    ReadGroup *const read = group();
    const int count = read == nullptr || child == nullptr ? 0 : read->partCount();
    for (int index = 0; index < count; ++index) {
        if (read->part(index) == child->object()) {
            return index;
        }
    }
    return -1;
}
