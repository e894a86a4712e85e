#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendonlyitem.h"

#include <QDir>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QTest>

/// What the operations named after the kinds of result show, and odd recommendations.
class TestResultKinds : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void normalResult_takesTheQuestionForAMissingTitle();
    void multiResult_takesTheQuestionForAMissingTitle();
    void multiResult_withoutAnArray_showsEmptyRows();
    void noResult_goesByTheCount();
    void elementsThatAreNoObjects_countAndTakeTheirRows();

private:
    template <typename Item>
    [[nodiscard]] QList<Item *> items() const
    {
        return m_region->findChildren<Item *>();
    }

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<QARegion> m_region;
};

namespace {

const QString question = QStringLiteral("改密码");
const QString title = QStringLiteral("如何修改密码？");
const QString paragraph = QStringLiteral("<p>打开设置。</p>");

QJsonArray oneRecommendation()
{
    return {QJsonObject{{QStringLiteral("question"), QStringLiteral("推荐")},
                        {QStringLiteral("questionId"), 7}}};
}

/// What is read out for the five rows of a box, in their order.
QStringList rowsOf(const RecommendBox &box)
{
    QStringList names;
    const auto buttons = box.findChildren<QPushButton *>();
    for (const QPushButton *button : buttons.mid(0, 5)) {
        names.append(button->accessibleName());
    }
    return names;
}

} // namespace

void TestResultKinds::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestResultKinds::init()
{
    m_config = std::make_unique<TestConfig>();
    QDir::setCurrent(m_config->root());
    m_region = std::make_unique<QARegion>();
}

void TestResultKinds::cleanup()
{
    m_region.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

void TestResultKinds::normalResult_takesTheQuestionForAMissingTitle()
{
    const LogCapture log;
    m_region->QA_NORMAL_RESULT(question, title, paragraph);
    m_region->QA_NORMAL_RESULT(question, QString(), paragraph);
    const auto answers = items<AnswerItem>();
    QCOMPARE(answers.at(0)->titleLabel()->text(), title);
    QCOMPARE(answers.at(1)->titleLabel()->text(), question);
    QCOMPARE(log.linesWith(QStringLiteral("info: Hit question, But no Recommend!")).size(), 2);
}

void TestResultKinds::multiResult_takesTheQuestionForAMissingTitle()
{
    const LogCapture log;
    m_region->MULTI_QA_RESULT(question, title, paragraph, oneRecommendation());
    m_region->MULTI_QA_RESULT(question, QString(), paragraph, oneRecommendation());
    const auto answers = items<AnswerItem>();
    QCOMPARE(answers.at(0)->titleLabel()->text(), title);
    QCOMPARE(answers.at(1)->titleLabel()->text(), question);
    QCOMPARE(rowsOf(*answers.at(0)->box()),
             (QStringList{QStringLiteral("推荐"), QString(), QString(), QString(), QString()}));
    QCOMPARE(log.linesWith(QStringLiteral("info: Hit question, and have Recommends!")).size(), 2);
}

void TestResultKinds::multiResult_withoutAnArray_showsEmptyRows()
{
    const QStringList emptyRows{QString(), QString(), QString(), QString(), QString()};
    m_region->MULTI_QA_RESULT(question, title, paragraph, QJsonValue(QStringLiteral("推荐")));
    m_region->MULTI_QA_RESULT(question, title, paragraph, QJsonValue());
    QCOMPARE(rowsOf(*items<AnswerItem>().at(0)->box()), emptyRows);
    QCOMPARE(rowsOf(*items<AnswerItem>().at(1)->box()), emptyRows);
}

void TestResultKinds::noResult_goesByTheCount()
{
    m_region->NO_RESULT(0, oneRecommendation(), question);
    QCOMPARE(items<MessageBubble>().size(), 1);
    QVERIFY(items<RecommendOnlyItem>().isEmpty());
    m_region->NO_RESULT(2, QJsonValue(), question);
    m_region->NO_RESULT(1, oneRecommendation(), question);
    QCOMPARE(items<MessageBubble>().size(), 1);
    QCOMPARE(items<RecommendOnlyItem>().size(), 2);
    QCOMPARE(rowsOf(*items<RecommendOnlyItem>().at(0)->box()).at(0), QString());
    QCOMPARE(rowsOf(*items<RecommendOnlyItem>().at(1)->box()).at(0), QStringLiteral("推荐"));
}

void TestResultKinds::elementsThatAreNoObjects_countAndTakeTheirRows()
{
    TestServer server;
    m_config->setServer(server.port());
    m_config->set(QStringLiteral("url/askquesturl"), QStringLiteral("/ask"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    server.setReply(
        httpReply(R"({"errorCode":"0","result":{"resultType":"MULTI_QA_RESULT","reply":"<p>x</p>",)"
                  R"("recommends":["no object",null,[1],{"question":"推荐","questionId":7}]}})"));
    const LogCapture log;
    m_region->Miss_RecomSend(question, QStringLiteral("rawquery"), QString(), 0);
    QCOMPARE(log.linesWith(QStringLiteral("debug: nSize_Recom:")),
             QStringList{QStringLiteral("debug: nSize_Recom:4reply_Type:MULTI_QA_RESULT")});
    QCOMPARE(rowsOf(*items<AnswerItem>().first()->box()),
             (QStringList{QString(), QString(), QString(), QStringLiteral("推荐"), QString()}));
}

QTEST_MAIN(TestResultKinds)
#include "tst_resultkinds.moc"
