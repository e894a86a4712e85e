#include "app/base/apppaths.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"
#include "ui/answer/questioncycle.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

/// The question cycle against a real server, without an answer region: what is sent, and which
/// signals tell of what came back.
class TestQuestionCycle : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void userName_fromTheClientsSettings();
    void userName_missing_isWarnedOf();
    void request_bodyCarriesAllMembers();
    void normalResult_isTold_beforeTheReply();
    void multiResult_carriesItsRecommendations();
    void noResult_countsItsRecommendations();
    void unknownResult_tellsTheReplyOnly();
    void noDocument_tellsAnEmptyReply();
    void service_isFound_untilNobodyAnswers();
    void questionsThatHang_leaveDescriptors_andRecover();

private:
    void answerWith(const QJsonObject &result);
    void ask() { m_cycle->ask(QStringLiteral("问"), QStringLiteral("rawquery"), QString(), 0); }

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<QuestionCycle> m_cycle;
};

void TestQuestionCycle::init()
{
    initAppPaths(QString());
    m_config = std::make_unique<TestConfig>();
    m_server = std::make_unique<TestServer>();
    m_config->setServer(m_server->port());
    m_config->set(QStringLiteral("url/askquesturl"), QStringLiteral("/ask"));
    m_config->set(QStringLiteral("RobotId/robotId"), QStringLiteral("robot"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    QDir::setCurrent(m_config->root());
    m_cycle = std::make_unique<QuestionCycle>(nullptr);
}

void TestQuestionCycle::cleanup()
{
    m_cycle.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

void TestQuestionCycle::answerWith(const QJsonObject &result)
{
    const QJsonObject document{{QStringLiteral("errorCode"), QStringLiteral("0")},
                               {QStringLiteral("result"), result}};
    m_server->setReply(httpReply(QJsonDocument(document).toJson(QJsonDocument::Compact)));
}

void TestQuestionCycle::userName_fromTheClientsSettings()
{
    initAppPaths(QStringLiteral("vdi"));
    QVERIFY(QDir().mkpath(QStringLiteral("program")));
    QFile settings(QStringLiteral("config/CommonTerminal.ini"));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[RemLastUser]\nlastuser=w00123456\n");
    settings.close();
    QDir::setCurrent(QStringLiteral("program"));
    m_cycle = std::make_unique<QuestionCycle>(nullptr);
    ask();
    const QByteArray body = m_server->requests().last().body;
    QCOMPARE(QJsonDocument::fromJson(body).object().value(QLatin1String("accountId")).toString(),
             QStringLiteral("w00123456"));
}

void TestQuestionCycle::userName_missing_isWarnedOf()
{
    const LogCapture log;
    const QuestionCycle cycle(nullptr);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("warning: Get the username failed.")});
}

void TestQuestionCycle::request_bodyCarriesAllMembers()
{
    m_config->set(QStringLiteral("QuestAndAnw/currentDomain"), QStringLiteral("vdi"));
    m_config->set(QStringLiteral("QuestAndAnw/channelId"), QStringLiteral("7"));
    m_config->set(QStringLiteral("QuestAndAnw/recommendSize"), QStringLiteral("5"));
    m_cycle->ask(QStringLiteral("问"), QStringLiteral("hotquestion"), QString(), 42);
    QCOMPARE(m_server->requests().last().body,
             QByteArray(R"({"accountId":"","channelId":7,"currentDomain":"vdi",)"
                        R"("originalQuestion":"","questionId":42,"rawQuery":"问",)"
                        R"("recommendSize":5,"robotId":"robot","source":"hotquestion"})"));
}

void TestQuestionCycle::normalResult_isTold_beforeTheReply()
{
    answerWith({{QStringLiteral("resultType"), QStringLiteral("QA_NORMAL_RESULT")},
                {QStringLiteral("standardQuestion"), QStringLiteral("标准")},
                {QStringLiteral("reply"), QStringLiteral("答")}});
    QStringList told;
    connect(m_cycle.get(), &QuestionCycle::normalResult, this,
            [&told](const QString &question, const QString &standard, const QString &reply) {
                told << question << standard << reply;
            });
    connect(m_cycle.get(), &QuestionCycle::replied, this,
            [&told](const QString &reply) { told << reply; });
    const LogCapture log;
    ask();
    QCOMPARE(told, (QStringList{QStringLiteral("问"), QStringLiteral("标准"), QStringLiteral("答"),
                                QStringLiteral("答")}));
    QCOMPARE(log.linesWith(QStringLiteral("debug: nSize_Recom:")),
             QStringList{QStringLiteral("debug: nSize_Recom:0reply_Type:QA_NORMAL_RESULT")});
}

void TestQuestionCycle::multiResult_carriesItsRecommendations()
{
    const QJsonArray recommends{QJsonObject{{QStringLiteral("question"), QStringLiteral("甲")}}};
    answerWith({{QStringLiteral("resultType"), QStringLiteral("MULTI_QA_RESULT")},
                {QStringLiteral("reply"), QStringLiteral("答")},
                {QStringLiteral("recommends"), recommends}});
    QVector<Answer> told;
    connect(m_cycle.get(), &QuestionCycle::multiResult, this,
            [&told](const QString &question, const Answer &answer) {
                QCOMPARE(question, QStringLiteral("问"));
                told.append(answer);
            });
    ask();
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.first().title, QString());
    QCOMPARE(told.first().text, QStringLiteral("答"));
    QCOMPARE(told.first().recommendations, (QVector<ListedQuestion>{{QStringLiteral("甲"), 0}}));
}

