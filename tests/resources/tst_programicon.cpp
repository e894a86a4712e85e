#include "resources/resources.h"
#include "tests/ui/support/pictures.h"

#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QMovie>
#include <QPixmap>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

/// The application icon in all its sizes, and the loading animation.
class TestProgramIcon : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void iconSizes_areDrawnNotAllScaled();
    void windowIcon_isUsable();
    void windowsIcon_holdsEverySize();
    void waiting_isSmallAndFitsItsLabel();
    void waiting_hasEnoughDifferentFrames();
    void waiting_playsForEver();
    void waiting_leavesTheVeilFreeAroundItsCard();
    void waitingFirst_isTheFirstFrame();
};

void TestProgramIcon::initTestCase()
{
    initResources();
}

void TestProgramIcon::iconSizes_areDrawnNotAllScaled()
{
    const QImage large = load(QStringLiteral("Miravel-256.png"));
    for (const int side : {16, 24, 32, 48}) {
        const QImage drawn = load(QStringLiteral("Miravel-%1.png").arg(side));
        const QImage scaled
            = large.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QVERIFY(shape(drawn) != shape(scaled));
    }
}

void TestProgramIcon::windowIcon_isUsable()
{
    const QIcon icon(path(QStringLiteral("Miravel.png")));
    QVERIFY(!icon.isNull());
    QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(128, 128)});
    QCOMPARE(load(QStringLiteral("Miravel.png")), load(QStringLiteral("Miravel-128.png")));
}

void TestProgramIcon::windowsIcon_holdsEverySize()
{
    QImageReader reader(QStringLiteral(MIRAVEL_ICON_FILE));
    QSet<int> sides;
    for (int number = 0; number < reader.imageCount(); ++number) {
        QVERIFY(reader.jumpToImage(number));
        const QImage picture = reader.read();
        QVERIFY2(!picture.isNull(), qPrintable(reader.errorString()));
        QCOMPARE(picture.width(), picture.height());
        sides.insert(picture.width());
    }
    QCOMPARE(sides, (QSet<int>{16, 24, 32, 48, 64, 128, 256}));
}

void TestProgramIcon::waiting_isSmallAndFitsItsLabel()
{
    constexpr qint64 mostBytes = 60'000;
    const QString name = path(QStringLiteral("waiting.gif"));
    QVERIFY(QFileInfo(name).size() < mostBytes);
    // As high as its card, in the middle of the label of 150 x 260 px.
    QCOMPARE(QImageReader(name).size(), QSize(150, 164));
}

void TestProgramIcon::waiting_hasEnoughDifferentFrames()
{
    constexpr int fewestFrames = 12;
    QMovie movie(path(QStringLiteral("waiting.gif")));
    QVERIFY2(movie.isValid(), qPrintable(movie.lastErrorString()));
    QVERIFY(movie.frameCount() >= fewestFrames);
    QImage before;
    for (int number = 0; number < movie.frameCount(); ++number) {
        QVERIFY(movie.jumpToFrame(number));
        QVERIFY(movie.currentImage() != before);
        before = movie.currentImage();
    }
}

void TestProgramIcon::waiting_playsForEver()
{
    constexpr int fasterThanLife = 2000; // per cent
    QMovie movie(path(QStringLiteral("waiting.gif")));
    movie.setSpeed(fasterThanLife);
    QVERIFY(movie.jumpToFrame(movie.frameCount() - 1));
    const QSignalSpy finished(&movie, &QMovie::finished);
    QSignalSpy frames(&movie, &QMovie::frameChanged);
    movie.start();
    QTRY_VERIFY(frames.count() > 2 * movie.frameCount());
    QCOMPARE(finished.count(), 0);
    QCOMPARE(movie.state(), QMovie::Running);
}

void TestProgramIcon::waiting_leavesTheVeilFreeAroundItsCard()
{
    QMovie movie(path(QStringLiteral("waiting.gif")));
    for (int number = 0; number < movie.frameCount(); ++number) {
        QVERIFY(movie.jumpToFrame(number));
        const QImage frame = movie.currentImage().convertToFormat(QImage::Format_ARGB32);
        QVERIFY(borderIsClear(frame));
        QCOMPARE(qAlpha(frame.pixel(frame.rect().center())), 255);
    }
}

void TestProgramIcon::waitingFirst_isTheFirstFrame()
{
    QMovie movie(path(QStringLiteral("waiting.gif")));
    QVERIFY(movie.jumpToFrame(0));
    const auto shown = [](const QImage &image) {
        return QPixmap::fromImage(image).toImage().convertToFormat(
            QImage::Format_ARGB32_Premultiplied);
    };
    QCOMPARE(shown(load(QStringLiteral("waiting-first.png"))), shown(movie.currentImage()));
}

QTEST_MAIN(TestProgramIcon)
#include "tst_programicon.moc"
