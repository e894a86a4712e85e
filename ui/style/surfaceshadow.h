#pragma once

#include <QGraphicsDropShadowEffect>
#include <QPixmap>

/// The soft grey shadow of the window's surfaces: no offset, "#DCDCDC", blur radius 8 px. For
/// widgets that are opaque rectangles only.
///
/// It looks as Qt's own, which paints the widget into a picture of its own and blurs all
/// of that whenever a pixel of the widget changes. Here the widget is painted straight to where it
/// is seen, and its shadow is put together from that of a small tile, blurred once. GUI thread
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
    void drawAround(QPainter &painter, const QRect &surface);

    QPixmap m_tile; ///< made when it is first drawn
};

/// Gives \a widget, an opaque rectangle, that shadow. It belongs to the widget.
SurfaceShadow *addSurfaceShadow(QWidget *widget);
