#include "resources/resources.h"
#include "tests/service/support/logcapture.h"
#include "ui/preview/imagedisplay.h"
#include "ui/preview/resizeborder.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <memory>

Q_DECLARE_METATYPE(QMargins)

namespace {

constexpr int titleHeight = 56;
constexpr int notch = 120;
const QPoint onTitle(300, 30);
const QPoint onPicture(460, 300);

QPixmap picture(int width, int height)
{
    QPixmap pixmap(width, height);
    pixmap.fill(Qt::blue);
    return pixmap;
}

/// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QObject *watched) { watched->installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

/// The window that shows a picture large.
class TestImageDisplay : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void toolButtons_order_names_andPlaces();
    void tabOrder_isTheReadingOrder();
    void pageButtons_areTransparentWhenIdle();
    void pictureTitle_isShownWithoutMarkup_cutToTheRoom();
    void firstStillPicture_isShownAsItIs();
    void zoomButtons_stopAtAFifthAndAtFour();
    void zoomIn_thenOut_doesNotCancel();
    void wheel_downZoomsOut_upZoomsIn_andIsAccepted();
    void wheel_severalNotchesBeforeOnePaint_areOneStep();
    void fit_thenZoom_startsFromTheRatio();
    void fit_showsAllOfAPictureOfTheAreasProportions();
    void oneToOne_resetsAStillPicture();
    void repaintWithoutAZoomStep_scalesNothing();
    void idleWindow_isNotPaintedOverAndOver();
    void previousAtTheFirst_emitsNothing();
    void next_alwaysEmits_evenPastTheEnd();
    void arrowKeys_page();
    void setCurrentIndex_decidesWhereNextGoes();
    void pictureChange_resetsTheScale();
    void pagingWhileMaximised_keepsTheWindow();
    void pagingWhileZoomed_andWithAStepWaiting();
    void pictureTallerThanTheDesktop_isScaledIntoTheLabel();
    void zoomingAScaledPicture_showsItAtItsScale();
    void pictureFillingTheDesktopExactly_isNotScaled();
    void maximise_andBack_restoresPlaceAndSize();
    void maximise_scalesALargePicture();
    void doubleClickOnTheTitle_togglesMaximise();
    void doubleClickElsewhere_orWithTheRightButton_doesNothing();
    void titleBar_dragsTheWindow();
    void maximisedWindow_isNotDragged();
    void dragging_needsThePressOnTheTitle();
    void minimise();
    void escape_closes();
    void closeButton_closes();
    void animation_playsFromItsFile();
    void animation_ignoresZoomAndWheel();
    void animation_oneToOne_maximises();
    void animation_restores_toItsOwnSize();
    void animation_restores_notBelowTheSmallestSize();
    void animation_largerThanTheDesktop_isScaled();
    void animation_stopsWhileHidden();
    void changeToAnimation_andBack();
    void oldMovie_isGoneBeforeTheNewOneOpens();
    void animationFileMissing_showsTheStillPicture();
    void animationFileDeletedWhilePlaying();
    void nullPicture_survivesEverything();
    void oddSizes_surviveEverything_data();
    void oddSizes_surviveEverything();
    void draggedEdge_stopsAtTheSmallestSize_data();
    void draggedEdge_stopsAtTheSmallestSize();
    void draggedEdge_logs();
    void cursor_showsTheResizeBorder();

private:
    void open(const QPixmap &pixmap, bool animated = false, int index = 0);
    [[nodiscard]] QPushButton *button(const QString &name) const;
    void click(const QString &name) const { button(name)->click(); }
    void paint() const { m_window->repaint(); }
    void turnWheel(int delta) const;
    void mouse(QEvent::Type type, const QPoint &position,
               Qt::MouseButton button = Qt::LeftButton) const;
    void useEverything();
    [[nodiscard]] QLabel *label() const;
    [[nodiscard]] QSize shownSize() const;
    static void saveAnimation(int number, const QSize &size = {40, 30});

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
    std::unique_ptr<ImageDisplay> m_window;
};

void TestImageDisplay::initTestCase()
{
    initResources();
    m_before = QDir::currentPath();
}

void TestImageDisplay::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QDir::setCurrent(m_folder->path());
    QVERIFY(QDir().mkdir(QStringLiteral("gif")));
}

