#pragma once

#include <QSize>

/// Lets fixed places and sizes count in device-independent pixels where the system scales its
/// screens and no window system does it for the program: on Windows. To be called before there is
/// an application object.
void followDisplayScale();

/// The scale of a screen, at most \a scale, that leaves a window of the size \a window, in
/// device-independent px, within \a available, in px of the screen. Nothing is scaled below 1 for
/// that.
[[nodiscard]] qreal fittingScale(qreal scale, const QSize &available, const QSize &window);

/// Whether any of the screens is scaled, so that pictures are wanted at twice their stated size.
[[nodiscard]] bool anyScreenIsScaled();
