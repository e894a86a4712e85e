#include "ui/style/screenfollower.h"

#include "ui/style/sharppictures.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

ScreenFollower::ScreenFollower(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
}

bool ScreenFollower::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && m_window->windowHandle() != m_watched) {
        m_watched = m_window->windowHandle();
        m_scale = m_window->devicePixelRatioF();
        connect(m_watched, &QWindow::screenChanged, this, &ScreenFollower::screenChanged);
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFollower::screenChanged()
{
    m_size = m_window->size();
    // Qt is still in the middle of the change.
    QMetaObject::invokeMethod(this, &ScreenFollower::settle, Qt::QueuedConnection);
}

void ScreenFollower::settle()
{
    const qreal scale = m_window->devicePixelRatioF();
    if (qFuzzyCompare(scale, m_scale)) {
        return;
    }
    m_scale = scale;
    if (!m_window->isMaximized() && m_window->windowHandle() != nullptr) {
        m_window->windowHandle()->resize(m_size);
    }
    sharpenPictures(*m_window);
}
