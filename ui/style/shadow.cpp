#include "ui/style/shadow.h"

#include "ui/style/surfaceshadow.h"

#include <QWidget>

QGraphicsDropShadowEffect *addSurfaceShadow(QWidget *widget)
{
    auto *shadow = new SurfaceShadow(widget);
    widget->setGraphicsEffect(shadow);
    return shadow;
}
