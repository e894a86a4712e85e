#include "tests/support/generator.h"
#include "tests/ui/support/plainscale.h"
#include "ui/preview/picturezoom.h"
#include "ui/preview/resizeborder.h"

#include <QTest>

#include <cmath>

namespace {

constexpr int longestPictureSide = 65535; ///< px, of a GIF
constexpr qint64 mostPixels = 64LL * 1024 * 1024;

QSize pictureFrom(Generator &generator)
{
    return {generator.anyOrder(1, longestPictureSide), generator.anyOrder(1, longestPictureSide)};
}

/// Two numbers of single precision multiplied: double precision holds the product exactly.
int plainProduct(int side, float factor)
{
    const auto product
        = static_cast<float>(static_cast<double>(side) * static_cast<double>(factor));
    return product >= 1073741824.0F ? 1073741824 : static_cast<int>(product);
}

} // namespace

/// The arithmetic of the preview window, over generated pictures, windows and steps.
class TestZoomProperties : public QObject
{
    Q_OBJECT

private slots:
    void steps_areTenPercentWithinTheirBounds();
    void zoomedSize_isTheProductCutToPixels();
    void fit_stretchesTheLongerSide();
    void scaled_keepsTheRatioToAPixel();
    void desktop_isExceededByPictureAndFrame();
    void part_liesInsideAndIsWhatIsSeen();
    void panRange_reachesBothEdges();
    void draggedWindow_isNeverTooSmall();
};

void TestZoomProperties::steps_areTenPercentWithinTheirBounds()
{
    Generator generator;
    for (int i = 0; i < 1000; ++i) {
        float scale = 1;
        float plain = 1;
        for (int step = generator.between(1, 40); step > 0; --step) {
            const bool in = generator.oneIn(2);
            const double wide = plain;
            plain = static_cast<float>(in ? wide + 0.1 * wide : wide - 0.1 * wide);
            if (!in && plain < 0.2F) {
                plain = 0.2F;
            } else if (in && plain > 4.0F) {
                plain = 4.0F;
            }
            scale = in ? scaleAfterZoomIn(scale) : scaleAfterZoomOut(scale);
            QVERIFY(std::equal_to<>()(scale, plain));
        }
    }
}

void TestZoomProperties::zoomedSize_isTheProductCutToPixels()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize picture = pictureFrom(generator);
        const auto scale = static_cast<float>(generator.anyOrder(200, 30'000'000)) / 1000;
        QCOMPARE(zoomedSize(picture, scale), QSize(plainProduct(picture.width(), scale),
                                                   plainProduct(picture.height(), scale)));
    }
}

void TestZoomProperties::fit_stretchesTheLongerSide()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize picture = pictureFrom(generator);
        const QSize area(generator.between(100, 4000), generator.between(100, 4000));
        const PictureFit fit = fitToArea(picture, area);
        const bool isWide = picture.width() > picture.height();
        const double longer = qMax(picture.width(), picture.height());
        const double shorter = qMin(picture.width(), picture.height());
        QVERIFY(std::equal_to<>()(fit.ratio, static_cast<float>(longer / shorter)));
        const int side = isWide ? area.width() : area.height();
        const double product
            = static_cast<double>(static_cast<float>(side * static_cast<double>(fit.ratio)));
        const int stretched = static_cast<int>(qMin(std::floor(product + 0.5), 1073741824.0));
        QCOMPARE(fit.box, isWide ? QSize(side, stretched) : QSize(stretched, side));
    }
}

void TestZoomProperties::scaled_keepsTheRatioToAPixel()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize picture = pictureFrom(generator);
        const QSize box(generator.anyOrder(1, 100'000), generator.anyOrder(1, 100'000));
        QCOMPARE(scaledSize(picture, box), plainlyScaled(picture, box));
    }
}

void TestZoomProperties::desktop_isExceededByPictureAndFrame()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize desktop(generator.between(600, 4000), generator.between(400, 3000));
        const QSize picture(desktop.width() + generator.between(-2, 2),
                            desktop.height() - 127 + generator.between(-2, 2));
        QCOMPARE(exceedsDesktop(picture, desktop),
                 picture.width() > desktop.width() || picture.height() + 127 > desktop.height());
    }
}

void TestZoomProperties::part_liesInsideAndIsWhatIsSeen()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize full(generator.anyOrder(1, 1 << 30), generator.anyOrder(1, 1 << 30));
        const QSize visible(generator.between(1, 4000), generator.between(1, 3000));
        const QPoint pan(generator.between(-100'000, 100'000), generator.between(-9999, 9999));
        const QRect part = partToMake(full, visible, pan);
        QVERIFY(QRect(QPoint(), full).contains(part));
        if (static_cast<qint64>(full.width()) * full.height() <= mostPixels) {
            QCOMPARE(part, QRect(QPoint(), full));
            continue;
        }
        QCOMPARE(part.size(), full.boundedTo(visible));
        // In the middle, moved by the pan as far as there is something.
        const int middle = full.width() / 2 - part.width() / 2 - pan.x();
        const int most = full.width() - part.width();
        QCOMPARE(part.left(), middle < 0 ? 0 : middle > most ? most : middle);
    }
}

void TestZoomProperties::panRange_reachesBothEdges()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QSize picture(generator.anyOrder(1, 100'000), generator.anyOrder(1, 100'000));
        const QSize area(generator.between(1, 4000), generator.between(1, 4000));
        const int range = panRange(picture, area).width();
        if (picture.width() <= area.width()) {
            QCOMPARE(range, 0);
            continue;
        }
        // Moved to the end both ways every column was seen, and no more than a pixel too far.
        const int hidden = picture.width() - area.width();
        QVERIFY(2 * range >= hidden && 2 * range <= hidden + 1);
    }
}

void TestZoomProperties::draggedWindow_isNeverTooSmall()
{
    Generator generator;
    for (int i = 0; i < 20000; ++i) {
        const QRect proposed(generator.between(-2000, 2000), generator.between(-2000, 2000),
                             generator.between(-50, 1200), generator.between(-50, 900));
        const bool farSide = generator.oneIn(2);
        const QRect wide = withSmallestWidth(proposed, farSide);
        QCOMPARE(wide.width(), qMax(proposed.width(), 600));
        QCOMPARE(farSide ? wide.left() : wide.right(),
                 farSide ? proposed.left() : proposed.right());
        QCOMPARE(wide.top(), proposed.top());
        const QRect high = withSmallestHeight(proposed, farSide);
        QCOMPARE(high.height(), qMax(proposed.height(), 400));
        QCOMPARE(farSide ? high.top() : high.bottom(),
                 farSide ? proposed.top() : proposed.bottom());
        QCOMPARE(high.left(), proposed.left());
    }
}

QTEST_GUILESS_MAIN(TestZoomProperties)
#include "tst_zoomproperties.moc"
