#include "app/base/apppaths.h"

#include <QTest>

/// Which files a caller type leads to.
class TestAppPaths : public QObject
{
    Q_OBJECT

private slots:
    void anyCallerType_meansTheClientLayout_data();
    void anyCallerType_meansTheClientLayout();
    void noCallerType_meansTheShortcutLayout();
    void unknownLayout_leadsNowhere_data();
    void unknownLayout_leadsNowhere();
    void clientSettings_lieOneFolderUpInBothLayouts();
};

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
    QVERIFY(installationLayout() == InstallationLayout::Client);
    QCOMPARE(logFolderPath, QStringLiteral("../log/Miravel"));
    QCOMPARE(configFilePath, QStringLiteral("../config/Miravel.ini"));
    QCOMPARE(licenceTextPath(), QStringLiteral("../config/OpenSourceLicense.txt"));
    QCOMPARE(miravelConfigPath(), configFilePath);
}

void TestAppPaths::noCallerType_meansTheShortcutLayout()
{
    initAppPaths(QString());
    QCOMPARE(miravelVersion, QStringLiteral("INVIRTUAL_SHORTCUT"));
    QVERIFY(installationLayout() == InstallationLayout::Shortcut);
    QCOMPARE(logFolderPath, QStringLiteral("log/Miravel"));
    QCOMPARE(configFilePath, QStringLiteral("config/Miravel.ini"));
    QCOMPARE(licenceTextPath(), QStringLiteral("config/OpenSourceLicense.txt"));
    QCOMPARE(miravelConfigPath(), configFilePath);
}

void TestAppPaths::unknownLayout_leadsNowhere_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("none yet") << QString();
    QTest::newRow("the client's in lower case") << QStringLiteral("velistra_new");
    QTest::newRow("the shortcut's in lower case") << QStringLiteral("invirtual_shortcut");
    QTest::newRow("with a blank") << QStringLiteral("VELISTRA_NEW ");
}

void TestAppPaths::unknownLayout_leadsNowhere()
{
    QFETCH(QString, version);
    miravelVersion = version;
    QVERIFY(installationLayout() == InstallationLayout::Unknown);
    QCOMPARE(miravelConfigPath(), QString());
    QCOMPARE(licenceTextPath(), QString());
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
