#include "ui/style/surfaceshadow.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int room = 20; ///< px around a surface, more than its shadow needs

/// A plain rectangle that counts how often it is painted.
class Surface : public QWidget
{
public:
    explicit Surface(QWidget *parent)
        : QWidget(parent)
    {
        setAutoFillBackground(true);
    }

    [[nodiscard]] int paintings() const { return m_paintings; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        Q_UNUSED(event)
        ++m_paintings;
    }

private:
    int m_paintings = 0;
};

QGraphicsDropShadowEffect *makeToolkitShadow(QWidget *widget)
{
    auto *shadow = new QGraphicsDropShadowEffect(widget);
    shadow->setOffset(0, 0);
    shadow->setColor(QColor(0xDC, 0xDC, 0xDC));
    shadow->setBlurRadius(8);
    widget->setGraphicsEffect(shadow);
    return shadow;
}

/// A surface of \a size with the effect that \a makeShadow gives it, in a black window.
template <typename MakeShadow>
class Window : public QWidget
{
public:
    Window(const QSize &size, MakeShadow makeShadow)
        : m_surface(this)
    {
        setPalette(Qt::black);
        m_surface.setPalette(Qt::white);
        m_surface.setGeometry(QRect(QPoint(room, room), size));
        makeShadow(&m_surface);
        setWindowFlags(Qt::FramelessWindowHint);
        setFixedSize(size + QSize(2 * room, 2 * room));
    }

    /// What is on the screen.
    QImage shown()
    {
        show();
        return QTest::qWaitForWindowExposed(this)
                    && QTest::qWaitFor([this] { return m_surface.paintings() > 0; })
                 ? screen()->grabWindow(winId()).toImage()
                 : QImage();
    }

private:
    Surface m_surface;
};

SurfaceShadow *makeOwnShadow(QWidget *widget)
{
    return addSurfaceShadow(widget);
}

/// The largest difference in brightness between two pictures of one size.
int largestDifference(const QImage &one, const QImage &other)
{
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            largest = std::max(largest, qAbs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))));
        }
    }
    return largest;
}

} // namespace

/// The shadow of the window's surfaces against Qt's own.
class TestSurfaceShadow : public QObject
{
    Q_OBJECT

private slots:
    void storedPicture_isTheToolkitsShadow();
    void shadow_looksAsTheToolkitsOwn_data();
    void shadow_looksAsTheToolkitsOwn();
    void picture_looksAsTheWindow();
    void shadow_hasTheFixedValues();
    void change_paintsNothingElseOfTheSurface();
    void twoChanges_leaveTheVeilBetweenThemWhole();
    void surfaceThatMovesAndHides_takesItsShadowAlong();
    void hiddenShadow_isNotPainted();
};

void TestSurfaceShadow::storedPicture_isTheToolkitsShadow()
{
    constexpr int reach = 8;
    constexpr int side = 32;
    QWidget ground;
    ground.resize(side + 2 * reach, side + 2 * reach);
    auto *square = new QWidget(&ground);
    square->setGeometry(reach, reach, side, side);
    square->setAutoFillBackground(true);
    square->setGraphicsEffect(makeToolkitShadow(square));
    QImage picture(ground.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    ground.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillRect(square->geometry(), Qt::transparent);
    painter.end();
    const QString file = QDir::temp().filePath(QStringLiteral("surface-shadow.png"));
    const bool equal = shadowedTile() == picture;
    QVERIFY2(equal || !picture.save(file), qPrintable(QLatin1String("what it should be: ") + file));
}

void TestSurfaceShadow::shadow_looksAsTheToolkitsOwn_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("list of questions") << QSize(224, 496);
    QTest::newRow("title bar") << QSize(920, 56);
    QTest::newRow("as small as its corners") << QSize(32, 32);
}

void TestSurfaceShadow::shadow_looksAsTheToolkitsOwn()
{
    QFETCH(QSize, size);
    const QImage own = Window(size, makeOwnShadow).shown();
    const QImage toolkits = Window(size, makeToolkitShadow).shown();
    QVERIFY(!own.isNull());
    QCOMPARE(own.size(), toolkits.size());
    // Qt blurs at half the size, so its own result differs a little from edge to edge.
    constexpr int invisible = 4;
    const int difference = largestDifference(own, toolkits);
    QVERIFY2(difference <= invisible, qPrintable(QString::number(difference)));
    constexpr int justOutside = room - 1;
    QVERIFY(qGray(own.pixel(own.width() / 2, justOutside)) > invisible);
}

