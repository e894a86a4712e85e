#pragma once

#include <QAbstractNativeEventFilter>
#include <QPointer>
#include <QWidget>

/// Lets others close the main window while a dialog lies over it: Qt refuses that, and a task
/// manager, an update or the taskbar would not get rid of the program. Closes the dialogs first.
/// Needed on Windows only, where users have no other way to send such a request; elsewhere it does
/// nothing. GUI thread.
class CloseRequests final : public QAbstractNativeEventFilter
{
    Q_DISABLE_COPY_MOVE(CloseRequests)

public:
    /// Watches the requests to \a window from now on, as long as it and this object live.
    explicit CloseRequests(QWidget *window);
    ~CloseRequests() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, long *result) override;

private:
    QPointer<QWidget> m_window;
};

/// Closes every modal dialog, the uppermost first, and then \a window; stops at one that will not
/// close.
void closeWithDialogs(QWidget *window);