void TestImageDisplay::cleanup()
{
    m_window.reset();
    QDir::setCurrent(m_before);
    m_folder.reset();
}

void TestImageDisplay::open(const QPixmap &pixmap, bool animated, int index)
{
    m_window = std::make_unique<ImageDisplay>();
    m_window->PreviewWin(pixmap, QStringLiteral("标题"), animated, index);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    paint();
}

QPushButton *TestImageDisplay::button(const QString &name) const
{
    const QList<QPushButton *> buttons = m_window->findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->accessibleName() == name) {
            return candidate;
        }
    }
    qFatal("no button %s", qPrintable(name));
}

void TestImageDisplay::turnWheel(int delta) const
{
    QWheelEvent event(onPicture, m_window->mapToGlobal(onPicture), QPoint(), QPoint(0, delta),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    event.ignore();
    QApplication::sendEvent(m_window.get(), &event);
    QVERIFY(event.isAccepted());
}

/// Sends a mouse event to whatever lies at a position of the window.
void TestImageDisplay::mouse(QEvent::Type type, const QPoint &position,
                             Qt::MouseButton pressed) const
{
    QWidget *target = m_window->childAt(position);
    if (!target) {
        target = m_window.get();
    }
    const bool move = type == QEvent::MouseMove;
    const bool release = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, target->mapFrom(m_window.get(), position),
                      m_window->mapToGlobal(position), move ? Qt::NoButton : pressed,
                      release ? Qt::NoButton : Qt::MouseButtons(pressed), Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

QLabel *TestImageDisplay::label() const
{
    return m_window->findChild<QLabel *>(QStringLiteral("pictureLabel"));
}

QSize TestImageDisplay::shownSize() const
{
    return label()->pixmap(Qt::ReturnByValue).size();
}

void TestImageDisplay::saveAnimation(int number, const QSize &size)
{
    // GIF89a: a canvas of any size, two frames of one pixel in its corner, 20 ms each, for ever.
    const auto word = [](int value) {
        return QByteArray(1, static_cast<char>(value & 0xff)) + static_cast<char>(value >> 8);
    };
    const QByteArray frame = QByteArray::fromHex("21f9040002000000"
                                                 "2c00000000010001000002024401003b");
    QByteArray data("GIF89a");
    data += word(size.width()) + word(size.height()) + QByteArray::fromHex("810000");
    data += QByteArray::fromHex("ff00000000ff000000000000");
    data += QByteArray::fromHex("21ff0b") + "NETSCAPE2.0" + QByteArray::fromHex("0301000000");
    data += frame.chopped(1) + frame;
    QFile file(QStringLiteral("gif/%1.gif").arg(number));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

void TestImageDisplay::form()
{
    const LogCapture log;
    open(picture(300, 200));
    QCOMPARE(m_window->size(), QSize(920, 646));
    QCOMPARE(m_window->styleSheet(),
             QStringLiteral("QWidget{background-color:rgb(244, 245, 248);border:2px solid "
                            "rgb(230,231,235);}"));
    QVERIFY(m_window->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(m_window->isWindow());
    auto *title = m_window->findChild<QLabel *>(QStringLiteral("previewTitle"));
    QCOMPARE(title->text(), QStringLiteral("图片预览"));
    QCOMPARE(title->styleSheet(),
             QStringLiteral("QLabel{background-color:transparent; color:rgb(29,38,51);font:16px "
                            "Microsoft YaHei;text-align: left;border:none;}"));
    QCOMPARE(label()->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: PreviewWin_initial png")});
    const QPoint middle = m_window->frameGeometry().center();
    QVERIFY((middle - m_window->screen()->geometry().center()).manhattanLength() <= 2);
}

void TestImageDisplay::toolButtons_order_names_andPlaces()
{
    open(picture(300, 200));
    const QStringList names{
        QStringLiteral("最小化"),   QStringLiteral("最大化"),   QStringLiteral("关闭"),
        QStringLiteral("原始大小"), QStringLiteral("适应窗口"), QStringLiteral("上一张"),
        QStringLiteral("下一张"),   QStringLiteral("放大"),     QStringLiteral("缩小")};
    QPoint last;
    for (const QString &name : names) {
        QPushButton *const found = button(name);
        QCOMPARE(found->toolTip(), name);
        QVERIFY(found->isEnabled());
        const QPoint place = found->mapTo(m_window.get(), QPoint());
        QVERIFY2(place.x() > last.x() || place.y() > last.y() + titleHeight, qPrintable(name));
        last = place;
    }
    QCOMPARE(m_window->findChildren<QPushButton *>().size(), names.size());
    QCOMPARE(button(QStringLiteral("上一张"))->size(), QSize(60, 60));
    QCOMPARE(button(QStringLiteral("下一张"))->size(), QSize(60, 60));
    QCOMPARE(button(QStringLiteral("下一张"))->x()
                 - button(QStringLiteral("上一张"))->geometry().right() - 1,
             24);
}

void TestImageDisplay::tabOrder_isTheReadingOrder()
{
    open(picture(300, 200));
    QStringList order;
    const QWidget *widget = m_window->nextInFocusChain();
    for (; widget != m_window.get(); widget = widget->nextInFocusChain()) {
        if (widget->focusPolicy() != Qt::NoFocus) {
            order.append(widget->accessibleName());
        }
    }
    QCOMPARE(order.join(QLatin1Char(' ')),
             QStringLiteral("最小化 最大化 关闭 原始大小 适应窗口 上一张 下一张 放大 缩小"));
}

void TestImageDisplay::pageButtons_areTransparentWhenIdle()
{
    open(picture(300, 200));
    for (const QString &name : {QStringLiteral("上一张"), QStringLiteral("下一张")}) {
        const QImage idle = button(name)->grab().toImage();
        // Nothing but the arrow in its middle.
        QCOMPARE(idle.pixelColor(12, 30).alpha(), 0);
        QCOMPARE(idle.pixelColor(30, 8).alpha(), 0);
        button(name)->setDown(true);
        QVERIFY(button(name)->grab().toImage().pixelColor(12, 30).alpha() > 0);
    }
}

void TestImageDisplay::pictureTitle_isShownWithoutMarkup_cutToTheRoom()
{
    open(picture(300, 200));
    auto *title = m_window->findChild<QLabel *>(QStringLiteral("pictureTitle"));
    QCOMPARE(title->text(), QStringLiteral("标题"));
    m_window->changeImage(picture(1, 1), QStringLiteral("<b>重置</b>密码"), false, 1);
    QCOMPARE(title->text(), QStringLiteral("重置密码"));
    m_window->changeImage(picture(1, 1), QString(2000, QChar(u'长')), false, 1);
    QVERIFY(title->text().endsWith(QChar(u'…')));
    QCOMPARE(m_window->width(), 920);
}

void TestImageDisplay::firstStillPicture_isShownAsItIs()
{
    open(picture(300, 200));
    QCOMPARE(shownSize(), QSize(300, 200));
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(label()->size(), QSize(916, 518));
}

void TestImageDisplay::zoomButtons_stopAtAFifthAndAtFour()
{
    // Calculated apart from this program.
    const QVector<QSize> out{{298, 69}, {268, 62}, {242, 56}, {216, 50}, {194, 45}, {172, 40},
                             {155, 36}, {142, 33}, {125, 29}, {112, 26}, {103, 24}, {90, 21},
                             {82, 19},  {73, 17},  {64, 15},  {64, 15},  {64, 15}};
    const QVector<QSize> in{{363, 84},   {402, 93},   {441, 102},  {484, 112},  {536, 124},
                            {588, 136},  {648, 150},  {713, 165},  {782, 181},  {860, 199},
                            {947, 219},  {1042, 241}, {1146, 265}, {1262, 292}, {1332, 308},
                            {1332, 308}, {1332, 308}};
    open(picture(333, 77));
    for (const QSize &size : out) {
        click(QStringLiteral("缩小"));
        paint();
        QCOMPARE(shownSize(), size);
    }
    click(QStringLiteral("原始大小"));
    for (const QSize &size : in) {
        click(QStringLiteral("放大"));
        paint();
        QCOMPARE(shownSize(), size);
    }
}

void TestImageDisplay::zoomIn_thenOut_doesNotCancel()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(shownSize(), QSize(550, 440));
    click(QStringLiteral("缩小"));
    paint();
    QCOMPARE(shownSize(), QSize(495, 396));
}

void TestImageDisplay::wheel_downZoomsOut_upZoomsIn_andIsAccepted()
{
    open(picture(500, 400));
    turnWheel(-notch);
    paint();
    QCOMPARE(shownSize(), QSize(450, 360));
    click(QStringLiteral("原始大小"));
    turnWheel(notch);
    paint();
    QCOMPARE(shownSize(), QSize(550, 440));
    click(QStringLiteral("原始大小"));
    turnWheel(0);
    paint();
    QCOMPARE(shownSize(), QSize(450, 360));
    click(QStringLiteral("原始大小"));
    turnWheel(1);
    paint();
    QCOMPARE(shownSize(), QSize(550, 440));
}

void TestImageDisplay::wheel_severalNotchesBeforeOnePaint_areOneStep()
{
    open(picture(500, 400));
    turnWheel(notch);
    turnWheel(notch);
    turnWheel(-notch);
    paint();
    QCOMPARE(shownSize(), QSize(450, 360));
}

void TestImageDisplay::fit_thenZoom_startsFromTheRatio()
{
    open(picture(400, 200));
    click(QStringLiteral("适应窗口"));
    QCOMPARE(shownSize(), QSize(916, 458));
    paint();
    QCOMPARE(shownSize(), QSize(916, 458));
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(shownSize(), QSize(880, 440)); // 400 x 200 at 2.2
    m_window->changeImage(picture(100, 300), QString(), false, 1);
    click(QStringLiteral("适应窗口"));
    QCOMPARE(shownSize(), QSize(172, 518));
    click(QStringLiteral("缩小"));
    paint();
    QCOMPARE(shownSize(), QSize(270, 810)); // 100 x 300 at 2.7
}

void TestImageDisplay::fit_showsAllOfAPictureOfTheAreasProportions()
{
    open(picture(400, 300));
    click(QStringLiteral("适应窗口"));
    QCOMPARE(shownSize(), QSize(916, 687));
    QCOMPARE(label()->size(), QSize(690, 518));
    m_window->resize(700, 500);
    QCOMPARE(label()->size(), QSize(496, 372));
    click(QStringLiteral("原始大小"));
    QCOMPARE(label()->size(), QSize(696, 372));
    QCOMPARE(shownSize(), QSize(400, 300));
}

void TestImageDisplay::oneToOne_resetsAStillPicture()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    click(QStringLiteral("放大")); // waits for a paint that must not carry it out any more
    click(QStringLiteral("原始大小"));
    paint();
    QCOMPARE(shownSize(), QSize(500, 400));
    QVERIFY(!m_window->isMaximized());
}

void TestImageDisplay::repaintWithoutAZoomStep_scalesNothing()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    const qint64 shown = label()->pixmap(Qt::ReturnByValue).cacheKey();
    paint();
    paint();
    QCOMPARE(label()->pixmap(Qt::ReturnByValue).cacheKey(), shown);
}

void TestImageDisplay::idleWindow_isNotPaintedOverAndOver()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    QTRY_COMPARE(shownSize(), QSize(550, 440));
    const PaintCounter paints(m_window.get());
    // Long enough for dozens of frames, were each to ask for the next one.
    QTimer pause;
    pause.setSingleShot(true);
    QSignalSpy over(&pause, &QTimer::timeout);
    pause.start(200);
    QVERIFY(over.wait());
    QVERIFY2(paints.count <= 3, qPrintable(QString::number(paints.count)));
}

void TestImageDisplay::previousAtTheFirst_emitsNothing()
{
    open(picture(30, 20), false, 1);
    QSignalSpy previous(m_window.get(), &ImageDisplay::previousImage_signal);
    click(QStringLiteral("上一张"));
    click(QStringLiteral("上一张"));
    click(QStringLiteral("上一张"));
    QCOMPARE(previous, (QList<QVariantList>{{0}}));
    QCOMPARE(m_window->currentIndex(), 0);
}

void TestImageDisplay::next_alwaysEmits_evenPastTheEnd()
{
    open(picture(30, 20), false, 0);
    QSignalSpy next(m_window.get(), &ImageDisplay::nextImage_signal);
    for (int time = 0; time < 3; ++time) {
        click(QStringLiteral("下一张"));
    }
    QCOMPARE(next, (QList<QVariantList>{{1}, {2}, {3}}));
}

void TestImageDisplay::arrowKeys_page()
{
    open(picture(30, 20), false, 5);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QSignalSpy previous(m_window.get(), &ImageDisplay::previousImage_signal);
    QSignalSpy next(m_window.get(), &ImageDisplay::nextImage_signal);
    QTest::keyClick(m_window.get(), Qt::Key_Left);
    QTest::keyClick(m_window.get(), Qt::Key_Right);
    QCOMPARE(previous, (QList<QVariantList>{{4}}));
    QCOMPARE(next, (QList<QVariantList>{{5}}));
}

void TestImageDisplay::setCurrentIndex_decidesWhereNextGoes()
{
    open(picture(30, 20), false, 2);
    QSignalSpy next(m_window.get(), &ImageDisplay::nextImage_signal);
    click(QStringLiteral("下一张"));
    m_window->setCurrentIndex(2); // there was none
    click(QStringLiteral("下一张"));
    QCOMPARE(next, (QList<QVariantList>{{3}, {3}}));
    QCOMPARE(shownSize(), QSize(30, 20));
}

void TestImageDisplay::pictureChange_resetsTheScale()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    m_window->changeImage(picture(200, 100), QString(), false, 7);
    paint();
    QCOMPARE(shownSize(), QSize(200, 100));
    QCOMPARE(m_window->currentIndex(), 7);
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(shownSize(), QSize(220, 110));
}

