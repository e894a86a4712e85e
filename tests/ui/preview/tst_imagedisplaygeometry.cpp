#include "ui/preview/picturezoom.h"
#include "ui/preview/resizeborder.h"

#include <QImage>
#include <QTest>

namespace {

constexpr int border = 4;
constexpr QSize window(920, 646);

const float smallest = 0.2F;
const float largest = 4.0F;

} // namespace

/// The arithmetic of the preview window: zoom steps, fitting, the resize border.
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
    void scaled_beyondMemory_isItsMiddlePart();
    void hitTest_data();
    void hitTest();
    void hitTest_edgesAndCursors_data();
    void hitTest_edgesAndCursors();
    void smallestSize_data();
    void smallestSize();
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
    QCOMPARE(scaledPicture(original, box, {800, 600}).size(), result);
}

void TestImageDisplayGeometry::scaled_isNotSmoothed()
{
    QImage original(2, 1, QImage::Format_RGB32);
    original.setPixel(0, 0, qRgb(0, 0, 0));
    original.setPixel(1, 0, qRgb(255, 255, 255));
    const QImage scaled
        = scaledPicture(QPixmap::fromImage(original), {20, 10}, {800, 600}).toImage();
    for (int x = 0; x < scaled.width(); ++x) {
        QCOMPARE(qRed(scaled.pixel(x, 5)), x < 10 ? 0 : 255);
    }
}

void TestImageDisplayGeometry::scaled_nullStaysNull()
{
    QVERIFY(scaledPicture(QPixmap(), {100, 100}, {800, 600}).isNull());
}

void TestImageDisplayGeometry::scaled_beyondMemory_isItsMiddlePart()
{
    constexpr int side = 2400;
    constexpr int middle = side / 2;
    QImage original(side, side, QImage::Format_RGB32);
    original.fill(Qt::white);
    // Around the middle, 100 x 50 px of a colour of their own.
    for (int y = middle - 25; y < middle + 25; ++y) {
        for (int x = middle - 50; x < middle + 50; ++x) {
            original.setPixel(x, y, qRgb(255, 0, 0));
        }
    }
    const QImage part
        = scaledPicture(QPixmap::fromImage(original), {4 * side, 4 * side}, {800, 600}).toImage();
    QCOMPARE(part.size(), QSize(800, 600));
    QCOMPARE(part.pixel(400, 300), qRgb(255, 0, 0));
    QCOMPARE(part.pixel(202, 300), qRgb(255, 0, 0));
    QCOMPARE(part.pixel(198, 300), qRgb(255, 255, 255));
    QCOMPARE(part.pixel(400, 398), qRgb(255, 0, 0));
    QCOMPARE(part.pixel(400, 402), qRgb(255, 255, 255));
}

void TestImageDisplayGeometry::hitTest_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<int>("code");
    const int right = window.width() - 1;
    const int bottom = window.height() - 1;
    QTest::newRow("left") << QPoint(0, 300) << 10;
    QTest::newRow("left, innermost") << QPoint(3, 300) << 10;
    QTest::newRow("inside left") << QPoint(4, 300) << 0;
    QTest::newRow("right") << QPoint(right, 300) << 11;
    QTest::newRow("right, innermost") << QPoint(right - 3, 300) << 11;
    QTest::newRow("inside right") << QPoint(right - 4, 300) << 0;
    QTest::newRow("top") << QPoint(400, 0) << 12;
    QTest::newRow("top, innermost") << QPoint(400, 3) << 12;
    QTest::newRow("inside top") << QPoint(400, 4) << 0;
    QTest::newRow("bottom") << QPoint(400, bottom) << 15;
    QTest::newRow("bottom, innermost") << QPoint(400, bottom - 3) << 15;
    QTest::newRow("inside bottom") << QPoint(400, bottom - 4) << 0;
    QTest::newRow("top left") << QPoint(0, 0) << 13;
    QTest::newRow("top left, innermost") << QPoint(3, 3) << 13;
    QTest::newRow("top left, along the top") << QPoint(11, 1) << 13;
    QTest::newRow("top left, along the side") << QPoint(1, 11) << 13;
    QTest::newRow("past the corner, along the top") << QPoint(12, 1) << 12;
    QTest::newRow("past the corner, along the side") << QPoint(1, 12) << 10;
    QTest::newRow("inside the corner") << QPoint(4, 4) << 0;
    QTest::newRow("top right") << QPoint(right, 0) << 14;
    QTest::newRow("top right, along the side") << QPoint(right, 11) << 14;
    QTest::newRow("bottom left") << QPoint(0, bottom) << 16;
    QTest::newRow("bottom left, along the bottom") << QPoint(11, bottom) << 16;
    QTest::newRow("bottom right") << QPoint(right, bottom) << 17;
    QTest::newRow("bottom right, along the side") << QPoint(right, bottom - 11) << 17;
    QTest::newRow("middle") << QPoint(460, 323) << 0;
    QTest::newRow("outside left") << QPoint(-1, 300) << 0;
    QTest::newRow("outside right") << QPoint(right + 1, 300) << 0;
    QTest::newRow("outside top") << QPoint(400, -1) << 0;
    QTest::newRow("outside bottom") << QPoint(400, bottom + 1) << 0;
}

