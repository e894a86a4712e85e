#pragma once

#include <QPixmap>
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

/// The box in px that a picture of the size \a picture is scaled into at \a scale: both sides cut
/// to whole pixels.
[[nodiscard]] QSize zoomedSize(const QSize &picture, float scale);

/// How \a picture, which must not be empty, is fitted into an area of the size \a area.
[[nodiscard]] PictureFit fitToArea(const QSize &picture, const QSize &area);

/// Whether \a picture with the window's frame around it is larger than \a desktop, both in px.
[[nodiscard]] bool exceedsDesktop(const QSize &picture, const QSize &desktop);

/// \a original scaled into \a box with its aspect ratio kept, without smoothing. A result of more
/// than 256 MiB is not made whole: then only its middle part of the size \a visible is, which looks
/// the same in a window that is not larger. A null picture stays null.
[[nodiscard]] QPixmap scaledPicture(const QPixmap &original, const QSize &box,
                                    const QSize &visible);
