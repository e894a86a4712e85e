#include "service/reply/answer.h"

#include <QJsonDocument>
#include <QTest>

Q_DECLARE_METATYPE(AnswerKind)

/// What is read from the reply to a question.
class TestAnswer : public QObject
{
    Q_OBJECT

private slots:
    void wholeAnswer_isRead();
    void kinds_data();
    void kinds();
    void replyWithoutAResultObject_isTheEmptyAnswer_data();
    void replyWithoutAResultObject_isTheEmptyAnswer();
    void membersMissingOrOfAnotherType_areEmpty_data();
    void membersMissingOrOfAnotherType_areEmpty();
    void recommendations_countElementsThatAreNoObjects();
    void membersOfTheReplyItself_areNotTheAnswers();
};

namespace {

Answer read(const QByteArray &json)
{
    return readAnswer(QJsonDocument::fromJson(json));
}

Answer readResult(const QByteArray &result)
{
    return read(R"({"errorCode":"0","result":)" + result + '}');
}

void compareWithEmptyAnswer(const Answer &answer)
{
    QVERIFY(answer.kind == AnswerKind::Unknown);
    QCOMPARE(answer.kindName, QString());
    QCOMPARE(answer.title, QString());
    QCOMPARE(answer.text, QString());
    QCOMPARE(answer.recommendations, QVector<ListedQuestion>());
}

} // namespace

void TestAnswer::wholeAnswer_isRead()
{
    const Answer answer = readResult(
        R"({"standardQuestion":"如何修改密码？","reply":"<p>打开设置。</p>","resultType":"MULTI_QA_RESULT",
            "recommends":[{"question":"甲","questionId":7},{"question":"乙","questionId":8}]})");
    QVERIFY(answer.kind == AnswerKind::WithRecommendations);
    QCOMPARE(answer.kindName, QStringLiteral("MULTI_QA_RESULT"));
    QCOMPARE(answer.title, QStringLiteral("如何修改密码？"));
    QCOMPARE(answer.text, QStringLiteral("<p>打开设置。</p>"));
    QCOMPARE(answer.recommendations,
             (QVector<ListedQuestion>{{QStringLiteral("甲"), 7}, {QStringLiteral("乙"), 8}}));
}

void TestAnswer::kinds_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<AnswerKind>("kind");
    const auto row = [](const char *name, AnswerKind kind) {
        QTest::newRow(name) << QByteArray('"' + QByteArray(name) + '"') << QString::fromUtf8(name)
                            << kind;
    };
    row("QA_NORMAL_RESULT", AnswerKind::Plain);
    row("MULTI_QA_RESULT", AnswerKind::WithRecommendations);
    row("NO_RESULT", AnswerKind::NoMatch);
    row("qa_normal_result", AnswerKind::Unknown);
    row("No_Result", AnswerKind::Unknown);
    row("NO_RESULT ", AnswerKind::Unknown);
    row(" MULTI_QA_RESULT", AnswerKind::Unknown);
    row("QA_NORMAL_RESULT2", AnswerKind::Unknown);
    row("结果", AnswerKind::Unknown);
    row("", AnswerKind::Unknown);
    QTest::newRow("null") << QByteArray("null") << QString() << AnswerKind::Unknown;
    QTest::newRow("number") << QByteArray("1") << QString() << AnswerKind::Unknown;
    QTest::newRow("array") << QByteArray(R"(["NO_RESULT"])") << QString() << AnswerKind::Unknown;
    QTest::newRow("object") << QByteArray(R"({"name":"NO_RESULT"})") << QString()
                            << AnswerKind::Unknown;
}

void TestAnswer::kinds()
{
    QFETCH(QByteArray, type);
    QFETCH(QString, name);
    QFETCH(AnswerKind, kind);
    const Answer answer = readResult(R"({"reply":"x","resultType":)" + type + '}');
    QCOMPARE(answer.kindName, name);
    QVERIFY(answer.kind == kind);
    QCOMPARE(answer.text, QStringLiteral("x")); // read whatever the kind
}

void TestAnswer::replyWithoutAResultObject_isTheEmptyAnswer_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("no JSON") << QByteArray("<html>");
    QTest::newRow("no bytes") << QByteArray();
    QTest::newRow("no result") << QByteArray(R"({"errorCode":"0"})");
    QTest::newRow("null") << QByteArray(R"({"result":null})");
    QTest::newRow("text") << QByteArray(R"({"result":"{\"resultType\":\"NO_RESULT\"}"})");
    QTest::newRow("array") << QByteArray(R"({"result":[{"resultType":"NO_RESULT","reply":"x"}]})");
    QTest::newRow("empty object") << QByteArray(R"({"result":{}})");
    QTest::newRow("other case") << QByteArray(R"({"Result":{"resultType":"NO_RESULT"}})");
    QTest::newRow("array around it") << QByteArray(R"([{"result":{"resultType":"NO_RESULT"}}])");
}

void TestAnswer::replyWithoutAResultObject_isTheEmptyAnswer()
{
    QFETCH(QByteArray, json);
    compareWithEmptyAnswer(read(json));
}

void TestAnswer::membersMissingOrOfAnotherType_areEmpty_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("number") << QByteArray("7");
    QTest::newRow("bool") << QByteArray("true");
    QTest::newRow("object") << QByteArray(R"({"question":"x"})");
}

void TestAnswer::membersMissingOrOfAnotherType_areEmpty()
{
    QFETCH(QByteArray, value);
    compareWithEmptyAnswer(readResult(R"({"standardQuestion":)" + value + R"(,"reply":)" + value
                                      + R"(,"resultType":)" + value + R"(,"recommends":)" + value
                                      + '}'));
}

void TestAnswer::recommendations_countElementsThatAreNoObjects()
{
    const Answer answer = readResult(
        R"({"resultType":"NO_RESULT","recommends":[null,"a",[{"question":"b"}],{"question":"c"}]})");
    QCOMPARE(answer.recommendations,
             (QVector<ListedQuestion>{{}, {}, {}, {QStringLiteral("c"), 0}}));
}

void TestAnswer::membersOfTheReplyItself_areNotTheAnswers()
{
    compareWithEmptyAnswer(
        read(R"({"resultType":"NO_RESULT","reply":"x","standardQuestion":"y","recommends":[1],
                 "result":{}})"));
}

QTEST_GUILESS_MAIN(TestAnswer)
#include "tst_answer.moc"
