#include "ui/preview/picturezoom.h"

#include <QImage>
#include <QTest>

namespace {

const float smallest = 0.2F;
const float largest = 4.0F;

} // namespace

/// The arithmetic of the preview window: zoom steps, fitting, moving.
class TestImageDisplayGeometry : public QObject
{
    Q_OBJECT

private slots:
    void zoomSteps_twentyOut_twentyIn_data();
    void zoomSteps_twentyOut_twentyIn();
    void zoomOut_stopsAtAFifth();
    void zoomIn_stopsAtFour();
    void zoomInAndOut_doNotCancel();
    void fitBox_data();
    void fitBox();
    void desktop_isExceeded_data();
    void desktop_isExceeded();
    void scaled_keepsTheAspectRatio_andIsNeverEmpty_data();
    void scaled_keepsTheAspectRatio_andIsNeverEmpty();
    void scaled_isNotSmoothed();
    void scaled_nullStaysNull();
    void scaled_beyondMemory_isThePartThatIsSeen();
    void part_staysInsideThePicture_data();
    void part_staysInsideThePicture();
    void zoomAfterFittingAThinPicture_isBounded_data();
    void zoomAfterFittingAThinPicture_isBounded();
    void zoomBelowTheBound_isTheRule();
    void panRange_isWhatLiesOutside();
};

void TestImageDisplayGeometry::zoomSteps_twentyOut_twentyIn_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<bool>("in");
    QTest::addColumn<QVector<QSize>>("boxes");
    // Calculated apart from this program: single-precision factors, sides cut to whole pixels. The
    // last five steps of each row change nothing any more.
    QTest::newRow("1000 x 700 out")
        << QSize(1000, 700) << false
        << QVector<QSize>{{900, 630}, {810, 567}, {729, 510}, {656, 459}, {590, 413},
                          {531, 372}, {478, 334}, {430, 301}, {387, 271}, {348, 244},
                          {313, 219}, {282, 197}, {254, 177}, {228, 160}, {205, 144},
                          {200, 140}, {200, 140}, {200, 140}, {200, 140}, {200, 140}};
    QTest::newRow("1000 x 700 in")
        << QSize(1000, 700) << true
        << QVector<QSize>{{1100, 770},  {1210, 847},  {1331, 931},  {1464, 1024}, {1610, 1127},
                          {1771, 1240}, {1948, 1364}, {2143, 1500}, {2357, 1650}, {2593, 1815},
                          {2853, 1997}, {3138, 2196}, {3452, 2416}, {3797, 2658}, {4000, 2800},
                          {4000, 2800}, {4000, 2800}, {4000, 2800}, {4000, 2800}, {4000, 2800}};
    QTest::newRow("333 x 77 out") << QSize(
        333, 77) << false << QVector<QSize>{{299, 69}, {269, 62}, {242, 56}, {218, 50}, {196, 45},
                                            {176, 40}, {159, 36}, {143, 33}, {129, 29}, {116, 26},
                                            {104, 24}, {94, 21},  {84, 19},  {76, 17},  {68, 15},
                                            {66, 15},  {66, 15},  {66, 15},  {66, 15},  {66, 15}};
    QTest::newRow("333 x 77 in") << QSize(
        333, 77) << true << QVector<QSize>{{366, 84},   {402, 93},   {443, 102},  {487, 112},
                                           {536, 124},  {589, 136},  {648, 150},  {713, 165},
                                           {785, 181},  {863, 199},  {950, 219},  {1045, 241},
                                           {1149, 265}, {1264, 292}, {1332, 308}, {1332, 308},
                                           {1332, 308}, {1332, 308}, {1332, 308}, {1332, 308}};
    QTest::newRow("1 x 1 out") << QSize(1, 1) << false << QVector<QSize>(20, QSize(0, 0));
    QTest::newRow("null") << QSize(0, 0) << true << QVector<QSize>(20, QSize(0, 0));
}

void TestImageDisplayGeometry::zoomSteps_twentyOut_twentyIn()
{
    QFETCH(QSize, picture);
    QFETCH(bool, in);
    QFETCH(QVector<QSize>, boxes);
    float scale = 1.0F;
    QVector<QSize> found;
    for (int step = 0; step < boxes.size(); ++step) {
        scale = in ? scaleAfterZoomIn(scale) : scaleAfterZoomOut(scale);
        found.append(zoomedSize(picture, scale));
    }
    QCOMPARE(found, boxes);
}

void TestImageDisplayGeometry::zoomOut_stopsAtAFifth()
{
    float scale = 1.0F;
    for (int step = 0; step < 15; ++step) {
        scale = scaleAfterZoomOut(scale);
        QVERIFY(scale > smallest);
    }
    QCOMPARE(scaleAfterZoomOut(scale), smallest);
    QCOMPARE(scaleAfterZoomOut(smallest), smallest);
}

