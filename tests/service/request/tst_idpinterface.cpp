#include "service/request/idpinterface.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTest>

/// The three calls: their bodies, their targets, what they make of replies, what they log.
class TestIdpInterface : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void timeouts_areFixed();
    void hot_bodyAndResult();
    void hot_withoutSettingsCarriesZeros();
    void hot_resolvesTheEndpointFirst();
    void association_bodyAndResult();
    void association_doesNotResolveAndFallsBack();
    void association_goesToTheLastResolution();
    void association_slowerThanItsTimeoutIsEmptyAndLogged();
    void ask_bodyAndDocument();
    void ask_questionIdZeroIsSent();
    void ask_logsTheQuestion();
    void ask_slowReplyGivesANullDocument();
    void hot_slowReplyIsLogged();
    void numbersThatAreNone_areZero();
    void httpMode_isReadAsANumber();
    void replyThatIsNoJson_isLogged_data();
    void replyThatIsNoJson_isLogged();
    void replyWithANulByte_isReadUpToIt();
    void httpErrorWithJsonBody_isStillRead();
    void unreachableService_givesEmptyResults();
    void editedSettings_areSeenByTheNextCall();
    void toolkitWarnsOfNothing();
};

namespace {

constexpr int shortMs = 150;

const QByteArray goodBody = R"({"errorCode":"0","result":[{"question":"q","id":7}]})";

void configure(TestConfig &config, quint16 port)
{
    config.setServer(port);
    config.set(QStringLiteral("url/hoturl"), QStringLiteral("/hot"));
    config.set(QStringLiteral("url/associateurl"), QStringLiteral("/associate"));
    config.set(QStringLiteral("url/askquesturl"), QStringLiteral("/ask"));
    config.set(QStringLiteral("HotRecommendation/channelId"), QStringLiteral("1"));
    config.set(QStringLiteral("HotRecommendation/recommendSize"), QStringLiteral("20"));
    config.set(QStringLiteral("ProblemAssociation/channelId"), QStringLiteral("2"));
    config.set(QStringLiteral("ProblemAssociation/recommendSize"), QStringLiteral("5"));
    config.set(QStringLiteral("QuestAndAnw/channelId"), QStringLiteral("3"));
    config.set(QStringLiteral("QuestAndAnw/recommendSize"), QStringLiteral("4"));
    config.set(QStringLiteral("QuestAndAnw/currentDomain"), QStringLiteral("desktop"));
    config.set(QStringLiteral("RobotId/robotId"), QStringLiteral("robot"));
}

QJsonDocument ask(IdpInterface &service, qint64 questionId = 42)
{
    return service.Ask_And_Answer(QStringLiteral("为什么?"), QStringLiteral("user"),
                                  QStringLiteral("recommend"), QStringLiteral("original"),
                                  questionId);
}

QStringList tail(const QStringList &lines, int count)
{
    return lines.mid(lines.size() - count);
}

QString line(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

void TestIdpInterface::init()
{
    setResolvedEndpoint({});
}

void TestIdpInterface::timeouts_areFixed()
{
    const IdpInterface service;
    QCOMPARE(service.hotTimeoutMs, 200000);
    QCOMPARE(service.associationTimeoutMs, 400);
    QCOMPARE(service.askTimeoutMs, 800000);
    QVERIFY(!service.request.parent());
}

void TestIdpInterface::hot_bodyAndResult()
{
    TestServer server;
    server.setReplyFor("/hot", httpReply(goodBody));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    const QJsonArray questions = service.hot_questions();
    QCOMPARE(questions.size(), 1);
    QCOMPARE(questions.at(0).toObject().value(QStringLiteral("id")).toInt(), 7);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().at(0).target, QByteArray("/hot"));
    QCOMPARE(server.requests().at(0).body,
             QByteArray(R"({"channelId":1,"recommendSize":20,"robotId":"robot"})"));
}

void TestIdpInterface::hot_withoutSettingsCarriesZeros()
{
    TestServer server;
    TestConfig config;
    config.setServer(server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.hot_questions(), QJsonArray());
    QCOMPARE(server.requests().value(0).body,
             QByteArray(R"({"channelId":0,"recommendSize":0,"robotId":""})"));
}

void TestIdpInterface::hot_resolvesTheEndpointFirst()
{
    TestServer server;
    server.setReplyFor("/hot", httpReply(goodBody));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    setResolvedEndpoint({QStringLiteral("192.0.2.1"), QStringLiteral("9")}); // nobody's, RFC 5737
    const LogCapture log;
    QCOMPARE(service.hot_questions().size(), 1);
    QCOMPARE(resolvedEndpoint().strPort, QString::number(server.port()));
    QCOMPARE(log.timelessLines().mid(0, 4),
             QStringList({line("debug: start ping, time: <time>"),
                          line("debug: connected ipport:127.0.0.1"), line("info: can ping"),
                          line("debug: end ping, time: <time>")}));
    QCOMPARE(server.connectionCount(), 2); // the test and the request
}

void TestIdpInterface::association_bodyAndResult()
{
    TestServer server;
    server.setReplyFor("/associate", httpReply(goodBody));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.association_questions(QStringLiteral("打印")).size(), 1);
    QCOMPARE(server.requests().size(), 1);
    QCOMPARE(server.requests().at(0).body,
             QByteArray(R"({"channelId":2,"recommendSize":5,"robotId":"robot","text":"打印"})"));
}