void TestSurfaceShadow::picture_looksAsTheWindow()
{
    Window window(QSize(200, 100), makeOwnShadow);
    const QImage shown = window.shown();
    QVERIFY(!shown.isNull());
    const QImage grabbed = window.grab().toImage();
    QCOMPARE(grabbed.size(), shown.size());
    constexpr int invisible = 4;
    const int difference = largestDifference(grabbed, shown);
    QVERIFY2(difference <= invisible, qPrintable(QString::number(difference)));
}

void TestSurfaceShadow::shadow_hasTheFixedValues()
{
    QWidget window;
    QWidget widget(&window);
    const SurfaceShadow shadow(&widget);
    QCOMPARE(shadow.offset(), QPointF(0, 0));
    QCOMPARE(shadow.color(), QColor(0xDC, 0xDC, 0xDC));
    QCOMPARE(shadow.blurRadius(), 8.0);
}

void TestSurfaceShadow::change_paintsNothingElseOfTheSurface()
{
    QWidget window;
    window.resize(300, 300);
    Surface surface(&window);
    surface.setGeometry(room, room, 200, 200);
    addSurfaceShadow(&surface);
    Surface changing(&surface);
    changing.setGeometry(10, 10, 20, 20);
    Surface resting(&surface);
    resting.setGeometry(150, 150, 20, 20);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(changing.paintings() > 0);
    const int before = changing.paintings();
    const int restingBefore = resting.paintings();
    changing.update();
    QTRY_VERIFY(changing.paintings() > before);
    QCOMPARE(resting.paintings(), restingBefore);
}

/// Qt paints what lies between two changes as well, of a widget with an effect.
void TestSurfaceShadow::twoChanges_leaveTheVeilBetweenThemWhole()
{
    QWidget window;
    window.setWindowFlags(Qt::FramelessWindowHint);
    window.resize(300, 100);
    Surface surface(&window);
    surface.setGeometry(room, room, 260, 60);
    addSurfaceShadow(&surface);
    Surface left(&surface);
    left.setGeometry(10, 10, 16, 16);
    Surface right(&surface);
    right.setGeometry(200, 30, 16, 16);
    QWidget veil(&window);
    veil.setGeometry(window.rect());
    veil.setStyleSheet(QStringLiteral("background-color: rgba(17,17,17,20%);"));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(left.paintings() > 0);
    const auto screenPicture = [&window] {
        return window.screen()->grabWindow(window.winId()).toImage();
    };
    const QImage before = screenPicture();
    const int paintings = left.paintings();
    left.update();
    right.update();
    QTRY_VERIFY(left.paintings() > paintings);
    QCOMPARE(screenPicture(), before);
}

void TestSurfaceShadow::surfaceThatMovesAndHides_takesItsShadowAlong()
{
    QWidget window;
    window.setWindowFlags(Qt::FramelessWindowHint);
    window.setPalette(Qt::black);
    window.resize(300, 100);
    Surface surface(&window);
    surface.setGeometry(room, room, 60, 60);
    addSurfaceShadow(&surface);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto isLitAt = [&window](int x) {
        const QImage picture = window.screen()->grabWindow(window.winId()).toImage();
        return qGray(picture.pixel(x, room + 30)) > 0;
    };
    constexpr int justLeftOfIt = room - 1;
    QTRY_VERIFY(isLitAt(justLeftOfIt));
    surface.move(200, room);
    QTRY_VERIFY(isLitAt(200 - 1));
    QVERIFY(!isLitAt(justLeftOfIt));
    surface.hide();
    QTRY_VERIFY(!isLitAt(200 - 1));
}

void TestSurfaceShadow::hiddenShadow_isNotPainted()
{
    QWidget window;
    window.setPalette(Qt::black);
    window.resize(100, 100);
    Surface surface(&window);
    surface.setGeometry(room, room, 60, 60);
    addSurfaceShadow(&surface)->hide();
    QCOMPARE(qGray(window.grab().toImage().pixel(room - 1, 50)), 0);
}

QTEST_MAIN(TestSurfaceShadow)

#include "tst_surfaceshadow.moc"
