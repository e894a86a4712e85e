#include "ui/style/roundedmask.h"

#include "ui/style/compositor.h"

#include <QWidget>

#include <cmath>

namespace {

/// How many pixels of a row are cut off at each end; \a row counts from the rounded edge.
int cutAt(int row, int radius)
{
    // The outer edge of the row is the one farther from the corner's centre.
    const double height = radius - row;
    return static_cast<int>(
        std::ceil(radius - std::sqrt(static_cast<double>(radius * radius) - height * height)));
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
