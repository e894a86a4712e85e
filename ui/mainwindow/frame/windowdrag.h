#pragma once

#include <QPoint>

class QMouseEvent;
class QWidget;

/// Moves a window without a frame with the mouse.
class WindowDrag
{
public:
    explicit WindowDrag(QWidget *window);

    void press(const QMouseEvent &event);

    /// Moves the window with exactly the left button held, unless it is maximised.
    void move(const QMouseEvent &event);
    void release();

private:
    QWidget *m_window;
    QPoint m_offset; ///< of the pointer in the window at the last press; (0, 0): no drag
};
