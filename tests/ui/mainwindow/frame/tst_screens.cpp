#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/frame/windowplace.h"
#include "ui/preview/imagedisplay.h"

#include <QApplication>
#include <QBuffer>
#include <QDesktopWidget>
#include <QEvent>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <QTextEdit>

/// Screens that come, go and change.
class TestScreens : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void screenAtOrigin_data();
    void screenAtOrigin();
    void centre_data();
    void centre();
    void changedScreens_centreTheWindow_data();
    void changedScreens_centreTheWindow();
    void hiddenWindow_isMovedButNotShown();
    void typingGoesOnAfterAChange();
    void openPreview_isCentredToo();
    void openPreview_followsTheWindow();
    void closedPreview_isLeftAlone();
    void otherResolution_showsTheWindowAnew();
    void otherResolution_leavesAHiddenWindowHidden();

private:
    void openPreview();

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

/// Counts how often a window was shown.
class ShowCounter : public QObject
{
public:
    explicit ShowCounter(QObject *window) { window->installEventFilter(this); }

    int shown = 0;
    int hidden = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        shown += event->type() == QEvent::Show ? 1 : 0;
        hidden += event->type() == QEvent::Hide ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void TestScreens::init()
{
    m_bench = std::make_unique<WindowBench>();
}

void TestScreens::cleanup()
{
    m_bench.reset();
}

void TestScreens::openPreview()
{
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QVERIFY(image.save(&buffer, "PNG"));
    auto *region = m_bench->window().findChild<QARegion *>();
    region->showAnswer(QStringLiteral("题"),
                       QStringLiteral("<p><img src=\"data:image/png;base64,%1\" style=\"\"/></p>")
                           .arg(QLatin1String(bytes.toBase64())));
    region->picture_preview(0);
    QVERIFY(region->preview() != nullptr);
    QVERIFY(region->preview()->isVisible());
}

void TestScreens::screenAtOrigin_data()
{
    QTest::addColumn<QVector<QRect>>("screens");
    QTest::addColumn<QSize>("size");
    const QRect left(-1920, 0, 1920, 1080);
    const QRect origin(0, 0, 2560, 1440);
    const QRect clone(0, 0, 1024, 768);
    QTest::newRow("none") << QVector<QRect>{} << QSize(0, 0);
    QTest::newRow("one") << QVector<QRect>{origin} << origin.size();
    QTest::newRow("second of two") << QVector<QRect>{left, origin} << origin.size();
    QTest::newRow("first of two copies") << QVector<QRect>{clone, origin} << clone.size();
    QTest::newRow("none at the origin") << QVector<QRect>{left} << QSize(0, 0);
}

void TestScreens::screenAtOrigin()
{
    QFETCH(QVector<QRect>, screens);
    QFETCH(QSize, size);
    QCOMPARE(sizeOfScreenAtOrigin(screens), size);
}

void TestScreens::centre_data()
{
    QTest::addColumn<QSize>("area");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("larger") << QSize(1920, 1080) << QPoint(500, 220);
    QTest::newRow("smaller") << QSize(800, 600) << QPoint(-60, -20);
    QTest::newRow("no screen") << QSize(0, 0) << QPoint(-460, -320);
    QTest::newRow("odd") << QSize(1921, 1081) << QPoint(500, 220);
}

void TestScreens::centre()
{
    QFETCH(QSize, area);
    QFETCH(QPoint, place);
    QCOMPARE(centredPosition(area, QSize(920, 640)), place);
}

void TestScreens::changedScreens_centreTheWindow_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::newRow("another primary screen") << QByteArray("primaryScreenChanged");
    QTest::newRow("a screen resized") << QByteArray("resized");
    QTest::newRow("a screen came or went") << QByteArray("screenCountChanged");
}

