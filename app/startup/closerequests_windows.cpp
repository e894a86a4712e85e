#include "app/startup/closerequests.h"

#include <QApplication>
#include <QMetaObject>

#include <windows.h>

bool CloseRequests::nativeEventFilter(const QByteArray &eventType, void *message, long *result)
{
    Q_UNUSED(eventType)
    const auto *msg = static_cast<const MSG *>(message);
    if (msg->message != WM_CLOSE || !m_window || QApplication::activeModalWidget() == nullptr
        || reinterpret_cast<WId>(msg->hwnd) != m_window->internalWinId()) {
        return false;
    }
    // Later: whoever sent the message may wait until it has been handled.
    QMetaObject::invokeMethod(
        m_window, [window = m_window] { closeWithDialogs(window); }, Qt::QueuedConnection);
    if (result != nullptr) { // which it is for a message from the queue
        *result = 0;
    }
    return true;
}