void TestImageDisplay::pagingWhileMaximised_keepsTheWindow()
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

void TestImageDisplay::pagingWhileZoomed_andWithAStepWaiting()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    click(QStringLiteral("缩小"));
    m_window->changeImage(picture(200, 100), QString(), false, 1);
    paint();
    QCOMPARE(shownSize(), QSize(200, 100));
}

void TestImageDisplay::pictureTallerThanTheDesktop_isScaledIntoTheLabel()
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

void TestImageDisplay::zoomingAScaledPicture_showsItAtItsScale()
{
    open(picture(2000, 100));
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("缩小"));
    paint();
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(shownSize(), QSize(1800, 90));
}

void TestImageDisplay::pictureFillingTheDesktopExactly_isNotScaled()
{
    const LogCapture log;
    const QSize desktop = QGuiApplication::primaryScreen()->size();
    open(picture(desktop.width(), desktop.height() - 127));
    QVERIFY(!label()->hasScaledContents());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: PreviewWin_initial png")});
}

void TestImageDisplay::maximise_andBack_restoresPlaceAndSize()
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

void TestImageDisplay::maximise_scalesALargePicture()
{
    open(picture(1000, 300));
    click(QStringLiteral("原始大小"));
    QVERIFY(!label()->hasScaledContents());
    click(QStringLiteral("最大化"));
    QVERIFY(label()->hasScaledContents());
}

