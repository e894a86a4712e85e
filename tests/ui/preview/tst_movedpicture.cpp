#include "tests/support/logcapture.h"
#include "tests/ui/preview/paintcounter.h"
#include "tests/ui/preview/previewtest.h"
#include "ui/preview/picturelabel.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>

/// Moving a picture that is larger than its area with the mouse.
class TestMovedPicture : public PreviewTest
{
    Q_OBJECT

private slots:
    void largerPicture_followsTheMouse();
    void drag_endsAtThePicturesEdge();
    void largerOneWay_movesThatWayOnly();
    void smallerPicture_stays();
    void otherButtons_moveNothing();
    void titleBar_stillDragsTheWindow();
    void maximisedWindow_letsThePictureMove();
    void zoom_keepsWhatIsInTheMiddle();
    void paging_andOneToOne_putItBack();
    void partOfAHugePicture_isMadeAnew();
    void thinPicture_zoomsAfterTheFit_atOnce();
    void animation_larger_moves();
    void movedPicture_isPaintedAnew();
    void cursor_saysWhatCanBeTaken();

private:
    static QPixmap halves(const QSize &size);
    /// Opens the preview on such a picture and shows it in its own size.
    void openHalves(const QSize &size);
    void drag(const QPoint &by);
    /// The colour at \a place px from the middle of the area.
    [[nodiscard]] QColor colourAt(const QPoint &place = {}) const;
    /// How far the border between the halves lies beside the middle of the area, in px.
    [[nodiscard]] int borderOffset() const;
};

/// Red to the left of the middle, blue to the right.
QPixmap TestMovedPicture::halves(const QSize &size)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::red);
    QPainter(&pixmap).fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::blue);
    return pixmap;
}

void TestMovedPicture::openHalves(const QSize &size)
{
    open(halves(size));
    click(QStringLiteral("原始大小")); // it may be larger than the screen of the tests
}

void TestMovedPicture::drag(const QPoint &by)
{
    mouse(QEvent::MouseButtonPress, onPicture);
    const QPoint end = onPicture + by;
    QMouseEvent move(QEvent::MouseMove, label()->mapFrom(m_window.get(), end),
                     m_window->mapToGlobal(end), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(label(), &move);
    mouse(QEvent::MouseButtonRelease, end);
}

QColor TestMovedPicture::colourAt(const QPoint &place) const
{
    const QImage image = label()->grab().toImage();
    return image.pixelColor(QPoint(image.width() / 2, image.height() / 2) + place);
}

int TestMovedPicture::borderOffset() const
{
    const QImage image = label()->grab().toImage();
    for (int x = 1; x < image.width(); ++x) {
        if (image.pixelColor(x, image.height() / 2) == QColor(Qt::blue)
            && image.pixelColor(x - 1, image.height() / 2) == QColor(Qt::red)) {
            return x - image.width() / 2;
        }
    }
    return INT_MAX;
}

void TestMovedPicture::largerPicture_followsTheMouse()
{
    openHalves({1000, 560});
    QCOMPARE(borderOffset(), 0);
    const QPoint place = m_window->pos();
    drag({30, 0});
    QCOMPARE(borderOffset(), 30);
    drag({-40, 0});
    QCOMPARE(borderOffset(), -10);
    QCOMPARE(m_window->pos(), place);
}

void TestMovedPicture::drag_endsAtThePicturesEdge()
{
    openHalves({1000, 560});
    const int most = (1000 - label()->width()) / 2;
    drag({5000, 5000});
    QCOMPARE(borderOffset(), most);
    QCOMPARE(colourAt({-label()->width() / 2, 0}), QColor(Qt::red));
    drag({-9000, 0});
    QCOMPARE(borderOffset(), -most);
    QCOMPARE(colourAt({label()->width() / 2 - 1, 0}), QColor(Qt::blue));
}

void TestMovedPicture::largerOneWay_movesThatWayOnly()
{
    openHalves({1000, 100});
    drag({20, 300});
    QCOMPARE(borderOffset(), 20);
    QCOMPARE(colourAt({0, -49}), QColor(Qt::red));
    QVERIFY(colourAt({0, 51}) != QColor(Qt::red));
}

void TestMovedPicture::smallerPicture_stays()
{
    openHalves({300, 200});
    drag({40, 40});
    QCOMPARE(borderOffset(), 0);
}

void TestMovedPicture::otherButtons_moveNothing()
{
    openHalves({1000, 560});
    mouse(QEvent::MouseButtonPress, onPicture, Qt::RightButton);
    mouse(QEvent::MouseMove, onPicture + QPoint(30, 0), Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, onPicture, Qt::RightButton);
    QCOMPARE(borderOffset(), 0);
    mouse(QEvent::MouseMove, onPicture + QPoint(30, 0), Qt::LeftButton); // never pressed
    QCOMPARE(borderOffset(), 0);
}

void TestMovedPicture::titleBar_stillDragsTheWindow()
{
    openHalves({1000, 560});
    const QPoint before = m_window->pos();
    mouse(QEvent::MouseButtonPress, onTitle);
    mouse(QEvent::MouseMove, onTitle + QPoint(15, 10));
    mouse(QEvent::MouseButtonRelease, onTitle);
    QCOMPARE(m_window->pos(), before + QPoint(15, 10));
    QCOMPARE(borderOffset(), 0);
}

void TestMovedPicture::maximisedWindow_letsThePictureMove()
{
    open(picture(1, 1));
    click(QStringLiteral("最大化"));
    QTRY_VERIFY(m_window->isMaximized());
    const QPoint place = m_window->pos();
    m_window->changeImage(halves(label()->size() + QSize(200, 0)), QString(), false, 0);
    click(QStringLiteral("原始大小"));
    drag({10, 0});
    QCOMPARE(m_window->pos(), place);
    QCOMPARE(borderOffset(), 10);
}

void TestMovedPicture::zoom_keepsWhatIsInTheMiddle()
{
    openHalves({1200, 600});
    drag({100, 0});
    QCOMPARE(borderOffset(), 100);
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(borderOffset(), 110);
    for (int step = 0; step < 20; ++step) {
        click(QStringLiteral("缩小"));
        paint();
    }
    QCOMPARE(borderOffset(), 0); // all of it is seen again
}

void TestMovedPicture::paging_andOneToOne_putItBack()
{
    openHalves({1000, 560});
    drag({30, 0});
    m_window->changeImage(halves({1000, 520}), QString(), false, 1);
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(borderOffset(), 0);
    drag({30, 0});
    click(QStringLiteral("原始大小"));
    QCOMPARE(borderOffset(), 0);
}

void TestMovedPicture::partOfAHugePicture_isMadeAnew()
{
    openHalves({4000, 3000});
    for (int step = 0; step < 16; ++step) { // to four times: 192 million pixels
        click(QStringLiteral("放大"));
        paint();
    }
    QVERIFY(shownSize().width() < 16000);
    QCOMPARE(borderOffset(), 0);
    drag({200, 5});
    QCOMPARE(borderOffset(), 200);
    drag({-350, 0});
    QCOMPARE(borderOffset(), -150);
    drag({8000, 0});
    QCOMPARE(colourAt(), QColor(Qt::red));
    QCOMPARE(colourAt({-label()->width() / 2, 0}), QColor(Qt::red));
}

void TestMovedPicture::thinPicture_zoomsAfterTheFit_atOnce()
{
    for (const QSize &size : {QSize(1, 30000), QSize(1, 70000), QSize(70000, 1)}) {
        const LogCapture log;
        open(QPixmap::fromImage([size] {
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::red);
            return image;
        }()));
        QElapsedTimer timer;
        timer.start();
        click(QStringLiteral("适应窗口"));
        paint();
        click(QStringLiteral("缩小"));
        paint();
        QVERIFY(!shownSize().isEmpty());
        QVERIFY(static_cast<qint64>(shownSize().width()) * shownSize().height()
                <= 64LL * 1024 * 1024);
        QCOMPARE(colourAt(), QColor(Qt::red));
        drag({0, 100});
        QCOMPARE(colourAt(), QColor(Qt::red));
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
        click(QStringLiteral("放大"));
        paint();
        QCOMPARE(log.foreignLines().filter(QStringLiteral("Pixmap")), QStringList());
        m_window.reset();
    }
}

