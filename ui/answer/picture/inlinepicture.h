#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/// The Base64 text (RFC 4648) in the source attribute of the image tag \a piece, up to the closing
/// quote that a style attribute follows, or else up to the end; empty when there is none. It refers
/// to \a piece: the text may be large.
[[nodiscard]] QStringRef inlinePictureText(const QString &piece);

/// Whether the image tag \a piece holds an animation.
[[nodiscard]] bool isAnimatedPicture(const QString &piece);

/// The size in px of the label for a picture of \a size: at most 110 high, the width in
/// proportion, at most 430. Nothing is as high as nothing.
[[nodiscard]] QSize pictureLabelSize(const QSize &size);

/// The size in px that a picture of \a size is scaled to for its label: an animation to all of it,
/// a still one inside it, proportions kept. At least a pixel each way.
[[nodiscard]] QSize shownPictureSize(const QSize &size, bool isAnimated);

/// How many whole pixels of a screen of \a ratio have room in \a size device-independent px, at
/// least one each way: a larger picture would lose its edge.
[[nodiscard]] QSize sizeOnScreen(const QSize &size, qreal ratio);

/// Writes \a data to \a fileName when the image tag \a part holds an animation, making its folder
/// first. A file that cannot be written gives a warning in the log; the animation then has no
/// frames.
void saveAnimation(const QString &part, const QByteArray &data, const QString &fileName);
