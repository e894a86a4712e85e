#include "ui/style/surfaceshadow.h"

#include <QBackingStore>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QWidget>
#include <qdrawutil.h>

namespace {

constexpr qreal blur = 8;
constexpr int reach = 16;    ///< px; beyond it nothing of the shadow is left
constexpr int tileSize = 32; ///< px; its middle is as far from the corners as from the edges

void setLook(QGraphicsDropShadowEffect &shadow)
{
    shadow.setOffset(0, 0);
    shadow.setColor(QColor(QStringLiteral("#DCDCDC")));
    shadow.setBlurRadius(blur);
}

/// A square with Qt's shadow around it.
QPixmap shadowedTile()
{
    QWidget ground;
    ground.resize(tileSize + 2 * reach, tileSize + 2 * reach);
    QWidget tile(&ground);
    tile.setGeometry(reach, reach, tileSize, tileSize);
    tile.setAutoFillBackground(true);
    auto *shadow = new QGraphicsDropShadowEffect(&tile);
    setLook(*shadow);
    tile.setGraphicsEffect(shadow);
    QImage image(ground.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    ground.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return QPixmap::fromImage(image);
}

} // namespace

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

void SurfaceShadow::drawAround(QPainter &painter, const QRect &surface)
{
    if (m_tile.isNull()) {
        m_tile = shadowedTile();
    }
    constexpr int corner = reach + tileSize / 2 - 1;
    const QRect whole = surface.adjusted(-reach, -reach, reach, reach);
    painter.save();
    painter.setClipRegion(QRegion(whole).subtracted(surface));
    qDrawBorderPixmap(&painter, whole, QMargins(corner, corner, corner, corner), m_tile);
    painter.restore();
}

SurfaceShadow *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new SurfaceShadow(widget);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