void TestMovedPicture::animation_larger_moves()
{
    const QSize size = widerThanTheDesktop() + QSize(200, 0);
    saveAnimation(0, size);
    open(QPixmap(size), true, 0);
    click(QStringLiteral("原始大小")); // which maximises the window
    QTRY_VERIFY(m_window->isMaximized());
    QVERIFY(!label()->hasScaledContents());
    const auto *shown = qobject_cast<PictureLabel *>(label());
    QCOMPARE(shown->offset(), QPoint());
    drag({5, 0});
    QCOMPARE(shown->offset(), QPoint(5, 0));
    drag({5000, 0});
    QCOMPARE(shown->offset().x(), (size.width() - label()->width() + 1) / 2);
    mouse(QEvent::MouseMove, onPicture, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::OpenHandCursor);
}

void TestMovedPicture::movedPicture_isPaintedAnew()
{
    PictureLabel label(nullptr);
    label.setFixedSize(50, 50);
    label.setPixmap(QPixmap(100, 100));
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QCoreApplication::processEvents();
    const PaintCounter paints(&label);
    label.setOffset({3, 0});
    QTRY_COMPARE(paints.count, 1);
    label.setOffset({3, 0});
    QCoreApplication::processEvents();
    QCOMPARE(paints.count, 1);
}

void TestMovedPicture::cursor_saysWhatCanBeTaken()
{
    openHalves({1000, 560});
    mouse(QEvent::MouseMove, onPicture, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::OpenHandCursor);
    mouse(QEvent::MouseButtonPress, onPicture);
    QCOMPARE(m_window->cursor().shape(), Qt::ClosedHandCursor);
    mouse(QEvent::MouseButtonRelease, onPicture);
    QVERIFY(m_window->cursor().shape() != Qt::ClosedHandCursor);
    mouse(QEvent::MouseMove, {2, 300}, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::SizeHorCursor);
    m_window->changeImage(halves({100, 56}), QString(), false, 1);
    mouse(QEvent::MouseMove, onPicture, Qt::NoButton);
    QCOMPARE(m_window->cursor().shape(), Qt::ArrowCursor);
}

QTEST_MAIN(TestMovedPicture)
#include "tst_movedpicture.moc"
