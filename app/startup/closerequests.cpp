#include "app/startup/closerequests.h"

#include <QApplication>

CloseRequests::CloseRequests(QWidget *window)
    : m_window(window)
{
    qApp->installNativeEventFilter(this);
}

CloseRequests::~CloseRequests()
{
    qApp->removeNativeEventFilter(this);
}

void closeWithDialogs(QWidget *window)
{
    const QPointer<QWidget> guarded(window);
    while (QWidget *dialog = QApplication::activeModalWidget()) {
        if (!dialog->close()) {
            return;
        }
    }
    if (guarded) {
        guarded->close();
    }
}
