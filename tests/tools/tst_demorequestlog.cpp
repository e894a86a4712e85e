#include "demoprocess.h"
#include "signedcall.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

/// What the demo service writes down of each request.
class TestDemoRequestLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void logLine_tellsTheQuestionAndNothingSecret();
    void logLine_ofARefusedRequestTellsTheReason();
    void history_hidesTheSignatureAndCanBeCleared();

private:
    DemoProcess m_service;
};

namespace {
const QString question = QStringLiteral("黑屏怎么办");
}

void TestDemoRequestLog::initTestCase()
{
    QVERIFY(m_service.start());
}

void TestDemoRequestLog::cleanupTestCase()
{
    QCOMPARE(m_service.stop(), 0);
}

void TestDemoRequestLog::logLine_tellsTheQuestionAndNothingSecret()
{
    const SignedCall call;
    QJsonObject body = askBody(QStringLiteral("第一行\n\"第二行\" verdict=refused"), 7);
    sendSigned(m_service.httpUrl(askPath), compactJson(body), call);
    const QString line = m_service.lastLogLine();
    QVERIFY2(line.contains(QLatin1String(" call=ask method=POST path=\"/robot/v1/answers\" "
                                         "verdict=accepted reason=- signature=good status=200 "
                                         "fault=- ")),
             qPrintable(line));
    QVERIFY2(line.endsWith(QStringLiteral(
                 " question=\"第一行\\n\\\"第二行\\\" verdict=refused\" text=- source=\"rawquery\" "
                 "accountId=\"user\" originalQuestion=\"\" questionId=7")),
             qPrintable(line));
    for (const QString &any : m_service.logLines()) {
        QVERIFY(!any.contains(QLatin1String("demo-secret")));
    }
}

void TestDemoRequestLog::logLine_ofARefusedRequestTellsTheReason()
{
    SignedCall call;
    call.secret = "wrong";
    sendSigned(m_service.httpsUrl(associationPath),
               compactJson(associationBody(QStringLiteral("打印"))), call);
    const QString line = m_service.lastLogLine();
    QVERIFY2(line.contains(QLatin1String(" scheme=https call=association ")), qPrintable(line));
    QVERIFY2(line.contains(
                 QLatin1String(" verdict=refused reason=bad-signature signature=bad status=401 ")),
             qPrintable(line));
    QVERIFY2(line.contains(QStringLiteral(" text=\"打印\" ")), qPrintable(line));
}

void TestDemoRequestLog::history_hidesTheSignatureAndCanBeCleared()
{
    const QUrl url = m_service.httpUrl(QStringLiteral("/demo/requests"));
    QCOMPARE(sendPlain("DELETE", url).status, 200);
    const SignedCall call;
    sendSigned(m_service.httpUrl(askPath), compactJson(askBody(question)), call);
    const QByteArray history = m_service.history();
    const QJsonArray requests
        = QJsonDocument::fromJson(history).object().value(QLatin1String("requests")).toArray();
    QCOMPARE(requests.size(), 1);
    const QJsonObject only = requests.at(0).toObject();
    QCOMPARE(only.value(QLatin1String("path")).toString(), askPath);
    QCOMPARE(only.value(QLatin1String("verdict")).toString(), QStringLiteral("accepted"));
    QCOMPARE(only.value(QLatin1String("body")).toString().toUtf8(), compactJson(askBody(question)));
    int hidden = 0;
    for (const QJsonValue value : only.value(QLatin1String("headers")).toArray()) {
        const QJsonObject header = value.toObject();
        if (header.value(QLatin1String("name")).toString().toLower()
            == QLatin1String("x-ca-signature")) {
            QCOMPARE(header.value(QLatin1String("value")).toString(), QStringLiteral("(hidden)"));
            ++hidden;
        }
    }
    QCOMPARE(hidden, 1);
    QCOMPARE(sendPlain("DELETE", url).body, QByteArray("{\"requests\":[]}"));
}

QTEST_GUILESS_MAIN(TestDemoRequestLog)
#include "tst_demorequestlog.moc"
