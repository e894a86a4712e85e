#pragma once

#include <QRect>
#include <QRegion>

class QColor;
class QWidget;

/// The pixels of \a rect, in px, whose centres lie within its corners rounded by \a radius.
[[nodiscard]] QRegion roundedRegion(const QRect &rect, int radius);

/// Cuts \a window, one with a translucent background, to \a shape with corners rounded by
/// \a radius px where the screen has no compositor; all of it is seen where there is one. To be
/// called when the window is about to be shown.
void cutWithoutCompositor(QWidget &window, const QRect &shape, int radius);

/// Paints \a colour below what \a window shows where the screen has no compositor; translucent
/// lines and soft edges would be blended with black. To be called first when it paints itself.
void fillWithoutCompositor(QWidget &window, const QColor &colour);
