#include "ui/preview/nativeresize.h"

#include <QWidget>

NativeResizeRequest readNativeResizeRequest(const QByteArray &eventType, void *message)
{
    Q_UNUSED(eventType)
    Q_UNUSED(message)
    return {};
}

void writeProposedGeometry(void *message, const QRect &geometry)
{
    Q_UNUSED(message)
    Q_UNUSED(geometry)
}

void limitSystemResize(QWidget *window, const QSize &size)
{
    window->setMinimumSize(size);
}
