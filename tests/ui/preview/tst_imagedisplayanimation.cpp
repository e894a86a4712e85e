#include "tests/support/logcapture.h"
#include "tests/ui/preview/previewtest.h"

#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

/// The preview of animated pictures.
class TestImageDisplayAnimation : public PreviewTest
{
    Q_OBJECT

private slots:
    void animation_playsFromItsFile();
    void animation_ignoresZoomAndWheel();
    void animation_oneToOne_maximises();
    void animation_restores_toItsOwnSize();
    void tinyAnimation_restoresToASmallWindow();
    void animation_largerThanTheDesktop_isScaled();
    void narrowAnimation_keepsAPixel();
    void animation_stopsWhileHidden();
    void changeToAnimation_andBack();
    void oldMovie_isGoneBeforeTheNewOneOpens();
    void animationFileMissing_showsTheStillPicture();
    void animationFileDeletedWhilePlaying();
};

void TestImageDisplayAnimation::animation_playsFromItsFile()
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

void TestImageDisplayAnimation::animation_ignoresZoomAndWheel()
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

void TestImageDisplayAnimation::animation_oneToOne_maximises()
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

void TestImageDisplayAnimation::animation_restores_toItsOwnSize()
{
    saveAnimation(0, {700, 400});
    open(picture(700, 400), true, 0);
    click(QStringLiteral("最大化"));
    click(QStringLiteral("还原"));
    QCOMPARE(m_window->size(), QSize(700, 528));
    QCOMPARE(label()->height(), 400);
}

void TestImageDisplayAnimation::tinyAnimation_restoresToASmallWindow()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    click(QStringLiteral("最大化"));
    click(QStringLiteral("还原"));
    QCOMPARE(m_window->size(), QSize(40, 158));
}

void TestImageDisplayAnimation::animation_largerThanTheDesktop_isScaled()
{
    const QPixmap wide = picture(widerThanTheDesktop());
    saveAnimation(0, wide.size());
    open(wide, true, 0);
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("最大化"));
    QVERIFY(label()->hasScaledContents());
    click(QStringLiteral("还原"));
    QVERIFY(!label()->hasScaledContents());
    saveAnimation(1);
    const LogCapture log;
    m_window->changeImage(picture(40, 30), QString(), true, 1);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: changeImage_gif")});
    m_window->changeImage(wide, QString(), true, 0);
    QVERIFY(label()->hasScaledContents());
    QCOMPARE(log.lines().last(),
             QStringLiteral("debug: source_pic width or height is bigger then desktop"));
}

void TestImageDisplayAnimation::narrowAnimation_keepsAPixel()
{
    const QSize narrow(1, 2 * widerThanTheDesktop().width());
    saveAnimation(0, narrow);
    open(picture(narrow), true, 0);
    QVERIFY(label()->hasScaledContents());
    QCOMPARE(label()->width(), 1);
    const QSize flat(narrow.transposed());
    saveAnimation(1, flat);
    m_window->changeImage(picture(flat), QString(), true, 1);
    click(QStringLiteral("最大化"));
    QVERIFY(label()->hasScaledContents());
    QCOMPARE(label()->height(), 1);
}

void TestImageDisplayAnimation::animation_stopsWhileHidden()
{
    saveAnimation(0);
    open(picture(40, 30), true, 0);
    m_window->hide();
    QCOMPARE(label()->movie()->state(), QMovie::Paused);
    m_window->show();
    QCOMPARE(label()->movie()->state(), QMovie::Running);
}

void TestImageDisplayAnimation::changeToAnimation_andBack()
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

void TestImageDisplayAnimation::oldMovie_isGoneBeforeTheNewOneOpens()
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

void TestImageDisplayAnimation::animationFileMissing_showsTheStillPicture()
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

void TestImageDisplayAnimation::animationFileDeletedWhilePlaying()
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

QTEST_MAIN(TestImageDisplayAnimation)
#include "tst_imagedisplayanimation.moc"