void TestQuestionCycle::noResult_countsItsRecommendations()
{
    QVector<int> told;
    connect(m_cycle.get(), &QuestionCycle::noResult, this,
            [&told](int count, const QVector<ListedQuestion> &recommends, const QString &question) {
                QCOMPARE(question, QStringLiteral("问"));
                QCOMPARE(recommends.size(), count);
                told.append(count);
            });
    answerWith({{QStringLiteral("resultType"), QStringLiteral("NO_RESULT")}});
    ask();
    answerWith({{QStringLiteral("resultType"), QStringLiteral("NO_RESULT")},
                {QStringLiteral("recommends"), QJsonArray{QJsonObject(), QJsonObject()}}});
    ask();
    QCOMPARE(told, (QVector<int>{0, 2}));
}

void TestQuestionCycle::unknownResult_tellsTheReplyOnly()
{
    QSignalSpy normal(m_cycle.get(), &QuestionCycle::normalResult);
    QSignalSpy replied(m_cycle.get(), &QuestionCycle::replied);
    answerWith({{QStringLiteral("resultType"), QStringLiteral("qa_normal_result")},
                {QStringLiteral("reply"), QStringLiteral("答")}});
    ask();
    QCOMPARE(normal.count(), 0);
    QCOMPARE(replied, (QList<QVariantList>{{QStringLiteral("答")}}));
}

void TestQuestionCycle::noDocument_tellsAnEmptyReply()
{
    QSignalSpy replied(m_cycle.get(), &QuestionCycle::replied);
    m_server->setReply(httpReply("<html>busy</html>"));
    ask();
    QCOMPARE(replied, (QList<QVariantList>{{QString()}}));
}

void TestQuestionCycle::service_isFound_untilNobodyAnswers()
{
    ask();
    QVERIFY(m_cycle->isServiceFound());
    const RefusingPort nobody;
    m_config->setServer(nobody.port());
    ask();
    QVERIFY(!m_cycle->isServiceFound());
}

void TestQuestionCycle::questionsThatHang_leaveDescriptors_andRecover()
{
#ifdef Q_OS_LINUX
    constexpr int most = 10;
    rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{96 + 3 * most, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &few), 0);
    m_server->setReply(held(httpReply(R"({"errorCode":"0","result":{"reply":"a"}})")));
    QSignalSpy replied(m_cycle.get(), &QuestionCycle::replied);
    QSignalSpy notSent(m_cycle.get(), &QuestionCycle::notSent);
    int asked = 0;
    // Each waits inside the one before, as when somebody asks on and on.
    const std::function<void()> askNext = [&] {
        if (!notSent.isEmpty()) {
            m_server->release();
            return;
        }
        QTimer::singleShot(1, m_cycle.get(), askNext);
        if (m_server->requests().size() == asked) {
            ++asked;
            ask();
        }
    };
    askNext();
    QTRY_COMPARE(replied.size(), most);
    QCOMPARE(notSent.size(), 1);
    QCOMPARE(asked, most + 1);
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    ask();
    QCOMPARE(replied.size(), most + 1);
    QCOMPARE(replied.last().first().toString(), QStringLiteral("a"));
#else
    QSKIP("only Linux lets a process limit its descriptors");
#endif
}

QTEST_MAIN(TestQuestionCycle)
#include "tst_questioncycle.moc"
