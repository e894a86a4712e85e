#include "ui/answer/picture/picturereading.h"

#include "app/base/logstream.h"
#include "ui/answer/picture/inlinepicture.h"

#include <QBuffer>
#include <QImageReader>
#include <QtEndian>

namespace {

constexpr qint64 bytesPerPixel = 4;
constexpr qint64 maxDecodedBytes = qint64(256) * 1024 * 1024;

/// Bytes of a picture that end early once nobody wants them any more.
class PictureBytes : public QBuffer
{
public:
    PictureBytes(const QByteArray &data, const std::atomic<bool> *isCancelled)
        : m_isCancelled(isCancelled)
    {
        setData(data);
        open(QIODevice::ReadOnly);
    }

    [[nodiscard]] bool isCancelled() const { return m_isCancelled != nullptr && *m_isCancelled; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        return isCancelled() ? -1 : QBuffer::readData(data, most);
    }

private:
    const std::atomic<bool> *m_isCancelled;
};

/// The size in px of the canvas of the GIF \a data (GIF89a, logical screen descriptor), which each
/// frame is painted on and which QImageReader does not tell; invalid when \a data are no GIF.
QSize gifCanvas(const QByteArray &data)
{
    constexpr int descriptor = 6;
    if (!data.startsWith("GIF8") || data.size() < descriptor + 2 * int(sizeof(quint16))) {
        return {};
    }
    const char *sides = data.constData() + descriptor;
    return {qFromLittleEndian<quint16>(sides), qFromLittleEndian<quint16>(sides + sizeof(quint16))};
}

bool isAbsurd(const QSize &size, qint64 pixelBytes = bytesPerPixel)
{
    return pixelsOf(size) > maxDecodedBytes / pixelBytes;
}

/// What a pixel of the next picture of \a reader takes: more than usual in pictures of 16 bits a
/// colour.
qint64 bytesOfAPixel(const QImageReader &reader)
{
    constexpr int bitsPerByte = 8;
    // A number: of a damaged JPEG Qt names a format that nobody has set.
    const int format = static_cast<int>(reader.imageFormat());
    if (format <= QImage::Format_Invalid || format >= QImage::NImageFormats) {
        return bytesPerPixel;
    }
    const int bits = QImage::toPixelFormat(static_cast<QImage::Format>(format)).bitsPerPixel();
    return qMax<qint64>(bytesPerPixel, bits / bitsPerByte);
}

} // namespace

bool isDecodable(const QSize &size)
{
    return !size.isEmpty() && !isAbsurd(size);
}

QSize pictureSize(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    return reader.size().expandedTo(gifCanvas(data));
}

qint64 decodingCost(const QByteArray &data, const QSize &size)
{
    const QByteArray jpegStart = QByteArray::fromHex("ffd8");
    const QByteArray scanStart = QByteArray::fromHex("ffda");
    const int scans = data.startsWith(jpegStart) ? data.count(scanStart) : 1;
    return pixelsOf(size) * qMax(1, scans);
}

QPixmap decodePicture(const QByteArray &data)
{
    return QPixmap::fromImage(decodeImage(data));
}

QImage decodeImage(const QByteArray &data, const std::atomic<bool> *isCancelled)
{
    PictureBytes bytes(data, isCancelled);
    QImageReader reader(&bytes);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size().expandedTo(gifCanvas(data));
    if (isAbsurd(size) || isAbsurd(size, bytesOfAPixel(reader))) {
        LOG_WARNING() << "picture is too large: " << size.width() << "x" << size.height();
        return {};
    }
    QImage image = reader.read();
    if (image.isNull() && !bytes.isCancelled()) {
        LOG_WARNING() << "picture cannot be read: " << reader.errorString();
    }
    return image;
}

QImage withPixmapFormat(QImage image)
{
    const QImage::Format format
        = image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return std::move(image).convertToFormat(format);
}

RowPicture decodeForRow(const QByteArray &data, bool isAnimated, qreal ratio,
                        const std::atomic<bool> *isCancelled)
{
    QImage whole = decodeImage(data, isCancelled);
    if (whole.isNull() || (isCancelled != nullptr && *isCancelled)) {
        return {};
    }
    const QSize size = whole.size();
    const QImage shown = withPixmapFormat(std::move(whole));
    return {size, scaledForScreen(shown, shownPictureSize(size, isAnimated), ratio)};
}

QImage scaledForScreen(const QImage &picture, const QSize &size, qreal ratio)
{
    QImage scaled = picture.scaled(sizeOnScreen(size, ratio), Qt::IgnoreAspectRatio,
                                   Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}
