#include "tools/doctor/replyjudgement.h"

#include <QTest>

Q_DECLARE_METATYPE(const CallKind *)

/// What the doctor says of the replies of a service.
class TestReplyJudgement : public QObject
{
    Q_OBJECT

private slots:
    void goodReplies_data();
    void goodReplies();
    void whatIsMissingOrMalformed_isNamed_data();
    void whatIsMissingOrMalformed_isNamed();
    void networkErrors_carryTheServicesOwnWords_data();
    void networkErrors_carryTheServicesOwnWords();
    void replyWrittenWithBlanks_isOnlyNoted();
};

namespace {

QByteArray withResult(const QByteArray &result)
{
    return R"({"errorCode":"0","result":)" + result + '}';
}

void addRow(const char *name, const CallKind &kind, const QByteArray &reply, const QString &said)
{
    QTest::newRow(name) << &kind << reply << said;
}

} // namespace

void TestReplyJudgement::goodReplies_data()
{
    QTest::addColumn<const CallKind *>("kind");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("said");
    addRow("hot", hotKind, withResult(R"([{"id":1,"question":"a"},{"id":2,"question":"b"}])"),
           QStringLiteral("hot questions: 2 questions"));
    addRow("elements that are no objects count", hotKind, withResult("[1,null]"),
           QStringLiteral("hot questions: 2 questions"));
    addRow("suggestions", associationKind, withResult(R"([{"id":1,"question":"a"}])"),
           QStringLiteral("suggestions: 1 questions"));
    addRow("no suggestions", associationKind, withResult("[]"),
           QStringLiteral("suggestions: 0 questions"));
    addRow("plain", askKind, withResult(R"({"resultType":"QA_NORMAL_RESULT","reply":"x"})"),
           QStringLiteral("an answer: QA_NORMAL_RESULT"));
    addRow("with recommendations", askKind,
           withResult(R"({"resultType":"MULTI_QA_RESULT","reply":"x"})"),
           QStringLiteral("an answer: MULTI_QA_RESULT"));
    addRow("no match", askKind, withResult(R"({"resultType":"NO_RESULT","reply":"x"})"),
           QStringLiteral("an answer: NO_RESULT"));
}

void TestReplyJudgement::goodReplies()
{
    QFETCH(const CallKind *, kind);
    QFETCH(QByteArray, reply);
    QFETCH(QString, said);
    const Finding finding = judgeReply(*kind, reply, QString());
    QCOMPARE(finding.what, said);
    QCOMPARE(finding.grade, Finding::Grade::Good);
    QCOMPARE(finding.mend, QString());
}

void TestReplyJudgement::whatIsMissingOrMalformed_isNamed_data()
{
    QTest::addColumn<const CallKind *>("kind");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("said");
    const QString noList = QStringLiteral("suggestions: the reply holds no list");
    const QString emptyList = QStringLiteral("hot questions: the list is empty");
    const QString noType = QStringLiteral("an answer: the result is of no known type: \"\"");
    const QString emptyAnswer = QStringLiteral("an answer: the reply is empty");
    const QString noObject = QStringLiteral("an answer: the reply is no JSON object");
    addRow("no bytes", askKind, QByteArray(), emptyAnswer);
    addRow("no JSON", askKind, "<html>", noObject);
    addRow("an array", askKind, "[1]", noObject);
    addRow("an empty object", askKind, "{}", noObject);
    addRow("no errorCode", askKind, R"({"result":{}})",
           QStringLiteral("an answer: the service refuses: errorCode \"\", "));
    addRow("errorCode as number", askKind, R"({"errorCode":0,"errorMsg":"m"})",
           QStringLiteral("an answer: the service refuses: errorCode \"\", m"));
    addRow("refusal", askKind, R"({"errorCode":"40101","errorMsg":"bad signature","result":null})",
           QStringLiteral("an answer: the service refuses: errorCode \"40101\", bad signature"));
    addRow("hot list empty", hotKind, withResult("[]"), emptyList);
    addRow("hot list missing", hotKind, R"({"errorCode":"0"})", emptyList);
    addRow("hot list an object", hotKind, withResult(R"({"question":"a"})"), emptyList);
    addRow("suggestions missing", associationKind, R"({"errorCode":"0"})", noList);
    addRow("suggestions null", associationKind, withResult("null"), noList);
    addRow("suggestions an object", associationKind, withResult(R"({"question":"a"})"), noList);
    addRow("answer missing", askKind, R"({"errorCode":"0"})", noType);
    addRow("answer an array", askKind, withResult(R"([{"resultType":"NO_RESULT","reply":"x"}])"),
           noType);
    addRow("type missing", askKind, withResult(R"({"reply":"x"})"), noType);
    addRow("type as number", askKind, withResult(R"({"resultType":1,"reply":"x"})"), noType);
    addRow("type unknown", askKind, withResult(R"({"resultType":"No_Result","reply":"x"})"),
           QStringLiteral("an answer: the result is of no known type: \"No_Result\""));
    addRow("text missing", askKind, withResult(R"({"resultType":"NO_RESULT"})"), emptyAnswer);
    addRow("text empty", askKind, withResult(R"({"resultType":"NO_RESULT","reply":""})"),
           emptyAnswer);
    addRow("text as number", askKind, withResult(R"({"resultType":"NO_RESULT","reply":1})"),
           emptyAnswer);
}

void TestReplyJudgement::whatIsMissingOrMalformed_isNamed()
{
    QFETCH(const CallKind *, kind);
    QFETCH(QByteArray, reply);
    QFETCH(QString, said);
    const Finding finding = judgeReply(*kind, reply, QString());
    QCOMPARE(finding.what, said);
    QCOMPARE(finding.grade, Finding::Grade::Mend);
    QVERIFY(!finding.mend.isEmpty());
}

void TestReplyJudgement::networkErrors_carryTheServicesOwnWords_data()
{
    QTest::addColumn<const CallKind *>("kind");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("said");
    const QString refused = QStringLiteral("hot questions: AuthenticationRequiredError");
    addRow("nothing said", hotKind, QByteArray(), refused);
    addRow("no JSON", hotKind, "<html>", refused);
    addRow("no object", hotKind, "[1]", refused);
    addRow("said why", hotKind, R"({"errorCode":"40101","errorMsg":"bad signature"})",
           refused + QStringLiteral(", errorCode \"40101\", bad signature"));
}

void TestReplyJudgement::networkErrors_carryTheServicesOwnWords()
{
    QFETCH(const CallKind *, kind);
    QFETCH(QByteArray, reply);
    QFETCH(QString, said);
    const Finding finding = judgeReply(*kind, reply, QStringLiteral("AuthenticationRequiredError"));
    QCOMPARE(finding.what, said);
    QCOMPARE(finding.grade, Finding::Grade::Mend);
    QVERIFY(finding.mend.startsWith(QStringLiteral("The service refuses the signature: ")));
}

void TestReplyJudgement::replyWrittenWithBlanks_isOnlyNoted()
{
    const Finding finding = judgeReply(hotKind, R"({"errorCode": "0","result":[]})", QString());
    QCOMPARE(finding.what, QStringLiteral("hot questions: the reply is written with blanks"));
    QCOMPARE(finding.grade, Finding::Grade::Note);
}

QTEST_GUILESS_MAIN(TestReplyJudgement)
#include "tst_replyjudgement.moc"
