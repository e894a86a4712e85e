#include "ui/preview/picturezoom.h"

#include <QRect>
#include <QtMath>

namespace {

constexpr double zoomStep = 0.1;
constexpr float smallestScale = 0.2F;
constexpr float largestScale = 4.0F;

/// What the window itself takes of the desktop's height, in px.
constexpr int frameHeight = 127;

/// 256 MiB at 4 bytes a pixel.
constexpr qint64 mostPixels = 64LL * 1024 * 1024;

/// The part of \a original that is seen as the middle part of the size \a visible once it is scaled
/// to \a full, always at least one pixel.
QRect sourceOfMiddle(const QSize &original, const QSize &full, const QSize &visible)
{
    const auto share = [](int side, int whole, int part) {
        return qBound(1, qRound(static_cast<double>(side) * part / whole), side);
    };
    QRect source(0, 0, share(original.width(), full.width(), visible.width()),
                 share(original.height(), full.height(), visible.height()));
    source.moveTo((original.width() - source.width()) / 2,
                  (original.height() - source.height()) / 2);
    return source;
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
    return {static_cast<int>(static_cast<float>(picture.width()) * scale),
            static_cast<int>(static_cast<float>(picture.height()) * scale)};
}

PictureFit fitToArea(const QSize &picture, const QSize &area)
{
    const auto width = static_cast<float>(picture.width());
    const auto height = static_cast<float>(picture.height());
    if (picture.height() < picture.width()) {
        const float ratio = width / height;
        return {ratio, {area.width(), qRound(static_cast<float>(area.width()) * ratio)}};
    }
    const float ratio = height / width;
    return {ratio, {qRound(static_cast<float>(area.height()) * ratio), area.height()}};
}

bool exceedsDesktop(const QSize &picture, const QSize &desktop)
{
    return picture.width() > desktop.width() || picture.height() + frameHeight > desktop.height();
}

QPixmap scaledPicture(const QPixmap &original, const QSize &box, const QSize &visible)
{
    if (original.isNull()) {
        return original;
    }
    // At least a pixel each way: scaling a thin picture into no width would give nothing.
    const QSize full = original.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    if (static_cast<qint64>(full.width()) * full.height() <= mostPixels) {
        return original.scaled(full, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    }
    const QSize part = full.boundedTo(visible);
    return original.copy(sourceOfMiddle(original.size(), full, part))
        .scaled(part, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}
