#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/request/serviceendpoint.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendonlyitem.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

/// The question cycle against a real server: what is sent, what is shown, what is logged.
class TestQARegion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void emptyQuestion_doesNothing();
    void normalResult_showsAnswer();
    void normalResult_withoutStandardQuestion_takesTheQuestionAsTitle();
    void multiResult_showsAnswerAndBox();
    void noResult_withoutRecommendations_saysSo();
    void noResult_withRecommendationsAndEmptyReply_showsBoxAndMessage();
    void unknownResultType_withAReply_showsNothing();
    void badReply_showsMessage_data();
    void badReply_showsMessage();
    void unreachableService_showsNetworkMessage_andTells();
    void recommendation_isAskedInTurn();
    void recommendationWithoutId_isAskedWithZero();
    void foldedAnswer_opensAndRetractsByItsButtons();
    void secondQuestionWhileOneWaits_getsItsOwnAnswer();
    void newEntries_areScrolledTo();

private:
    [[nodiscard]] static QByteArray reply(const QJsonObject &result);
    [[nodiscard]] static QJsonObject normalResult();
    [[nodiscard]] static QJsonArray recommends(int count);

    template <typename Item>
    [[nodiscard]] QList<Item *> items() const
    {
        return m_region->findChildren<Item *>();
    }
    [[nodiscard]] QStringList messages() const;
    [[nodiscard]] QJsonObject lastBody() const;
    void ask(const QString &question);
    void askSecondMeanwhile();

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<QARegion> m_region;
};

namespace {

const QByteArray askPath = "/ask";
const QString noMatch = QStringLiteral("您好，未找到匹配的问题，请换一种说法试试看呢！");
const QString noNetwork
    = QStringLiteral("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。");

} // namespace

