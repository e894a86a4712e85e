#include "app/startup/lateplugins.h"

#include "app/startup/bearerplugins.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int longestMs = 1000;

} // namespace

LatePlugins::LatePlugins()
    : m_paths(QCoreApplication::libraryPaths())
{
    QCoreApplication::setLibraryPaths({});
}

void LatePlugins::endAfterPictureOf(QWidget &window)
{
    window.installEventFilter(this);
    QTimer::singleShot(longestMs, this, &LatePlugins::end);
}

bool LatePlugins::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        // The picture is on the screen when this event has been dealt with.
        QMetaObject::invokeMethod(this, &LatePlugins::end, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void LatePlugins::end()
{
    if (!m_paths.isEmpty()) {
        leaveOutBearerPlugins(); // takes a thread, so not before
        QCoreApplication::setLibraryPaths(m_paths);
        m_paths.clear();
        emit ended();
    }
}
