#include "app/base/texttools.h"
#include "localchannel/guardmessage.h"

#include <QTest>
#include <QTextCodec>

/// The reading of one message of the guard channel, and its acknowledgement.
class TestGuardMessage : public QObject
{
    Q_OBJECT

private slots:
    void document_isRead_data();
    void document_isRead();
    void noDocument_isAnError_data();
    void noDocument_isAnError();
    void array_givesAnEmptyObject();
    void membersUnknown_areCarriedAlong();
    void bytesThatAreNoUtf8_becomeSubstitutes();
    void charactersBeyondTheSystemsEncoding_becomeItsSubstitute();
    void question64MiBLong_isRead();
    void question_isATextOrEmpty_data();
    void question_isATextOrEmpty();
    void question_isCutAtItsFirstNul();
    void question_passesThroughTheSystemsEncoding();
    void acknowledgement_isTwelveBytesWithTheCodeAsText();
};

namespace {

QString questionIn(const QByteArray &data)
{
    return guardQuestion(readGuardMessage(data).object);
}

} // namespace

void TestGuardMessage::document_isRead_data()
{
    QTest::addColumn<QByteArray>("data");
    const QByteArray document = QByteArrayLiteral("{\"question\":\"怎样登录\"}");
    QTest::newRow("as it is") << document;
    QTest::newRow("blanks and line ends around") << " \t\r\n" + document + "\r\n\n ";
    QTest::newRow("laid out") << QByteArrayLiteral("{\n  \"question\" : \"怎样登录\"\n}\n");
    QTest::newRow("NUL behind") << document + '\0';
    QTest::newRow("rubbish behind a NUL") << document + '\0' + "{rubbish";
    QTest::newRow("escaped") << QByteArrayLiteral(
        "{\"question\":\"\\u600e\\u6837\\u767b\\u5f55\"}");
}

void TestGuardMessage::document_isRead()
{
    QFETCH(QByteArray, data);
    QCOMPARE(readGuardMessage(data).error, QString());
    QCOMPARE(questionIn(data), QStringLiteral("怎样登录"));
}

void TestGuardMessage::noDocument_isAnError_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArrayLiteral(" \r\n ");
    QTest::newRow("half a document") << QByteArrayLiteral("{\"question\":\"a");
    QTest::newRow("two documents") << QByteArrayLiteral("{\"question\":\"a\"}{\"question\":\"b\"}");
    QTest::newRow("two documents on two lines") << QByteArrayLiteral("{}\n{}");
    QTest::newRow("plain text") << QByteArrayLiteral("question");
    QTest::newRow("a text value") << QByteArrayLiteral("\"question\"");
    QTest::newRow("a number") << QByteArrayLiteral("1");
    QTest::newRow("NUL in front") << QByteArray("\0{}", 3);
    QTest::newRow("NUL inside") << QByteArray("{\"question\":\"a\0b\"}", 18);
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    QTest::newRow("100,000 lists inside each other") << QByteArray(100'000, '[');
    QTest::newRow("100,000 lists, all closed")
        << QByteArray(100'000, '[') + QByteArray(100'000, ']');
}

void TestGuardMessage::noDocument_isAnError()
{
    QFETCH(QByteArray, data);
    const GuardMessage message = readGuardMessage(data);
    QVERIFY(!message.error.isEmpty());
    QVERIFY(message.object.isEmpty());
}

void TestGuardMessage::array_givesAnEmptyObject()
{
    const GuardMessage message = readGuardMessage(QByteArrayLiteral("[{\"question\":\"a\"}]"));
    QCOMPARE(message.error, QString());
    QVERIFY(message.object.isEmpty());
}

void TestGuardMessage::membersUnknown_areCarriedAlong()
{
    const QJsonObject expected{{QStringLiteral("question"), QStringLiteral("a")},
                               {QStringLiteral("rawquery"), QStringLiteral("b")},
                               {QStringLiteral("level"), 3}};
    QCOMPARE(
        readGuardMessage(QByteArrayLiteral("{\"question\":\"a\",\"rawquery\":\"b\",\"level\":3}"))
            .object,
        expected);
}

void TestGuardMessage::bytesThatAreNoUtf8_becomeSubstitutes()
{
    QCOMPARE(questionIn(QByteArray("{\"question\":\"a\xff\xfe"
                                   "b\"}")),
             throughLocalEncoding(QStringLiteral("a\uFFFD\uFFFDb")));
}

void TestGuardMessage::charactersBeyondTheSystemsEncoding_becomeItsSubstitute()
{
    QTextCodec *const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
    const QString question = questionIn(QByteArrayLiteral("{\"question\":\"登录\u0e01后\"}"));
    const QString expected = throughLocalEncoding(QStringLiteral("登录\u0e01后"));
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(question, expected);
    QVERIFY(question.startsWith(QStringLiteral("登录")));
    QVERIFY(!question.contains(QChar(0x0e01)));
}

void TestGuardMessage::question64MiBLong_isRead()
{
    const QByteArray text(64 * 1024 * 1024, 'x');
    QCOMPARE(questionIn("{\"question\":\"" + text + "\"}").size(), text.size());
}

void TestGuardMessage::question_isATextOrEmpty_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("question");
    QTest::newRow("text") << QByteArray(R"({"question":"a","rawquery":"b"})")
                          << QStringLiteral("a");
    QTest::newRow("blanks are kept")
        << QByteArray(R"({"question":" a  b "})") << QStringLiteral(" a  b ");
    QTest::newRow("empty") << QByteArray(R"({"question":""})") << QString();
    QTest::newRow("no member") << QByteArray("{}") << QString();
    QTest::newRow("only rawquery") << QByteArray(R"({"rawquery":"b"})") << QString();
    QTest::newRow("other case") << QByteArray(R"({"Question":"a"})") << QString();
    QTest::newRow("null") << QByteArray(R"({"question":null})") << QString();
    QTest::newRow("number") << QByteArray(R"({"question":7})") << QString();
    QTest::newRow("array") << QByteArray(R"({"question":["a"]})") << QString();
    QTest::newRow("object") << QByteArray(R"({"question":{"question":"a"}})") << QString();
    QTest::newRow("array around it") << QByteArray(R"([{"question":"a"}])") << QString();
}

void TestGuardMessage::question_isATextOrEmpty()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, question);
    QCOMPARE(questionIn(data), question);
}

void TestGuardMessage::question_isCutAtItsFirstNul()
{
    QCOMPARE(questionIn(R"({"question":"a\u0000b"})"), QStringLiteral("a"));
    QCOMPARE(questionIn(R"({"question":"\u0000b"})"), QString());
}

void TestGuardMessage::question_passesThroughTheSystemsEncoding()
{
    // Escaped, so that the message itself holds nothing which the encoding could not.
    const QByteArray data = R"({"question":"\u767b\u0e01"})";
    QTextCodec *const before = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
    const QString question = questionIn(data);
    const QString expected = throughLocalEncoding(QStringLiteral("登\u0e01"));
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(question, expected);
    QVERIFY(question.startsWith(QStringLiteral("登")));
    QVERIFY(!question.contains(QChar(0x0e01)));
}

void TestGuardMessage::acknowledgement_isTwelveBytesWithTheCodeAsText()
{
    QCOMPARE(guardAcknowledgement(0), QByteArrayLiteral("{\"code\":\"0\"}"));
    QCOMPARE(guardAcknowledgement(0).size(), 12);
}

QTEST_GUILESS_MAIN(TestGuardMessage)
#include "tst_guardmessage.moc"
