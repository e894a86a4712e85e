#include "tests/support/generator.h"
#include "tests/ui/support/plainscale.h"
#include "ui/answer/picture/inlinepicture.h"
#include "ui/answer/picture/picturerow.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

/// The sizes in which pictures are shown, over generated ones.
class TestPictureProperties : public QObject
{
    Q_OBJECT

private slots:
    void labelSize_isInProportionWithinItsLimits();
    void row_isAsHighAsThePictureInIt();
    void decoded_areTheNewestWithinTheLimit();

private:
    [[nodiscard]] static QSize plainLabelSize(const QSize &picture);
};

namespace {

const QString stillTag = QStringLiteral("<img src=\"data:image/png;base64,\"/>");

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
        QPixmap picture(size);
        picture.fill(Qt::blue);
        PictureRow row(size, nullptr);
        row.showPicture(stillTag, picture, QString());
        row.fitToPicture(stillTag, row.label()->width());
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

void TestPictureProperties::decoded_areTheNewestWithinTheLimit()
{
    constexpr qint64 most = 128LL * 1024 * 1024;
    Generator generator;
    for (int i = 0; i < 20; ++i) {
        QVector<ConversationPicture> pictures;
        for (int left = generator.between(1, 9); left > 0; --left) {
            const QSize size(generator.between(1, 4000), generator.between(1, 3000));
            ConversationPicture picture;
            picture.pixmap = QPixmap(size);
            pictures.append(picture);
        }
        const QVector<ConversationPicture> all = pictures;
        keepNewestDecoded(pictures);
        qint64 bytes = 0;
        for (int k = all.size() - 1; k >= 0; --k) {
            bytes += 4LL * all.at(k).pixmap.width() * all.at(k).pixmap.height();
            QCOMPARE(pictures.at(k).pixmap.isNull(), bytes > most);
        }
    }
}

QTEST_MAIN(TestPictureProperties)
#include "tst_pictureproperties.moc"
