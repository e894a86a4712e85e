#pragma once

#include <QByteArray>
#include <QRect>

class QWidget;

/// What the window system asks of a frameless window while it is resized. Windows only: elsewhere
/// the window itself starts a resize, see QWindow::startSystemResize().
struct NativeResizeRequest
{
    enum class Kind {
        None,
        HitTest, ///< which part of the window lies under the cursor
        Sizing,  ///< whether the proposed geometry is allowed
    };

    Kind kind = Kind::None;
    QPoint cursor;   ///< in the window, px of the screen; with HitTest
    QRect proposed;  ///< global geometry, px of the screen; with Sizing
    Qt::Edges edges; ///< that are dragged; with Sizing
};

/// Reads a native message as QWidget::nativeEvent() gets it.
[[nodiscard]] NativeResizeRequest readNativeResizeRequest(const QByteArray &eventType,
                                                          void *message);

/// Puts \a geometry, in px of the screen, in place of the one that a Sizing \a message proposes.
void writeProposedGeometry(void *message, const QRect &geometry);

/// Sees to it that \a window cannot be dragged below \a size where no Sizing request comes; empty
/// for no limit.
void limitSystemResize(QWidget *window, const QSize &size);
