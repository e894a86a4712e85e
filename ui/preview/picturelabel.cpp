#include "ui/preview/picturelabel.h"

#include <QMovie>
#include <QPainter>
#include <QStyle>

PictureLabel::PictureLabel(QWidget *parent)
    : QLabel(parent)
{
}

void PictureLabel::setOffset(const QPoint &offset)
{
    if (offset != m_offset) {
        m_offset = offset;
        update();
    }
}

QPixmap PictureLabel::shownPicture() const
{
    return movie() != nullptr ? movie()->currentPixmap() : pixmap(Qt::ReturnByValue);
}

QSize PictureLabel::shownSize() const
{
    const QPixmap picture = shownPicture();
    const QSizeF size = QSizeF(picture.size()) / picture.devicePixelRatio();
    return size.toSize();
}

void PictureLabel::paintEvent(QPaintEvent *event)
{
    const QPixmap picture = shownPicture();
    if (hasScaledContents() || picture.isNull()) {
        QLabel::paintEvent(event);
        return;
    }
    if (devicePixelRatioF() > 1) {
        paintScaled(picture);
        return;
    }
    if (m_offset.isNull()) {
        QLabel::paintEvent(event);
        return;
    }
    const QRect place = QStyle::alignedRect(layoutDirection(), alignment(), picture.size(), rect())
                            .translated(m_offset);
    const QRect seen = place & rect();
    QPainter(this).drawPixmap(seen.topLeft(), picture, seen.translated(-place.topLeft()));
}

/// On a scaled screen: smoothly where the pixels of the picture are not those of the screen, as
/// with an animation.
void PictureLabel::paintScaled(const QPixmap &picture)
{
    const qreal ratio = picture.devicePixelRatio();
    const QRect place = QStyle::alignedRect(layoutDirection(), alignment(), shownSize(), rect())
                            .translated(m_offset);
    const QRect seen = place & rect();
    const QRect part = seen.translated(-place.topLeft());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform,
                          !qFuzzyCompare(ratio, devicePixelRatioF()));
    painter.drawPixmap(QRectF(seen), picture,
                       QRectF(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio));
}
