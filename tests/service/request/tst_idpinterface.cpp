#include "tests/service/support/refusingport.h"
#include "tests/service/support/requestbench.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QTest>

/// The three calls: their bodies, their targets, what they make of replies, what they log.
class TestIdpInterface : public QObject
{
    Q_OBJECT

private slots:
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
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/hot", httpReply(goodBody));
    const QJsonArray questions = bench.service.hot_questions();
    QCOMPARE(questions.size(), 1);
    QCOMPARE(questions.at(0).toObject().value(QStringLiteral("id")).toInt(), 7);
    QCOMPARE(bench.server.requests().size(), 1);
    QCOMPARE(bench.server.requests().at(0).target, QByteArray("/hot"));
    QCOMPARE(bench.server.requests().at(0).body,
             QByteArray(R"({"channelId":1,"recommendSize":20,"robotId":"robot"})"));
}

void TestIdpInterface::hot_withoutSettingsCarriesZeros()
{
    RequestBench bench;
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QCOMPARE(bench.server.requests().value(0).body,
             QByteArray(R"({"channelId":0,"recommendSize":0,"robotId":""})"));
}

void TestIdpInterface::hot_resolvesTheEndpointFirst()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/hot", httpReply(goodBody));
    setResolvedEndpoint({QStringLiteral("192.0.2.1"), QStringLiteral("9")}); // nobody's, RFC 5737
    QCOMPARE(bench.service.hot_questions().size(), 1);
    QCOMPARE(resolvedEndpoint().strPort, QString::number(bench.server.port()));
    QCOMPARE(bench.log.timelessLines().mid(0, 4),
             QStringList({line("debug: start ping, time: <time>"),
                          line("debug: connected ipport:127.0.0.1"), line("info: can ping"),
                          line("debug: end ping, time: <time>")}));
    QCOMPARE(bench.server.connectionCount(), 2); // the test and the request
}

void TestIdpInterface::association_bodyAndResult()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/associate", httpReply(goodBody));
    QCOMPARE(bench.service.association_questions(QStringLiteral("打印")).size(), 1);
    QCOMPARE(bench.server.requests().size(), 1);
    QCOMPARE(bench.server.requests().at(0).body,
             QByteArray(R"({"channelId":2,"recommendSize":5,"robotId":"robot","text":"打印"})"));
}

void TestIdpInterface::association_doesNotResolveAndFallsBack()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/associate", httpReply(goodBody));
    QCOMPARE(bench.service.association_questions(QStringLiteral("a")).size(), 1);
    QCOMPARE(bench.server.connectionCount(), 1);
    QVERIFY(!resolvedEndpoint().isComplete());
    QCOMPARE(bench.log.linesWith(line("debug: assocation request")).size(), 1);
    QCOMPARE(bench.log.linesWith(line("debug: start ping")).size(), 0);
}

void TestIdpInterface::association_goesToTheLastResolution()
{
    TestServer configured;
    TestServer gateway;
    gateway.setReplyFor("/associate", httpReply(goodBody));
    RequestBench bench(configured.port());
    bench.configureCalls();
    setResolvedEndpoint({QStringLiteral("127.0.0.1"), QString::number(gateway.port())});
    QCOMPARE(bench.service.association_questions(QStringLiteral("a")).size(), 1);
    QCOMPARE(configured.connectionCount(), 0);
}

void TestIdpInterface::association_slowerThanItsTimeoutIsEmptyAndLogged()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/associate", held(httpReply(goodBody)));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(bench.service.association_questions(QStringLiteral("a")), QJsonArray());
    QVERIFY(clock.elapsed() >= 400);
    QCOMPARE(
        tail(bench.log.lines(), 3),
        QStringList({line("warning: HTTPS request timeout."),
                     line("warning: Failed to get association questions! ret:-1."),
                     line("warning: ProblemAssociation---QJsonDocument::fromJson error code5")}));
}

void TestIdpInterface::ask_bodyAndDocument()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/ask",
                             httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT"}})"));
    const QJsonDocument document = ask(bench.service);
    QCOMPARE(document.object()
                 .value(QStringLiteral("result"))
                 .toObject()
                 .value(QStringLiteral("resultType"))
                 .toString(),
             QStringLiteral("NO_RESULT"));
    QCOMPARE(bench.server.requests().value(0).body,
             QByteArray(R"({"accountId":"user","channelId":3,"currentDomain":"desktop",)"
                        R"("originalQuestion":"original","questionId":42,"rawQuery":"为什么?",)"
                        R"("recommendSize":4,"robotId":"robot","source":"recommend"})"));
}

void TestIdpInterface::ask_questionIdZeroIsSent()
{
    RequestBench bench;
    bench.configureCalls();
    ask(bench.service, 0);
    QVERIFY(bench.server.requests().value(0).body.contains(R"("questionId":0,)"));
}

void TestIdpInterface::ask_logsTheQuestion()
{
    RequestBench bench;
    bench.configureCalls();
    ask(bench.service);
    // After the resolution, before the request.
    QCOMPARE(bench.log.timelessLines().mid(3, 2),
             QStringList({line("debug: end ping, time: <time>"),
                          line("info: Ask_And_Answer question:为什么?")}));
}

