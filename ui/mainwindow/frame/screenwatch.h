#pragma once

#include <QObject>

/// Tells when the desktop's screens change. GUI thread.
class ScreenWatch : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScreenWatch)

public:
    explicit ScreenWatch(QObject *parent);

signals:
    /// Another screen is the primary one, or a screen came, went or changed its size.
    void screensChanged();

    /// The screen that was the primary one when this was made changed its resolution.
    void logicalDotsPerInchChanged();
};
