#include "ui/style/roundedmask.h"

#include "ui/style/compositor.h"

#include <QPainter>
#include <QWidget>

#include <cmath>

namespace {

/// How many pixels of a row are cut off at each end; \a row counts from the rounded edge.
int cutAt(int row, int radius)
{
    constexpr double half = 0.5;
    const double height = radius - row - half;
    const double width = std::sqrt(static_cast<double>(radius * radius) - height * height);
    return static_cast<int>(std::ceil(radius - width - half));
}

} // namespace

QRegion roundedRegion(const QRect &rect, int radius)
{
    const int reach = qMin(radius, qMin(rect.width(), rect.height()) / 2);
    QRegion region(rect.adjusted(0, reach, 0, -reach));
    for (int row = 0; row < reach; ++row) {
        const int cut = cutAt(row, reach);
        const int width = rect.width() - 2 * cut;
        region += QRect(rect.left() + cut, rect.top() + row, width, 1);
        region += QRect(rect.left() + cut, rect.bottom() - row, width, 1);
    }
    return region;
}

void cutWithoutCompositor(QWidget &window, const QRect &shape, int radius)
{
    if (screenIsComposited()) {
        window.clearMask();
    } else {
        window.setMask(roundedRegion(shape, radius));
    }
}

void fillWithoutCompositor(QWidget &window, const QColor &colour)
{
    if (!screenIsComposited()) {
        QPainter(&window).fillRect(window.rect(), colour);
    }
}
