#include "ui/preview/resizeborder.h"

namespace {

constexpr int cornerReachInBorders = 3;

/// -1 near the beginning of a side, 1 near its end, otherwise 0.
int nearness(int position, int length, int reach)
{
    if (position < reach) {
        return -1;
    }
    return position >= length - reach ? 1 : 0;
}

ResizeZone zoneOf(int horizontal, int vertical)
{
    static constexpr ResizeZone zones[3][3] = {
        {ResizeZone::TopLeft, ResizeZone::Top, ResizeZone::TopRight},
        {ResizeZone::Left, ResizeZone::None, ResizeZone::Right},
        {ResizeZone::BottomLeft, ResizeZone::Bottom, ResizeZone::BottomRight},
    };
    return zones[vertical + 1][horizontal + 1];
}

} // namespace

ResizeZone resizeZoneAt(const QPoint &position, const QSize &window, int borderWidth)
{
    if (!QRect(QPoint(), window).contains(position)) {
        return ResizeZone::None;
    }
    const int horizontal = nearness(position.x(), window.width(), borderWidth);
    const int vertical = nearness(position.y(), window.height(), borderWidth);
    if (horizontal == 0 && vertical == 0) {
        return ResizeZone::None;
    }
    const int cornerReach = cornerReachInBorders * borderWidth;
    const int cornerHorizontal = nearness(position.x(), window.width(), cornerReach);
    const int cornerVertical = nearness(position.y(), window.height(), cornerReach);
    if (cornerHorizontal != 0 && cornerVertical != 0) {
        return zoneOf(cornerHorizontal, cornerVertical);
    }
    return zoneOf(horizontal, vertical);
}

Qt::Edges edgesOf(ResizeZone zone)
{
    switch (zone) {
    case ResizeZone::Left:
        return Qt::LeftEdge;
    case ResizeZone::Right:
        return Qt::RightEdge;
    case ResizeZone::Top:
        return Qt::TopEdge;
    case ResizeZone::TopLeft:
        return Qt::TopEdge | Qt::LeftEdge;
    case ResizeZone::TopRight:
        return Qt::TopEdge | Qt::RightEdge;
    case ResizeZone::Bottom:
        return Qt::BottomEdge;
    case ResizeZone::BottomLeft:
        return Qt::BottomEdge | Qt::LeftEdge;
    case ResizeZone::BottomRight:
        return Qt::BottomEdge | Qt::RightEdge;
    case ResizeZone::None:
        break;
    }
    return {};
}

Qt::CursorShape cursorOf(ResizeZone zone)
{
    switch (zone) {
    case ResizeZone::Left:
    case ResizeZone::Right:
        return Qt::SizeHorCursor;
    case ResizeZone::Top:
    case ResizeZone::Bottom:
        return Qt::SizeVerCursor;
    case ResizeZone::TopLeft:
    case ResizeZone::BottomRight:
        return Qt::SizeFDiagCursor;
    case ResizeZone::TopRight:
    case ResizeZone::BottomLeft:
        return Qt::SizeBDiagCursor;
    case ResizeZone::None:
        break;
    }
    return Qt::ArrowCursor;
}

QRect withSmallestWidth(const QRect &proposed, bool rightDragged)
{
    QRect rect = proposed;
    if (rect.width() >= smallestDraggedSize.width()) {
        return rect;
    }
    if (rightDragged) {
        rect.setRight(rect.left() + smallestDraggedSize.width() - 1);
    } else {
        rect.setLeft(rect.right() - smallestDraggedSize.width() + 1);
    }
    return rect;
}

QRect withSmallestHeight(const QRect &proposed, bool bottomDragged)
{
    QRect rect = proposed;
    if (rect.height() >= smallestDraggedSize.height()) {
        return rect;
    }
    if (bottomDragged) {
        rect.setBottom(rect.top() + smallestDraggedSize.height() - 1);
    } else {
        rect.setTop(rect.bottom() - smallestDraggedSize.height() + 1);
    }
    return rect;
}

QRect scaledDown(const QRect &geometry, qreal scale)
{
    return {geometry.topLeft(),
            QSize(qRound(geometry.width() / scale), qRound(geometry.height() / scale))};
}

QRect scaledUp(const QRect &allowed, const QRect &proposed, qreal scale)
{
    const QRect before = scaledDown(proposed, scale);
    QRect rect = proposed;
    if (allowed.width() != before.width()) {
        const int width = qRound(allowed.width() * scale);
        const bool leftMoved = allowed.left() != before.left();
        rect.moveLeft(leftMoved ? proposed.right() - width + 1 : proposed.left());
        rect.setWidth(width);
    }
    if (allowed.height() != before.height()) {
        const int height = qRound(allowed.height() * scale);
        const bool topMoved = allowed.top() != before.top();
        rect.moveTop(topMoved ? proposed.bottom() - height + 1 : proposed.top());
        rect.setHeight(height);
    }
    return rect;
}
