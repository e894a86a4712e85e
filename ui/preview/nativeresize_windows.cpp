#include "ui/preview/nativeresize.h"

#include <windows.h>
#include <windowsx.h>

static_assert(WM_NCHITTEST == 132, "the number of the hit test message");

namespace {

Qt::Edges draggedEdges(WPARAM side)
{
    switch (side) {
    case WMSZ_LEFT:
        return Qt::LeftEdge;
    case WMSZ_RIGHT:
        return Qt::RightEdge;
    case WMSZ_TOP:
        return Qt::TopEdge;
    case WMSZ_TOPLEFT:
        return Qt::TopEdge | Qt::LeftEdge;
    case WMSZ_TOPRIGHT:
        return Qt::TopEdge | Qt::RightEdge;
    case WMSZ_BOTTOM:
        return Qt::BottomEdge;
    case WMSZ_BOTTOMLEFT:
        return Qt::BottomEdge | Qt::LeftEdge;
    case WMSZ_BOTTOMRIGHT:
        return Qt::BottomEdge | Qt::RightEdge;
    default:
        return {};
    }
}

} // namespace

NativeResizeRequest readNativeResizeRequest(const QByteArray &eventType, void *message)
{
    NativeResizeRequest request;
    if (eventType != "windows_generic_MSG") {
        return request;
    }
    const auto *native = static_cast<const MSG *>(message);
    if (native->message == WM_NCHITTEST) {
        // Both halves are signed: screens may lie left of and above the first one.
        request.kind = NativeResizeRequest::Kind::HitTest;
        POINT cursor = {GET_X_LPARAM(native->lParam), GET_Y_LPARAM(native->lParam)};
        ScreenToClient(native->hwnd, &cursor);
        request.cursor = QPoint(cursor.x, cursor.y);
    } else if (native->message == WM_SIZING) {
        const auto *rect = reinterpret_cast<const RECT *>(native->lParam);
        request.kind = NativeResizeRequest::Kind::Sizing;
        request.edges = draggedEdges(native->wParam);
        request.proposed = QRect(QPoint(rect->left, rect->top),
                                 QSize(rect->right - rect->left, rect->bottom - rect->top));
    }
    return request;
}

void writeProposedGeometry(void *message, const QRect &geometry)
{
    auto *rect = reinterpret_cast<RECT *>(static_cast<MSG *>(message)->lParam);
    rect->left = geometry.x();
    rect->top = geometry.y();
    rect->right = geometry.x() + geometry.width();
    rect->bottom = geometry.y() + geometry.height();
}

void limitSystemResize(QWidget *window, const QSize &size)
{
    // The answer to each Sizing request limits the size.
    Q_UNUSED(window)
    Q_UNUSED(size)
}
