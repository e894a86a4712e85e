#pragma once

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <QVector>

class PictureRow;

/// A picture of the conversation.
struct ConversationPicture
{
    QPixmap pixmap;  ///< the first frame of an animation; null unless it is kept decoded
    QByteArray data; ///< as they came; empty when they are no picture
    QString title;   ///< of the answer that holds it
    bool animated = false;
    PictureRow *row = nullptr; ///< that shows it; an answer keeps it as long as it lives itself

    /// The picture, decoded again unless it is kept; null when the data are none.
    [[nodiscard]] QPixmap decoded() const;
};

/// Keeps the newest of \a pictures decoded, 128 MiB of them in all.
void keepNewestDecoded(QVector<ConversationPicture> &pictures);

/// The Base64 text (RFC 4648) in the source attribute of the image tag \a piece, up to the closing
/// quote that a style attribute follows, or else up to the end; empty when there is none. It refers
/// to \a piece: the text may be large.
[[nodiscard]] QStringRef inlinePictureText(const QString &piece);

/// Whether the image tag \a piece holds an animation.
[[nodiscard]] bool isAnimatedPicture(const QString &piece);

/// Reads \a data in any format that Qt knows. Null, with a warning in the log, when they
/// are no picture, or one that would take more than 256 MiB: that is known before it is decoded.
[[nodiscard]] QPixmap decodePicture(const QByteArray &data);

/// The same on any thread.
[[nodiscard]] QImage decodeImage(const QByteArray &data);

/// The size in px of the picture \a data, of the whole canvas of an animation, as its header says;
/// invalid where it does not.
[[nodiscard]] QSize pictureSize(const QByteArray &data);

/// Whether a picture of \a size is one that decodePicture() reads.
[[nodiscard]] bool isDecodable(const QSize &size);

/// The number of pixels of a picture of \a size.
[[nodiscard]] inline qint64 pixelsOf(const QSize &size)
{
    return size.isValid() ? qint64(size.width()) * size.height() : 0;
}

/// The size in px in which a picture of \a size is shown: at most 110 high, the width in
/// proportion, at most 430. Nothing is as high as nothing.
[[nodiscard]] QSize pictureLabelSize(const QSize &size);

/// Writes the picture \a base64Data to \a fileName when the image tag \a part holds an animation,
/// making its folder first. A file that cannot be written gives a warning in the log; the animation
/// then has no frames.
void saveAnimation(const QString &part, const QStringRef &base64Data, const QString &fileName);
