#pragma once

#include <QObject>
#include <QSize>

class QWidget;
class QWindow;

/// Keeps a window as it is when it comes to a screen of another scale, or when its screen gets
/// another: its size in device-independent px, and its pictures sharp. GUI thread only.
class ScreenFollower : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ScreenFollower)

public:
    /// Belongs to \a window, which may not be shown yet.
    explicit ScreenFollower(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchWindow();
    void screenChanged();
    void settleSoon();
    void settle();
    [[nodiscard]] bool isOnNewScale() const;

    QWidget *m_window;
    QWindow *m_watched = nullptr; ///< compared only
    qreal m_scale = 1;            ///< at which the window was seen last
    QSize m_size;                 ///< before the scale changed
};
