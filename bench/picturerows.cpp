#include "bench/rows.h"
#include "bench/timing.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QPixmap>

#include <malloc.h>

#include <algorithm>

namespace {

constexpr int pictures = 50;
constexpr int rounds = 5;
constexpr QSize pictureSize(1920, 1080);
constexpr QSize shownSize(195, 110);

/// A picture with much in it, as a screenshot has.
QByteArray encodedPicture(int number, const char *format = "JPEG")
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
    image.save(&buffer, format);
    return bytes;
}

QString replyWith(const QVector<QByteArray> &encoded)
{
    QString reply;
    for (const QByteArray &bytes : encoded) {
        reply += QLatin1String("<p><img src=\"data:image/png;base64,")
               + QLatin1String(bytes.toBase64()) + QLatin1String("\" style=\"\"/></p>");
    }
    return reply;
}

/// Decodes and scales the pictures, one after the other, and keeps what a row shows of each.
double bareCost(const QVector<QByteArray> &encoded)
{
    QVector<QPixmap> kept;
    return microseconds([&encoded, &kept] {
        for (const QByteArray &bytes : encoded) {
            QPixmap picture;
            picture.loadFromData(bytes);
            const QPixmap scaled
                = picture.scaled(shownSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            kept << scaled;
        }
    });
}

/// Lets the window work until each of the last \a count rows shows its picture.
void waitForPictures(const QARegion &region, int count)
{
    const auto rows = region.findChildren<PictureRow *>();
    const auto isShown = [](const PictureRow *row) {
        return !row->label()->pixmap(Qt::ReturnByValue).isNull();
    };
    if (rows.size() < count) {
        qFatal("rows are missing: %d of %d", rows.size(), count);
    }
    while (!std::all_of(rows.end() - count, rows.end(), isShown)) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// Times one answer alone, until its last picture is there: an earlier one has made and shown the
/// region.
double answerCost(const QString &reply)
{
    QARegion region;
    region.show();
    region.showAnswer(QStringLiteral("前"), QStringLiteral("<p>一行</p>"));
    QCoreApplication::processEvents();
    return microseconds([&region, &reply] {
        region.showAnswer(QStringLiteral("图"), reply);
        waitForPictures(region, pictures);
    });
}

/// The peak of the memory of this process, or its memory now, in bytes.
double memory(const char *field)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(field)) {
            return line.mid(static_cast<int>(qstrlen(field)))
                       .trimmed()
                       .split(' ')
                       .first()
                       .toDouble()
                 * 1024;
        }
    }
    return 0;
}

/// What a conversation of answers with one picture each, all of them decoded once, takes at most,
/// in bytes.
double memoryOfAnswers()
{
    constexpr int answers = 1000;
    const QString reply = replyWith({encodedPicture(0, "PNG")});
    malloc_trim(0);
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || reset.write("5") < 0) {
        qFatal("the peak of the memory cannot be reset");
    }
    QARegion region;
    region.show();
    QCoreApplication::processEvents();
    const double before = memory("VmRSS:");
    for (int number = 0; number < answers; ++number) {
        region.addQuestionBubble(QStringLiteral("第%1个问题").arg(number));
        region.showAnswer(QStringLiteral("图"), reply);
        waitForPictures(region, 1);
    }
    return memory("VmHWM:") - before;
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
             QStringLiteral("reading and scaling the same, until the last is there"),
             QStringLiteral("ms"), costs.first / 1000, costs.second / 1000, 1.2},
            {QStringLiteral("picture-memory"),
             QStringLiteral("1,000 answers with one full-HD picture: memory above start"),
             QString(), QStringLiteral("MiB"), memoryOfAnswers() / 1024 / 1024, 0, 300}};
}