void TestImageDisplay::doubleClickOnTheTitle_togglesMaximise()
{
    open(picture(500, 400));
    mouse(QEvent::MouseButtonDblClick, onTitle);
    QVERIFY(m_window->isMaximized());
    mouse(QEvent::MouseButtonDblClick, onTitle);
    QVERIFY(!m_window->isMaximized());
}

void TestImageDisplay::doubleClickElsewhere_orWithTheRightButton_doesNothing()
{
    open(picture(500, 400));
    mouse(QEvent::MouseButtonDblClick, onPicture);
    mouse(QEvent::MouseButtonDblClick, onTitle, Qt::RightButton);
    QVERIFY(!m_window->isMaximized());
}

void TestImageDisplay::titleBar_dragsTheWindow()
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

void TestImageDisplay::maximisedWindow_isNotDragged()
{
    open(picture(500, 400));
    click(QStringLiteral("最大化"));
    const QPoint before = m_window->pos();
    mouse(QEvent::MouseButtonPress, onTitle);
    mouse(QEvent::MouseMove, onTitle + QPoint(15, 15));
    QCOMPARE(m_window->pos(), before);
}

void TestImageDisplay::dragging_needsThePressOnTheTitle()
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

void TestImageDisplay::minimise()
{
    open(picture(500, 400));
    click(QStringLiteral("最小化"));
    QVERIFY(m_window->isMinimized());
}

