#include "ui/answer/picture/inlinepicture.h"

#include "app/base/logstream.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtMath>

namespace {

constexpr int pictureMaxHeight = 110;
constexpr int pictureMaxWidth = 430;

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

QSize shownPictureSize(const QSize &size, bool isAnimated)
{
    const QSize label = pictureLabelSize(size);
    return (isAnimated ? label : size.scaled(label, Qt::KeepAspectRatio)).expandedTo({1, 1});
}

QSize sizeOnScreen(const QSize &size, qreal ratio)
{
    constexpr qreal inexactness = 1e-6; // 100 * 1.15 is a little less than 115
    const auto whole = [ratio](int side) {
        return qMax(1, qFloor(side * ratio + inexactness));
    };
    return {whole(size.width()), whole(size.height())};
}

void saveAnimation(const QString &part, const QByteArray &data, const QString &fileName)
{
    if (!isAnimatedPicture(part)) {
        return;
    }
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        LOG_WARNING() << "open file fail";
    }
    file.write(data); // to no avail then, as Qt says in the log
}