void TestImageDisplayGeometry::zoomIn_stopsAtFour()
{
    float scale = 1.0F;
    for (int step = 0; step < 14; ++step) {
        scale = scaleAfterZoomIn(scale);
        QVERIFY(scale < largest);
    }
    QCOMPARE(scaleAfterZoomIn(scale), largest);
    QCOMPARE(scaleAfterZoomIn(largest), largest);
    QCOMPARE(scaleAfterZoomIn(2000.0F), largest); // after a thin picture was fitted
}

void TestImageDisplayGeometry::zoomInAndOut_doNotCancel()
{
    QCOMPARE(scaleAfterZoomOut(scaleAfterZoomIn(1.0F)), 0.99F);
    QCOMPARE(zoomedSize({1000, 700}, scaleAfterZoomOut(scaleAfterZoomIn(1.0F))), QSize(990, 693));
}

void TestImageDisplayGeometry::fitBox_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<float>("ratio");
    QTest::addColumn<QSize>("box");
    QTest::newRow("wide") << QSize(800, 400) << 2.0F << QSize(916, 1832);
    QTest::newRow("high") << QSize(400, 800) << 2.0F << QSize(1036, 518);
    QTest::newRow("square") << QSize(300, 300) << 1.0F << QSize(518, 518);
    QTest::newRow("rounded down") << QSize(4, 3) << 4.0F / 3.0F << QSize(916, 1221);
    QTest::newRow("rounded up") << QSize(5, 3) << 5.0F / 3.0F << QSize(916, 1527);
    QTest::newRow("20000 x 10") << QSize(20000, 10) << 2000.0F << QSize(916, 1832000);
    QTest::newRow("1 x 5000") << QSize(1, 5000) << 5000.0F << QSize(2590000, 518);
}

void TestImageDisplayGeometry::fitBox()
{
    QFETCH(QSize, picture);
    QFETCH(float, ratio);
    QFETCH(QSize, box);
    const PictureFit fit = fitToArea(picture, {916, 518});
    QCOMPARE(fit.ratio, ratio);
    QCOMPARE(fit.box, box);
}

void TestImageDisplayGeometry::desktop_isExceeded_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<bool>("exceeded");
    QTest::newRow("as wide") << QSize(1920, 100) << false;
    QTest::newRow("wider") << QSize(1921, 100) << true;
    QTest::newRow("as high with the frame") << QSize(100, 953) << false;
    QTest::newRow("higher with the frame") << QSize(100, 954) << true;
    QTest::newRow("null") << QSize(0, 0) << false;
}

void TestImageDisplayGeometry::desktop_isExceeded()
{
    QFETCH(QSize, picture);
    QFETCH(bool, exceeded);
    QCOMPARE(exceedsDesktop(picture, {1920, 1080}), exceeded);
}

void TestImageDisplayGeometry::scaled_keepsTheAspectRatio_andIsNeverEmpty_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QSize>("result");
    QTest::newRow("same") << QSize(40, 20) << QSize(40, 20) << QSize(40, 20);
    QTest::newRow("height decides") << QSize(333, 77) << QSize(366, 84) << QSize(363, 84);
    QTest::newRow("width decides") << QSize(100, 10) << QSize(50, 50) << QSize(50, 5);
    QTest::newRow("empty box") << QSize(1, 1) << QSize(0, 0) << QSize(1, 1);
    QTest::newRow("1 x 5000") << QSize(1, 5000) << QSize(0, 4500) << QSize(1, 4500);
    QTest::newRow("20000 x 10") << QSize(20000, 10) << QSize(4000, 2) << QSize(4000, 2);
}

void TestImageDisplayGeometry::scaled_keepsTheAspectRatio_andIsNeverEmpty()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, box);
    QFETCH(QSize, result);
    QPixmap original(picture);
    original.fill(Qt::red);
    QCOMPARE(scaledSize(picture, box), result);
    QCOMPARE(scaledPart(original, result, QRect(QPoint(), result)).size(), result);
}

void TestImageDisplayGeometry::scaled_isNotSmoothed()
{
    QImage original(2, 1, QImage::Format_RGB32);
    original.setPixel(0, 0, qRgb(0, 0, 0));
    original.setPixel(1, 0, qRgb(255, 255, 255));
    const QImage scaled
        = scaledPart(QPixmap::fromImage(original), {20, 10}, {0, 0, 20, 10}).toImage();
    for (int x = 0; x < scaled.width(); ++x) {
        QCOMPARE(qRed(scaled.pixel(x, 5)), x < 10 ? 0 : 255);
    }
}

void TestImageDisplayGeometry::scaled_nullStaysNull()
{
    QVERIFY(scaledPart(QPixmap(), {100, 100}, {0, 0, 100, 100}).isNull());
}