void TestImageDisplayGeometry::hitTest()
{
    QFETCH(QPoint, position);
    QFETCH(int, code);
    QCOMPARE(static_cast<int>(resizeZoneAt(position, window, border)), code);
    QCOMPARE(resizeZoneAt(position, window, 0), ResizeZone::None);
}

void TestImageDisplayGeometry::hitTest_edgesAndCursors_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<Qt::Edges>("edges");
    QTest::addColumn<Qt::CursorShape>("cursor");
    QTest::newRow("none") << 0 << Qt::Edges() << Qt::ArrowCursor;
    QTest::newRow("left") << 10 << Qt::Edges(Qt::LeftEdge) << Qt::SizeHorCursor;
    QTest::newRow("right") << 11 << Qt::Edges(Qt::RightEdge) << Qt::SizeHorCursor;
    QTest::newRow("top") << 12 << Qt::Edges(Qt::TopEdge) << Qt::SizeVerCursor;
    QTest::newRow("top left") << 13 << (Qt::TopEdge | Qt::LeftEdge) << Qt::SizeFDiagCursor;
    QTest::newRow("top right") << 14 << (Qt::TopEdge | Qt::RightEdge) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom") << 15 << Qt::Edges(Qt::BottomEdge) << Qt::SizeVerCursor;
    QTest::newRow("bottom left") << 16 << (Qt::BottomEdge | Qt::LeftEdge) << Qt::SizeBDiagCursor;
    QTest::newRow("bottom right") << 17 << (Qt::BottomEdge | Qt::RightEdge) << Qt::SizeFDiagCursor;
}

void TestImageDisplayGeometry::hitTest_edgesAndCursors()
{
    QFETCH(int, code);
    QFETCH(Qt::Edges, edges);
    QFETCH(Qt::CursorShape, cursor);
    const auto zone = static_cast<ResizeZone>(code);
    QCOMPARE(edgesOf(zone), edges);
    QCOMPARE(cursorOf(zone), cursor);
}

void TestImageDisplayGeometry::smallestSize_data()
{
    QTest::addColumn<QRect>("proposed");
    QTest::addColumn<bool>("rightDragged");
    QTest::addColumn<bool>("bottomDragged");
    QTest::addColumn<QRect>("allowed");
    const QRect large(100, 50, 700, 500);
    QTest::newRow("large") << large << true << true << large;
    const QRect exact(100, 50, 600, 400);
    QTest::newRow("exact") << exact << false << false << exact;
    QTest::newRow("right") << QRect(100, 50, 599, 500) << true << false << QRect(100, 50, 600, 500);
    QTest::newRow("left") << QRect(300, 50, 500, 500) << false << false << QRect(200, 50, 600, 500);
    QTest::newRow("bottom") << QRect(100, 50, 700, 10) << true << true << QRect(100, 50, 700, 400);
    QTest::newRow("top") << QRect(100, 250, 700, 300) << true << false << QRect(100, 150, 700, 400);
    QTest::newRow("top left") << QRect(300, 250, 500, 300) << false << false
                              << QRect(200, 150, 600, 400);
    QTest::newRow("turned over") << QRect(100, 50, -20, -30) << true << true
                                 << QRect(100, 50, 600, 400);
    QTest::newRow("left of the first screen")
        << QRect(-900, 50, 300, 500) << false << false << QRect(-1200, 50, 600, 500);
}

void TestImageDisplayGeometry::smallestSize()
{
    QFETCH(QRect, proposed);
    QFETCH(bool, rightDragged);
    QFETCH(bool, bottomDragged);
    QFETCH(QRect, allowed);
    QCOMPARE(withSmallestHeight(withSmallestWidth(proposed, rightDragged), bottomDragged), allowed);
}

QTEST_MAIN(TestImageDisplayGeometry)
#include "tst_imagedisplaygeometry.moc"
