#include "tests/ui/preview/previewtest.h"

#include <QLabel>
#include <QTest>

/// Where the preview stands: among the pictures of the conversation, and on the screen while an
/// edge is dragged.
class TestPreviewPosition : public PreviewTest
{
    Q_OBJECT

private slots:
    void position_standsBehindTheTitle();
    void position_followsThePaging();
    void position_isCutNeitherByTheTitleNorByANarrowWindow();
    void unknownCount_showsNone();
    void draggedEdge_isTheOneThatWasPressed_data();
    void draggedEdge_isTheOneThatWasPressed();
    void pressElsewhere_forgetsTheEdge();

private:
    [[nodiscard]] QLabel *position() const
    {
        return m_window->findChild<QLabel *>(QStringLiteral("picturePosition"));
    }
};

void TestPreviewPosition::position_standsBehindTheTitle()
{
    open(picture(300, 200), false, 4);
    m_window->setPictureCount(13);
    QVERIFY(position()->isVisible());
    QCOMPARE(position()->text(), QStringLiteral("5 / 13"));
    const auto *title = m_window->findChild<QLabel *>(QStringLiteral("previewTitle"));
    const auto *pictureTitle = m_window->findChild<QLabel *>(QStringLiteral("pictureTitle"));
    QTRY_VERIFY(position()->x() > title->geometry().right());
    QTRY_VERIFY(pictureTitle->x() > position()->geometry().right());
}

void TestPreviewPosition::position_followsThePaging()
{
    open(picture(300, 200), false, 0);
    m_window->setPictureCount(3);
    QCOMPARE(position()->text(), QStringLiteral("1 / 3"));
    m_window->changeImage(picture(30, 20), QStringLiteral("标题"), false, 2);
    QCOMPARE(position()->text(), QStringLiteral("3 / 3"));
    m_window->setPictureCount(4); // one more came
    QCOMPARE(position()->text(), QStringLiteral("3 / 4"));
    m_window->setCurrentIndex(3);
    QCOMPARE(position()->text(), QStringLiteral("4 / 4"));
    saveAnimation(1);
    m_window->changeImage(picture(40, 30), QStringLiteral("标题"), true, 1);
    QCOMPARE(position()->text(), QStringLiteral("2 / 4"));
}

void TestPreviewPosition::position_isCutNeitherByTheTitleNorByANarrowWindow()
{
    open(picture(300, 200), false, 998);
    m_window->setPictureCount(1000);
    m_window->changeImage(picture(1, 1), QString(2000, QChar(u'长')), false, 998);
    m_window->resize(600, 400);
    QTRY_VERIFY(position()->width() >= position()->sizeHint().width());
    QCOMPARE(m_window->width(), 600);
}

void TestPreviewPosition::unknownCount_showsNone()
{
    open(picture(300, 200), false, 4);
    QVERIFY(!position()->isVisible());
    m_window->setPictureCount(4); // none has the number 4
    QVERIFY(!position()->isVisible());
}

void TestPreviewPosition::draggedEdge_isTheOneThatWasPressed_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<QRect>("allowed");
    // What is proposed lies away from every side of the window, so that it tells nothing.
    QTest::newRow("left") << QPoint(1, 300) << QRect(10, -40, 600, 400);
    QTest::newRow("right") << QPoint(918, 300) << QRect(110, -40, 600, 400);
    QTest::newRow("bottom right") << QPoint(917, 644) << QRect(110, 60, 600, 400);
    QTest::newRow("top left") << QPoint(2, 2) << QRect(10, -40, 600, 400);
    QTest::newRow("top") << QPoint(400, 1) << QRect(10, -40, 600, 400);
    QTest::newRow("bottom") << QPoint(400, 645) << QRect(10, 60, 600, 400);
}

void TestPreviewPosition::draggedEdge_isTheOneThatWasPressed()
{
    QFETCH(QPoint, press);
    QFETCH(QRect, allowed);
    if (QGuiApplication::platformName() == QLatin1String("windows")) {
        QSKIP("Windows resizes the window itself after a press on its border");
    }
    open(picture(500, 400));
    mouse(QEvent::MouseButtonPress, press);
    QRect rect(110, 60, 500, 300);
    m_window->setTempGeometry(rect);
    m_window->setTempGeometry_03(rect);
    QCOMPARE(rect, allowed);
}

void TestPreviewPosition::pressElsewhere_forgetsTheEdge()
{
    if (QGuiApplication::platformName() == QLatin1String("windows")) {
        QSKIP("Windows resizes the window itself after a press on its border");
    }
    open(picture(500, 400));
    mouse(QEvent::MouseButtonPress, {1, 300});
    mouse(QEvent::MouseButtonPress, onPicture);
    const QRect place = m_window->geometry();
    QRect rect = place.marginsRemoved({0, 0, 500, 0});
    m_window->setTempGeometry(rect);
    QCOMPARE(rect.left(), place.left());
    QCOMPARE(rect.width(), 600);
}

QTEST_MAIN(TestPreviewPosition)
#include "tst_previewposition.moc"
