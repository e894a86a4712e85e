#include "tests/service/support/refusingport.h"
#include "tests/service/support/requestbench.h"

#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

/// Finding the service on a desktop without the VPN client's library.
class TestEndpointResolution : public QObject
{
    Q_OBJECT

private slots:
    void reachableServer_isTakenAsConfigured();
    void reachableServer_isTestedWithoutSendingAnything();
    void reachableServer_hostNameIsNotResolved();
    void timesOfDay_areLogged();
    void portText_isCopiedUnchanged();
    void portThatIsNoNumber_isTestedAsZero();
    void refusedConnection_takesTheFullSecond();
    void unreachableServerWithoutLibrary_leavesBothEmpty();
    void emptyConfiguration_leavesBothEmpty();
    void earlierResolution_isForgottenAtOnce();
    void connectionTest_ignoresProxies();
    void connectionTest_logsTheErrorCode_data();
    void connectionTest_logsTheErrorCode();
    void settings_areReadForEveryResolution();
};

namespace {

constexpr int connectMs = 1000;

QStringList unreachableLines(int errorCode)
{
    return {QStringLiteral("debug: start ping, time: <time>"),
            QStringLiteral("warning: NetSocketConnect iErrorCode = %1").arg(errorCode),
            QStringLiteral("info: can not ping, try kor"),
            QStringLiteral("warning: get no korinfo when connect vd"),
            QStringLiteral("debug: end ping, time: <time>")};
}

} // namespace

void TestEndpointResolution::reachableServer_isTakenAsConfigured()
{
    RequestBench bench;
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("127.0.0.1"));
    QCOMPARE(resolvedEndpoint().strPort, QString::number(bench.server.port()));
    QCOMPARE(bench.request.resolvedAddr(), QStringLiteral("127.0.0.1"));
    QCOMPARE(bench.log.timelessLines(),
             QStringList({QStringLiteral("debug: start ping, time: <time>"),
                          QStringLiteral("debug: connected ipport:127.0.0.1"),
                          QStringLiteral("info: can ping"),
                          QStringLiteral("debug: end ping, time: <time>")}));
    QCOMPARE(bench.log.foreignLines(), QStringList());
}

void TestEndpointResolution::reachableServer_isTestedWithoutSendingAnything()
{
    RequestBench bench;
    bench.request.getUseful_IpPort();
    QTRY_COMPARE(bench.server.connectionCount(), 1);
    QCOMPARE(bench.server.requests().size(), 0);
}

void TestEndpointResolution::reachableServer_hostNameIsNotResolved()
{
    RequestBench bench;
    bench.config.set(QStringLiteral("IpAndPort/mserverip"), QStringLiteral("LocalHost"));
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("LocalHost"));
    QVERIFY(bench.log.lines().contains(QStringLiteral("debug: connected ipport:LocalHost")));
}

void TestEndpointResolution::timesOfDay_areLogged()
{
    static const QRegularExpression form(
        QStringLiteral("^debug: (start|end) ping, time: \\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d$"));
    RequestBench bench;
    bench.request.getUseful_IpPort();
    QVERIFY(form.match(bench.log.lines().constFirst()).hasMatch());
    QVERIFY(form.match(bench.log.lines().constLast()).hasMatch());
}

void TestEndpointResolution::portText_isCopiedUnchanged()
{
    RequestBench bench;
    const QString port = QString::number(bench.server.port()) + QLatin1Char(' ');
    bench.config.set(QStringLiteral("IpAndPort/mserverhttpsport"), port);
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strPort, port);
}

void TestEndpointResolution::portThatIsNoNumber_isTestedAsZero()
{
    RequestBench bench(1);
    bench.config.set(QStringLiteral("IpAndPort/mserverhttpsport"), QStringLiteral("abc"));
    bench.request.getUseful_IpPort();
    QVERIFY(!bench.request.NetSocketConnect(QStringLiteral("127.0.0.1"), 0));
    QCOMPARE(resolvedEndpoint().strPort, QString());
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: NetSocketConnect")).size(), 2);
    QCOMPARE(bench.log.linesWith(QStringLiteral("warning: NetSocketConnect")).at(0),
             bench.log.linesWith(QStringLiteral("warning: NetSocketConnect")).at(1));
}

void TestEndpointResolution::refusedConnection_takesTheFullSecond()
{
    const RefusingPort refusing;
    httpsRequest request;
    const LogCapture log;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!request.NetSocketConnect(QStringLiteral("127.0.0.1"), refusing.port()));
    QVERIFY2(clock.elapsed() >= connectMs, qPrintable(QString::number(clock.elapsed())));
}

void TestEndpointResolution::unreachableServerWithoutLibrary_leavesBothEmpty()
{
    const RefusingPort refusing;
    RequestBench bench(refusing.port());
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QString());
    QCOMPARE(resolvedEndpoint().strPort, QString());
    QCOMPARE(bench.log.timelessLines(), unreachableLines(QAbstractSocket::ConnectionRefusedError));
    QCOMPARE(bench.log.foreignLines(), QStringList());
}

void TestEndpointResolution::emptyConfiguration_leavesBothEmpty()
{
    RequestBench bench;
    bench.request.configPath.clear();
    bench.request.getUseful_IpPort();
    QVERIFY(!resolvedEndpoint().isComplete());
    QCOMPARE(bench.log.timelessLines(), unreachableLines(QAbstractSocket::HostNotFoundError));
}

void TestEndpointResolution::earlierResolution_isForgottenAtOnce()
{
    const RefusingPort refusing;
    RequestBench bench(refusing.port());
    setResolvedEndpoint({QStringLiteral("10.0.0.1"), QStringLiteral("443")});
    QString during = QStringLiteral("not read");
    QTimer::singleShot(0, this, [&] { during = bench.request.resolvedAddr(); });
    bench.request.getUseful_IpPort();
    QCOMPARE(during, QString());
    QVERIFY(!resolvedEndpoint().isComplete());
}

void TestEndpointResolution::connectionTest_ignoresProxies()
{
    TestServer proxy;
    TestServer server;
    httpsRequest request;
    const LogCapture log;
    QNetworkProxy::setApplicationProxy(
        QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), proxy.port()));
    // This machine, too, but by an address that Qt does not exempt from proxies.
    const bool connected = request.NetSocketConnect(QStringLiteral("0.0.0.0"), server.port());
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    QVERIFY(connected);
    QCOMPARE(proxy.connectionCount(), 0);
    QTRY_COMPARE(server.connectionCount(), 1);
}

void TestEndpointResolution::connectionTest_logsTheErrorCode_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("code");
    QTest::newRow("refused") << QStringLiteral("127.0.0.1") << QStringLiteral("0");
    QTest::newRow("no host") << QString() << QStringLiteral("2");
}

void TestEndpointResolution::connectionTest_logsTheErrorCode()
{
    QFETCH(QString, host);
    QFETCH(QString, code);
    const RefusingPort refusing;
    httpsRequest request;
    const LogCapture log;
    QVERIFY(!request.NetSocketConnect(host, refusing.port()));
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning: NetSocketConnect iErrorCode = ") + code}));
}

void TestEndpointResolution::settings_areReadForEveryResolution()
{
    TestServer first;
    TestServer second;
    RequestBench bench(first.port());
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strPort, QString::number(first.port()));
    bench.config.setServer(second.port());
    bench.request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strPort, QString::number(second.port()));
}

QTEST_MAIN(TestEndpointResolution)
#include "tst_endpointresolution.moc"
