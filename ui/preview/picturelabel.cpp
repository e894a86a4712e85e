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
    if (!picture.isNull() && movie() == nullptr
        && !qFuzzyCompare(picture.devicePixelRatio(), devicePixelRatioF())) {
        emit screenDiffers();
    }
    const bool isOnScaledScreen = devicePixelRatioF() > 1 && !picture.isNull();
    if (isOnScaledScreen && !hasScaledContents()) {
        paintScaled(picture);
        return;
    }
    if (isOnScaledScreen && movie() != nullptr) {
        paintStretched(picture);
        return;
    }
    if (hasScaledContents() || picture.isNull() || m_offset.isNull()) {
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

/// An animation on a scaled screen, for which QLabel would stretch it twice, and roughly.
void PictureLabel::paintStretched(const QPixmap &picture)
{
    const qreal ratio = devicePixelRatioF();
    const QSizeF difference = QSizeF(size()) * ratio - QSizeF(picture.size());
    const bool isMadeForIt = qAbs(difference.width()) < 1 && qAbs(difference.height()) < 1;
    const QSizeF place = isMadeForIt ? QSizeF(picture.size()) / ratio : QSizeF(size());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !isMadeForIt);
    painter.drawPixmap(QRectF(QPointF(), place), picture, QRectF(picture.rect()));
}
