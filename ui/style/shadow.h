#pragma once

class QGraphicsDropShadowEffect;
class QWidget;

/// Gives \a widget, an opaque rectangle, the soft grey shadow of the window's surfaces: no offset,
/// "#DCDCDC", blur radius 8 px. The effect belongs to the widget.
QGraphicsDropShadowEffect *addSurfaceShadow(QWidget *widget);
