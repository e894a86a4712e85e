#include "ui/preview/picturezoom.h"

#include <QImage>
#include <QVector>

#include <cmath>

namespace {

constexpr double zoomStep = 0.1;
constexpr float smallestScale = 0.2F;
constexpr float largestScale = 4.0F;

/// What the window itself takes of the desktop's height, in px.
constexpr int frameHeight = 127;

/// 256 MiB at 4 bytes a pixel.
constexpr qint64 mostPixels = 64LL * 1024 * 1024;

/// A side of a picture in whole pixels, never longer than the longest.
int boundedSide(double side)
{
    return static_cast<int>(qMin(side, static_cast<double>(longestSide)));
}

/// Where a part of the length \a part begins in a side of the length \a full whose middle lies
/// \a pan beside that of the part.
int partStart(int full, int part, int pan)
{
    return qBound(0, full / 2 - part / 2 - pan, full - part);
}

/// The pixel of a side of the length \a length that each pixel from \a first on shows once the side
/// is scaled to \a full.
QVector<int> sourcePixels(int first, int count, int length, int full)
{
    QVector<int> pixels(count);
    for (int i = 0; i < count; ++i) {
        pixels[i] = static_cast<int>((static_cast<qint64>(first) + i) * length / full);
    }
    return pixels;
}

QImage withWholePixels(const QPixmap &pixmap)
{
    const QImage image = pixmap.toImage();
    constexpr int bitsOfAPixel = 32;
    return image.depth() == bitsOfAPixel
             ? image
             : image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

float scaleAfterZoomOut(float scale)
{
    return qMax(smallestScale, static_cast<float>(scale - zoomStep * scale));
}

float scaleAfterZoomIn(float scale)
{
    return qMin(largestScale, static_cast<float>(scale + zoomStep * scale));
}

QSize zoomedSize(const QSize &picture, float scale)
{
    return {boundedSide(static_cast<double>(static_cast<float>(picture.width()) * scale)),
            boundedSide(static_cast<double>(static_cast<float>(picture.height()) * scale))};
}

PictureFit fitToArea(const QSize &picture, const QSize &area)
{
    const auto stretched = [](int side, float ratio) {
        return boundedSide(std::round(static_cast<double>(static_cast<float>(side) * ratio)));
    };
    const auto width = static_cast<float>(picture.width());
    const auto height = static_cast<float>(picture.height());
    if (picture.height() < picture.width()) {
        const float ratio = width / height;
        return {ratio, {area.width(), stretched(area.width(), ratio)}};
    }
    const float ratio = height / width;
    return {ratio, {stretched(area.height(), ratio), area.height()}};
}

bool exceedsDesktop(const QSize &picture, const QSize &desktop)
{
    return picture.width() > desktop.width() || picture.height() + frameHeight > desktop.height();
}

bool isPlayable(const QSize &canvas)
{
    constexpr qint64 mostCanvasPixels = 3840LL * 2160;
    return static_cast<qint64>(canvas.width()) * canvas.height() <= mostCanvasPixels;
}

QSize scaledSize(const QSize &picture, const QSize &box)
{
    // At least a pixel each way: scaling a thin picture into no width would give nothing.
    return picture.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QRect partToMake(const QSize &full, const QSize &visible, const QPoint &pan)
{
    if (static_cast<qint64>(full.width()) * full.height() <= mostPixels) {
        return {QPoint(), full};
    }
    const QSize part = full.boundedTo(visible);
    return {QPoint(partStart(full.width(), part.width(), pan.x()),
                   partStart(full.height(), part.height(), pan.y())),
            part};
}

QPixmap scaledPart(const QPixmap &original, const QSize &full, const QRect &part)
{
    if (original.isNull()) {
        return original;
    }
    if (part.size() == full) {
        return original.scaled(full, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    }
    // Pixel by pixel: the source of a part may be less than one pixel, or lie between two.
    const QImage source = withWholePixels(original);
    const QVector<int> columns
        = sourcePixels(part.left(), part.width(), source.width(), full.width());
    const QVector<int> rows
        = sourcePixels(part.top(), part.height(), source.height(), full.height());
    QImage made(part.size(), source.format());
    for (int y = 0; y < part.height(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(source.constScanLine(rows[y]));
        auto *to = reinterpret_cast<QRgb *>(made.scanLine(y));
        for (int x = 0; x < part.width(); ++x) {
            to[x] = from[columns[x]];
        }
    }
    return QPixmap::fromImage(made);
}

QPixmap smoothPart(const QPixmap &original, const QSize &full, const QRect &part)
{
    if (original.isNull() || part.size() != full) {
        return scaledPart(original, full, part);
    }
    return original.scaled(full, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QSize panRange(const QSize &picture, const QSize &area)
{
    const auto half = [](int pictureSide, int areaSide) {
        return qMax(0, pictureSide - areaSide + 1) / 2;
    };
    return {half(picture.width(), area.width()), half(picture.height(), area.height())};
}