void TestImageDisplayGeometry::scaled_beyondMemory_isThePartThatIsSeen()
{
    constexpr int side = 2400;
    constexpr int middle = side / 2;
    constexpr QSize full(4 * side, 4 * side);
    QImage original(side, side, QImage::Format_RGB32);
    original.fill(Qt::white);
    // Around the middle, 100 x 50 px of a colour of their own.
    for (int y = middle - 25; y < middle + 25; ++y) {
        for (int x = middle - 50; x < middle + 50; ++x) {
            original.setPixel(x, y, qRgb(255, 0, 0));
        }
    }
    const auto part = [&original, full](const QPoint &pan) {
        return scaledPart(QPixmap::fromImage(original), full, partToMake(full, {800, 600}, pan))
            .toImage();
    };
    const QImage middlePart = part({});
    QCOMPARE(middlePart.size(), QSize(800, 600));
    QCOMPARE(middlePart.pixel(400, 300), qRgb(255, 0, 0));
    QCOMPARE(middlePart.pixel(200, 300), qRgb(255, 0, 0));
    QCOMPARE(middlePart.pixel(199, 300), qRgb(255, 255, 255));
    QCOMPARE(middlePart.pixel(400, 399), qRgb(255, 0, 0));
    QCOMPARE(middlePart.pixel(400, 400), qRgb(255, 255, 255));
    const QImage moved = part({150, 0}); // the picture to the right
    QCOMPARE(moved.pixel(350, 300), qRgb(255, 0, 0));
    QCOMPARE(moved.pixel(349, 300), qRgb(255, 255, 255));
}

void TestImageDisplayGeometry::part_staysInsideThePicture_data()
{
    QTest::addColumn<QSize>("full");
    QTest::addColumn<QPoint>("pan");
    QTest::addColumn<QRect>("part");
    QTest::newRow("small enough") << QSize(8000, 8000) << QPoint(9, 9) << QRect(0, 0, 8000, 8000);
    QTest::newRow("middle") << QSize(10000, 10000) << QPoint() << QRect(4600, 4700, 800, 600);
    QTest::newRow("left edge") << QSize(10000, 10000) << QPoint(99999, 0)
                               << QRect(0, 4700, 800, 600);
    QTest::newRow("bottom edge") << QSize(10000, 10000) << QPoint(0, -99999)
                                 << QRect(4600, 9400, 800, 600);
    QTest::newRow("thin") << QSize(1, longestSide) << QPoint()
                          << QRect(0, longestSide / 2 - 300, 1, 600);
    QTest::newRow("thin, the end") << QSize(1, longestSide) << QPoint(0, -longestSide / 2)
                                   << QRect(0, longestSide - 600, 1, 600);
}

void TestImageDisplayGeometry::part_staysInsideThePicture()
{
    QFETCH(QSize, full);
    QFETCH(QPoint, pan);
    QTEST(partToMake(full, {800, 600}, pan), "part");
}

void TestImageDisplayGeometry::zoomAfterFittingAThinPicture_isBounded_data()
{
    QTest::addColumn<QSize>("picture");
    for (const QSize &size : {QSize(1, 30000), QSize(1, 70000), QSize(60000000, 1),
                              QSize(1, 60000000), QSize(2, 30000000)}) {
        QTest::newRow(qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height())))
            << size;
    }
}

void TestImageDisplayGeometry::zoomAfterFittingAThinPicture_isBounded()
{
    QFETCH(QSize, picture);
    const PictureFit fit = fitToArea(picture, {916, 518});
    QVERIFY(fit.box.width() > 0 && fit.box.width() <= longestSide);
    QVERIFY(fit.box.height() > 0 && fit.box.height() <= longestSide);
    const QSize zoomed = zoomedSize(picture, scaleAfterZoomOut(fit.ratio));
    QVERIFY(zoomed.width() > 0 && zoomed.width() <= longestSide);
    QVERIFY(zoomed.height() > 0 && zoomed.height() <= longestSide);
    const QSize full = scaledSize(picture, zoomed);
    QVERIFY(full.width() > 0 && full.height() > 0);
    const QRect part = partToMake(full, {1920, 1080}, {});
    QVERIFY(static_cast<qint64>(part.width()) * part.height() <= 64LL * 1024 * 1024);
}

void TestImageDisplayGeometry::zoomBelowTheBound_isTheRule()
{
    // 1 x 30000 px: the fixed product, as long as it is a size at all.
    QCOMPARE(zoomedSize({1, 30000}, 27000.0F), QSize(27000, 810000000));
}

void TestImageDisplayGeometry::panRange_isWhatLiesOutside()
{
    QCOMPARE(panRange({100, 100}, {200, 200}), QSize(0, 0));
    QCOMPARE(panRange({300, 200}, {200, 200}), QSize(50, 0));
    QCOMPARE(panRange({201, 301}, {200, 200}), QSize(1, 51));
}

QTEST_MAIN(TestImageDisplayGeometry)
#include "tst_imagedisplaygeometry.moc"
