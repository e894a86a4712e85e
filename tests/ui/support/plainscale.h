#pragma once

#include <QSize>

/// \a picture scaled into \a box with its proportions kept, both not empty: it fills the box one
/// way, the other side is cut to whole pixels, of which there is at least one.
[[nodiscard]] inline QSize plainlyScaled(const QSize &picture, const QSize &box)
{
    const qint64 width = qint64(box.height()) * picture.width() / picture.height();
    if (width <= box.width()) {
        return {qMax(static_cast<int>(width), 1), box.height()};
    }
    const qint64 height = qint64(box.width()) * picture.height() / picture.width();
    return {box.width(), qMax(static_cast<int>(height), 1)};
}
