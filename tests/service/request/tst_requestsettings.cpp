#include "service/request/requestsettings.h"
#include "tests/support/testconfig.h"

#include <QTest>

/// The settings of a request, read from real files, broken ones among them.
class TestRequestSettings : public QObject
{
    Q_OBJECT

private slots:
    void values_areReadAndCredentialsDecoded();
    void texts_areNotNormalised();
    void edit_isSeenByTheNextRequest();
    void brokenFile_givesEmptyValues_data();
    void brokenFile_givesEmptyValues();
    void missingFile_givesEmptyValues();
    void folderInPlaceOfTheFile_givesEmptyValues();
    void emptyPath_givesEmptyValues();
};

namespace {

void expectEmpty(const QString &path)
{
    const RequestSettings settings = readRequestSettings(path);
    QCOMPARE(settings.server.strAddr, QString());
    QCOMPARE(settings.server.strPort, QString());
    QCOMPARE(settings.tenantId, QString());
    QCOMPARE(settings.key, QString());
    QCOMPARE(settings.secret, QString());
    QVERIFY(!readConfiguredServer(path).isComplete());
}

} // namespace

void TestRequestSettings::values_areReadAndCredentialsDecoded()
{
    TestConfig config;
    config.setServer(8080);
    const RequestSettings settings = readRequestSettings(config.path());
    QCOMPARE(settings.server.strAddr, QStringLiteral("127.0.0.1"));
    QCOMPARE(settings.server.strPort, QStringLiteral("8080"));
    QCOMPARE(settings.tenantId, QLatin1String(TestConfig::tenantId));
    QCOMPARE(settings.key, QLatin1String(TestConfig::key));
    QCOMPARE(settings.secret, QLatin1String(TestConfig::secret));
}

void TestRequestSettings::texts_areNotNormalised()
{
    TestConfig config;
    config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral(" Qa.Example"));
    config.set(QStringLiteral("IpAndPort/mserverhttpsport"), QStringLiteral("443 "));
    config.set(QStringLiteral("Authorization/tenantid"), QStringLiteral("a,b;c\\\"租户"));
    const RequestSettings settings = readRequestSettings(config.path());
    QCOMPARE(settings.server.strAddr, QStringLiteral(" Qa.Example"));
    QCOMPARE(settings.server.strPort, QStringLiteral("443 "));
    QCOMPARE(settings.tenantId, QStringLiteral("a,b;c\\\"租户"));
    QCOMPARE(readConfiguredServer(config.path()).strPort, QStringLiteral("443 "));
}

void TestRequestSettings::edit_isSeenByTheNextRequest()
{
    TestConfig config;
    config.setServer(1);
    QCOMPARE(readRequestSettings(config.path()).server.strPort, QStringLiteral("1"));
    config.setServer(2);
    QCOMPARE(readRequestSettings(config.path()).server.strPort, QStringLiteral("2"));
}

void TestRequestSettings::brokenFile_givesEmptyValues_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte.append(static_cast<char>(byte));
    }
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("binary") << everyByte.repeated(40);
    QTest::newRow("NUL bytes") << QByteArray(5000, '\0');
    QTest::newRow("no groups") << QByteArray("mserverip=127.0.0.1\ntenantid=t\n");
    QTest::newRow("lists") << QByteArray("[IpAndPort]\nmserverip=a,b\nmserverhttpsport=1,2\n"
                                         "[Authorization]\ntenantid=t,u\nxcafirst=YQ,YQ\n"
                                         "xcasecond=YQ,YQ\n");
}

void TestRequestSettings::brokenFile_givesEmptyValues()
{
    QFETCH(QByteArray, bytes);
    const TestConfig config;
    config.setBytes(bytes);
    expectEmpty(config.path());
}

void TestRequestSettings::missingFile_givesEmptyValues()
{
    const TestConfig config;
    expectEmpty(config.path());
}

void TestRequestSettings::folderInPlaceOfTheFile_givesEmptyValues()
{
    const TestConfig config;
    config.setFolderInPlace();
    expectEmpty(config.path());
}

void TestRequestSettings::emptyPath_givesEmptyValues()
{
    expectEmpty(QString());
}

QTEST_GUILESS_MAIN(TestRequestSettings)
#include "tst_requestsettings.moc"
