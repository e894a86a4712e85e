#include "tests/support/logcapture.h"
#include "tests/ui/preview/previewtest.h"
#include "ui/preview/resizeborder.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>

Q_DECLARE_METATYPE(QMargins)

/// The preview as a window: maximising, dragging, resizing, closing.
class TestImageDisplayWindow : public PreviewTest
{
    Q_OBJECT

private slots:
    void pictureTallerThanTheDesktop_isScaledIntoTheLabel();
    void zoomingAScaledPicture_showsItAtItsScale();
    void pictureFillingTheDesktopExactly_isNotScaled();
    void maximise_andBack_restoresPlaceAndSize();
    void maximise_scalesALargePicture();
    void pagingWhileMaximised_keepsTheWindow();
    void doubleClickOnTheTitle_togglesMaximise();
    void doubleClickElsewhere_orWithTheRightButton_doesNothing();
    void titleBar_dragsTheWindow();
    void maximisedWindow_isNotDragged();
    void dragging_needsThePressOnTheTitle();
    void minimise();
    void pagingWhileMinimised_keepsItMinimised();
    void escape_closes();
    void closeButton_closes();
    void draggedEdge_stopsAtTheSmallestSize_data();
    void draggedEdge_stopsAtTheSmallestSize();
    void draggedEdge_logs();
    void cursor_showsTheResizeBorder();
};

void TestImageDisplayWindow::pictureTallerThanTheDesktop_isScaledIntoTheLabel()
{
    const LogCapture log;
    const int desktop = QGuiApplication::primaryScreen()->size().height();
    open(picture(300, desktop - 127 + 1));
    QVERIFY(label()->hasScaledContents());
    QCOMPARE(label()->height(), 518);
    QVERIFY(label()->width() < 330); // its proportions are kept
    QVERIFY(log.lines().contains(
        QStringLiteral("debug: source_pic width or height is bigger then desktop")));
}

void TestImageDisplayWindow::zoomingAScaledPicture_showsItAtItsScale()
{
    open(picture(2000, 100));
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("缩小"));
    paint();
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(shownSize(), QSize(1800, 90));
}

void TestImageDisplayWindow::pictureFillingTheDesktopExactly_isNotScaled()
{
    const LogCapture log;
    const QSize desktop = QGuiApplication::primaryScreen()->size();
    open(picture(desktop.width(), desktop.height() - 127));
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: PreviewWin_initial png")});
}

void TestImageDisplayWindow::maximise_andBack_restoresPlaceAndSize()
{
    open(picture(500, 400));
    m_window->move(31, 17);
    m_window->resize(700, 500);
    click(QStringLiteral("最大化"));
    QVERIFY(m_window->isMaximized());
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(button(QStringLiteral("还原"))->toolTip(), QStringLiteral("还原"));
    click(QStringLiteral("还原"));
    QVERIFY(!m_window->isMaximized());
    QCOMPARE(m_window->pos(), QPoint(31, 17));
    QCOMPARE(m_window->size(), QSize(920, 646));
    QCOMPARE(button(QStringLiteral("最大化"))->toolTip(), QStringLiteral("最大化"));
}

void TestImageDisplayWindow::maximise_scalesALargePicture()
{
    open(picture(widerThanTheDesktop()));
    click(QStringLiteral("原始大小"));
    QVERIFY(!label()->hasScaledContents());
    click(QStringLiteral("最大化"));
    QVERIFY(label()->hasScaledContents());
}

void TestImageDisplayWindow::pagingWhileMaximised_keepsTheWindow()
{
    open(picture(500, 400));
    click(QStringLiteral("最大化"));
    m_window->changeImage(picture(200, 100), QString(), false, 1);
    QVERIFY(m_window->isMaximized());
    QCOMPARE(shownSize(), QSize(200, 100));
    saveAnimation(2);
    m_window->changeImage(picture(40, 30), QString(), true, 2);
    QVERIFY(m_window->isMaximized());
    m_window->changeImage(picture(500, 400), QString(), false, 0);
    click(QStringLiteral("还原"));
    QVERIFY(!m_window->isMaximized());
    QCOMPARE(m_window->size(), QSize(920, 646));
}

void TestImageDisplayWindow::doubleClickOnTheTitle_togglesMaximise()
{
    open(picture(500, 400));
    mouse(QEvent::MouseButtonDblClick, onTitle);
    QVERIFY(m_window->isMaximized());
    mouse(QEvent::MouseButtonDblClick, onTitle);
    QVERIFY(!m_window->isMaximized());
}

void TestImageDisplayWindow::doubleClickElsewhere_orWithTheRightButton_doesNothing()
{
    open(picture(500, 400));
    mouse(QEvent::MouseButtonDblClick, onPicture);
    mouse(QEvent::MouseButtonDblClick, onTitle, Qt::RightButton);
    QVERIFY(!m_window->isMaximized());
}

void TestImageDisplayWindow::titleBar_dragsTheWindow()
{
    open(picture(500, 400));
    m_window->move(20, 10);
    mouse(QEvent::MouseButtonPress, onTitle);
    mouse(QEvent::MouseMove, onTitle + QPoint(15, -4));
    QCOMPARE(m_window->pos(), QPoint(35, 6));
    mouse(QEvent::MouseButtonRelease, onTitle);
    mouse(QEvent::MouseMove, onTitle + QPoint(50, 50));
    QCOMPARE(m_window->pos(), QPoint(35, 6));
}

