#pragma once

#include <QRect>
#include <Qt>

/// Where in a frameless window a point lies, as far as resizing is concerned. The values are the
/// answers to Windows' hit test (WM_NCHITTEST).
enum class ResizeZone {
    None = 0,
    Left = 10,
    Right = 11,
    Top = 12,
    TopLeft = 13,
    TopRight = 14,
    Bottom = 15,
    BottomLeft = 16,
    BottomRight = 17,
};

/// The smallest size in px to which a preview window can be dragged.
inline constexpr QSize smallestDraggedSize(600, 400);

/// The zone of \a position in a window of the size \a window whose invisible border is
/// \a borderWidth px wide. Corners win over edges and reach three border widths along them, so that
/// they can be caught. Points inside or outside the window are in no zone.
[[nodiscard]] ResizeZone resizeZoneAt(const QPoint &position, const QSize &window, int borderWidth);

/// The edges that are dragged when the window is taken at \a zone.
[[nodiscard]] Qt::Edges edgesOf(ResizeZone zone);

/// The cursor that is shown over \a zone.
[[nodiscard]] Qt::CursorShape cursorOf(ResizeZone zone);

/// \a proposed with a width of at least 600 px: the right side gives way when it is the one that is
/// dragged, otherwise the left side.
[[nodiscard]] QRect withSmallestWidth(const QRect &proposed, bool rightDragged);

/// \a geometry, in px of a screen of the scale \a scale, with its size in device-independent px;
/// its corner stays.
[[nodiscard]] QRect scaledDown(const QRect &geometry, qreal scale);

/// The geometry in px of a screen of the scale \a scale for \a allowed, which came of
/// scaledDown(\a proposed): the sides that differ move, the others stay to the pixel.
[[nodiscard]] QRect scaledUp(const QRect &allowed, const QRect &proposed, qreal scale);

/// \a proposed with a height of at least 400 px: the lower side gives way when it is the one that
/// is dragged, otherwise the upper side.
[[nodiscard]] QRect withSmallestHeight(const QRect &proposed, bool bottomDragged);
