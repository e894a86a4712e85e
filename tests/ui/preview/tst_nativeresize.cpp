#include "ui/preview/nativeresize.h"

#include <QTest>

#include <windows.h>

/// What Windows says while the preview window is resized.
class TestNativeResize : public QObject
{
    Q_OBJECT

private slots:
    void sizing_namesTheDraggedEdge_data();
    void sizing_namesTheDraggedEdge();
    void otherMessages_nameNone();
};

void TestNativeResize::sizing_namesTheDraggedEdge_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<Qt::Edges>("edges");
    QTest::newRow("left") << WMSZ_LEFT << Qt::Edges(Qt::LeftEdge);
    QTest::newRow("right") << WMSZ_RIGHT << Qt::Edges(Qt::RightEdge);
    QTest::newRow("top") << WMSZ_TOP << Qt::Edges(Qt::TopEdge);
    QTest::newRow("bottom") << WMSZ_BOTTOM << Qt::Edges(Qt::BottomEdge);
    QTest::newRow("top left") << WMSZ_TOPLEFT << (Qt::TopEdge | Qt::LeftEdge);
    QTest::newRow("top right") << WMSZ_TOPRIGHT << (Qt::TopEdge | Qt::RightEdge);
    QTest::newRow("bottom left") << WMSZ_BOTTOMLEFT << (Qt::BottomEdge | Qt::LeftEdge);
    QTest::newRow("bottom right") << WMSZ_BOTTOMRIGHT << (Qt::BottomEdge | Qt::RightEdge);
    QTest::newRow("unknown") << 99 << Qt::Edges();
}

void TestNativeResize::sizing_namesTheDraggedEdge()
{
    QFETCH(int, side);
    QFETCH(Qt::Edges, edges);
    RECT rect{10, 20, 410, 320};
    MSG message{};
    message.message = WM_SIZING;
    message.wParam = static_cast<WPARAM>(side);
    message.lParam = reinterpret_cast<LPARAM>(&rect);
    const NativeResizeRequest request = readNativeResizeRequest("windows_generic_MSG", &message);
    QCOMPARE(request.kind, NativeResizeRequest::Kind::Sizing);
    QCOMPARE(request.edges, edges);
    QCOMPARE(request.proposed, QRect(10, 20, 400, 300));
}

void TestNativeResize::otherMessages_nameNone()
{
    MSG message{};
    message.message = WM_NCHITTEST;
    QCOMPARE(readNativeResizeRequest("windows_generic_MSG", &message).edges, Qt::Edges());
    QCOMPARE(readNativeResizeRequest("other", &message).kind, NativeResizeRequest::Kind::None);
}

QTEST_GUILESS_MAIN(TestNativeResize)
#include "tst_nativeresize.moc"