void TestScreens::changedScreens_centreTheWindow()
{
    QFETCH(QByteArray, signal);
    m_bench->window().move(5, 5);
    QVERIFY(WindowBench::putPointer());
    ShowCounter counter(&m_bench->window());
    const LogCapture log;
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    if (signal == "primaryScreenChanged") {
        emit qGuiApp->primaryScreenChanged(QGuiApplication::primaryScreen());
    } else if (signal == "resized") {
        emit QApplication::desktop()->resized(0);
    } else {
        emit QApplication::desktop()->screenCountChanged(2);
    }
    QT_WARNING_POP
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const QPoint place = centredPosition(screen, QSize(920, 640));
    QCOMPARE(m_bench->window().pos(), place);
    QTRY_COMPARE(QCursor::pos(), QPoint(1, 1)); // the window system may tell of it late
    QCOMPARE(counter.hidden, 1);
    QCOMPARE(counter.shown, 1);
    QCOMPARE(log.lines(),
             (QStringList{QStringLiteral("debug: get rect of primaryScreen, width:%1 height:%2")
                              .arg(screen.width())
                              .arg(screen.height()),
                          QStringLiteral("debug: Move Miravel to OriginX:%1OriginY:%2")
                              .arg(place.x())
                              .arg(place.y())}));
}

void TestScreens::hiddenWindow_isMovedButNotShown()
{
    m_bench->window().hide();
    m_bench->window().slotResize();
    QVERIFY(!m_bench->window().isVisible());
    QCOMPARE(m_bench->window().pos(),
             centredPosition(QGuiApplication::primaryScreen()->size(), QSize(920, 640)));
}

void TestScreens::typingGoesOnAfterAChange()
{
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    m_bench->window().slotResize();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    QCOMPARE(m_bench->window().focusWidget(), m_bench->input());
}

void TestScreens::openPreview_isCentredToo()
{
    openPreview();
    ImageDisplay *preview = m_bench->window().findChild<QARegion *>()->preview();
    preview->move(3, 3);
    ShowCounter counter(preview);
    const LogCapture log;
    m_bench->window().slotResize_ImagePreviewWid(1920, 1080);
    const QPoint place = centredPosition({1920, 1080}, preview->size());
    QCOMPARE(preview->pos(), place);
    QCOMPARE(counter.hidden, 1);
    QCOMPARE(counter.shown, 1);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: Move picture preview window of "
                                                     "Miravel to OriginX:%1OriginY:%2")
                                          .arg(place.x())
                                          .arg(place.y())});
}

void TestScreens::openPreview_followsTheWindow()
{
    openPreview();
    ImageDisplay *preview = m_bench->window().findChild<QARegion *>()->preview();
    preview->move(3, 3);
    m_bench->window().slotResize();
    QCOMPARE(preview->pos(),
             centredPosition(QGuiApplication::primaryScreen()->size(), preview->size()));
}

void TestScreens::closedPreview_isLeftAlone()
{
    const LogCapture log;
    m_bench->window().slotResize_ImagePreviewWid(1920, 1080); // never opened
    QCOMPARE(log.lines(), QStringList());
    openPreview();
    const QPointer<ImageDisplay> preview = m_bench->window().findChild<QARegion *>()->preview();
    preview->close();
    m_bench->window().slotResize_ImagePreviewWid(1920, 1080);
    QVERIFY(log.lines().filter(QStringLiteral("Move picture preview")).isEmpty());
    QVERIFY(preview.isNull() || !preview->isVisible());
}

void TestScreens::otherResolution_showsTheWindowAnew()
{
    const QPoint place = m_bench->window().pos();
    ShowCounter counter(&m_bench->window());
    emit QGuiApplication::primaryScreen()->logicalDotsPerInchChanged(120);
    QCOMPARE(counter.hidden, 1);
    QCOMPARE(counter.shown, 1);
    QCOMPARE(m_bench->window().pos(), place);
}

void TestScreens::otherResolution_leavesAHiddenWindowHidden()
{
    m_bench->window().hide();
    m_bench->window().OnLogicalDotsPerInchChanged();
    QVERIFY(!m_bench->window().isVisible());
}

QTEST_MAIN(TestScreens)
#include "tst_screens.moc"
