#include "ui/answer/content/replypieces.h"

#include <QTest>

/// Splitting a reply into the rows of an answer.
class TestReplyPieces : public QObject
{
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void pictureByData_isAPictureRow();
    void longReply_isSplitInReasonableTime();
    void answerWithinTheLimits_isNotCut();
    void tooManyCharacters_areCut();
    void turnsOfDirection_countAsFive();
    void tooManyRows_areCut();
    void tags_doNotCountAsCharacters();
    void tooManyTags_areCut();
    void farParagraphs_shareRows_picturesDoNot();
    void pictures_doNotCountAsCharacters();
};

using Kind = ReplyPiece::Kind;

void TestReplyPieces::rows_data()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QStringList>("texts");
    const auto row = [](const char *name, const char *reply, const QStringList &texts) {
        QTest::newRow(name) << QString::fromUtf8(reply) << texts;
    };
    row("empty", "", {});
    row("without tags", "你好", {QStringLiteral("你好")});
    row("two paragraphs with a break between", "<p>一</p><br><p>二</p>",
        {QStringLiteral("一"), QStringLiteral("二")});
    row("blank paragraphs", "<p> \n\t</p><p></p><p>一</p>", {QStringLiteral("一")});
    row("blanks around a text stay", "<p> 一 </p>", {QStringLiteral(" 一 ")});
    row("break with blanks is a text", "<p>一</p> <br> <p>二</p>",
        {QStringLiteral("一"), QStringLiteral(" <br> "), QStringLiteral("二")});
    row("tag with attributes does not split", "<p class=\"x\">一</p>二",
        {QStringLiteral("<p class=\"x\">一"), QStringLiteral("二")});
    row("upper-case tags do not split", "<P>一</P>", {QStringLiteral("<P>一</P>")});
    row("text between paragraphs", "<p>一</p>中<p>二</p>",
        {QStringLiteral("一"), QStringLiteral("中"), QStringLiteral("二")});
    row("picture by address is dropped", "<p>一</p><p><img src=\"http://h.example/a.png\"/></p>",
        {QStringLiteral("一")});
    row("picture of a file is dropped", "<p><img src=\"file:///etc/passwd\"></p>", {});
    row("unclosed paragraph", "<p>一<p>二", {QStringLiteral("一"), QStringLiteral("二")});
}

void TestReplyPieces::rows()
{
    QFETCH(QString, reply);
    QFETCH(QStringList, texts);
    QVector<ReplyPiece> expected;
    for (const QString &text : qAsConst(texts)) {
        expected.append({Kind::Text, text});
    }
    QCOMPARE(splitReply(reply), expected);
}

void TestReplyPieces::pictureByData_isAPictureRow()
{
    const QString picture = QStringLiteral("<img src=\"data:image/png;base64,AAAA\" style=\"\"/>");
    const QVector<ReplyPiece> expected{{Kind::Text, QStringLiteral("一")},
                                       {Kind::Picture, picture},
                                       {Kind::Text, QStringLiteral("二")}};
    QCOMPARE(splitReply(QStringLiteral("<p>一</p><p>%1</p><p>二</p>").arg(picture)), expected);
}

void TestReplyPieces::longReply_isSplitInReasonableTime()
{
    const int count = 10000;
    QCOMPARE(splitReply(QStringLiteral("<p>一</p>").repeated(count)).size(), count);
}

void TestReplyPieces::answerWithinTheLimits_isNotCut()
{
    QVector<ReplyPiece> rows{{Kind::Text, QString(maxAnswerCharacters - 1, QLatin1Char('x'))},
                             {Kind::Text, QStringLiteral("y")}};
    const QVector<ReplyPiece> before = rows;
    QVERIFY(!limitRows(rows));
    QCOMPARE(rows, before);
}

void TestReplyPieces::tooManyCharacters_areCut()
{
    QVector<ReplyPiece> rows{{Kind::Text, QString(maxAnswerCharacters - 1, QLatin1Char('x'))},
                             {Kind::Text, QStringLiteral("yz")},
                             {Kind::Text, QStringLiteral("never")}};
    QVERIFY(limitRows(rows));
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(1).source, QStringLiteral("y"));

    rows = {{Kind::Text, QString(maxAnswerCharacters, QLatin1Char('x'))},
            {Kind::Text, QStringLiteral("never")}};
    QVERIFY(limitRows(rows));
    QCOMPARE(rows.size(), 1);
}

void TestReplyPieces::turnsOfDirection_countAsFive()
{
    constexpr int most = maxAnswerCharacters / 5;
    QVector<ReplyPiece> rows{{Kind::Text, QString(most, QChar(0x202E))}};
    QVERIFY(!limitRows(rows));
    rows.append({Kind::Text, QStringLiteral("x")});
    QVERIFY(limitRows(rows));
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().source.size(), most);
}

void TestReplyPieces::tooManyRows_areCut()
{
    QVector<ReplyPiece> rows(maxAnswerRows + 1, {Kind::Text, QStringLiteral("x")});
    QVERIFY(limitRows(rows));
    QCOMPARE(rows.size(), maxAnswerRows);
    QVERIFY(!limitRows(rows));
}

void TestReplyPieces::tags_doNotCountAsCharacters()
{
    QVector<ReplyPiece> rows{
        {Kind::Text, QStringLiteral("<b title=\"xxxxxxxxxx\">y</b>").repeated(5000)}};
    QVERIFY(!limitRows(rows));
}

void TestReplyPieces::tooManyTags_areCut()
{
    QVector<ReplyPiece> rows{{Kind::Text, QStringLiteral("<i>").repeated(maxAnswerSource)}};
    QVERIFY(limitRows(rows));
    QCOMPARE(rows.first().source.size(), maxAnswerSource);
}

void TestReplyPieces::farParagraphs_shareRows_picturesDoNot()
{
    QVector<ReplyPiece> rows(maxOwnRows, {Kind::Text, QStringLiteral("x")});
    joinFarRows(rows);
    QCOMPARE(rows.size(), maxOwnRows);
    rows += {{Kind::Text, QStringLiteral("a")},
             {Kind::Text, QStringLiteral("b")},
             {Kind::Picture, QStringLiteral("p")},
             {Kind::Text, QStringLiteral("c")}};
    joinFarRows(rows);
    const QVector<ReplyPiece> far{{Kind::Text, QStringLiteral("a</p><p>b")},
                                  {Kind::Picture, QStringLiteral("p")},
                                  {Kind::Text, QStringLiteral("c")}};
    QCOMPARE(rows.mid(maxOwnRows), far);
    rows.insert(maxOwnRows, paragraphsOfASharedRow, {Kind::Text, QStringLiteral("y")});
    joinFarRows(rows);
    QCOMPARE(rows.size(), maxOwnRows + 4); // one row holds no more than its hundred
}

void TestReplyPieces::pictures_doNotCountAsCharacters()
{
    QVector<ReplyPiece> rows{{Kind::Picture, QString(maxAnswerCharacters * 2, QLatin1Char('x'))},
                             {Kind::Text, QStringLiteral("y")}};
    QVERIFY(!limitRows(rows));
    QCOMPARE(rows.size(), 2);
}

QTEST_GUILESS_MAIN(TestReplyPieces)
#include "tst_replypieces.moc"