void TestIdpInterface::association_doesNotResolveAndFallsBack()
{
    TestServer server;
    server.setReplyFor("/associate", httpReply(goodBody));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.association_questions(QStringLiteral("a")).size(), 1);
    QCOMPARE(server.connectionCount(), 1);
    QVERIFY(!resolvedEndpoint().isComplete());
    QCOMPARE(log.linesWith(line("debug: assocation request")).size(), 1);
    QCOMPARE(log.linesWith(line("debug: start ping")).size(), 0);
}

void TestIdpInterface::association_goesToTheLastResolution()
{
    TestServer configured;
    TestServer gateway;
    gateway.setReplyFor("/associate", httpReply(goodBody));
    TestConfig config;
    configure(config, configured.port());
    IdpInterface service;
    service.request.configPath = config.path();
    setResolvedEndpoint({QStringLiteral("127.0.0.1"), QString::number(gateway.port())});
    const LogCapture log;
    QCOMPARE(service.association_questions(QStringLiteral("a")).size(), 1);
    QCOMPARE(configured.connectionCount(), 0);
}

void TestIdpInterface::association_slowerThanItsTimeoutIsEmptyAndLogged()
{
    TestServer server;
    server.setReplyFor("/associate", held(httpReply(goodBody)));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(service.association_questions(QStringLiteral("a")), QJsonArray());
    QVERIFY(clock.elapsed() >= 400);
    QCOMPARE(
        tail(log.lines(), 3),
        QStringList({line("warning: HTTPS request timeout."),
                     line("warning: Failed to get association questions! ret:-1."),
                     line("warning: ProblemAssociation---QJsonDocument::fromJson error code5")}));
}

void TestIdpInterface::ask_bodyAndDocument()
{
    TestServer server;
    server.setReplyFor("/ask",
                       httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT"}})"));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    const QJsonDocument document = ask(service);
    QCOMPARE(document.object()
                 .value(QStringLiteral("result"))
                 .toObject()
                 .value(QStringLiteral("resultType"))
                 .toString(),
             QStringLiteral("NO_RESULT"));
    QCOMPARE(server.requests().value(0).body,
             QByteArray(R"({"accountId":"user","channelId":3,"currentDomain":"desktop",)"
                        R"("originalQuestion":"original","questionId":42,"rawQuery":"为什么?",)"
                        R"("recommendSize":4,"robotId":"robot","source":"recommend"})"));
}

void TestIdpInterface::ask_questionIdZeroIsSent()
{
    TestServer server;
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    ask(service, 0);
    QVERIFY(server.requests().value(0).body.contains(R"("questionId":0,)"));
}

void TestIdpInterface::ask_logsTheQuestion()
{
    TestServer server;
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    ask(service);
    // After the resolution, before the request.
    QCOMPARE(log.timelessLines().mid(3, 2),
             QStringList({line("debug: end ping, time: <time>"),
                          line("info: Ask_And_Answer question:为什么?")}));
}

void TestIdpInterface::ask_slowReplyGivesANullDocument()
{
    TestServer server;
    server.setReplyFor("/ask", held(httpReply(goodBody)));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    service.askTimeoutMs = shortMs;
    const LogCapture log;
    QVERIFY(ask(service).isNull());
    QCOMPARE(tail(log.lines(), 3),
             QStringList({line("warning: HTTPS request timeout."),
                          line("warning: Failed to get question reply (Ask_And_Answer)! ret:-1."),
                          line("warning: QuestAndAnw---QJsonDocument::fromJson error code5")}));
}

void TestIdpInterface::hot_slowReplyIsLogged()
{
    TestServer server;
    server.setReplyFor("/hot", held(httpReply(goodBody)));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    service.hotTimeoutMs = shortMs;
    const LogCapture log;
    QCOMPARE(service.hot_questions(), QJsonArray());
    QCOMPARE(tail(log.lines(), 3),
             QStringList({line("warning: HTTPS request timeout."),
                          line("warning: Failed to get hot questions! ret:-1."),
                          line("warning: HotRecommendation---QJsonDocument::fromJson error "
                               "code5")}));
}

