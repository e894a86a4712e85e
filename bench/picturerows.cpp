#include "bench/rows.h"
#include "bench/timing.h"
#include "ui/answer/qaregion.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QPainter>
#include <QPixmap>

namespace {

constexpr int pictures = 50;
constexpr int rounds = 5;
constexpr QSize pictureSize(1920, 1080);
constexpr QSize shownSize(195, 110);

/// A picture with much in it, as a screenshot has.
QByteArray encodedPicture(int number)
{
    QImage image(pictureSize, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(number * 7 % 360, 60, 250));
    QPainter painter(&image);
    for (int line = 0; line < 60; ++line) {
        painter.setPen(QColor::fromHsv(line * 6, 200, 160));
        painter.drawText(20, 18 * (line + 1),
                         QStringLiteral("第%1行，图%2：请打开“设置”，选择“账号与安全”。")
                             .arg(line)
                             .arg(number)
                             .repeated(3));
    }
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    return bytes;
}

QString replyWith(const QVector<QByteArray> &encoded)
{
    QString reply;
    for (const QByteArray &bytes : encoded) {
        reply += QLatin1String("<p><img src=\"data:image/jpeg;base64,")
               + QLatin1String(bytes.toBase64()) + QLatin1String("\" style=\"\"/></p>");
    }
    return reply;
}

/// Decodes and scales the pictures, and keeps them as anyone does who shows them.
double bareCost(const QVector<QByteArray> &encoded)
{
    QVector<QPixmap> kept;
    return microseconds([&encoded, &kept] {
        for (const QByteArray &bytes : encoded) {
            QPixmap picture;
            picture.loadFromData(bytes);
            const QPixmap scaled
                = picture.scaled(shownSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            kept << picture << scaled;
        }
    });
}

/// Times one answer alone: an earlier one has made and shown the region.
double answerCost(const QString &reply)
{
    QARegion region;
    region.show();
    region.showAnswer(QStringLiteral("前"), QStringLiteral("<p>一行</p>"));
    QCoreApplication::processEvents();
    return microseconds([&region, &reply] {
        region.showAnswer(QStringLiteral("图"), reply);
        QCoreApplication::processEvents();
    });
}

} // namespace

Rows measurePictures()
{
    QVector<QByteArray> encoded;
    for (int number = 0; number < pictures; ++number) {
        encoded.append(encodedPicture(number));
    }
    const QString reply = replyWith(encoded);
    const TwoCosts costs = compare(
        rounds, [&reply] { return answerCost(reply); }, [&encoded] { return bareCost(encoded); });
    return {{QStringLiteral("pictures"),
             QStringLiteral("an answer with 50 pictures of 1920 x 1080"),
             QStringLiteral("reading and scaling the same"), QStringLiteral("ms"),
             costs.first / 1000, costs.second / 1000, 1.2}};
}
