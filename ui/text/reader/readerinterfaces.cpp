#include "ui/text/reader/readerinterfaces.h"

#include "ui/text/reader/groupinterface.h"
#include "ui/text/reader/readgroup.h"
#include "ui/text/reader/textinterface.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>

namespace {

/// Qt asks for the class of \a object, then for each that it is derived from, down to QWidget.
QAccessibleInterface *readerInterface(const QString &className, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget == nullptr) {
        return nullptr;
    }
    if (dynamic_cast<ReadGroup *>(widget) != nullptr) {
        return new GroupInterface(widget);
    }
    if (groupAround(widget) != nullptr) {
        if (auto *label = qobject_cast<QLabel *>(widget)) {
            return new TextInterface(label);
        }
        return qobject_cast<QAbstractButton *>(widget) == nullptr
                 ? nullptr
                 : new PartInterface(widget, QAccessible::Button);
    }
    // Qt takes a window of no particular kind for a mere area, and a mere area for a frame, which
    // some readers take for a window.
    if (className == QLatin1String("QWidget") && widget->isWindow()) {
        return new QAccessibleWidget(widget, QAccessible::Window);
    }
    const bool isArea = className == QLatin1String("QFrame") && !widget->isWindow();
    return isArea ? new QAccessibleWidget(widget, QAccessible::Client) : nullptr;
}

} // namespace

void installReaderInterfaces()
{
    QAccessible::installFactory(readerInterface);
}
