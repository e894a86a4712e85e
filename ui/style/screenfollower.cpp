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
        watchWindow();
    } else if (event->type() == QEvent::Paint && isOnNewScale()) {
        settleSoon(); // the same screen, of which Qt does not tell
    } else if (event->type() == QEvent::Resize && !isOnNewScale()) {
        m_size = m_window->size();
    }
    return QObject::eventFilter(watched, event);
}

void ScreenFollower::watchWindow()
{
    m_watched = m_window->windowHandle();
    m_size = m_window->size();
    m_scale = m_window->devicePixelRatioF();
    connect(m_watched, &QWindow::screenChanged, this, &ScreenFollower::screenChanged);
}

bool ScreenFollower::isOnNewScale() const
{
    return m_watched != nullptr && !qFuzzyCompare(m_window->devicePixelRatioF(), m_scale);
}

void ScreenFollower::screenChanged()
{
    m_size = m_window->size();
    settleSoon();
}

void ScreenFollower::settleSoon()
{
    // Qt is still in the middle of the change.
    QMetaObject::invokeMethod(this, &ScreenFollower::settle, Qt::QueuedConnection);
}

void ScreenFollower::settle()
{
    if (!isOnNewScale()) {
        return;
    }
    m_scale = m_window->devicePixelRatioF();
    if (m_window->minimumSize() == m_window->maximumSize()) {
        m_size = m_window->minimumSize(); // the system may have sized it before Qt knew the scale
    }
    if (!m_window->isMaximized() && m_window->windowHandle() != nullptr) {
        m_window->resize(m_size); // when the system's size is right, it tells no other
        m_window->windowHandle()->resize(m_size);
    }
    sharpenPictures(*m_window);
}
