#include "faulttest.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>

/// For which calls, how often and from when a fault of the demo service is in force.
class TestDemoFaultPlan : public FaultTest
{
    Q_OBJECT

private slots:
    void faultOfOneCall_leavesTheOthersAlone();
    void faultOfAnyCall_isForAllAndNoneClearsAll();
    void timesIsCountedDown();
    void faultAtStart_isInForceFromTheFirstRequest();
    void badFault_isRefusedWithASentence_data();
    void badFault_isRefusedWithASentence();
    void endingTheService_doesNotWaitForAnything();
};

void TestDemoFaultPlan::faultOfOneCall_leavesTheOthersAlone()
{
    setFault(QStringLiteral("hot"), QStringLiteral("http"), 500);
    QCOMPARE(ask().status, 200);
    const CallReply hot = sendSigned(m_service.httpUrl(hotPath), compactJson(hotBody()));
    QCOMPARE(hot.status, 500);
}

void TestDemoFaultPlan::faultOfAnyCall_isForAllAndNoneClearsAll()
{
    setFault(askCall, QStringLiteral("http"), 501);
    setFault(anyCall, QStringLiteral("http"), 502);
    const QByteArray body = compactJson(associationBody(QStringLiteral("a")));
    QCOMPARE(ask().status, 501);
    QCOMPARE(sendSigned(m_service.httpUrl(associationPath), body).status, 502);
    setFault(anyCall, QStringLiteral("none"));
    QCOMPARE(ask().status, 200);
    QCOMPARE(sendSigned(m_service.httpUrl(associationPath), body).status, 200);
}

void TestDemoFaultPlan::timesIsCountedDown()
{
    QCOMPARE(m_service.setFault({{QStringLiteral("call"), askCall},
                                 {QStringLiteral("kind"), QStringLiteral("http")},
                                 {QStringLiteral("arg"), 500},
                                 {QStringLiteral("times"), 2}}),
             QByteArray());
    QCOMPARE(ask().status, 500);
    QCOMPARE(ask().status, 500);
    QCOMPARE(ask().status, 200);
}

void TestDemoFaultPlan::faultAtStart_isInForceFromTheFirstRequest()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--fault"), QStringLiteral("ask=error:123"),
                           QStringLiteral("--fault"), QStringLiteral("any=http:418")}));
    QCOMPARE(sendSigned(service.httpUrl(askPath), compactJson(askBody(question))).errorCode(),
             QStringLiteral("123"));
    QCOMPARE(sendSigned(service.httpUrl(hotPath), compactJson(hotBody())).status, 418);
}

void TestDemoFaultPlan::badFault_isRefusedWithASentence_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no JSON") << QByteArray("delay");
    QTest::newRow("no such call") << QByteArray(R"({"call":"cold","kind":"empty"})");
    QTest::newRow("no such kind") << QByteArray(R"({"call":"ask","kind":"lie"})");
    QTest::newRow("no kind") << QByteArray(R"({"call":"ask"})");
    QTest::newRow("text for a number") << QByteArray(R"({"call":"ask","kind":"delay","arg":"x"})");
    QTest::newRow("negative") << QByteArray(R"({"call":"ask","kind":"delay","arg":-1})");
    QTest::newRow("argument too many") << QByteArray(R"({"call":"ask","kind":"empty","arg":1})");
    QTest::newRow("zero times") << QByteArray(R"({"call":"ask","kind":"empty","times":0})");
}

void TestDemoFaultPlan::badFault_isRefusedWithASentence()
{
    QFETCH(QByteArray, body);
    const QUrl url = m_service.httpUrl(QStringLiteral("/demo/faults"));
    const CallReply reply = sendPlain("PUT", url, body);
    QCOMPARE(reply.status, 400);
    QVERIFY(!reply.json().value(QLatin1String("error")).toString().isEmpty());
    QCOMPARE(ask().errorCode(), QStringLiteral("0"));
}

void TestDemoFaultPlan::endingTheService_doesNotWaitForAnything()
{
    DemoProcess service;
    QVERIFY(service.start({QStringLiteral("--fault"), QStringLiteral("ask=no-answer")}));
    QTcpSocket idle;
    idle.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(service.httpPort()));
    QVERIFY(idle.waitForConnected(5000));
    QTcpSocket half;
    half.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(service.httpPort()));
    QVERIFY(half.waitForConnected(5000));
    half.write("POST /robot/v1/answers HTTP/1.1\r\nContent-Len");
    QVERIFY(half.waitForBytesWritten(5000));
    QVERIFY(!sendSigned(service.httpsUrl(askPath), compactJson(askBody(question)), {}, 100).inTime);
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(service.stop(), 0);
    QVERIFY2(clock.elapsed() < 4000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_GUILESS_MAIN(TestDemoFaultPlan)
#include "tst_demofaultplan.moc"
