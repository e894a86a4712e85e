#include "tests/support/installation.h"
#include "tests/support/virtualdisplay.h"

#include <QFile>
#include <QTest>

namespace {

using Layout = Installation::Layout;

const QString vdi = QStringLiteral("--Type=vdi");

} // namespace

/// The real program's window on a screen of its own.
class TestStartupWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void scaleFactorOfTheCaller_leavesTheWindowsSize();
    void secondStart_restoresTheMinimisedWindow();
    void closingTheWindow_endsWithStatusZero();
};

void TestStartupWindow::initTestCase()
{
    if (!VirtualDisplay::missingTools().isEmpty()) {
        QSKIP(qPrintable(VirtualDisplay::missingTools()));
    }
}

void TestStartupWindow::scaleFactorOfTheCaller_leavesTheWindowsSize()
{
    VirtualDisplay display;
    QVERIFY(display.start());
    Installation installation(Layout::Shortcut);
    QVERIFY(installation.isValid());
    installation.setPlatform(QString());
    QProcessEnvironment &environment = installation.environment();
    environment.insert(QStringLiteral("DISPLAY"), display.name());
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("nonexistent"));
    const QString window = display.waitForWindow(installation.start().processId());
    QVERIFY(!window.isEmpty());
    const QString geometry = display.xdotool({QStringLiteral("getwindowgeometry"), window});
    QVERIFY2(geometry.contains(QStringLiteral("Geometry: 920x640")), qPrintable(geometry));
}

void TestStartupWindow::secondStart_restoresTheMinimisedWindow()
{
    VirtualDisplay display;
    QVERIFY(display.start());
    QVERIFY(display.startWindowManager());
    Installation installation(Layout::Client);
    QVERIFY(installation.isValid());
    installation.setPlatform(QStringLiteral("xcb"));
    installation.environment().insert(QStringLiteral("DISPLAY"), display.name());
    const qint64 first = installation.start({vdi}).processId();
    const QString window = display.waitForWindow(first);
    QVERIFY(!window.isEmpty());
    display.xdotool({QStringLiteral("windowminimize"), window});
    QTRY_COMPARE(display.visibleWindow(first), QString());

    QVERIFY(installation.start({vdi}).endsWith(0));
    QTRY_COMPARE(display.visibleWindow(first), window);
    QTRY_COMPARE(display.xdotool({QStringLiteral("getactivewindow")}), window);
}

void TestStartupWindow::closingTheWindow_endsWithStatusZero()
{
    VirtualDisplay display;
    QVERIFY(display.start());
    QVERIFY(display.startWindowManager());
    Installation installation(Layout::Shortcut);
    QVERIFY(installation.isValid());
    installation.setPlatform(QStringLiteral("xcb"));
    installation.environment().insert(QStringLiteral("DISPLAY"), display.name());
    ChildProcess &program = installation.start();
    const qint64 pid = program.processId(); // 0 once it has ended
    const QString window = display.waitForWindow(pid);
    QVERIFY(!window.isEmpty());
    display.xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window});
    const auto isClosed = [&] {
        // The window manager now and then misses a key: it is pressed until the window has gone.
        display.xdotool({QStringLiteral("key"), QStringLiteral("alt+F4")});
        constexpr int soonMs = 2000;
        return QTest::qWaitFor([&] { return display.visibleWindow(pid).isEmpty(); }, soonMs);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isClosed(), 20'000);
    QVERIFY(program.endsWith(0));
    QVERIFY(!QFile::exists(installation.localName()));
}

QTEST_GUILESS_MAIN(TestStartupWindow)
#include "tst_startupwindow.moc"
