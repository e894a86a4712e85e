#include "service/request/requesttarget.h"

#include <QTest>

/// Where a request goes.
class TestRequestTarget : public QObject
{
    Q_OBJECT

private slots:
    void fallBack_isTakenOnlyWhenAskedForAndUnresolved_data();
    void fallBack_isTakenOnlyWhenAskedForAndUnresolved();
    void url_isPutTogetherUnchanged_data();
    void url_isPutTogetherUnchanged();
};

void TestRequestTarget::fallBack_isTakenOnlyWhenAskedForAndUnresolved_data()
{
    QTest::addColumn<bool>("configFallback");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<bool>("fallsBack");
    const QString address = QStringLiteral("10.0.0.1");
    const QString port = QStringLiteral("443");
    QTest::newRow("asked for, resolved") << true << address << port << false;
    QTest::newRow("asked for, no address") << true << QString() << port << true;
    QTest::newRow("asked for, no port") << true << address << QString() << true;
    QTest::newRow("asked for, nothing") << true << QString() << QString() << true;
    QTest::newRow("not asked for, resolved") << false << address << port << false;
    QTest::newRow("not asked for, nothing") << false << QString() << QString() << false;
}

void TestRequestTarget::fallBack_isTakenOnlyWhenAskedForAndUnresolved()
{
    QFETCH(bool, configFallback);
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(bool, fallsBack);
    QCOMPARE(fallsBackToConfigured(configFallback, {address, port}), fallsBack);
}

void TestRequestTarget::url_isPutTogetherUnchanged_data()
{
    QTest::addColumn<int>("httpMode");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("url");
    const QString host = QStringLiteral("qa.example");
    const QString port = QStringLiteral("8080");
    const QString path = QStringLiteral("/ask");
    QTest::newRow("mode 0") << 0 << host << port << path
                            << QStringLiteral("http://qa.example:8080/ask");
    QTest::newRow("mode 1") << 1 << host << port << path
                            << QStringLiteral("https://qa.example:8080/ask");
    QTest::newRow("mode 2") << 2 << host << port << path
                            << QStringLiteral("https://qa.example:8080/ask");
    QTest::newRow("mode -1") << -1 << host << port << path
                             << QStringLiteral("https://qa.example:8080/ask");
    QTest::newRow("no slash") << 0 << host << port << QStringLiteral("ask")
                              << QStringLiteral("http://qa.example:8080ask");
    QTest::newRow("odd port") << 0 << host << QStringLiteral("443 ") << path
                              << QStringLiteral("http://qa.example:443 /ask");
    QTest::newRow("nothing") << 0 << QString() << QString() << QString()
                             << QStringLiteral("http://:");
}

void TestRequestTarget::url_isPutTogetherUnchanged()
{
    QFETCH(int, httpMode);
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(QString, path);
    QFETCH(QString, url);
    QCOMPARE(requestUrl(httpMode, {address, port}, path), url);
}

QTEST_GUILESS_MAIN(TestRequestTarget)
#include "tst_requesttarget.moc"
