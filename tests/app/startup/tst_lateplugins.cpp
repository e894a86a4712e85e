#include "app/startup/lateplugins.h"

#include <QCoreApplication>
#include <QTest>
#include <QWidget>

/// Qt's search for plugins at the start of the program.
class TestLatePlugins : public QObject
{
    Q_OBJECT

private slots:
    void pathsAreEmptyUntilTheFirstPicture();
    void windowThatIsNeverPainted_endsThemByTime();

private:
    const QStringList m_paths = QCoreApplication::libraryPaths();
};

void TestLatePlugins::pathsAreEmptyUntilTheFirstPicture()
{
    QVERIFY(!m_paths.isEmpty());
    LatePlugins plugins;
    QCOMPARE(QCoreApplication::libraryPaths(), QStringList());
    QWidget window;
    plugins.endAfterPictureOf(window);
    QCoreApplication::processEvents();
    QCOMPARE(QCoreApplication::libraryPaths(), QStringList());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    constexpr int soonMs = 500; // well before they would come back by themselves
    QTRY_COMPARE_WITH_TIMEOUT(QCoreApplication::libraryPaths(), m_paths, soonMs);
}

void TestLatePlugins::windowThatIsNeverPainted_endsThemByTime()
{
    LatePlugins plugins;
    QWidget window;
    plugins.endAfterPictureOf(window);
    QTRY_COMPARE(QCoreApplication::libraryPaths(), m_paths);
}

QTEST_MAIN(TestLatePlugins)

#include "tst_lateplugins.moc"
