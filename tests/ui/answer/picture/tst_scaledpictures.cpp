#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/ui/support/picturereply.h"
#include "tests/ui/support/screenscale.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/picture/conversationpictures.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

namespace {

constexpr QSize large(600, 400); // shown as 165 x 110
constexpr QSize largeShown(165, 110);
constexpr QSize small(100, 50);

/// With lines of one pixel, which nothing coarse keeps.
QImage finePicture(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, qRgb((x * 37) & 0xff, (y * 53) & 0xff, ((x ^ y) * 11) & 0xff));
        }
    }
    return image;
}

QSize onScreen(const QSize &size, qreal ratio)
{
    return {static_cast<int>(size.width() * ratio), static_cast<int>(size.height() * ratio)};
}

/// What \a widget shows, in the pixels of a screen of \a ratio, without its outermost ones, which a
/// place between two pixels has in part.
QImage pixelsOf(QWidget &widget, const QSize &size, qreal ratio)
{
    QImage image(onScreen(widget.size(), ratio), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    image.setDevicePixelRatio(1);
    return image.copy(QRect(QPoint(), size).adjusted(1, 1, -1, -1));
}

/// \a picture on white, without its outermost pixels.
QImage inside(const QImage &picture)
{
    QImage onWhite(picture.size(), QImage::Format_RGB32);
    onWhite.fill(Qt::white);
    QPainter(&onWhite).drawImage(0, 0, picture);
    return onWhite.copy(onWhite.rect().adjusted(1, 1, -1, -1));
}

QImage smooth(const QImage &picture, const QSize &size)
{
    return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QPixmap shownIn(const PictureRow *row)
{
    return row->label()->pixmap(Qt::ReturnByValue);
}

} // namespace

/// Pictures of answers in the pixels of a scaled screen.
class TestScaledPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void stillPicture_hasThePixelsOfTheScreen_data();
    void stillPicture_hasThePixelsOfTheScreen();
    void smallPicture_isEnlargedSmoothly_data();
    void smallPicture_isEnlargedSmoothly();
    void animation_hasThePixelsOfTheScreen_data();
    void animation_hasThePixelsOfTheScreen();
    void frameOfAPicture_isWhole();
    void pictureSetAnew_hasThePixelsOfTheScreen_data();
    void pictureSetAnew_hasThePixelsOfTheScreen();
    void rows_keepTheirPlaces_data();
    void rows_keepTheirPlaces();
    void pictureSeenOnAnotherScreen_isDecodedAnew();
    void dearPictureSeenOnAnotherScreen_isDecodedAnew();
    void animationSeenOnAnotherScreen_isPlayedAnew();
    void wokenPicture_isDecodedForItsScreen();
    void rowPictures_takeNoMoreInAll();

private:
    PictureRow *show(const QString &reply);
    static void addScales();

    QTemporaryDir m_work; ///< for the files of the animations
    QByteArray m_animation;
    std::unique_ptr<QARegion> m_region;
};

