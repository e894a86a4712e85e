#include "tests/ui/preview/previewtest.h"
#include "tests/ui/support/screenscale.h"
#include "ui/preview/picturelabel.h"

#include <QApplication>
#include <QLabel>
#include <QMovie>
#include <QPainter>
#include <QPushButton>
#include <QTest>

/// The preview when its window comes to a screen of another scale.
class TestScaledPreview : public PreviewTest
{
    Q_OBJECT

private slots:
    void picture_isMadeForTheScreen();
    void zoomedPicture_keepsItsSize();
    void pictureLeftBySize_isMadeForTheScreen();
    void animationFittedIntoTheDesktop_isPaintedSmoothly();
    void animationAPixelTooSmall_fillsItsPlace_data();
    void animationAPixelTooSmall_fillsItsPlace();

private:
    [[nodiscard]] QSize pixels() const;
    static void checkFilledSmoothly(PictureLabel *label, const QPixmap &frame);
};

/// The size of what the label holds, in the pixels of the screen.
QSize TestScaledPreview::pixels() const
{
    return label()->pixmap(Qt::ReturnByValue).size();
}

/// That \a label, on a screen of twice the pixels, shows \a frame smoothly over all its place.
void TestScaledPreview::checkFilledSmoothly(PictureLabel *label, const QPixmap &frame)
{
    constexpr int scale = 2;
    QImage shown(label->size() * scale, QImage::Format_RGB32);
    shown.setDevicePixelRatio(scale);
    shown.fill(Qt::white);
    QImage expected = shown;
    label->render(&shown, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(label->rect(), frame);
    painter.end();
    QCOMPARE(shown, expected);
}

void TestScaledPreview::picture_isMadeForTheScreen()
{
    screenscale::set(1);
    open(picture(300, 200));
    QCOMPARE(pixels(), QSize(300, 200));
    for (const qreal ratio : {1.25, 2.0, 1.0}) {
        screenscale::set(ratio);
        label()->update();
        QTRY_COMPARE(pixels(), (QSizeF(300, 200) * ratio).toSize());
        QCOMPARE(label()->pixmap(Qt::ReturnByValue).devicePixelRatio(), ratio);
        QCOMPARE(static_cast<PictureLabel *>(label())->shownSize(), QSize(300, 200));
    }
}

void TestScaledPreview::zoomedPicture_keepsItsSize()
{
    screenscale::set(1.5);
    open(picture(300, 200));
    click(QStringLiteral("放大"));
    paint();
    QTRY_COMPARE(pixels(), QSize(495, 330));
    screenscale::set(1);
    label()->update();
    QTRY_COMPARE(pixels(), QSize(330, 220));
    click(QStringLiteral("放大"));
    paint();
    QTRY_COMPARE(pixels(), QSize(363, 242)); // goes on from there
}

/// One that is too large to be made whole.
void TestScaledPreview::pictureLeftBySize_isMadeForTheScreen()
{
    screenscale::set(1);
    open(picture(5000, 5000));
    click(QStringLiteral("原始大小"));
    screenscale::set(2);
    label()->update();
    QTRY_COMPARE(label()->pixmap(Qt::ReturnByValue).devicePixelRatio(), 2.0);
    QVERIFY(pixels().width() >= 2 * label()->width());
    QVERIFY(pixels().width() < 2 * 5000);
}

void TestScaledPreview::animationFittedIntoTheDesktop_isPaintedSmoothly()
{
    screenscale::set(2);
    QMovie movie(QStringLiteral(":/Images/waiting.gif"));
    QVERIFY(movie.jumpToFrame(0));
    PictureLabel label(nullptr);
    label.setMovie(&movie);
    label.setScaledContents(true);
    label.resize(90, 70);
    label.show();
    QCOMPARE(label.devicePixelRatioF(), 2.0);
    checkFilledSmoothly(&label, movie.currentPixmap());
}

void TestScaledPreview::animationAPixelTooSmall_fillsItsPlace_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("in width") << QSize(89, 72);
    QTest::newRow("in height") << QSize(90, 71);
}

void TestScaledPreview::animationAPixelTooSmall_fillsItsPlace()
{
    QFETCH(QSize, size);
    screenscale::set(2);
    saveAnimation(0, size);
    QMovie movie(QStringLiteral("gif/0.gif"));
    QVERIFY(movie.jumpToFrame(0));
    PictureLabel label(nullptr);
    label.setMovie(&movie);
    label.setScaledContents(true);
    label.resize(45, 36); // 90 x 72 pixels
    label.show();
    checkFilledSmoothly(&label, movie.currentPixmap());
}

int main(int argc, char *argv[])
{
    screenscale::allow();
    const QApplication application(argc, argv);
    TestScaledPreview test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_scaledpreview.moc"
