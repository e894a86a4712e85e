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

void PictureLabel::paintEvent(QPaintEvent *event)
{
    const QPixmap picture = shownPicture();
    if (m_offset.isNull() || hasScaledContents() || picture.isNull()) {
        QLabel::paintEvent(event);
        return;
    }
    const QRect place = QStyle::alignedRect(layoutDirection(), alignment(), picture.size(), rect())
                            .translated(m_offset);
    const QRect seen = place & rect();
    QPainter(this).drawPixmap(seen.topLeft(), picture, seen.translated(-place.topLeft()));
}
