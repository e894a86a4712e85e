#pragma once

#include <QHash>
#include <QObject>
#include <QSize>

class QScreen;

/// Keeps the scale of every screen so small that a window of one size fits into what the screen has
/// free, as long as this lives. Windows only: elsewhere no screen is scaled. GUI thread only.
class ScreenFit : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScreenFit)

public:
    /// Fits the screens for a window of the size \a window, in device-independent px. To be made
    /// before there is a window.
    explicit ScreenFit(const QSize &window);

private:
    void watch(QScreen *screen);
    void fit(QScreen *screen);
    static void resizeWindowsOn(const QScreen *screen);

    QSize m_window;
    QHash<QString, qreal> m_scales; ///< by screen, of those that were ever too small for theirs
};
