#include "ui/style/surfaceshadow.h"

#include "resources/resources.h"

#include <QBackingStore>
#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace {

constexpr qreal blur = 8;
constexpr int reach = 8;   ///< px; beyond it nothing of the shadow is left
constexpr int corner = 15; ///< px from a corner along an edge; beyond it the edges are even

void setLook(QGraphicsDropShadowEffect &shadow)
{
    shadow.setOffset(0, 0);
    shadow.setColor(QColor(QStringLiteral("#DCDCDC")));
    shadow.setBlurRadius(blur);
}

const QImage &tile()
{
    static const QImage image = shadowedTile();
    return image;
}

/// Draws the part \a source of the tile with its top left corner at \a place.
void drawPart(QPainter &painter, const QPoint &place, const QRect &source)
{
    painter.drawImage(place, tile(), source);
}

/// \a length px of the shadow above or below a surface; \a top is its place in the tile.
QImage levelEdge(int length, int top)
{
    QImage edge(length, reach, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < reach; ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(tile().constScanLine(top + y));
        auto *to = reinterpret_cast<QRgb *>(edge.scanLine(y));
        std::fill_n(to, length, from[tile().width() / 2]);
    }
    return edge;
}

/// \a length px of the shadow beside a surface; \a left is its place in the tile.
QImage uprightEdge(int length, int left)
{
    QImage edge(reach, length, QImage::Format_ARGB32_Premultiplied);
    const auto *from
        = reinterpret_cast<const QRgb *>(tile().constScanLine(tile().height() / 2)) + left;
    for (int y = 0; y < length; ++y) {
        std::copy_n(from, reach, reinterpret_cast<QRgb *>(edge.scanLine(y)));
    }
    return edge;
}

void drawAbove(QPainter &painter, const QRect &surface)
{
    const QPoint place = surface.topLeft() - QPoint(reach, reach);
    const int wide = reach + corner;
    drawPart(painter, place, {0, 0, wide, reach});
    const int length = surface.width() - 2 * corner;
    painter.drawImage(place + QPoint(wide, 0), levelEdge(length, 0));
    drawPart(painter, place + QPoint(wide + length, 0), {tile().width() - wide, 0, wide, reach});
}

void drawBelow(QPainter &painter, const QRect &surface)
{
    const QPoint place = surface.bottomLeft() + QPoint(-reach, 1);
    const int wide = reach + corner;
    const int top = tile().height() - reach;
    drawPart(painter, place, {0, top, wide, reach});
    const int length = surface.width() - 2 * corner;
    painter.drawImage(place + QPoint(wide, 0), levelEdge(length, top));
    drawPart(painter, place + QPoint(wide + length, 0), {tile().width() - wide, top, wide, reach});
}

/// The shadow on one side; \a x is its place beside the surface and \a left that in the tile.
void drawBeside(QPainter &painter, const QRect &surface, int x, int left)
{
    const QPoint place(x, surface.top());
    const int length = surface.height() - 2 * corner;
    drawPart(painter, place, {left, reach, reach, corner});
    painter.drawImage(place + QPoint(0, corner), uprightEdge(length, left));
    drawPart(painter, place + QPoint(0, corner + length),
             {left, tile().height() - reach - corner, reach, corner});
}

void drawAround(QPainter &painter, const QRect &surface)
{
    drawAbove(painter, surface);
    drawBelow(painter, surface);
    drawBeside(painter, surface, surface.left() - reach, 0);
    drawBeside(painter, surface, surface.right() + 1, tile().width() - reach);
}

} // namespace

QImage shadowedTile()
{
    initResources();
    return QImage(QStringLiteral(":/Images/surface-shadow.png"))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

SurfaceShadow::SurfaceShadow(QObject *parent)
    : QGraphicsDropShadowEffect(parent)
{
    setLook(*this);
}

void SurfaceShadow::draw(QPainter *painter)
{
    if (!paintsWindow(*painter)) {
        QGraphicsDropShadowEffect::draw(painter);
        return;
    }
    drawAround(*painter, sourceBoundingRect().toAlignedRect());
    drawSource(painter);
}

bool SurfaceShadow::paintsWindow(const QPainter &painter) const
{
    const auto *widget = qobject_cast<QWidget *>(parent());
    QBackingStore *window = widget != nullptr ? widget->backingStore() : nullptr;
    return window != nullptr && window->paintDevice() == painter.device();
}

SurfaceShadow *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new SurfaceShadow(widget);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
