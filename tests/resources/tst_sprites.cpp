#include "resources/resources.h"
#include "tests/ui/support/pictures.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSet>
#include <QTest>

namespace {

constexpr int rowsOfTitleButton = 3;
constexpr int rowsOfPreviewButton = 4;

struct Picture
{
    const char *name;
    QSize size;
};

/// Every still picture that the program asks for, at the size it is shown in.
const Picture pictures[] = {
    {"Miravel.png", {128, 128}},
    {"Miravel-16.png", {16, 16}},
    {"Miravel-24.png", {24, 24}},
    {"Miravel-32.png", {32, 32}},
    {"Miravel-48.png", {48, 48}},
    {"Miravel-64.png", {64, 64}},
    {"Miravel-128.png", {128, 128}},
    {"Miravel-256.png", {256, 256}},
    {"Ostrelico.png", {120, 32}},
    {"Sysico.png", {64, 64}},
    {"logo-16.png", {16, 16}},
    {"surface-shadow.png", {48, 48}},
    {"top-bg.png", {920, 56}},
    {"top-nav-title.png", {111, 26}},
    {"waiting-first.png", {150, 164}},
    {"btn-about.png", {16, 16}},
    {"btn-min.png", {16, 48}},
    {"btn-max.png", {16, 48}},
    {"btn-close.png", {16, 48}},
    {"btn-open.png", {16, 9}},
    {"btn-retract.png", {16, 9}},
    {"btn-switch.png", {16, 14}},
    {"btn-switch-hover.png", {16, 14}},
    {"btn-switch-pressed.png", {16, 14}},
    {"btn-switch-association.png", {16, 14}},
    {"icon-hot.png", {22, 12}},
    {"icon-user.png", {42, 42}},
    {"icon-robot.png", {42, 42}},
    {"icon-triangle_right.png", {9, 16}},
    {"icon-triangle_left.png", {9, 18}},
    {"btn-preview-1.png", {28, 112}},
    {"btn-preview-2.png", {28, 112}},
    {"btn-preview-3.png", {28, 112}},
    {"btn-preview-4.png", {28, 112}},
    {"btn-preview-5.png", {60, 240}},
    {"btn-preview-6.png", {60, 240}},
};

/// Strips of rows, of which styles name the places.
bool isStrip(const QString &name)
{
    return name.startsWith(QLatin1String("btn-preview"))
        || QStringList{QStringLiteral("btn-min.png"), QStringLiteral("btn-max.png"),
                       QStringLiteral("btn-close.png")}
               .contains(name);
}

/// What the picture at twice its size is called; empty for icons, which have sizes of their own,
/// and for the shadow, which is even along its edges.
QString largeName(const QString &name)
{
    if (name.startsWith(QLatin1String("Miravel")) || name == QLatin1String("surface-shadow.png")) {
        return {};
    }
    if (isStrip(name)) {
        return QLatin1String("large/") + name;
    }
    return QString(name).replace(QLatin1String(".png"), QLatin1String("@2x.png"));
}

/// The colours of all pixels that show at all, whatever their transparency.
QSet<QRgb> colours(const QImage &picture)
{
    QSet<QRgb> found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (qAlpha(pixel) > 0)
                found.insert(pixel | 0xff000000U);
        }
    }
    return found;
}

/// How much of a column is covered, in pixels.
double coverage(const QImage &picture, int x)
{
    int sum = 0;
    for (int y = 0; y < picture.height(); ++y)
        sum += qAlpha(picture.pixel(x, y));
    return sum / 255.0;
}

} // namespace