void TestIdpInterface::ask_slowReplyGivesANullDocument()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/ask", held(httpReply(goodBody)));
    bench.service.askTimeoutMs = shortMs;
    QVERIFY(ask(bench.service).isNull());
    QCOMPARE(tail(bench.log.lines(), 3),
             QStringList({line("warning: HTTPS request timeout."),
                          line("warning: Failed to get question reply (Ask_And_Answer)! ret:-1."),
                          line("warning: QuestAndAnw---QJsonDocument::fromJson error code5")}));
}

void TestIdpInterface::hot_slowReplyIsLogged()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReplyFor("/hot", held(httpReply(goodBody)));
    bench.service.hotTimeoutMs = shortMs;
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QCOMPARE(tail(bench.log.lines(), 3),
             QStringList({line("warning: HTTPS request timeout."),
                          line("warning: Failed to get hot questions! ret:-1."),
                          line("warning: HotRecommendation---QJsonDocument::fromJson error "
                               "code5")}));
}

void TestIdpInterface::numbersThatAreNone_areZero()
{
    RequestBench bench;
    bench.configureCalls();
    bench.config.set(QStringLiteral("HotRecommendation/channelId"), QStringLiteral("three"));
    bench.config.set(QStringLiteral("HotRecommendation/recommendSize"), QStringLiteral("2x"));
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QCOMPARE(bench.server.requests().value(0).body,
             QByteArray(R"({"channelId":0,"recommendSize":0,"robotId":"robot"})"));
}

void TestIdpInterface::httpMode_isReadAsANumber()
{
    RequestBench bench;
    bench.configureCalls();
    const auto scheme = [&](const char *mode) {
        bench.config.set(QStringLiteral("ihttpInfo/iHttpMode"), QLatin1String(mode));
        const int before = bench.log.linesWith(line("info: url:https://")).size();
        bench.service.association_questions(QStringLiteral("a"));
        return bench.log.linesWith(line("info: url:https://")).size() > before;
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
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReply(httpReply(body));
    const QString end = QStringLiteral("---QJsonDocument::fromJson error code") + code;
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QCOMPARE(bench.log.lines().constLast(), QStringLiteral("warning: HotRecommendation") + end);
    QCOMPARE(bench.service.association_questions(QStringLiteral("a")), QJsonArray());
    QCOMPARE(bench.log.lines().constLast(), QStringLiteral("warning: ProblemAssociation") + end);
    QVERIFY(ask(bench.service).isNull());
    QCOMPARE(bench.log.lines().constLast(), QStringLiteral("warning: QuestAndAnw") + end);
    QCOMPARE(bench.log.linesWith(line("warning: Failed")), QStringList());
}

void TestIdpInterface::replyWithANulByte_isReadUpToIt()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReply(httpReply(QByteArray("{\"errorCode\":\"0\",\"result\":[1,2]}\0{", 34)));
    QCOMPARE(bench.service.hot_questions(), QJsonArray({1, 2}));
    QCOMPARE(ask(bench.service).object().value(QStringLiteral("result")).toArray().size(), 2);
    QCOMPARE(bench.log.linesWith(line("warning: ")), QStringList());
}

void TestIdpInterface::httpErrorWithJsonBody_isStillRead()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReply(
        httpReply(R"({"errorCode":"401","message":"signature"})", "401 Unauthorized"));
    QCOMPARE(ask(bench.service).object().value(QStringLiteral("message")).toString(),
             QStringLiteral("signature"));
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QCOMPARE(
        bench.log.linesWith(line("warning: https reply error:AuthenticationRequiredError")).size(),
        2);
}

void TestIdpInterface::unreachableService_givesEmptyResults()
{
    const RefusingPort refusing;
    RequestBench bench(refusing.port());
    bench.configureCalls();
    QCOMPARE(bench.service.association_questions(QStringLiteral("a")), QJsonArray());
    QCOMPARE(bench.service.hot_questions(), QJsonArray());
    QVERIFY(ask(bench.service).isNull());
    QCOMPARE(bench.log.linesWith(line("info: url:http://:/")).size(), 2);
    QCOMPARE(bench.log.linesWith(line("warning: get no korinfo when connect vd")).size(), 2);
}

void TestIdpInterface::editedSettings_areSeenByTheNextCall()
{
    RequestBench bench;
    bench.configureCalls();
    bench.service.association_questions(QStringLiteral("a"));
    bench.config.set(QStringLiteral("url/associateurl"), QStringLiteral("/moved"));
    bench.service.association_questions(QStringLiteral("a"));
    QCOMPARE(bench.server.requests().value(0).target, QByteArray("/associate"));
    QCOMPARE(bench.server.requests().value(1).target, QByteArray("/moved"));
}

void TestIdpInterface::toolkitWarnsOfNothing()
{
    RequestBench bench;
    bench.configureCalls();
    bench.server.setReply(httpReply(goodBody));
    bench.service.hot_questions();
    bench.service.association_questions(QStringLiteral("a"));
    ask(bench.service);
    QCOMPARE(bench.log.foreignLines(), QStringList());
}

QTEST_MAIN(TestIdpInterface)
#include "tst_idpinterface.moc"
