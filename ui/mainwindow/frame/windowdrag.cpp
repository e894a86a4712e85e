#include "ui/mainwindow/frame/windowdrag.h"

#include <QMouseEvent>
#include <QWidget>

WindowDrag::WindowDrag(QWidget *window)
    : m_window(window)
{
}

void WindowDrag::press(const QMouseEvent &event)
{
    m_offset = event.globalPos() - m_window->pos();
}

void WindowDrag::move(const QMouseEvent &event)
{
    if (event.buttons() == Qt::LeftButton && !m_window->isMaximized() && !m_offset.isNull()) {
        m_window->move(event.globalPos() - m_offset);
    }
}

void WindowDrag::release()
{
    m_offset = QPoint();
}
