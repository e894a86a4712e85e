#include "ui/preview/resizeborder.h"

#include <QTest>

namespace {

constexpr int border = 4;
constexpr QSize window(920, 646);

} // namespace

/// The invisible border by which the preview window is resized, and its smallest size.
class TestResizeBorder : public QObject
{
    Q_OBJECT

private slots:
    void hitTest_data();
    void hitTest();
    void hitTest_edgesAndCursors_data();
    void hitTest_edgesAndCursors();
    void smallestSize_data();
    void smallestSize();
    void sizeOnAScaledScreen_data();
    void sizeOnAScaledScreen();
};

void TestResizeBorder::hitTest_data()
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

void TestResizeBorder::hitTest()
{
    QFETCH(QPoint, position);
    QFETCH(int, code);
    QCOMPARE(static_cast<int>(resizeZoneAt(position, window, border)), code);
    QCOMPARE(resizeZoneAt(position, window, 0), ResizeZone::None);
}

void TestResizeBorder::hitTest_edgesAndCursors_data()
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

void TestResizeBorder::hitTest_edgesAndCursors()
{
    QFETCH(int, code);
    QFETCH(Qt::Edges, edges);
    QFETCH(Qt::CursorShape, cursor);
    const auto zone = static_cast<ResizeZone>(code);
    QCOMPARE(edgesOf(zone), edges);
    QCOMPARE(cursorOf(zone), cursor);
}

void TestResizeBorder::smallestSize_data()
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

void TestResizeBorder::smallestSize()
{
    QFETCH(QRect, proposed);
    QFETCH(bool, rightDragged);
    QFETCH(bool, bottomDragged);
    QFETCH(QRect, allowed);
    QCOMPARE(withSmallestHeight(withSmallestWidth(proposed, rightDragged), bottomDragged), allowed);
}

void TestResizeBorder::sizeOnAScaledScreen_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QRect>("proposed");
    QTest::addColumn<bool>("rightDragged");
    QTest::addColumn<bool>("bottomDragged");
    QTest::addColumn<QRect>("allowed");
    QTest::newRow("not scaled") << 1.0 << QRect(100, 50, 599, 399) << true << true
                                << QRect(100, 50, 600, 400);
    QTest::newRow("large enough") << 2.0 << QRect(100, 50, 1201, 801) << true << true
                                  << QRect(100, 50, 1201, 801);
    QTest::newRow("right and bottom")
        << 2.0 << QRect(100, 50, 900, 700) << true << true << QRect(100, 50, 1200, 800);
    QTest::newRow("left and top") << 1.5 << QRect(500, 350, 700, 500) << false << false
                                  << QRect(300, 250, 900, 600);
    QTest::newRow("only one side")
        << 1.25 << QRect(7, 9, 701, 900) << true << true << QRect(7, 9, 750, 900);
}

void TestResizeBorder::sizeOnAScaledScreen()
{
    QFETCH(qreal, scale);
    QFETCH(QRect, proposed);
    QFETCH(bool, rightDragged);
    QFETCH(bool, bottomDragged);
    QFETCH(QRect, allowed);
    const QRect smallest = withSmallestHeight(
        withSmallestWidth(scaledDown(proposed, scale), rightDragged), bottomDragged);
    QCOMPARE(scaledUp(smallest, proposed, scale), allowed);
}

QTEST_MAIN(TestResizeBorder)
#include "tst_resizeborder.moc"
