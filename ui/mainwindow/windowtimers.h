#pragma once

#include <QTimer>

class QObject;

/// What the window does again and again. The timers are known by their names as children of the
/// window; none runs from the start.
struct WindowTimers
{
    explicit WindowTimers(QObject *window);

    QTimer associationTick; ///< every second: is something new typed?
    QTimer loginPoll;       ///< every minute: is the desktop logged in?
    QTimer processWatch;    ///< every minute: does the program still run that started this one?
    QTimer hotRefresh;      ///< every 30 minutes: fetch the hot questions anew
};