void TestQARegion::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestQARegion::init()
{
    m_config = std::make_unique<TestConfig>();
    m_server = std::make_unique<TestServer>();
    m_config->setServer(m_server->port());
    m_config->set(QStringLiteral("url/askquesturl"), QString::fromLatin1(askPath));
    m_config->set(QStringLiteral("RobotId/robotId"), QStringLiteral("robot"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    QDir::setCurrent(m_config->root());
    m_region = std::make_unique<QARegion>();
    m_region->show();
}

void TestQARegion::cleanup()
{
    m_region.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

QByteArray TestQARegion::reply(const QJsonObject &result)
{
    const QJsonObject document{{QStringLiteral("errorCode"), QStringLiteral("0")},
                               {QStringLiteral("result"), result}};
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

QJsonObject TestQARegion::normalResult()
{
    return {{QStringLiteral("resultType"), QStringLiteral("QA_NORMAL_RESULT")},
            {QStringLiteral("standardQuestion"), QStringLiteral("如何修改密码？")},
            {QStringLiteral("reply"), QStringLiteral("<p>打开设置。</p><p>选择密码。</p>")}};
}

QJsonArray TestQARegion::recommends(int count)
{
    QJsonArray array;
    for (int i = 0; i < count; ++i) {
        array.append(QJsonObject{{QStringLiteral("question"), QStringLiteral("推荐%1").arg(i)},
                                 {QStringLiteral("questionId"), 100 + i}});
    }
    return array;
}

QStringList TestQARegion::messages() const
{
    QStringList texts;
    const auto bubbles = items<MessageBubble>();
    for (const MessageBubble *bubble : bubbles) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

QJsonObject TestQARegion::lastBody() const
{
    const auto requests = m_server->requests();
    return requests.isEmpty() ? QJsonObject()
                              : QJsonDocument::fromJson(requests.last().body).object();
}

void TestQARegion::ask(const QString &question)
{
    m_region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
}

void TestQARegion::form()
{
    QCOMPARE(m_region->objectName(), QStringLiteral("QARegion"));
    QCOMPARE(m_region->windowTitle(), QStringLiteral("Form"));
    const auto *list = m_region->findChild<ConversationList *>();
    QCOMPARE(list->geometry(), QRect(1, 0, 648, 432));
    QCOMPARE(list->parentWidget()->size(), QSize(647, 490));
    QCOMPARE(list->parentWidget()->styleSheet(),
             QStringLiteral("QWidget{background-color:white;border:none;}"));
    QCOMPARE(list->styleSheet(), QStringLiteral("QListWidget{background-color:white;}"));
    QCOMPARE(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
}

void TestQARegion::emptyQuestion_doesNothing()
{
    ask(QString());
    QVERIFY(items<QuestionBubble>().isEmpty());
    QCOMPARE(m_server->connectionCount(), 0);
}

void TestQARegion::normalResult_showsAnswer()
{
    m_server->setReply(httpReply(reply(normalResult())));
    const LogCapture log;
    ask(QStringLiteral("改密码"));
    QCOMPARE(items<QuestionBubble>().size(), 1);
    QCOMPARE(items<QuestionBubble>().first()->label()->text(), QStringLiteral("改密码"));
    QCOMPARE(items<AnswerItem>().size(), 1);
    QCOMPARE(items<AnswerItem>().first()->titleLabel()->text(), QStringLiteral("如何修改密码？"));
    QVERIFY(items<AnswerItem>().first()->box() == nullptr);
    QVERIFY(messages().isEmpty());
    QCOMPARE(log.linesWith(QStringLiteral("debug: nSize_Recom:")),
             QStringList{QStringLiteral("debug: nSize_Recom:0reply_Type:QA_NORMAL_RESULT")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Hit")),
             QStringList{QStringLiteral("info: Hit question, But no Recommend!")});
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestQARegion::normalResult_withoutStandardQuestion_takesTheQuestionAsTitle()
{
    QJsonObject result = normalResult();
    result.remove(QStringLiteral("standardQuestion"));
    m_server->setReply(httpReply(reply(result)));
    ask(QStringLiteral("改密码"));
    QCOMPARE(items<AnswerItem>().first()->titleLabel()->text(), QStringLiteral("改密码"));
}

void TestQARegion::multiResult_showsAnswerAndBox()
{
    QJsonObject result = normalResult();
    result[QStringLiteral("resultType")] = QStringLiteral("MULTI_QA_RESULT");
    result[QStringLiteral("recommends")] = recommends(10);
    m_server->setReply(httpReply(reply(result)));
    const LogCapture log;
    ask(QStringLiteral("改密码"));
    const AnswerItem *answer = items<AnswerItem>().first();
    QVERIFY(answer->box() != nullptr);
    QCOMPARE(answer->box()->x(), 83);
    QCOMPARE(log.linesWith(QStringLiteral("debug: nSize_Recom:")),
             QStringList{QStringLiteral("debug: nSize_Recom:10reply_Type:MULTI_QA_RESULT")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Hit")),
             QStringList{QStringLiteral("info: Hit question, and have Recommends!")});
}

void TestQARegion::noResult_withoutRecommendations_saysSo()
{
    m_server->setReply(httpReply(reply({{QStringLiteral("resultType"), QStringLiteral("NO_RESULT")},
                                        {QStringLiteral("reply"), QStringLiteral("x")}})));
    const LogCapture log;
    ask(QStringLiteral("今天天气"));
    QCOMPARE(messages(), QStringList{noMatch});
    QCOMPARE(log.linesWith(QStringLiteral("info: No hits")),
             QStringList{QStringLiteral("info: No hits and no recommendation questions!")});
}

void TestQARegion::noResult_withRecommendationsAndEmptyReply_showsBoxAndMessage()
{
    m_server->setReply(httpReply(reply({{QStringLiteral("resultType"), QStringLiteral("NO_RESULT")},
                                        {QStringLiteral("reply"), QString()},
                                        {QStringLiteral("recommends"), recommends(3)}})));
    const LogCapture log;
    ask(QStringLiteral("密码"));
    QCOMPARE(items<RecommendOnlyItem>().size(), 1);
    QCOMPARE(messages(), QStringList{noMatch});
    const auto *list = m_region->findChild<ConversationList *>();
    QCOMPARE(list->count(), 3);
    QVERIFY(list->itemWidget(list->item(1)) == items<RecommendOnlyItem>().first());
    QCOMPARE(
        log.linesWith(QStringLiteral("warning: The network")),
        QStringList{QStringLiteral("warning: The network is connected, but the reply is empty.")});
}

void TestQARegion::unknownResultType_withAReply_showsNothing()
{
    QJsonObject result = normalResult();
    result[QStringLiteral("resultType")] = QStringLiteral("qa_normal_result");
    m_server->setReply(httpReply(reply(result)));
    ask(QStringLiteral("改密码"));
    QVERIFY(items<AnswerItem>().isEmpty());
    QVERIFY(messages().isEmpty());
}

void TestQARegion::badReply_showsMessage_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("truncated");
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("no JSON") << QByteArray("<html>busy</html>") << false;
    QTest::newRow("truncated") << reply(normalResult()).left(60) << true;
    QTest::newRow("not UTF-8") << QByteArray("{\"errorCode\":\"0\",\"result\":\xff\xfe}") << false;
    QTest::newRow("NUL") << reply(normalResult()).replace("result", QByteArray("\0esult", 6))
                         << false;
    QTest::newRow("deep") << QByteArray(10000, '[') + QByteArray(10000, ']') << false;
    QTest::newRow("array") << QByteArray("[1,2,3]") << false;
    QTest::newRow("result is no object")
        << QByteArray(R"({"errorCode":"0","result":[1]})") << false;
    QTest::newRow("refused") << QByteArray(R"({"errorCode":"40101","result":null})") << false;
}

void TestQARegion::badReply_showsMessage()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, truncated);
    m_server->setReply(truncated ? truncatedReply(body) : httpReply(body));
    ask(QStringLiteral("改密码"));
    QCOMPARE(items<QuestionBubble>().size(), 1);
    QVERIFY(items<AnswerItem>().isEmpty());
    QCOMPARE(messages(), QStringList{noMatch});
}

void TestQARegion::unreachableService_showsNetworkMessage_andTells()
{
    const RefusingPort nobody;
    m_config->setServer(nobody.port());
    QSignalSpy problem(m_region.get(), &QARegion::netproblem);
    const LogCapture log;
    ask(QStringLiteral("改密码"));
    QCOMPARE(messages(), QStringList{noNetwork});
    QCOMPARE(problem.count(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("warning: Network")),
             QStringList{QStringLiteral("warning: Network problem! No reply.")});
}

void TestQARegion::recommendation_isAskedInTurn()
{
    m_server->setReply(httpReply(reply({{QStringLiteral("resultType"), QStringLiteral("NO_RESULT")},
                                        {QStringLiteral("reply"), QStringLiteral("x")},
                                        {QStringLiteral("recommends"), recommends(5)}})));
    ask(QStringLiteral("密码"));
    m_server->setReply(httpReply(reply(normalResult())));
    auto *row = items<RecommendOnlyItem>().first()->findChildren<QPushButton *>().at(2);
    QTest::mouseClick(row, Qt::LeftButton);
    QCOMPARE(items<QuestionBubble>().last()->label()->text(), QStringLiteral("推荐2"));
    const QJsonObject body = lastBody();
    QCOMPARE(body.value(QLatin1String("rawQuery")).toString(), QStringLiteral("推荐2"));
    QCOMPARE(body.value(QLatin1String("source")).toString(), QStringLiteral("recommend"));
    QCOMPARE(body.value(QLatin1String("originalQuestion")).toString(), QStringLiteral("密码"));
    QCOMPARE(body.value(QLatin1String("questionId")).toInt(), 102);
    QCOMPARE(items<AnswerItem>().size(), 1);
}

void TestQARegion::recommendationWithoutId_isAskedWithZero()
{
    QJsonObject result = normalResult();
    result[QStringLiteral("resultType")] = QStringLiteral("MULTI_QA_RESULT");
    result[QStringLiteral("recommends")]
        = QJsonArray{QJsonObject{{QStringLiteral("question"), QStringLiteral("甲")}}};
    m_server->setReply(httpReply(reply(result)));
    ask(QStringLiteral("密码"));
    const auto buttons = items<AnswerItem>().first()->box()->findChildren<QPushButton *>();
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QCOMPARE(lastBody().value(QLatin1String("rawQuery")).toString(), QStringLiteral("甲"));
    QCOMPARE(lastBody().value(QLatin1String("questionId")).toDouble(-1), 0.0);

    // The surplus rows have no text and ask nothing.
    const int asked = m_server->requests().size();
    QTest::mouseClick(buttons.at(4), Qt::LeftButton);
    QCOMPARE(m_server->requests().size(), asked);
}

void TestQARegion::foldedAnswer_opensAndRetractsByItsButtons()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    AnswerItem *answer = items<AnswerItem>().first();
    const auto buttons = answer->findChildren<QPushButton *>();
    const auto *list = m_region->findChild<ConversationList *>();
    QCOMPARE(list->item(0)->sizeHint(), QSize(648, 230));
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QCOMPARE(list->item(0)->sizeHint().height(), answer->height());
    QVERIFY(answer->height() > 400);
    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QCOMPARE(list->item(0)->sizeHint(), QSize(648, 230));
}

void TestQARegion::secondQuestionWhileOneWaits_getsItsOwnAnswer()
{
    m_server->setReply(held(httpReply(reply(normalResult()))));
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, [this, &poll] {
        if (m_server->requests().size() == 1) {
            poll.stop();
            askSecondMeanwhile();
        }
    });
    poll.start(1);
    ask(QStringLiteral("一"));
    const auto answers = items<AnswerItem>();
    QCOMPARE(items<QuestionBubble>().size(), 2);
    QCOMPARE(answers.size(), 2);
    QCOMPARE(answers.at(0)->titleLabel()->text(), QStringLiteral("第二"));
    QCOMPARE(answers.at(1)->titleLabel()->text(), QStringLiteral("如何修改密码？"));
}

void TestQARegion::askSecondMeanwhile()
{
    QJsonObject second = normalResult();
    second[QStringLiteral("standardQuestion")] = QStringLiteral("第二");
    m_server->setReply(httpReply(reply(second)));
    ask(QStringLiteral("二"));
    m_server->release();
}

void TestQARegion::newEntries_areScrolledTo()
{
    const auto *list = m_region->findChild<ConversationList *>();
    for (int i = 0; i < 20; ++i) {
        m_region->addQuestionBubble(QStringLiteral("问题%1").arg(i));
    }
    const QScrollBar *bar = list->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    m_region->showAnswer(QStringLiteral("题"), QStringLiteral("<p>答</p>"));
    QCOMPARE(bar->value(), bar->maximum());
}

QTEST_MAIN(TestQARegion)
#include "tst_qaregion.moc"
