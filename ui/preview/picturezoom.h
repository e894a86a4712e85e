#pragma once

#include <QPixmap>
#include <QRect>
#include <QSize>

/// The picture area a fitted picture is scaled into, and the factor from which the next zoom step
/// starts.
struct PictureFit
{
    float ratio; ///< the longer side of the picture divided by the shorter one
    QSize box;   ///< px; the picture is scaled into it with its aspect ratio kept
};

/// The factor after one step of ten percent of \a scale outwards, at least 0.2. Factors are kept in
/// single precision: in and out do not cancel exactly.
[[nodiscard]] float scaleAfterZoomOut(float scale);

/// The factor after one step of ten percent of \a scale inwards, at most 4.0.
[[nodiscard]] float scaleAfterZoomIn(float scale);

/// No side of a scaled picture is longer, in px: sums of such sides still fit into an int.
inline constexpr int longestSide = 1 << 30;

/// The box in px that a picture of the size \a picture is scaled into at \a scale: both sides cut
/// to whole pixels and to the longest side.
[[nodiscard]] QSize zoomedSize(const QSize &picture, float scale);

/// How \a picture, which must not be empty, is fitted into an area of the size \a area.
[[nodiscard]] PictureFit fitToArea(const QSize &picture, const QSize &area);

/// Whether \a picture with the window's frame around it is larger than \a desktop, both in px.
[[nodiscard]] bool exceedsDesktop(const QSize &picture, const QSize &desktop);

/// Whether an animation on a canvas of the size \a canvas is played: each of its frames is decoded
/// on all of it, and one of a large canvas would keep the window busy and take much memory.
[[nodiscard]] bool isPlayable(const QSize &canvas);

/// The size in px of a picture of the size \a picture, which must not be empty, that is scaled into
/// \a box with its aspect ratio kept; at least one pixel each way.
[[nodiscard]] QSize scaledSize(const QSize &picture, const QSize &box);

/// What is made of a scaled picture of the size \a full: all of it, or, when that would take more
/// than 256 MiB, the part of at most the size \a visible that is seen in the middle of a window
/// when the picture's own middle lies \a pan px beside it.
[[nodiscard]] QRect partToMake(const QSize &full, const QSize &visible, const QPoint &pan);

/// The part \a part of \a original scaled to \a full, without smoothing. A null picture stays null.
[[nodiscard]] QPixmap scaledPart(const QPixmap &original, const QSize &full, const QRect &part);

/// The same, smoothed where all of the picture is made: for a scaled screen, on whose pixels text
/// in a picture would be torn otherwise.
[[nodiscard]] QPixmap smoothPart(const QPixmap &original, const QSize &full, const QRect &part);

/// How far, in px each way, a picture of the size \a picture can be moved out of the middle of an
/// area of the size \a area that it covers: not at all where it is not larger.
[[nodiscard]] QSize panRange(const QSize &picture, const QSize &area);
