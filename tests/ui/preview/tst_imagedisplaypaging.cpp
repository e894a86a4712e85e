#include "tests/ui/preview/previewtest.h"

#include <QSignalSpy>
#include <QTest>

/// Paging from picture to picture of the conversation.
class TestImageDisplayPaging : public PreviewTest
{
    Q_OBJECT

private slots:
    void previousAtTheFirst_emitsNothing();
    void next_alwaysEmits_evenPastTheEnd();
    void arrowKeys_page();
    void setCurrentIndex_decidesWhereNextGoes();
    void pictureChange_resetsTheScale();
    void pagingWhileZoomed_andWithAStepWaiting();
};

void TestImageDisplayPaging::previousAtTheFirst_emitsNothing()
{
    open(picture(30, 20), false, 1);
    QSignalSpy previous(m_window.get(), &ImageDisplay::previousImage_signal);
    click(QStringLiteral("上一张"));
    click(QStringLiteral("上一张"));
    click(QStringLiteral("上一张"));
    QCOMPARE(previous, (QList<QVariantList>{{0}}));
    QCOMPARE(m_window->currentIndex(), 0);
}

void TestImageDisplayPaging::next_alwaysEmits_evenPastTheEnd()
{
    open(picture(30, 20), false, 0);
    QSignalSpy next(m_window.get(), &ImageDisplay::nextImage_signal);
    for (int time = 0; time < 3; ++time) {
        click(QStringLiteral("下一张"));
    }
    QCOMPARE(next, (QList<QVariantList>{{1}, {2}, {3}}));
}

void TestImageDisplayPaging::arrowKeys_page()
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

void TestImageDisplayPaging::setCurrentIndex_decidesWhereNextGoes()
{
    open(picture(30, 20), false, 2);
    QSignalSpy next(m_window.get(), &ImageDisplay::nextImage_signal);
    click(QStringLiteral("下一张"));
    m_window->setCurrentIndex(2); // there was none
    click(QStringLiteral("下一张"));
    QCOMPARE(next, (QList<QVariantList>{{3}, {3}}));
    QCOMPARE(shownSize(), QSize(30, 20));
}

void TestImageDisplayPaging::pictureChange_resetsTheScale()
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

void TestImageDisplayPaging::pagingWhileZoomed_andWithAStepWaiting()
{
    open(picture(500, 400));
    click(QStringLiteral("放大"));
    paint();
    click(QStringLiteral("缩小"));
    m_window->changeImage(picture(200, 100), QString(), false, 1);
    paint();
    QCOMPARE(shownSize(), QSize(200, 100));
}

QTEST_MAIN(TestImageDisplayPaging)
#include "tst_imagedisplaypaging.moc"