void TestImageDisplayWindow::maximisedWindow_isNotDragged()
{
    open(picture(500, 400));
    click(QStringLiteral("最大化"));
    const QPoint before = m_window->pos();
    mouse(QEvent::MouseButtonPress, onTitle);
    mouse(QEvent::MouseMove, onTitle + QPoint(15, 15));
    QCOMPARE(m_window->pos(), before);
}

void TestImageDisplayWindow::dragging_needsThePressOnTheTitle()
{
    open(picture(500, 400));
    const QPoint before = m_window->pos();
    mouse(QEvent::MouseButtonPress, onPicture);
    mouse(QEvent::MouseMove, onPicture + QPoint(15, 15));
    QCOMPARE(m_window->pos(), before);
    mouse(QEvent::MouseButtonPress, onTitle, Qt::RightButton);
    mouse(QEvent::MouseMove, onTitle + QPoint(15, 15), Qt::RightButton);
    QCOMPARE(m_window->pos(), before);
}

void TestImageDisplayWindow::minimise()
{
    open(picture(500, 400));
    click(QStringLiteral("最小化"));
    QVERIFY(m_window->isMinimized());
}

void TestImageDisplayWindow::pagingWhileMinimised_keepsItMinimised()
{
    open(picture(500, 400));
    click(QStringLiteral("最小化"));
    m_window->changeImage(picture(200, 100), QString(), false, 1);
    saveAnimation(2);
    m_window->changeImage(picture(40, 30), QString(), true, 2);
    m_window->changeImage(picture(300, 200), QString(), false, 3);
    QVERIFY(m_window->isMinimized());
    m_window->showNormal();
    paint();
    QCOMPARE(shownSize(), QSize(300, 200));
    QCOMPARE(m_window->size(), QSize(920, 646));
}

void TestImageDisplayWindow::escape_closes()
{
    open(picture(500, 400));
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
}

void TestImageDisplayWindow::closeButton_closes()
{
    open(picture(500, 400));
    click(QStringLiteral("关闭"));
    QVERIFY(!m_window->isVisible());
}

void TestImageDisplayWindow::draggedEdge_stopsAtTheSmallestSize_data()
{
    QTest::addColumn<QMargins>("shrunk");
    QTest::addColumn<QMargins>("allowed");
    // How far each side of the window of 920 x 646 px is drawn in.
    QTest::newRow("right") << QMargins(0, 0, 500, 0) << QMargins(0, 0, 320, 0);
    QTest::newRow("left") << QMargins(500, 0, 0, 0) << QMargins(320, 0, 0, 0);
    QTest::newRow("bottom") << QMargins(0, 0, 0, 400) << QMargins(0, 0, 0, 246);
    QTest::newRow("top") << QMargins(0, 400, 0, 0) << QMargins(0, 246, 0, 0);
    QTest::newRow("bottom right") << QMargins(0, 0, 500, 400) << QMargins(0, 0, 320, 246);
    QTest::newRow("top left") << QMargins(500, 400, 0, 0) << QMargins(320, 246, 0, 0);
    QTest::newRow("not that far") << QMargins(0, 0, 320, 246) << QMargins(0, 0, 320, 246);
}

void TestImageDisplayWindow::draggedEdge_stopsAtTheSmallestSize()
{
    QFETCH(QMargins, shrunk);
    QFETCH(QMargins, allowed);
    open(picture(500, 400));
    QRect rect = m_window->geometry().marginsRemoved(shrunk);
    m_window->setTempGeometry(rect);
    m_window->setTempGeometry_03(rect);
    QCOMPARE(rect, m_window->geometry().marginsRemoved(allowed));
}

void TestImageDisplayWindow::draggedEdge_logs()
{
    open(picture(500, 400));
    const LogCapture log;
    QRect rect(m_window->pos(), QSize(500, 300));
    m_window->setTempGeometry(rect);
    QCOMPARE(log.lines(),
             QStringList{QStringLiteral("debug: reach min width !QSize(500, 300)QSize(920, 646)")});
    m_window->setTempGeometry_03(rect);
    QCOMPARE(log.lines().mid(1), (QStringList{QStringLiteral("debug: reach min height!"),
                                              QStringLiteral("debug: tempSize:QSize(600, 300)"),
                                              QStringLiteral("debug: currSize:QSize(920, 646)")}));
    m_window->setTempGeometry(rect);
    m_window->setTempGeometry_03(rect);
    QCOMPARE(log.lines().size(), 4);
}

void TestImageDisplayWindow::cursor_showsTheResizeBorder()
{
    open(picture(500, 400));
    mouse(QEvent::MouseMove, {2, 300}, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::SizeHorCursor);
    mouse(QEvent::MouseMove, {919, 645}, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::SizeFDiagCursor);
    mouse(QEvent::MouseMove, {3, 300}, Qt::NoButton); // over the picture area
    QCOMPARE(m_window->cursor().shape(), Qt::SizeHorCursor);
    mouse(QEvent::MouseMove, onPicture, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::ArrowCursor);
    mouse(QEvent::MouseMove, {400, 3}, Qt::NoButton); // over the title bar
    QCOMPARE(m_window->cursor().shape(), Qt::SizeVerCursor);
    click(QStringLiteral("最大化"));
    mouse(QEvent::MouseMove, {2, 300}, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::ArrowCursor);
    // Without a window system that resizes, a press on the border is no drag either.
    click(QStringLiteral("还原"));
    const QRect before = m_window->geometry();
    mouse(QEvent::MouseButtonPress, {400, 1});
    mouse(QEvent::MouseMove, {430, 31});
    QCOMPARE(m_window->geometry(), before);
}

QTEST_MAIN(TestImageDisplayWindow)
#include "tst_imagedisplaywindow.moc"
