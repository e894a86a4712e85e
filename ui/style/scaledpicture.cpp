#include "ui/style/scaledpicture.h"

#include <QMovie>
#include <QPainter>
#include <QStyle>

namespace {

const QLatin1String pictures(":/Images/");

} // namespace

ScaledPicture::ScaledPicture(QWidget *parent)
    : QLabel(parent)
{
}

void ScaledPicture::setPicture(const QString &name)
{
    m_name = name;
    m_large = {};
    setPixmap(QPixmap(pictures + name));
}

QPixmap ScaledPicture::shown()
{
    if (movie() != nullptr) {
        return movie()->currentPixmap();
    }
    if (m_large.isNull()) {
        QString large = m_name;
        large.replace(QLatin1String(".png"), QLatin1String("@2x.png"));
        m_large.load(pictures + large);
    }
    return m_large;
}

void ScaledPicture::paintEvent(QPaintEvent *event)
{
    if (devicePixelRatioF() <= 1) {
        QLabel::paintEvent(event);
        return;
    }
    const QPixmap picture = shown();
    const QSize size = picture.size() / picture.devicePixelRatio();
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QStyle::alignedRect(layoutDirection(), alignment(), size, rect()), picture);
}
