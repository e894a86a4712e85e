#include "ui/style/compositor.h"
#include "ui/style/roundedmask.h"

#include <QTest>
#include <QWidget>

/// The shape that a window with rounded corners takes where nothing is blended.
class TestRoundedMask : public QObject
{
    Q_OBJECT

private slots:
    void corners_areCutAlike();
    void edgesAndMiddle_stay();
    void noRadius_cutsNothing();
    void smallRectangle_keepsItsMiddle();
    void emptyRectangle_isEmpty();
    void window_isCutOnlyWhereTheScreenBlendsNothing();
};

void TestRoundedMask::corners_areCutAlike()
{
    const QRect rect(5, 7, 40, 30);
    const QRegion region = roundedRegion(rect, 6);
    QCOMPARE(region.boundingRect(), rect);
    for (const QPoint &corner :
         {rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()}) {
        QVERIFY(!region.contains(corner));
    }
    int height = 0;
    for (int x = rect.left(); x < rect.left() + 6; ++x) {
        int free = 0;
        while (!region.contains(QPoint(x, rect.top() + free))) {
            ++free;
        }
        QVERIFY(x == rect.left() || free <= height); // rounder and rounder
        height = free;
        QVERIFY(!region.contains(QPoint(rect.right() + rect.left() - x, rect.top() + free - 1)));
        QVERIFY(region.contains(QPoint(rect.right() + rect.left() - x, rect.bottom() - free)));
    }
}

void TestRoundedMask::edgesAndMiddle_stay()
{
    const QRect rect(0, 0, 40, 30);
    const QRegion region = roundedRegion(rect, 6);
    for (const QPoint &place :
         {QPoint(20, 0), QPoint(20, 29), QPoint(0, 15), QPoint(39, 15), rect.center()}) {
        QVERIFY(region.contains(place));
    }
}

void TestRoundedMask::noRadius_cutsNothing()
{
    QCOMPARE(roundedRegion({0, 0, 9, 9}, 0), QRegion(0, 0, 9, 9));
}

void TestRoundedMask::smallRectangle_keepsItsMiddle()
{
    QVERIFY(roundedRegion({0, 0, 5, 5}, 40).contains(QPoint(2, 2)));
}

void TestRoundedMask::emptyRectangle_isEmpty()
{
    QVERIFY(roundedRegion({}, 6).isEmpty());
}

void TestRoundedMask::window_isCutOnlyWhereTheScreenBlendsNothing()
{
    const QRect card(0, 0, 10, 10);
    QWidget window;
    window.setMask(QRegion(0, 0, 1, 1));
    cutWithoutCompositor(window, card, 4);
    QCOMPARE(window.mask(), screenIsComposited() ? QRegion() : roundedRegion(card, 4));
}

QTEST_MAIN(TestRoundedMask)
#include "tst_roundedmask.moc"