/// The pictures as the program finds them: names, sizes, rows, colours.
class TestSprites : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void picture_isThereAtItsExactSize_data();
    void picture_isThereAtItsExactSize();
    void largePicture_isTheSameAtTwiceTheSize_data();
    void largePicture_isTheSameAtTwiceTheSize();
    void resourceFolder_holdsNothingElse();
    void initResources_twiceDoesNoHarm();
    void titleButtonRows_differInColourOnly_data();
    void titleButtonRows_differInColourOnly();
    void previewToolRows_allDiffer_data();
    void previewToolRows_allDiffer();
    void previewToolRow4_isTheGlyphGreyed_data();
    void previewToolRow4_isTheGlyphGreyed();
    void pageButton_isTransparentWhenIdle_data();
    void pageButton_isTransparentWhenIdle();
    void pageButtons_mirrorEachOther();
    void switchGlyphs_haveOneShapeAndTheColourOfTheirText_data();
    void switchGlyphs_haveOneShapeAndTheColourOfTheirText();
    void foldButtons_mirrorEachOther();
    void bubblePoint_hasTheExactColourOfItsBubble_data();
    void bubblePoint_hasTheExactColourOfItsBubble();
    void rightPoint_narrowsFromTheBubbleToTheRight();
    void leftPoint_narrowsFromTheBubbleToTheLeft();
    void glyph_keepsOffItsEdges_data();
    void glyph_keepsOffItsEdges();
    void avatar_isRound_data();
    void avatar_isRound();
    void titleBackground_isOpaqueAndLight();
};

void TestSprites::initTestCase()
{
    initResources();
}

void TestSprites::picture_isThereAtItsExactSize_data()
{
    QTest::addColumn<QSize>("size");
    for (const Picture &picture : pictures)
        QTest::newRow(picture.name) << picture.size;
}

void TestSprites::picture_isThereAtItsExactSize()
{
    QFETCH(QSize, size);
    const QImage picture = load(QLatin1String(QTest::currentDataTag()));
    QCOMPARE(picture.size(), size);
    QVERIFY(!isEmpty(picture));
}

void TestSprites::largePicture_isTheSameAtTwiceTheSize_data()
{
    QTest::addColumn<QString>("large");
    for (const Picture &picture : pictures) {
        const QString large = largeName(QLatin1String(picture.name));
        if (!large.isEmpty())
            QTest::newRow(picture.name) << large;
    }
}

void TestSprites::largePicture_isTheSameAtTwiceTheSize()
{
    QFETCH(QString, large);
    const QImage stated = load(QLatin1String(QTest::currentDataTag()));
    const QImage drawn = load(large);
    QCOMPARE(drawn.size(), 2 * stated.size());
    // Drawn, not enlarged; and when made small again, it covers what the stated one covers.
    const bool isPlainLine = large == QLatin1String("large/btn-min.png");
    const QImage enlarged = stated.scaled(drawn.size()).convertToFormat(drawn.format());
    QCOMPARE(drawn == enlarged, isPlainLine);
    const QImage small
        = drawn.scaled(stated.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double difference = 0;
    double covered = 0;
    for (int x = 0; x < stated.width(); ++x) {
        difference += qAbs(coverage(small, x) - coverage(stated, x));
        covered += coverage(stated, x);
    }
    constexpr double most = 0.1; // an edge falls on other pixels here and there
    QVERIFY2(difference <= most * covered, qPrintable(QString::number(difference / covered)));
}

void TestSprites::resourceFolder_holdsNothingElse()
{
    QSet<QString> expected{QStringLiteral("waiting.gif"), QStringLiteral("waiting@2x.gif"),
                           QStringLiteral("large")};
    for (const Picture &picture : pictures) {
        expected.insert(QLatin1String(picture.name));
        const QString large = largeName(QLatin1String(picture.name));
        if (!large.isEmpty() && !isStrip(QLatin1String(picture.name)))
            expected.insert(large);
    }
    const QStringList found = QDir(path(QString())).entryList();
    QCOMPARE(QSet<QString>(found.cbegin(), found.cend()), expected);
}

void TestSprites::initResources_twiceDoesNoHarm()
{
    initResources();
    QVERIFY(QFileInfo::exists(path(QStringLiteral("Miravel.png"))));
}

void TestSprites::titleButtonRows_differInColourOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("minimise") << QStringLiteral("btn-min.png");
    QTest::newRow("maximise") << QStringLiteral("btn-max.png");
    QTest::newRow("close") << QStringLiteral("btn-close.png");
}