void TestImageDisplay::escape_closes()
{
    open(picture(500, 400));
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
}

void TestImageDisplay::closeButton_closes()
{
    open(picture(500, 400));
    click(QStringLiteral("关闭"));
    QVERIFY(!m_window->isVisible());
}

void TestImageDisplay::animation_playsFromItsFile()
{
    saveAnimation(3);
    const LogCapture log;
    open(picture(40, 30), true, 3);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: PreviewWin_initial gif")});
    QVERIFY(label()->movie());
    QCOMPARE(label()->movie()->fileName(), QStringLiteral("gif/3.gif"));
    QTRY_COMPARE(label()->movie()->currentFrameNumber(), 1);
    QVERIFY(!label()->hasScaledContents());
}

void TestImageDisplay::animation_ignoresZoomAndWheel()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    QVERIFY(button(QStringLiteral("原始大小"))->isEnabled());
    const QStringList others{QStringLiteral("适应窗口"), QStringLiteral("放大"),
                             QStringLiteral("缩小")};
    for (int number = 0; number < others.size(); ++number) {
        QVERIFY(!button(others.at(number))->isEnabled());
        QCOMPARE(button(others.at(number))->styleSheet(),
                 QStringLiteral("QPushButton{background-color:transparent;border-image:url("
                                ":/Images/btn-preview-%1.png) 84 0 0 0;}")
                     .arg(number + 2));
    }
    turnWheel(notch);
    paint();
    QCOMPARE(label()->movie()->currentPixmap().size(), QSize(40, 30));
    QVERIFY(!label()->hasScaledContents());
    // Nor does the step wait for the next still picture.
    m_window->changeImage(picture(50, 50), QString(), false, 1);
    paint();
    QCOMPARE(shownSize(), QSize(50, 50));
}

