#pragma once

#include <QGraphicsDropShadowEffect>
#include <QImage>

/// The soft grey shadow of the window's surfaces: no offset, "#DCDCDC", blur radius 8 px. For
/// widgets that are opaque rectangles only.
///
/// It looks as Qt's own and has its values, but Qt's painting of effects is switched off: that
/// blurs a picture of all of the widget whenever a pixel of it changes, and paints the bounding box
/// of what changed, also where other widgets lie above that are not painted anew. Here the shadow,
/// put together from a stored picture of a small tile's, is painted on the widget's parent. GUI
/// thread only.
class SurfaceShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT
    Q_DISABLE_COPY(SurfaceShadow)

public:
    /// The shadow of \a surface, which has its parent already and owns this.
    explicit SurfaceShadow(QWidget *surface);

    /// Shows nothing of it from now on.
    void hide();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] QWidget *surface() const;
    void updateAround();
    void paint();

    QRect m_place; ///< of the surface, when it was seen last
    bool m_shown = true;
};

/// The stored picture: the shadow around a square of 32 px, 8 px wide on each side, and nothing in
/// the square.
[[nodiscard]] QImage shadowedTile();

/// Gives \a widget, an opaque rectangle, that shadow. It belongs to the widget.
SurfaceShadow *addSurfaceShadow(QWidget *widget);
