#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

class QWidget;

/// Where the screens of the desktop are, in the desktop's order and coordinates.
[[nodiscard]] QVector<QRect> screenPlaces();

/// The size of the first of \a screens that begins at the desktop's origin; 0 x 0 when none does.
[[nodiscard]] QSize sizeOfScreenAtOrigin(const QVector<QRect> &screens);

/// Where a window of \a size has its corner when it stands in the centre of \a area.
[[nodiscard]] QPoint centredPosition(const QSize &area, const QSize &size);

/// Moves \a window to \a place and shows it anew where it is seen.
void placeAnew(QWidget &window, const QPoint &place);

/// Shows \a window anew where it is seen.
void showAnew(QWidget &window);
