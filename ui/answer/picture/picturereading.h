#pragma once

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QSize>

#include <atomic>

/// A picture as a row of an answer shows it.
struct RowPicture
{
    QSize size;   ///< of the whole picture, px; invalid when there is none
    QImage shown; ///< scaled to the row's pixels on its screen, in the format of pixmaps
};

/// Reads \a data in any format that Qt knows. Null, with a warning in the log, when they
/// are no picture, or one that would take more than 256 MiB: that is known before it is decoded.
[[nodiscard]] QPixmap decodePicture(const QByteArray &data);

/// The same on any thread. Once \a isCancelled, where it is given, turns true, the rest is not
/// read, what is returned means nothing, and nothing is logged.
[[nodiscard]] QImage decodeImage(const QByteArray &data,
                                 const std::atomic<bool> *isCancelled = nullptr);

/// Decodes \a data, and scales it for its row on a screen of \a ratio, on any thread; likewise.
[[nodiscard]] RowPicture decodeForRow(const QByteArray &data, bool isAnimated, qreal ratio,
                                      const std::atomic<bool> *isCancelled = nullptr);

/// \a picture as it is shown in \a size device-independent px on a screen of \a ratio: in the
/// pixels of that screen.
[[nodiscard]] QImage scaledForScreen(const QImage &picture, const QSize &size, qreal ratio);

/// \a image in the format of pixmaps, in place where it can be.
[[nodiscard]] QImage withPixmapFormat(QImage image);

/// The size in px of the picture \a data, of the whole canvas of an animation, as its header says;
/// invalid where it does not.
[[nodiscard]] QSize pictureSize(const QByteArray &data);

/// Whether a picture of \a size is one that decodePicture() reads.
[[nodiscard]] bool isDecodable(const QSize &size);

/// What it costs to decode the picture \a data of \a size: its pixels, as often as they are gone
/// through.
[[nodiscard]] qint64 decodingCost(const QByteArray &data, const QSize &size);

/// The number of pixels of a picture of \a size.
[[nodiscard]] inline qint64 pixelsOf(const QSize &size)
{
    return size.isValid() ? qint64(size.width()) * size.height() : 0;
}
