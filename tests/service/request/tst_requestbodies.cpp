#include "service/request/requestbodies.h"

#include <QTest>

#include <limits>

/// The JSON that the service is sent, to the byte.
class TestRequestBodies : public QObject
{
    Q_OBJECT

private slots:
    void hot_isInAlphabeticalOrder();
    void hot_withNothingConfiguredCarriesZerosAndAnEmptyRobotId();
    void association_addsTheTypedText();
    void ask_isInAlphabeticalOrder();
    void ask_questionIdZeroIsWritten();
    void ask_questionIdIsAWholeNumber_data();
    void ask_questionIdIsAWholeNumber();
    void texts_areEscapedAsJsonAsksFor();
    void halvesOfPairs_areReplaced();
    void ask_questionIdIsSetInItsOwnPlaceOnly();
};

namespace {

// With ' for ", to be read more easily.
QByteArray json(const char *text)
{
    return QByteArray(text).replace('\'', '"');
}

} // namespace

void TestRequestBodies::hot_isInAlphabeticalOrder()
{
    QCOMPARE(hotQuestionsBody({3, 20, QStringLiteral("r-1")}),
             json("{'channelId':3,'recommendSize':20,'robotId':'r-1'}"));
}

void TestRequestBodies::hot_withNothingConfiguredCarriesZerosAndAnEmptyRobotId()
{
    QCOMPARE(hotQuestionsBody({}), json("{'channelId':0,'recommendSize':0,'robotId':''}"));
}

void TestRequestBodies::association_addsTheTypedText()
{
    QCOMPARE(associationBody({3, 5, QStringLiteral("r")}, QStringLiteral("打印机")),
             json("{'channelId':3,'recommendSize':5,'robotId':'r','text':'打印机'}"));
}

void TestRequestBodies::ask_isInAlphabeticalOrder()
{
    QCOMPARE(askBody({3, 5, QStringLiteral("r")},
                     {QStringLiteral("raw"), QStringLiteral("domain"), QStringLiteral("account"),
                      QStringLiteral("rawquery"), QStringLiteral("original"), 42}),
             json("{'accountId':'account','channelId':3,'currentDomain':'domain',"
                  "'originalQuestion':'original','questionId':42,'rawQuery':'raw',"
                  "'recommendSize':5,'robotId':'r','source':'rawquery'}"));
}

void TestRequestBodies::ask_questionIdZeroIsWritten()
{
    QVERIFY(askBody({}, {}).contains(json("'questionId':0,")));
}

void TestRequestBodies::ask_questionIdIsAWholeNumber_data()
{
    QTest::addColumn<qint64>("id");
    QTest::newRow("negative") << qint64(-7);
    QTest::newRow("more than 32 bits") << qint64(1) + std::numeric_limits<qint32>::max();
    QTest::newRow("more than a double holds") << qint64(9007199254740993);
    QTest::newRow("largest") << std::numeric_limits<qint64>::max();
    QTest::newRow("smallest") << std::numeric_limits<qint64>::min();
}

void TestRequestBodies::ask_questionIdIsAWholeNumber()
{
    QFETCH(qint64, id);
    AskFields fields;
    fields.questionId = id;
    QVERIFY(askBody({}, fields).contains("\"questionId\":" + QByteArray::number(id) + ','));
}

void TestRequestBodies::texts_areEscapedAsJsonAsksFor()
{
    QCOMPARE(associationBody({}, QStringLiteral("a\"b\\c\nd\te")),
             json("{'channelId':0,'recommendSize':0,'robotId':'',"
                  "'text':'a\\'b\\\\c\\nd\\te'}"));
}

void TestRequestBodies::halvesOfPairs_areReplaced()
{
    const QString half = QChar(0xd83d);
    QCOMPARE(hotQuestionsBody({0, 0, half}),
             json("{'channelId':0,'recommendSize':0,'robotId':'\xef\xbf\xbd'}"));
    QCOMPARE(associationBody({}, half + QLatin1Char('a')),
             json("{'channelId':0,'recommendSize':0,'robotId':'','text':'\xef\xbf\xbd"
                  "a'}"));
    const QByteArray ask = askBody({0, 0, half}, {half, half, half, half, half, 0});
    QCOMPARE(ask.count("\xef\xbf\xbd"), 6);
    QVERIFY(!ask.contains("\\u"));
}

void TestRequestBodies::ask_questionIdIsSetInItsOwnPlaceOnly()
{
    AskFields fields;
    fields.rawQuery = QStringLiteral("\"questionId\":0");
    fields.currentDomain = QStringLiteral("questionId");
    fields.questionId = 7;
    QCOMPARE(askBody({}, fields),
             json("{'accountId':'','channelId':0,'currentDomain':'questionId',"
                  "'originalQuestion':'','questionId':7,'rawQuery':'\\'questionId\\':0',"
                  "'recommendSize':0,'robotId':'','source':''}"));
}

QTEST_GUILESS_MAIN(TestRequestBodies)
#include "tst_requestbodies.moc"
