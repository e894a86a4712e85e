#include "tests/support/logcapture.h"
#include "tests/ui/preview/paintcounter.h"
#include "tests/ui/preview/previewtest.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

/// What the preview shows: still pictures, zoom, fit.
class TestImageDisplay : public PreviewTest
{
    Q_OBJECT

private slots:
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
    void fit_fillsTheWidthWithALandscapePicture();
    void oneToOne_resetsAStillPicture();
    void repaintWithoutAZoomStep_scalesNothing();
    void idleWindow_isNotPaintedOverAndOver();
    void nullPicture_survivesEverything();
    void oddSizes_surviveEverything_data();
    void oddSizes_surviveEverything();

private:
    void useEverything();
};

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
        QCOMPARE(found->focusPolicy(), Qt::TabFocus);
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
        QImage nothing(idle.size(), idle.format());
        nothing.fill(Qt::transparent);
        QCOMPARE(idle, nothing);
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

void TestImageDisplay::fit_fillsTheWidthWithALandscapePicture()
{
    open(picture(400, 300));
    click(QStringLiteral("适应窗口"));
    QCOMPARE(shownSize(), QSize(916, 687)); // higher than the area, which shows its middle
    QCOMPARE(label()->size(), QSize(916, 518));
    m_window->resize(700, 500);
    QCOMPARE(label()->size(), QSize(696, 372));
    click(QStringLiteral("原始大小"));
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

QTEST_MAIN(TestImageDisplay)
#include "tst_imagedisplay.moc"