void TestImageDisplay::animation_oneToOne_maximises()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    m_window->move(12, 34);
    click(QStringLiteral("原始大小"));
    QVERIFY(m_window->isMaximized());
    QVERIFY(!label()->hasScaledContents());
    click(QStringLiteral("原始大小"));
    QVERIFY(m_window->isMaximized());
    click(QStringLiteral("还原"));
    QVERIFY(!m_window->isMaximized());
    QCOMPARE(m_window->pos(), QPoint(12, 34));
}

void TestImageDisplay::animation_restores_toItsOwnSize()
{
    saveAnimation(0, {700, 400});
    open(picture(700, 400), true, 0);
    click(QStringLiteral("最大化"));
    click(QStringLiteral("还原"));
    QCOMPARE(m_window->size(), QSize(700, 528));
    QCOMPARE(label()->height(), 400);
}

void TestImageDisplay::animation_restores_notBelowTheSmallestSize()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    click(QStringLiteral("最大化"));
    click(QStringLiteral("还原"));
    QCOMPARE(
        m_window->size(),
        QSize(40, 158).expandedTo(m_window->minimumSize()).expandedTo(m_window->minimumSizeHint()));
}

void TestImageDisplay::animation_largerThanTheDesktop_isScaled()
{
    saveAnimation(0, {900, 300});
    open(picture(900, 300), true, 0);
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("最大化"));
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("还原"));
    QVERIFY(!label()->hasScaledContents());
    saveAnimation(1);
    const LogCapture log;
    m_window->changeImage(picture(40, 30), QString(), true, 1);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: changeImage_gif")});
    m_window->changeImage(picture(900, 300), QString(), true, 0);
    QVERIFY(label()->hasScaledContents());
    QCOMPARE(log.lines().last(),
             QStringLiteral("debug: source_pic width or height is bigger then desktop"));
}

void TestImageDisplay::animation_stopsWhileHidden()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    m_window->hide();
    QCOMPARE(label()->movie()->state(), QMovie::Paused);
    m_window->show();
    QCOMPARE(label()->movie()->state(), QMovie::Running);
}

void TestImageDisplay::changeToAnimation_andBack()
{
    saveAnimation(1);
    open(picture(500, 400));
    m_window->changeImage(picture(40, 30), QString(), true, 1);
    QVERIFY(label()->movie());
    QVERIFY(!button(QStringLiteral("放大"))->isEnabled());
    m_window->changeImage(picture(500, 400), QString(), false, 0);
    QVERIFY(!label()->movie());
    QCOMPARE(shownSize(), QSize(500, 400));
    QVERIFY(button(QStringLiteral("放大"))->isEnabled());
}