void TestSprites::titleButtonRows_differInColourOnly()
{
    QFETCH(QString, name);
    const QImage strip = load(name);
    const QImage normal = row(strip, 0, rowsOfTitleButton);
    const QImage hover = row(strip, 1, rowsOfTitleButton);
    const QImage pressed = row(strip, 2, rowsOfTitleButton);
    QVERIFY(!isEmpty(normal));
    QCOMPARE(shape(hover), shape(normal));
    QCOMPARE(shape(pressed), shape(normal));
    QVERIFY(hover != normal);
    QVERIFY(pressed != normal);
    QVERIFY(pressed != hover);
}

void TestSprites::previewToolRows_allDiffer_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("one to one") << QStringLiteral("btn-preview-1.png");
    QTest::newRow("fit to window") << QStringLiteral("btn-preview-2.png");
    QTest::newRow("zoom in") << QStringLiteral("btn-preview-3.png");
    QTest::newRow("zoom out") << QStringLiteral("btn-preview-4.png");
    QTest::newRow("previous") << QStringLiteral("btn-preview-5.png");
    QTest::newRow("next") << QStringLiteral("btn-preview-6.png");
}

void TestSprites::previewToolRows_allDiffer()
{
    QFETCH(QString, name);
    const QImage strip = load(name);
    for (int first = 0; first < rowsOfPreviewButton; ++first) {
        for (int second = first + 1; second < rowsOfPreviewButton; ++second) {
            QVERIFY2(row(strip, first, rowsOfPreviewButton)
                         != row(strip, second, rowsOfPreviewButton),
                     qPrintable(QStringLiteral("rows %1 and %2").arg(first).arg(second)));
        }
    }
}

void TestSprites::previewToolRow4_isTheGlyphGreyed_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("one to one") << QStringLiteral("btn-preview-1.png");
    QTest::newRow("fit to window") << QStringLiteral("btn-preview-2.png");
    QTest::newRow("zoom in") << QStringLiteral("btn-preview-3.png");
    QTest::newRow("zoom out") << QStringLiteral("btn-preview-4.png");
}

void TestSprites::previewToolRow4_isTheGlyphGreyed()
{
    QFETCH(QString, name);
    const QImage strip = load(name);
    const QImage normal = row(strip, 0, rowsOfPreviewButton);
    const QImage greyed = row(strip, 3, rowsOfPreviewButton);
    QVERIFY(!isEmpty(normal));
    QCOMPARE(shape(greyed), shape(normal));
}

void TestSprites::pageButton_isTransparentWhenIdle_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("previous") << QStringLiteral("btn-preview-5.png");
    QTest::newRow("next") << QStringLiteral("btn-preview-6.png");
}

void TestSprites::pageButton_isTransparentWhenIdle()
{
    QFETCH(QString, name);
    const QImage strip = load(name);
    QVERIFY(isEmpty(row(strip, 0, rowsOfPreviewButton)));
    for (int state = 1; state < rowsOfPreviewButton; ++state)
        QVERIFY(!isEmpty(row(strip, state, rowsOfPreviewButton)));
}

void TestSprites::pageButtons_mirrorEachOther()
{
    const QImage previous = load(QStringLiteral("btn-preview-5.png"));
    const QImage next = load(QStringLiteral("btn-preview-6.png"));
    QVERIFY(previous != next);
    QCOMPARE(shape(previous.mirrored(true, false)), shape(next));
}

void TestSprites::switchGlyphs_haveOneShapeAndTheColourOfTheirText_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("hot questions") << QStringLiteral("btn-switch.png") << QColor(51, 47, 29);
    QTest::newRow("hover") << QStringLiteral("btn-switch-hover.png") << QColor(41, 100, 245);
    QTest::newRow("pressed") << QStringLiteral("btn-switch-pressed.png") << QColor(37, 90, 219);
    QTest::newRow("recommendations")
        << QStringLiteral("btn-switch-association.png") << QColor(117, 117, 117);
}

void TestSprites::switchGlyphs_haveOneShapeAndTheColourOfTheirText()
{
    QFETCH(QString, name);
    QFETCH(QColor, colour);
    const QImage glyph = load(name);
    QCOMPARE(shape(glyph), shape(load(QStringLiteral("btn-switch.png"))));
    QCOMPARE(colours(glyph), QSet<QRgb>{colour.rgb()});
}