void TestScaledPictures::initTestCase()
{
    initResources();
    initAppPaths(QString());
    QFile file(QStringLiteral(":/Images/waiting@2x.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_animation = file.readAll();
    QVERIFY(m_work.isValid());
    QDir::setCurrent(m_work.path());
}

/// Or else the folder cannot be removed on Windows.
void TestScaledPictures::cleanupTestCase()
{
    QDir::setCurrent(QCoreApplication::applicationDirPath());
}

void TestScaledPictures::init()
{
    screenscale::set(1);
    m_region = std::make_unique<QARegion>();
    m_region->resize(646, 490);
}

void TestScaledPictures::cleanup()
{
    m_region.reset();
}

void TestScaledPictures::addScales()
{
    QTest::addColumn<qreal>("ratio");
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        QTest::addRow("%g", ratio) << ratio;
    }
}

/// Shows an answer on the screen as it is now. Returns the row of its picture.
PictureRow *TestScaledPictures::show(const QString &reply)
{
    m_region->show();
    (void)QTest::qWaitForWindowExposed(m_region.get());
    m_region->showAnswer(QStringLiteral("标题"), reply);
    return m_region->findChildren<PictureRow *>().last();
}

void TestScaledPictures::stillPicture_hasThePixelsOfTheScreen_data()
{
    addScales();
}

void TestScaledPictures::stillPicture_hasThePixelsOfTheScreen()
{
    QFETCH(qreal, ratio);
    screenscale::set(ratio);
    const QImage picture = finePicture(large);
    const PictureRow *row = show(tag("png", encoded(picture)));
    const QSize size = onScreen(largeShown, ratio);
    QCOMPARE(row->devicePixelRatioF(), ratio);
    QCOMPARE(shownIn(row).size(), size);
    QCOMPARE(pixelsOf(*row->label(), size, ratio), inside(smooth(picture, size)));
}

void TestScaledPictures::smallPicture_isEnlargedSmoothly_data()
{
    addScales();
}

void TestScaledPictures::smallPicture_isEnlargedSmoothly()
{
    QFETCH(qreal, ratio);
    screenscale::set(ratio);
    const QImage picture = finePicture(small);
    const PictureRow *row = show(tag("png", encoded(picture)));
    const QSize size = onScreen(small, ratio);
    QCOMPARE(pixelsOf(*row->label(), size, ratio), inside(smooth(picture, size)));
}

void TestScaledPictures::animation_hasThePixelsOfTheScreen_data()
{
    addScales();
}

void TestScaledPictures::animation_hasThePixelsOfTheScreen()
{
    QFETCH(qreal, ratio);
    screenscale::set(ratio);
    const PictureRow *row = show(tag("gif", m_animation));
    QMovie *movie = row->label()->movie();
    QVERIFY(movie != nullptr);
    movie->stop();
    QVERIFY(movie->jumpToFrame(0));
    QMovie whole(QStringLiteral(":/Images/waiting@2x.gif"));
    QVERIFY(whole.jumpToFrame(0));
    QImage frame = whole.currentImage();
    frame.setDevicePixelRatio(1); // which Qt reads from the name
    const QSize size = onScreen(row->label()->size(), ratio);
    if (ratio > 1) {
        QCOMPARE(pixelsOf(*row->label(), size, ratio), inside(smooth(frame, size)));
    } else { // as Qt scales it itself
        QCOMPARE(movie->currentPixmap().size(), frame.size());
    }
}

/// Also where the screen has no whole number of pixels for the place: here 137.5 in height.
void TestScaledPictures::frameOfAPicture_isWhole()
{
    constexpr qreal ratio = 1.25;
    const QSize size(206, 137);
    screenscale::set(ratio);
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawRect(picture.rect().adjusted(0, 0, -1, -1)); // black
    painter.end();
    PictureRow *row = show(tag("png", encoded(picture)));
    QCOMPARE(row->label()->size(), QSize(165, 110));
    for (int place = 0; place < 8; ++place) { // between two pixels, too
        QWidget *const bubble = row->window();
        row->setParent(bubble);
        row->setGeometry(place, place, row->width(), row->height());
        row->show();
        row->raise();
        QImage shown(onScreen(bubble->size(), ratio), QImage::Format_RGB32);
        shown.setDevicePixelRatio(ratio);
        bubble->render(&shown);
        const QPoint corner(qRound(place * ratio), qRound((place + 4) * ratio));
        const QRect frame(corner, size);
        for (const QPoint &side :
             {QPoint(frame.center().x(), frame.top()), QPoint(frame.center().x(), frame.bottom()),
              QPoint(frame.left(), frame.center().y()),
              QPoint(frame.right(), frame.center().y())}) {
            QCOMPARE(qGray(shown.pixel(side)), 0);
        }
    }
}

void TestScaledPictures::pictureSetAnew_hasThePixelsOfTheScreen_data()
{
    addScales();
}

void TestScaledPictures::pictureSetAnew_hasThePixelsOfTheScreen()
{
    QFETCH(qreal, ratio);
    screenscale::set(ratio);
    const QImage picture = finePicture(large);
    const QString part = tag("png", encoded(picture));
    const PictureRow *row = show(part);
    row->label()->clear();
    m_region->setPicture(part, QString(), 0);
    const QSize size = onScreen(largeShown, ratio);
    QCOMPARE(shownIn(row).devicePixelRatio(), ratio);
    QCOMPARE(pixelsOf(*row->label(), size, ratio), inside(smooth(picture, size)));
}

void TestScaledPictures::rows_keepTheirPlaces_data()
{
    addScales();
}

void TestScaledPictures::rows_keepTheirPlaces()
{
    QFETCH(qreal, ratio);
    screenscale::set(ratio);
    const PictureRow *row = show(tag("png", encoded(finePicture({800, 200}))));
    QCOMPARE(row->size(), QSize(446, 111));
    QCOMPARE(row->label()->geometry(), QRect(0, 4, 430, 107));
    QCOMPARE(row->button()->geometry(), QRect(0, 4, 430, 107));
}

void TestScaledPictures::pictureSeenOnAnotherScreen_isDecodedAnew()
{
    const QImage picture = finePicture(large);
    PictureRow *row = show(tag("png", encoded(picture)));
    QCOMPARE(shownIn(row).size(), largeShown);
    for (const qreal ratio : {1.5, 1.0, 2.0}) {
        screenscale::set(ratio);
        m_region->update();
        row->label()->update();
        const QSize size = onScreen(largeShown, ratio);
        QTRY_COMPARE(shownIn(row).size(), size);
        QCOMPARE(pixelsOf(*row->label(), size, ratio), inside(smooth(picture, size)));
        QCOMPARE(row->size(), QSize(446, 114));
    }
}

void TestScaledPictures::dearPictureSeenOnAnotherScreen_isDecodedAnew()
{
    const QImage picture = finePicture({3000, 3000});
    PictureRow *row = show(tag("png", encoded(picture)));
    QTRY_COMPARE(shownIn(row).size(), QSize(110, 110));
    screenscale::set(1.5);
    row->label()->update();
    QTRY_COMPARE(shownIn(row).size(), QSize(165, 165));
    QCOMPARE(shownIn(row).devicePixelRatio(), 1.5);
}

void TestScaledPictures::animationSeenOnAnotherScreen_isPlayedAnew()
{
    const PictureRow *row = show(tag("gif", m_animation));
    const QSize shown = row->label()->size();
    QVERIFY(row->label()->movie() != nullptr);
    for (const qreal ratio : {1.5, 2.0}) {
        screenscale::set(ratio);
        row->label()->update();
        QTRY_VERIFY(row->label()->movie() != nullptr
                    && row->label()->movie()->currentPixmap().size() == onScreen(shown, ratio));
        QCOMPARE(row->label()->movie()->state(), QMovie::Running);
    }
    QCOMPARE(row->label()->size(), shown);
}

/// A picture whose row was made again, with what was decoded for another screen.
void TestScaledPictures::wokenPicture_isDecodedForItsScreen()
{
    ConversationPictures pictures;
    qint64 costLeft = std::numeric_limits<qint64>::max();
    const int number = pictures.add(encoded(finePicture(large)), QString(), false, 1, costLeft);
    screenscale::set(1.25);
    QWidget window;
    window.resize(500, 300);
    PictureRow row(&window);
    pictures.showIn(&row, number);
    QCOMPARE(shownIn(&row).size(), largeShown); // better than nothing
    window.show();
    QTRY_COMPARE(shownIn(&row).size(), onScreen(largeShown, 1.25));
}

void TestScaledPictures::rowPictures_takeNoMoreInAll()
{
    ConversationPictures pictures;
    const QByteArray data = encoded(finePicture({430, 110})); // 739 KiB in a row
    qint64 costLeft = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 60; ++i) {
        (void)pictures.add(data, QString(), false, 2, costLeft);
    }
    QCOMPARE(pictures.at(59).shown.size(), QSize(860, 220));
    QVERIFY(pictures.shownBytes() <= ConversationPictures::mostShownBytes);
    QVERIFY(pictures.shownBytes() > ConversationPictures::mostShownBytes / 2);
}

int main(int argc, char *argv[])
{
    screenscale::allow();
    const QApplication application(argc, argv);
    TestScaledPictures test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_scaledpictures.moc"
