#include "ui/answer/picture/inlinepicture.h"

#include "app/base/logstream.h"
#include "ui/answer/picture/base64.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QtEndian>

namespace {

constexpr int pictureMaxHeight = 110;
constexpr int pictureMaxWidth = 430;

constexpr qint64 bytesPerPixel = 4;
constexpr qint64 mostKeptBytes = qint64(128) * 1024 * 1024;
constexpr qint64 maxDecodedBytes = qint64(256) * 1024 * 1024;

bool isAbsurd(const QSize &size)
{
    return pixelsOf(size) > maxDecodedBytes / bytesPerPixel;
}

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

} // namespace

QStringRef inlinePictureText(const QString &piece)
{
    const QLatin1String start("base64,");
    const int from = piece.indexOf(start);
    if (from < 0) {
        return {};
    }
    // Cut behind the data: what follows holds letters that would be decoded as well.
    const int begin = from + start.size();
    const int next = piece.indexOf(start, begin); // of another picture in the same paragraph
    const QStringRef text = piece.midRef(begin, next < 0 ? -1 : next - begin);
    return text.left(text.indexOf(QLatin1String("\" style=")));
}

bool isAnimatedPicture(const QString &piece)
{
    // There is no colon in the megabytes of data that may follow: nothing passes them faster.
    const QLatin1String before("data");
    const QLatin1String after(":image/gif");
    for (int at = piece.indexOf(QLatin1Char(':')); at >= 0;
         at = piece.indexOf(QLatin1Char(':'), at + 1)) {
        if (piece.leftRef(at).endsWith(before) && piece.midRef(at).startsWith(after)) {
            return true;
        }
    }
    return false;
}

QPixmap ConversationPicture::decoded() const
{
    return pixmap.isNull() && !data.isEmpty() ? decodePicture(data) : pixmap;
}

void keepNewestDecoded(QVector<ConversationPicture> &pictures)
{
    qint64 bytes = 0;
    for (int i = pictures.size() - 1; i >= 0; --i) {
        ConversationPicture &picture = pictures[i];
        bytes += pixelsOf(picture.pixmap.size()) * bytesPerPixel;
        if (bytes > mostKeptBytes) {
            picture.pixmap = QPixmap();
        }
    }
}

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

QPixmap decodePicture(const QByteArray &data)
{
    return QPixmap::fromImage(decodeImage(data));
}

QImage decodeImage(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size().expandedTo(gifCanvas(data));
    if (isAbsurd(size)) {
        LOG_WARNING() << "picture is too large: " << size.width() << "x" << size.height();
        return {};
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        LOG_WARNING() << "picture cannot be read: " << reader.errorString();
        return {};
    }
    return image;
}

QSize pictureLabelSize(const QSize &size)
{
    if (size.isEmpty()) {
        return {0, 0};
    }
    const int height = qMin(size.height(), pictureMaxHeight);
    const float ratio = static_cast<float>(size.width()) / static_cast<float>(size.height());
    const auto width = static_cast<int>(ratio * static_cast<float>(height));
    return {qMin(width, pictureMaxWidth), height};
}

void saveAnimation(const QString &part, const QStringRef &base64Data, const QString &fileName)
{
    if (!isAnimatedPicture(part)) {
        return;
    }
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        LOG_WARNING() << "open file fail";
    }
    file.write(bytesOfBase64(base64Data)); // to no avail then, as Qt says in the log
}
