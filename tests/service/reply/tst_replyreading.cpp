#include "service/reply/replyreading.h"

#include <QJsonObject>
#include <QTest>

/// What is made of the bytes that the service sends.
class TestReplyReading : public QObject
{
    Q_OBJECT

private slots:
    void parse_validReply();
    void parse_errors_data();
    void parse_errors();
    void parse_stopsAtTheFirstNul();
    void parse_nulFirstMeansEmpty();
    void parse_takesBytesThatAreNotUtf8AsReplacementCharacters();
    void parse_refusesTenThousandLevels();
    void result_isEmptyWhenAnythingIsMissing_data();
    void result_isEmptyWhenAnythingIsMissing();
    void result_isTheWholeArray();
    void resultOf_tellsTheKindsOfResultApart();
    void status_isWhatTheReplySaysOfItself_data();
    void status_isWhatTheReplySaysOfItself();
};

namespace {

constexpr int deepLevels = 10000;

} // namespace

void TestReplyReading::parse_validReply()
{
    const ParsedReply reply = parseReply(R"({"errorCode":"0","result":[]})");
    QCOMPARE(reply.error, QJsonParseError::NoError);
    QCOMPARE(reply.document.object().value(QStringLiteral("errorCode")).toString(),
             QStringLiteral("0"));
}

void TestReplyReading::parse_errors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("error");
    QTest::newRow("empty") << QByteArray() << int(QJsonParseError::IllegalValue);
    QTest::newRow("text") << QByteArray("Bad gateway") << int(QJsonParseError::IllegalValue);
    QTest::newRow("truncated") << QByteArray(R"({"result":[)")
                               << int(QJsonParseError::UnterminatedArray);
    QTest::newRow("more behind it") << QByteArray("{} {}") << int(QJsonParseError::GarbageAtEnd);
}

void TestReplyReading::parse_errors()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, error);
    const ParsedReply reply = parseReply(bytes);
    QCOMPARE(int(reply.error), error);
    QVERIFY(reply.document.isNull());
    QCOMPARE(resultArray(reply.document), QJsonArray());
}

void TestReplyReading::parse_stopsAtTheFirstNul()
{
    const ParsedReply reply = parseReply(QByteArray("{\"result\":[1]}\0 not JSON", 24));
    QCOMPARE(reply.error, QJsonParseError::NoError);
    QCOMPARE(resultArray(reply.document), QJsonArray({1}));
}

void TestReplyReading::parse_nulFirstMeansEmpty()
{
    QCOMPARE(parseReply(QByteArray("\0{}", 3)).error, parseReply({}).error);
}

void TestReplyReading::parse_takesBytesThatAreNotUtf8AsReplacementCharacters()
{
    const ParsedReply reply = parseReply("{\"result\":[\"a\xff\"]}");
    QCOMPARE(reply.error, QJsonParseError::NoError);
    QCOMPARE(resultArray(reply.document).at(0).toString(),
             QString(QStringLiteral("a") + QChar(0xfffd)));
}

void TestReplyReading::parse_refusesTenThousandLevels()
{
    const ParsedReply reply = parseReply("{\"result\":" + QByteArray(deepLevels, '[')
                                         + QByteArray(deepLevels, ']') + '}');
    QCOMPARE(reply.error, QJsonParseError::DeepNesting);
    QVERIFY(reply.document.isNull());
}

void TestReplyReading::result_isEmptyWhenAnythingIsMissing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("no member") << QByteArray(R"({"errorCode":"0"})");
    QTest::newRow("null") << QByteArray(R"({"result":null})");
    QTest::newRow("object") << QByteArray(R"({"result":{"a":1}})");
    QTest::newRow("text") << QByteArray(R"({"result":"[]"})");
    QTest::newRow("other case") << QByteArray(R"({"Result":[1]})");
    QTest::newRow("array of objects") << QByteArray(R"([{"result":[1]}])");
}

void TestReplyReading::result_isEmptyWhenAnythingIsMissing()
{
    QFETCH(QByteArray, bytes);
    const ParsedReply reply = parseReply(bytes);
    QCOMPARE(reply.error, QJsonParseError::NoError);
    QCOMPARE(resultArray(reply.document), QJsonArray());
}

void TestReplyReading::result_isTheWholeArray()
{
    const ParsedReply reply = parseReply(R"({"result":[{"question":"q","id":7},null,3]})");
    const QJsonArray result = resultArray(reply.document);
    QCOMPARE(result.size(), 3);
    QCOMPARE(result.at(0).toObject().value(QStringLiteral("id")).toInt(), 7);
}

void TestReplyReading::resultOf_tellsTheKindsOfResultApart()
{
    const auto typeOf = [](const QByteArray &bytes) {
        return resultOf(parseReply(bytes).document).type();
    };
    QCOMPARE(typeOf(R"({"result":[]})"), QJsonValue::Array);
    QCOMPARE(typeOf(R"({"result":{}})"), QJsonValue::Object);
    QCOMPARE(typeOf(R"({"result":null})"), QJsonValue::Null);
    QCOMPARE(typeOf(R"({"errorCode":"0"})"), QJsonValue::Undefined);
    QCOMPARE(typeOf("[]"), QJsonValue::Undefined);
    QCOMPARE(typeOf("no JSON"), QJsonValue::Undefined);
}

void TestReplyReading::status_isWhatTheReplySaysOfItself_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("good") << QByteArray(R"({"errorCode":"0","errorMsg":"ok","result":[]})")
                          << QStringLiteral("0") << QStringLiteral("ok");
    QTest::newRow("refusal") << QByteArray(R"({"errorCode":"40101","errorMsg":"签名不对"})")
                             << QStringLiteral("40101") << QStringLiteral("签名不对");
    QTest::newRow("no message") << QByteArray(R"({"errorCode":"0"})") << QStringLiteral("0")
                                << QString();
    QTest::newRow("numbers") << QByteArray(R"({"errorCode":0,"errorMsg":1})") << QString()
                             << QString();
    QTest::newRow("array") << QByteArray(R"([{"errorCode":"0"}])") << QString() << QString();
    QTest::newRow("no JSON") << QByteArray("errorCode") << QString() << QString();
}

void TestReplyReading::status_isWhatTheReplySaysOfItself()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, code);
    QFETCH(QString, message);
    const ReplyStatus status = readStatus(parseReply(bytes).document);
    QCOMPARE(status.errorCode, code);
    QCOMPARE(status.errorMessage, message);
}

QTEST_GUILESS_MAIN(TestReplyReading)
#include "tst_replyreading.moc"
