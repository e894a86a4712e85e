#include "service/reply/listedquestion.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

/// The questions that the service lists: hot questions and suggestions with their wide ids,
/// recommendations with their narrow ones.
class TestListedQuestion : public QObject
{
    Q_OBJECT

private slots:
    void list_isReadInItsOrder();
    void recommendations_areReadInTheirOrder();
    void elementsThatAreNoQuestions_keepTheirPlaces();
    void emptyList_givesNone();
    void recommendsThatAreNoArray_giveNone_data();
    void recommendsThatAreNoArray_giveNone();
    void text_isReadOrEmpty_data();
    void text_isReadOrEmpty();
    void ids_data();
    void ids();
    void eachList_readsItsOwnMemberForTheId();
};

namespace {

QJsonArray arrayOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).array();
}

/// An array of one object with \a id, as it is written, under both names.
QJsonArray oneWithId(const QByteArray &id)
{
    return arrayOf(R"([{"id":)" + id + R"(,"questionId":)" + id + "}]");
}

} // namespace

void TestListedQuestion::list_isReadInItsOrder()
{
    const auto questions = readListedQuestions(
        arrayOf(R"([{"question":"乙","id":2},{"id":1,"question":"甲","views":7}])"));
    QCOMPARE(questions,
             (QVector<ListedQuestion>{{QStringLiteral("乙"), 2}, {QStringLiteral("甲"), 1}}));
}

void TestListedQuestion::recommendations_areReadInTheirOrder()
{
    const auto questions = readRecommendations(arrayOf(
        R"([{"question":"乙","questionId":2},{"questionId":1,"question":"甲","score":0.5}])"));
    QCOMPARE(questions,
             (QVector<ListedQuestion>{{QStringLiteral("乙"), 2}, {QStringLiteral("甲"), 1}}));
}

void TestListedQuestion::elementsThatAreNoQuestions_keepTheirPlaces()
{
    const QJsonArray odd
        = arrayOf(R"([null,"text",7,true,["question","id"],{},[{"question":"x","id":1}],
                      {"question":"last","id":9,"questionId":9}])");
    QVector<ListedQuestion> expected(7);
    expected.append({QStringLiteral("last"), 9});
    QCOMPARE(readListedQuestions(odd), expected);
    QCOMPARE(readRecommendations(odd), expected);
}

void TestListedQuestion::emptyList_givesNone()
{
    QCOMPARE(readListedQuestions(QJsonArray()), QVector<ListedQuestion>());
    QCOMPARE(readRecommendations(QJsonArray()), QVector<ListedQuestion>());
}

void TestListedQuestion::recommendsThatAreNoArray_giveNone_data()
{
    QTest::addColumn<QJsonValue>("recommends");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("null") << QJsonValue();
    QTest::newRow("object") << QJsonValue(
        QJsonObject{{QStringLiteral("question"), QStringLiteral("a")}});
    QTest::newRow("text") << QJsonValue(QStringLiteral("[1]"));
    QTest::newRow("number") << QJsonValue(3);
}

void TestListedQuestion::recommendsThatAreNoArray_giveNone()
{
    QFETCH(QJsonValue, recommends);
    QCOMPARE(readRecommendations(recommends), QVector<ListedQuestion>());
}

void TestListedQuestion::text_isReadOrEmpty_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QByteArray(R"({"question":"如何？"})") << QStringLiteral("如何？");
    QTest::newRow("blanks are kept")
        << QByteArray(R"({"question":" a  "})") << QStringLiteral(" a  ");
    QTest::newRow("missing") << QByteArray("{}") << QString();
    QTest::newRow("other case") << QByteArray(R"({"Question":"a"})") << QString();
    QTest::newRow("null") << QByteArray(R"({"question":null})") << QString();
    QTest::newRow("number") << QByteArray(R"({"question":5})") << QString();
    QTest::newRow("bool") << QByteArray(R"({"question":true})") << QString();
    QTest::newRow("array") << QByteArray(R"({"question":["a"]})") << QString();
    QTest::newRow("object") << QByteArray(R"({"question":{"text":"a"}})") << QString();
}

void TestListedQuestion::text_isReadOrEmpty()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, text);
    const QJsonArray array = arrayOf('[' + element + ']');
    QCOMPARE(readListedQuestions(array).value(0, {QStringLiteral("none"), 1}).text, text);
    QCOMPARE(readRecommendations(array).value(0, {QStringLiteral("none"), 1}).text, text);
}

void TestListedQuestion::ids_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<qint64>("wide");
    QTest::addColumn<qint64>("narrow");
    const auto row = [](const char *name, const char *id, qint64 wide, qint64 narrow) {
        QTest::newRow(name) << QByteArray(id) << wide << narrow;
    };
    row("zero", "0", 0, 0);
    row("negative", "-7", -7, -7);
    row("integral with a point", "3.0", 3, 3);
    row("integral with an exponent", "1e3", 1000, 1000);
    row("negative zero", "-0.0", 0, 0);
    row("no more digits than there are places", "12.5e1", 125, 125);
    row("large with an exponent", "9.2e18", 9200000000000000000, 0);
    row("large and negative with an exponent", "-9.2e18", -9200000000000000000, 0);
    row("fraction", "1.5", 0, 0);
    row("negative fraction", "-0.5", 0, 0);
    row("2^31 - 1", "2147483647", 2147483647, 2147483647);
    row("2^31", "2147483648", 2147483648, 0);
    row("-2^31", "-2147483648", -2147483648LL, -2147483648LL);
    row("-2^31 - 1", "-2147483649", -2147483649LL, 0);
    row("2^32 + 5", "4294967301", 4294967301, 0);
    row("2^53", "9007199254740992", 9007199254740992, 0);
    row("2^53 + 1", "9007199254740993", 9007199254740993, 0);
    row("2^63 - 1", "9223372036854775807", std::numeric_limits<qint64>::max(), 0);
    row("2^63", "9223372036854775808", 0, 0);
    row("-2^63", "-9223372036854775808", std::numeric_limits<qint64>::min(), 0);
    row("far below -2^63", "-1e19", 0, 0);
    row("far above 2^63", "1e300", 0, 0);
    row("text", "\"7\"", 0, 0);
    row("null", "null", 0, 0);
    row("bool", "true", 0, 0);
    row("array", "[7]", 0, 0);
    row("object", "{\"id\":7}", 0, 0);
}

void TestListedQuestion::ids()
{
    QFETCH(QByteArray, id);
    QFETCH(qint64, wide);
    QFETCH(qint64, narrow);
    const QJsonArray array = oneWithId(id);
    QCOMPARE(array.size(), 1);
    QCOMPARE(readListedQuestions(array).at(0).id, wide);
    QCOMPARE(readRecommendations(array).at(0).id, narrow);
}

void TestListedQuestion::eachList_readsItsOwnMemberForTheId()
{
    const QJsonArray array = arrayOf(R"([{"id":1},{"questionId":2},{"ID":3,"questionID":4}])");
    QCOMPARE(readListedQuestions(array), (QVector<ListedQuestion>{{{}, 1}, {}, {}}));
    QCOMPARE(readRecommendations(array), (QVector<ListedQuestion>{{}, {{}, 2}, {}}));
}

QTEST_GUILESS_MAIN(TestListedQuestion)
#include "tst_listedquestion.moc"
