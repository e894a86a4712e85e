#include "ui/style/shadow.h"

#include <QColor>
#include <QGraphicsDropShadowEffect>
#include <QWidget>

namespace {

constexpr qreal surfaceBlurRadius = 8;

} // namespace

QGraphicsDropShadowEffect *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new QGraphicsDropShadowEffect(widget);
    shadow->setOffset(0, 0);
    shadow->setColor(QColor(QStringLiteral("#DCDCDC")));
    shadow->setBlurRadius(surfaceBlurRadius);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