void TestImageDisplay::oldMovie_isGoneBeforeTheNewOneOpens()
{
    saveAnimation(0);
    saveAnimation(1);
    open(picture(40, 30), true, 0);
    QMovie *old = label()->movie();
    QStringList atTheEnd;
    connect(old, &QObject::destroyed, this, [&] {
        atTheEnd.append(label()->movie() ? QStringLiteral("shown") : QStringLiteral("let go"));
    });
    m_window->changeImage_gif(1);
    QCOMPARE(atTheEnd, QStringList{QStringLiteral("let go")});
    QCOMPARE(label()->movie()->fileName(), QStringLiteral("gif/1.gif"));
    QCOMPARE(label()->findChildren<QMovie *>().size(), 1);
    QCOMPARE(m_window->currentIndex(), 1);
}

void TestImageDisplay::animationFileMissing_showsTheStillPicture()
{
    const LogCapture log;
    open(picture(40, 30), true, 9);
    QVERIFY(!label()->movie());
    QCOMPARE(shownSize(), QSize(40, 30));
    QVERIFY(log.lines().contains(
        QStringLiteral("warning: animated picture cannot be played: gif/9.gif")));
    turnWheel(notch);
    paint();
    QCOMPARE(shownSize(), QSize(40, 30));
}

void TestImageDisplay::animationFileDeletedWhilePlaying()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    QSignalSpy frames(label()->movie(), &QMovie::frameChanged);
    if (!QFile::remove(QStringLiteral("gif/0.gif"))) {
        QSKIP("this system keeps a file that is open");
    }
    // It plays on, or stops with its last frame when it cannot begin again.
    QTRY_VERIFY(frames.count() >= 5 || label()->movie()->state() == QMovie::NotRunning);
    QVERIFY(!label()->movie()->currentPixmap().isNull());
    m_window->changeImage_gif(0);
    QCOMPARE(shownSize(), QSize(40, 30));
}

void TestImageDisplay::nullPicture_survivesEverything()
{
    const LogCapture log;
    open(QPixmap());
    useEverything();
    QVERIFY(label()->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(log.foreignLines(), QStringList());
    m_window->changeImage(picture(50, 40), QString(), false, 1);
    click(QStringLiteral("放大"));
    paint();
    QCOMPARE(shownSize(), QSize(55, 44));
}

void TestImageDisplay::oddSizes_surviveEverything_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("1 x 1") << QSize(1, 1);
    QTest::newRow("1 x 5000") << QSize(1, 5000);
    QTest::newRow("20000 x 10") << QSize(20000, 10);
}

void TestImageDisplay::oddSizes_surviveEverything()
{
    QFETCH(QSize, size);
    const LogCapture log;
    open(picture(size.width(), size.height()));
    useEverything();
    QCOMPARE(log.foreignLines(), QStringList());
    QVERIFY(!shownSize().isEmpty());
    QVERIFY(!label()->size().isEmpty());
    QVERIFY(m_window->width() <= 920);
    click(QStringLiteral("原始大小"));
    QCOMPARE(shownSize(), size);
}

void TestImageDisplay::useEverything()
{
    const QStringList steps{QStringLiteral("放大"),     QStringLiteral("缩小"),
                            QStringLiteral("缩小"),     QStringLiteral("原始大小"),
                            QStringLiteral("适应窗口"), QStringLiteral("放大"),
                            QStringLiteral("最大化"),   QStringLiteral("适应窗口"),
                            QStringLiteral("还原"),     QStringLiteral("缩小")};
    for (const QString &step : steps) {
        click(step);
        paint();
    }
}

void TestImageDisplay::draggedEdge_stopsAtTheSmallestSize_data()
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

void TestImageDisplay::draggedEdge_stopsAtTheSmallestSize()
{
    QFETCH(QMargins, shrunk);
    QFETCH(QMargins, allowed);
    open(picture(500, 400));
    QRect rect = m_window->geometry().marginsRemoved(shrunk);
    m_window->setTempGeometry(rect);
    m_window->setTempGeometry_03(rect);
    QCOMPARE(rect, m_window->geometry().marginsRemoved(allowed));
}

void TestImageDisplay::draggedEdge_logs()
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

void TestImageDisplay::cursor_showsTheResizeBorder()
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

QTEST_MAIN(TestImageDisplay)
#include "tst_imagedisplay.moc"
