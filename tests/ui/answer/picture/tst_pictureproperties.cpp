#include "tests/support/generator.h"
#include "tests/ui/support/plainscale.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturereading.h"
#include "ui/answer/picture/picturerow.h"

#include <QBuffer>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <limits>

/// The sizes in which pictures are shown, over generated ones.
class TestPictureProperties : public QObject
{
    Q_OBJECT

private slots:
    void labelSize_isInProportionWithinItsLimits();
    void row_isAsHighAsThePictureInIt();
    void shown_areTheNewestWithinTheLimit();

private:
    [[nodiscard]] static QSize plainLabelSize(const QSize &picture);
};

namespace {

/// A picture of \a size px as an answer holds it.
QByteArray encoded(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "BMP");
    return bytes;
}

} // namespace

QSize TestPictureProperties::plainLabelSize(const QSize &picture)
{
    const int height = picture.height() > 110 ? 110 : picture.height();
    // In double precision each step is exact enough to be rounded to single precision once.
    const auto ratio = static_cast<float>(static_cast<double>(picture.width()) / picture.height());
    const auto product = static_cast<float>(static_cast<double>(ratio) * height);
    return {product >= 430 ? 430 : static_cast<int>(product), height};
}

void TestPictureProperties::labelSize_isInProportionWithinItsLimits()
{
    Generator generator;
    for (int i = 0; i < 50000; ++i) {
        const QSize picture(generator.anyOrder(1, 65535), generator.anyOrder(1, 65535));
        const QSize label = pictureLabelSize(picture);
        QCOMPARE(label, plainLabelSize(picture));
        const qint64 exact = qint64(picture.width()) * label.height() / picture.height();
        QVERIFY(label.width() == 430 || qAbs(label.width() - exact) <= 1);
    }
}

void TestPictureProperties::row_isAsHighAsThePictureInIt()
{
    Generator generator;
    for (int i = 0; i < 400; ++i) {
        const QSize size(generator.anyOrder(1, 1500), generator.anyOrder(1, 400));
        PictureRow row(nullptr);
        row.setPlace(size, false);
        row.showStill(QPixmap::fromImage(decodeForRow(encoded(size), false, 1).shown));
        row.fitToPicture(row.label()->width());
        const QSize label = plainLabelSize(size);
        if (label.isEmpty()) {
            continue; // thinner than a pixel: nothing is seen of it
        }
        const int height = plainlyScaled(size, label).height();
        QCOMPARE(row.size(), QSize(446, height + 4));
        QCOMPARE(row.label()->geometry(), QRect(0, 4, label.width(), height));
        QCOMPARE(row.button()->geometry(), row.label()->geometry());
    }
}

void TestPictureProperties::shown_areTheNewestWithinTheLimit()
{
    Generator generator;
    for (int i = 0; i < 5; ++i) {
        ConversationPictures pictures;
        qint64 costLeft = std::numeric_limits<qint64>::max();
        for (int left = generator.between(100, 500); left > 0; --left) {
            const QSize size(generator.between(1, 430), generator.between(1, 110));
            (void)pictures.add(encoded(size), QString(), false, 1, costLeft);
        }
        qint64 bytes = 0;
        for (int k = pictures.count() - 1; k >= 0; --k) {
            // A label may be a pixel narrower than its picture.
            const QSize label = plainLabelSize(pictures.at(k).size);
            const QSize size
                = label.isEmpty() ? QSize() : plainlyScaled(pictures.at(k).size, label);
            bytes += 4LL * size.width() * size.height();
            QCOMPARE(pictures.at(k).shown.isNull(), bytes > ConversationPictures::mostShownBytes);
        }
    }
}

QTEST_MAIN(TestPictureProperties)
#include "tst_pictureproperties.moc"