void TestSprites::foldButtons_mirrorEachOther()
{
    const QImage open = load(QStringLiteral("btn-open.png"));
    const QImage retract = load(QStringLiteral("btn-retract.png"));
    QVERIFY(open != retract);
    QCOMPARE(shape(open.mirrored(false, true)), shape(retract));
}

void TestSprites::bubblePoint_hasTheExactColourOfItsBubble_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("question") << QStringLiteral("icon-triangle_right.png") << QColor(223, 237, 255);
    QTest::newRow("answer") << QStringLiteral("icon-triangle_left.png") << QColor(244, 245, 248);
}

void TestSprites::bubblePoint_hasTheExactColourOfItsBubble()
{
    QFETCH(QString, name);
    QFETCH(QColor, colour);
    QCOMPARE(colours(load(name)), QSet<QRgb>{colour.rgb()});
}

void TestSprites::rightPoint_narrowsFromTheBubbleToTheRight()
{
    const QImage point = load(QStringLiteral("icon-triangle_right.png"));
    for (int x = 1; x < point.width(); ++x)
        QVERIFY(coverage(point, x) < coverage(point, x - 1));
    QCOMPARE(shape(point.mirrored(false, true)), shape(point));
}

void TestSprites::leftPoint_narrowsFromTheBubbleToTheLeft()
{
    const QImage point = load(QStringLiteral("icon-triangle_left.png"));
    for (int x = 1; x < point.width(); ++x)
        QVERIFY(coverage(point, x) > coverage(point, x - 1));
    QCOMPARE(shape(point.mirrored(false, true)), shape(point));
}

void TestSprites::glyph_keepsOffItsEdges_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("rows");
    QTest::newRow("about") << QStringLiteral("btn-about.png") << 1;
    QTest::newRow("minimise") << QStringLiteral("btn-min.png") << rowsOfTitleButton;
    QTest::newRow("maximise") << QStringLiteral("btn-max.png") << rowsOfTitleButton;
    QTest::newRow("close") << QStringLiteral("btn-close.png") << rowsOfTitleButton;
    QTest::newRow("open") << QStringLiteral("btn-open.png") << 1;
    QTest::newRow("retract") << QStringLiteral("btn-retract.png") << 1;
    QTest::newRow("previous") << QStringLiteral("btn-preview-5.png") << rowsOfPreviewButton;
    QTest::newRow("next") << QStringLiteral("btn-preview-6.png") << rowsOfPreviewButton;
}

void TestSprites::glyph_keepsOffItsEdges()
{
    QFETCH(QString, name);
    QFETCH(int, rows);
    const QImage strip = load(name);
    for (int number = 0; number < rows; ++number)
        QVERIFY(borderIsClear(row(strip, number, rows)));
}

void TestSprites::avatar_isRound_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("user") << QStringLiteral("icon-user.png");
    QTest::newRow("robot") << QStringLiteral("icon-robot.png");
}

void TestSprites::avatar_isRound()
{
    QFETCH(QString, name);
    const QImage avatar = load(name);
    const int last = avatar.width() - 1;
    const int middle = avatar.width() / 2;
    QCOMPARE(qAlpha(avatar.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(avatar.pixel(last, last)), 0);
    QCOMPARE(qAlpha(avatar.pixel(middle, middle)), 255);
    QVERIFY(qAlpha(avatar.pixel(0, middle)) > 0);
    QVERIFY(qAlpha(avatar.pixel(last, middle)) > 0);
}

void TestSprites::titleBackground_isOpaqueAndLight()
{
    constexpr int darkestAllowed = 200;
    const QImage background = load(QStringLiteral("top-bg.png"));
    for (int y = 0; y < background.height(); ++y) {
        for (int x = 0; x < background.width(); ++x) {
            const QRgb pixel = background.pixel(x, y);
            QCOMPARE(qAlpha(pixel), 255);
            QVERIFY(qGray(pixel) >= darkestAllowed);
        }
    }
}

QTEST_MAIN(TestSprites)
#include "tst_sprites.moc"
