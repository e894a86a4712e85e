#include "service/request/gatewayquery.h"
#include "service/request/httpsrequest.h"
#include "service/request/idpinterface.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testgateway.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QTest>
#include <QTimer>

/// Finding the service through the VPN client's library, which lies beside this program.
class TestGatewayResolution : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void reachableServer_doesNotAskTheLibrary();
    void selectedGateway_isTaken();
    void selectedGateway_isAskedForEveryTime();
    void noGatewaySelected_leavesBothEmpty();
    void emptyAddress_leavesTheAddressEmptyAndWarns();
    void oddRecords_areTakenAsTheyStand_data();
    void oddRecords_areTakenAsTheyStand();
    void hangingLibrary_isNotWaitedForWithoutALimit();
    void hangingLibrary_isNotAskedAgainMeanwhile();
    void nextRequest_goesToTheGatewayAndNamesTheConfiguredServer();
};

namespace {

constexpr int shortMs = 100;
constexpr int longMs = 30000;

QStringList gatewayLines(const QString &found)
{
    return {QStringLiteral("debug: start ping, time: <time>"),
            QStringLiteral("warning: NetSocketConnect iErrorCode = 0"),
            QStringLiteral("info: can not ping, try kor"), found,
            QStringLiteral("debug: end ping, time: <time>")};
}

} // namespace

void TestGatewayResolution::init()
{
    setResolvedEndpoint({});
}

void TestGatewayResolution::reachableServer_doesNotAskTheLibrary()
{
    const TestGateway gateway("10.1.1.1", 8443);
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    request.getUseful_IpPort();
    QCOMPARE(gateway.calls(), QStringList());
    QCOMPARE(resolvedEndpoint().strPort, QString::number(server.port()));
}

void TestGatewayResolution::selectedGateway_isTaken()
{
    const TestGateway gateway("gw.example", 8443);
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("gw.example"));
    QCOMPARE(resolvedEndpoint().strPort, QStringLiteral("8443"));
    QCOMPARE(gateway.calls(), TestGateway::oneQuery());
    QCOMPARE(log.timelessLines(),
             gatewayLines(QStringLiteral("info: strAddr:gw.examplestrPort:8443")));
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestGatewayResolution::selectedGateway_isAskedForEveryTime()
{
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    {
        const TestGateway gateway("10.1.1.1", 1);
        request.getUseful_IpPort();
        QCOMPARE(gateway.calls(), TestGateway::oneQuery());
    }
    const TestGateway gateway("10.1.1.2", 2);
    request.getUseful_IpPort();
    QCOMPARE(gateway.calls(), TestGateway::oneQuery());
    QCOMPARE(resolvedEndpoint().strAddr, QStringLiteral("10.1.1.2"));
    QCOMPARE(resolvedEndpoint().strPort, QStringLiteral("2"));
}

void TestGatewayResolution::noGatewaySelected_leavesBothEmpty()
{
    const TestGateway gateway;
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QString());
    QCOMPARE(resolvedEndpoint().strPort, QString());
    QCOMPARE(gateway.calls(), TestGateway::oneQuery());
    QCOMPARE(log.timelessLines(),
             gatewayLines(QStringLiteral("warning: get no korinfo when connect vd")));
}

void TestGatewayResolution::emptyAddress_leavesTheAddressEmptyAndWarns()
{
    const TestGateway gateway("", 8443);
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    request.getUseful_IpPort();
    QCOMPARE(request.resolvedAddr(), QString());
    QStringList lines = gatewayLines(QStringLiteral("info: strAddr:strPort:8443"));
    lines.insert(lines.size() - 1, QStringLiteral("warning: get no korinfo when connect vd"));
    QCOMPARE(log.timelessLines(), lines);
}

void TestGatewayResolution::oddRecords_areTakenAsTheyStand_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<int>("port");
    QTest::newRow("negative port") << QByteArray("10.1.1.1") << -1;
    QTest::newRow("large port") << QByteArray("10.1.1.1") << 2147483647;
    QTest::newRow("long name") << QByteArray(200, 'a') << 443;
}

void TestGatewayResolution::oddRecords_areTakenAsTheyStand()
{
    QFETCH(QByteArray, address);
    QFETCH(int, port);
    const TestGateway gateway(address, port);
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    httpsRequest request;
    request.configPath = config.path();
    const LogCapture log;
    request.getUseful_IpPort();
    QCOMPARE(resolvedEndpoint().strAddr, QString::fromLatin1(address));
    QCOMPARE(resolvedEndpoint().strPort, QString::number(port));
}

void TestGatewayResolution::hangingLibrary_isNotWaitedForWithoutALimit()
{
    const TestGateway gateway("10.1.1.1", 8443);
    gateway.holdBack();
    const LogCapture log;
    bool responsive = false;
    QTimer::singleShot(0, this, [&responsive] { responsive = true; });
    QVERIFY(!askGatewayLibrary(shortMs).has_value());
    QVERIFY(responsive);
    QCOMPARE(
        log.lines(),
        QStringList(
            {QStringLiteral("warning: KorVpnTool does not answer, waited ms: %1").arg(shortMs)}));
    gateway.letGo();
    QTRY_VERIFY(askGatewayLibrary(longMs).has_value());
}

void TestGatewayResolution::hangingLibrary_isNotAskedAgainMeanwhile()
{
    const TestGateway gateway("10.1.1.1", 8443);
    gateway.holdBack();
    QVERIFY(!askGatewayLibrary(shortMs).has_value());
    const LogCapture log;
    QVERIFY(!selectedKorGateway(shortMs).has_value());
    QCOMPARE(log.lines(),
             QStringList({QStringLiteral("warning: KorVpnTool has not answered an earlier call, "
                                         "it is not asked again.")}));
    QCOMPARE(gateway.calls(), TestGateway::oneQuery());
    gateway.letGo();
    QTRY_VERIFY(askGatewayLibrary(longMs).has_value());
}

void TestGatewayResolution::nextRequest_goesToTheGatewayAndNamesTheConfiguredServer()
{
    TestServer gatewayServer;
    gatewayServer.setReply(httpReply(R"({"errorCode":"0","result":["q"]})"));
    const TestGateway gateway("127.0.0.1", gatewayServer.port());
    const RefusingPort refusing;
    TestConfig config;
    config.setServer(refusing.port());
    config.set(QStringLiteral("url/hoturl"), QStringLiteral("/hot"));
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.hot_questions().size(), 1);
    QCOMPARE(gatewayServer.requests().size(), 1);
    QCOMPARE(gatewayServer.requests().at(0).target, QByteArray("/hot"));
    QCOMPARE(gatewayServer.requests().at(0).header("X-Ap-sHost"),
             "127.0.0.1:" + QByteArray::number(refusing.port()));
    QVERIFY(log.lines().contains(
        QStringLiteral("info: url:http://127.0.0.1:%1/hot").arg(gatewayServer.port())));
}

QTEST_MAIN(TestGatewayResolution)
#include "tst_gatewayresolution.moc"
