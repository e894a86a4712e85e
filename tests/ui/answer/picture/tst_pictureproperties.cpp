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

private:
    [[nodiscard]] static QSize plainLabelSize(const QSize &picture);
};

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
        const bool isAnimated = generator.oneIn(2);
        row.setPlace(size, isAnimated);
        const QSize label = plainLabelSize(size);
        if (label.isEmpty()) {
            continue; // thinner than a pixel: nothing is seen of it
        }
        const QSize shown = isAnimated ? label : plainlyScaled(size, label);
        QCOMPARE(shownPictureSize(size, isAnimated), shown);
        const int height = shown.height();
        QCOMPARE(row.size(), QSize(446, height + 4));
        QCOMPARE(row.label()->geometry(), QRect(0, 4, label.width(), height));
        QCOMPARE(row.button()->geometry(), row.label()->geometry());
    }
}

QTEST_MAIN(TestPictureProperties)
#include "tst_pictureproperties.moc"
