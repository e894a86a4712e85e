#include "resources/resources.h"
#include "ui/style/displayscale.h"
#include "ui/style/scaledpicture.h"
#include "ui/style/sharppictures.h"
#include "ui/style/styles.h"

#include <QApplication>
#include <QImage>
#include <QMovie>
#include <QPainter>
#include <QPushButton>
#include <QTest>

namespace {

constexpr int buttonSize = 16;

/// Row \a row of a strip that is drawn at twice its size, on white.
QImage rowOfLargeStrip(const QString &name, int row)
{
    const QImage strip(QStringLiteral(":/Images/large/") + name);
    const int height = 2 * buttonSize;
    QImage onWhite(2 * buttonSize, height, QImage::Format_RGB32);
    onWhite.fill(Qt::white);
    QPainter(&onWhite).drawImage(0, 0, strip, 0, row * height, strip.width(), height);
    return onWhite;
}

/// \a picture on white, one pixel for each of its own.
QImage onWhite(const QString &picture)
{
    QImage image(picture);
    image.setDevicePixelRatio(1);
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

/// What \a widget shows, in the screen's pixels.
QImage pixelsOf(QWidget &widget)
{
    QImage image(widget.size() * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    image.setDevicePixelRatio(1);
    return image;
}

int largestDifference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size()) {
        return 255;
    }
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            largest = qMax(largest, qAbs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))));
        }
    }
    return largest;
}

constexpr int rounding = 2; // of 255, from the smooth transformation

} // namespace

/// The program's pictures on a screen of twice the scale: pixel for pixel those that are drawn for
/// it.
class TestScaledScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void screen_isScaled();
    void strip_isDrawnForTheScreen();
    void stripMadeForAnotherScreen_isMadeAnew();
    void wholePicture_isDrawnForTheScreen();
    void labelsPicture_isDrawnForTheScreen();
    void labelsAnimation_isShownInItsStatedSize();
    void labelsSmallAnimation_isStretchedSmoothly();
};

void TestScaledScreen::initTestCase()
{
    initResources();
}

void TestScaledScreen::screen_isScaled()
{
    QVERIFY(anyScreenIsScaled());
}

void TestScaledScreen::strip_isDrawnForTheScreen()
{
    QPushButton button;
    button.setFixedSize(buttonSize, buttonSize);
    button.setStyleSheet(styles::threeStateSprite(QLatin1String("btn-close.png"), buttonSize));
    const QString strip = QStringLiteral("btn-close.png");
    QVERIFY(largestDifference(pixelsOf(button), rowOfLargeStrip(strip, 0)) <= rounding);
    button.setDown(true);
    QVERIFY(largestDifference(pixelsOf(button), rowOfLargeStrip(strip, 2)) <= rounding);
    // The rows are told apart by that.
    QVERIFY(largestDifference(rowOfLargeStrip(strip, 0), rowOfLargeStrip(strip, 2)) > rounding);
}

void TestScaledScreen::stripMadeForAnotherScreen_isMadeAnew()
{
    QWidget window;
    QPushButton button(&window);
    button.setFixedSize(buttonSize, buttonSize);
    const QString sharp = styles::threeStateSprite(QLatin1String("btn-min.png"), buttonSize);
    button.setStyleSheet(withStripsFor(false, sharp));
    QVERIFY(button.styleSheet() != sharp);
    sharpenPictures(window);
    QCOMPARE(button.styleSheet(), sharp);
    QVERIFY(largestDifference(pixelsOf(button), rowOfLargeStrip(QStringLiteral("btn-min.png"), 0))
            <= rounding);
}

void TestScaledScreen::wholePicture_isDrawnForTheScreen()
{
    QLabel label;
    label.setFixedSize(42, 42);
    label.setStyleSheet(QStringLiteral("QLabel{border-image: url(:/Images/icon-user.png);}"));
    QVERIFY(largestDifference(pixelsOf(label), onWhite(QStringLiteral(":/Images/icon-user@2x.png")))
            <= rounding);
}

void TestScaledScreen::labelsPicture_isDrawnForTheScreen()
{
    ScaledPicture label(nullptr);
    label.setPicture(QStringLiteral("top-nav-title.png"));
    label.resize(111, 26);
    QVERIFY(
        largestDifference(pixelsOf(label), onWhite(QStringLiteral(":/Images/top-nav-title@2x.png")))
        <= rounding);
}

void TestScaledScreen::labelsAnimation_isShownInItsStatedSize()
{
    const QSize stated = QImage(QStringLiteral(":/Images/waiting.gif")).size();
    QMovie movie(QStringLiteral(":/Images/waiting@2x.gif"));
    QVERIFY(movie.jumpToFrame(0));
    QCOMPARE(movie.currentPixmap().size(), 2 * stated);
    ScaledPicture label(nullptr);
    label.setMovie(&movie);
    label.resize(stated);
    const QImage shown = pixelsOf(label);
    QImage frame = movie.currentImage();
    frame.setDevicePixelRatio(1);
    QImage expected(shown.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(0, 0, frame);
    QVERIFY(largestDifference(shown, expected) <= rounding);
}

void TestScaledScreen::labelsSmallAnimation_isStretchedSmoothly()
{
    QMovie movie(QStringLiteral(":/Images/waiting.gif"));
    QVERIFY(movie.jumpToFrame(0));
    ScaledPicture label(nullptr);
    label.setMovie(&movie);
    label.resize(movie.currentPixmap().size());
    const QImage shown = pixelsOf(label);
    QImage expected(shown.size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(expected.rect(), movie.currentPixmap());
    painter.end();
    QVERIFY(largestDifference(shown, expected) <= rounding);
}

int main(int argc, char *argv[])
{
    qputenv("QT_SCALE_FACTOR", "2");
    const QApplication application(argc, argv);
    TestScaledScreen test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_scaledscreen.moc"
