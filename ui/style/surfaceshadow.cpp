#include "ui/style/surfaceshadow.h"

#include <QEvent>
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
    if (m_tile.isNull()) {
        m_tile = shadowedTile();
    }
    constexpr int corner = reach + tileSize / 2 - 1;
    const QRect place = surface()->geometry();
    const QRect whole = place.adjusted(-reach, -reach, reach, reach);
    QPainter painter(surface()->parentWidget());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, surface()->devicePixelRatioF() > 1);
    painter.setClipRegion(QRegion(whole).subtracted(place));
    qDrawBorderPixmap(&painter, whole, QMargins(corner, corner, corner, corner), m_tile);
}

SurfaceShadow *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new SurfaceShadow(widget);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