void TestIdpInterface::numbersThatAreNone_areZero()
{
    TestServer server;
    TestConfig config;
    configure(config, server.port());
    config.set(QStringLiteral("HotRecommendation/channelId"), QStringLiteral("three"));
    config.set(QStringLiteral("HotRecommendation/recommendSize"), QStringLiteral("2x"));
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.hot_questions(), QJsonArray());
    QCOMPARE(server.requests().value(0).body,
             QByteArray(R"({"channelId":0,"recommendSize":0,"robotId":"robot"})"));
}

void TestIdpInterface::httpMode_isReadAsANumber()
{
    TestServer server;
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    const auto scheme = [&](const char *mode) {
        config.set(QStringLiteral("ihttpInfo/iHttpMode"), QLatin1String(mode));
        const int before = log.linesWith(line("info: url:https://")).size();
        service.association_questions(QStringLiteral("a"));
        return log.linesWith(line("info: url:https://")).size() > before;
    };
    QVERIFY(!scheme("0"));
    QVERIFY(!scheme("https"));
    QVERIFY(scheme("1"));
}

void TestIdpInterface::replyThatIsNoJson_isLogged_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("code");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("5");
    QTest::newRow("page of a proxy") << QByteArray("<html>") << QStringLiteral("5");
    QTest::newRow("cut off") << QByteArray(R"({"result":[1,)") << QStringLiteral("3");
    QTest::newRow("10,000 levels") << QByteArray(10000, '[') << QStringLiteral("12");
}

void TestIdpInterface::replyThatIsNoJson_isLogged()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, code);
    TestServer server;
    server.setReply(httpReply(body));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const QString end = QStringLiteral("---QJsonDocument::fromJson error code") + code;
    const LogCapture log;
    QCOMPARE(service.hot_questions(), QJsonArray());
    QCOMPARE(log.lines().constLast(), QStringLiteral("warning: HotRecommendation") + end);
    QCOMPARE(service.association_questions(QStringLiteral("a")), QJsonArray());
    QCOMPARE(log.lines().constLast(), QStringLiteral("warning: ProblemAssociation") + end);
    QVERIFY(ask(service).isNull());
    QCOMPARE(log.lines().constLast(), QStringLiteral("warning: QuestAndAnw") + end);
    QCOMPARE(log.linesWith(line("warning: Failed")), QStringList());
}

void TestIdpInterface::replyWithANulByte_isReadUpToIt()
{
    TestServer server;
    server.setReply(httpReply(QByteArray("{\"errorCode\":\"0\",\"result\":[1,2]}\0{", 34)));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.hot_questions(), QJsonArray({1, 2}));
    QCOMPARE(ask(service).object().value(QStringLiteral("result")).toArray().size(), 2);
    QCOMPARE(log.linesWith(line("warning: ")), QStringList());
}

void TestIdpInterface::httpErrorWithJsonBody_isStillRead()
{
    TestServer server;
    server.setReply(httpReply(R"({"errorCode":"401","message":"signature"})", "401 Unauthorized"));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(ask(service).object().value(QStringLiteral("message")).toString(),
             QStringLiteral("signature"));
    QCOMPARE(service.hot_questions(), QJsonArray());
    QCOMPARE(log.linesWith(line("warning: https reply error:AuthenticationRequiredError")).size(),
             2);
}

void TestIdpInterface::unreachableService_givesEmptyResults()
{
    const RefusingPort refusing;
    TestConfig config;
    configure(config, refusing.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    QCOMPARE(service.association_questions(QStringLiteral("a")), QJsonArray());
    QCOMPARE(service.hot_questions(), QJsonArray());
    QVERIFY(ask(service).isNull());
    QCOMPARE(log.linesWith(line("info: url:http://:/")).size(), 2);
    QCOMPARE(log.linesWith(line("warning: get no korinfo when connect vd")).size(), 2);
}

void TestIdpInterface::editedSettings_areSeenByTheNextCall()
{
    TestServer server;
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    service.association_questions(QStringLiteral("a"));
    config.set(QStringLiteral("url/associateurl"), QStringLiteral("/moved"));
    service.association_questions(QStringLiteral("a"));
    QCOMPARE(server.requests().value(0).target, QByteArray("/associate"));
    QCOMPARE(server.requests().value(1).target, QByteArray("/moved"));
}

void TestIdpInterface::toolkitWarnsOfNothing()
{
    TestServer server;
    server.setReply(httpReply(goodBody));
    TestConfig config;
    configure(config, server.port());
    IdpInterface service;
    service.request.configPath = config.path();
    const LogCapture log;
    service.hot_questions();
    service.association_questions(QStringLiteral("a"));
    ask(service);
    QCOMPARE(log.foreignLines(), QStringList());
}

QTEST_MAIN(TestIdpInterface)
#include "tst_idpinterface.moc"
