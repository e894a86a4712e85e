#pragma once

#include <QGraphicsDropShadowEffect>
#include <QImage>

/// The soft grey shadow of the window's surfaces: no offset, "#DCDCDC", blur radius 8 px. For
/// widgets that are opaque rectangles only.
///
/// It looks as Qt's own, which paints the widget into a picture of its own and blurs all
/// of that whenever a pixel of the widget changes. Here the widget is painted straight to where it
/// is seen, and its shadow is put together from a stored picture of a small tile's. GUI thread
/// only.
class SurfaceShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT
    Q_DISABLE_COPY(SurfaceShadow)

public:
    explicit SurfaceShadow(QObject *parent);

protected:
    void draw(QPainter *painter) override;

private:
    /// False when a picture of the window is made: there Qt would paint the widget itself
    /// to a wrong place.
    [[nodiscard]] bool paintsWindow(const QPainter &painter) const;
};

/// The stored picture: the shadow around a square of 32 px, 8 px wide on each side, and nothing in
/// the square.
[[nodiscard]] QImage shadowedTile();

/// Gives \a widget, an opaque rectangle, that shadow. It belongs to the widget.
SurfaceShadow *addSurfaceShadow(QWidget *widget);
