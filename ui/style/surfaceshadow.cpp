#include "ui/style/surfaceshadow.h"

#include "resources/resources.h"

#include <QEvent>
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

SurfaceShadow::SurfaceShadow(QWidget *surface)
    : QGraphicsDropShadowEffect(surface)
    , m_place(surface->geometry())
{
    setLook(*this);
    setEnabled(false);
    surface->installEventFilter(this);
    surface->parentWidget()->installEventFilter(this);
}

QWidget *SurfaceShadow::surface() const
{
    return static_cast<QWidget *>(parent());
}

void SurfaceShadow::hide()
{
    m_shown = false;
    updateAround();
}

bool SurfaceShadow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Paint:
        if (watched == surface()->parentWidget() && m_shown && !surface()->isHidden()) {
            paint();
        }
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
        if (watched == surface()) {
            updateAround();
        }
        break;
    default:
        break;
    }
    return QGraphicsDropShadowEffect::eventFilter(watched, event);
}

/// Where the surface is and where it was.
void SurfaceShadow::updateAround()
{
    const auto around = [](const QRect &place) {
        return place.adjusted(-reach, -reach, reach, reach);
    };
    surface()->parentWidget()->update(around(m_place));
    m_place = surface()->geometry();
    surface()->parentWidget()->update(around(m_place));
}

void SurfaceShadow::paint()
{
    QPainter painter(surface()->parentWidget());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, surface()->devicePixelRatioF() > 1);
    drawAround(painter, surface()->geometry());
}

SurfaceShadow *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new SurfaceShadow(widget);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
