#include "app/base/apppaths.h"

#include <QTest>

/// Which files a caller type leads to.
class TestAppPaths : public QObject
{
    Q_OBJECT

private slots:
    void configPath_isEmptyBeforeTheLayoutIsKnown();
    void anyCallerType_meansTheClientLayout_data();
    void anyCallerType_meansTheClientLayout();
    void noCallerType_meansTheShortcutLayout();
    void configPath_comparesTheLayoutCaseSensitively();
    void clientSettings_lieOneFolderUpInBothLayouts();
};

void TestAppPaths::configPath_isEmptyBeforeTheLayoutIsKnown()
{
    miravelVersion.clear();
    QCOMPARE(miravelConfigPath(), QString());
}

void TestAppPaths::anyCallerType_meansTheClientLayout_data()
{
    QTest::addColumn<QString>("callerType");
    QTest::newRow("vdi") << QStringLiteral("vdi");
    QTest::newRow("ombra") << QStringLiteral("ombra");
    QTest::newRow("unknown") << QStringLiteral("abc");
    QTest::newRow("blank") << QStringLiteral(" ");
}

void TestAppPaths::anyCallerType_meansTheClientLayout()
{
    QFETCH(QString, callerType);
    initAppPaths(callerType);
    QCOMPARE(miravelVersion, QStringLiteral("VELISTRA_NEW"));
    QCOMPARE(logFolderPath, QStringLiteral("../log/Miravel"));
    QCOMPARE(configFilePath, QStringLiteral("../config/Miravel.ini"));
    QCOMPARE(miravelConfigPath(), configFilePath);
}

void TestAppPaths::noCallerType_meansTheShortcutLayout()
{
    initAppPaths(QString());
    QCOMPARE(miravelVersion, QStringLiteral("INVIRTUAL_SHORTCUT"));
    QCOMPARE(logFolderPath, QStringLiteral("log/Miravel"));
    QCOMPARE(configFilePath, QStringLiteral("config/Miravel.ini"));
    QCOMPARE(miravelConfigPath(), configFilePath);
}

void TestAppPaths::configPath_comparesTheLayoutCaseSensitively()
{
    miravelVersion = QStringLiteral("velistra_new");
    QCOMPARE(miravelConfigPath(), QString());
}

void TestAppPaths::clientSettings_lieOneFolderUpInBothLayouts()
{
    initAppPaths(QString());
    QCOMPARE(clientSettingsPath(), QStringLiteral("../config/CommonTerminal.ini"));
    initAppPaths(QStringLiteral("vdi"));
    QCOMPARE(clientSettingsPath(), QStringLiteral("../config/CommonTerminal.ini"));
}

QTEST_GUILESS_MAIN(TestAppPaths)
#include "tst_apppaths.moc"
