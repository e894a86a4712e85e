#include "locallibrary/localrecord.h"

#include <QTest>

namespace {

QString inBody(const QString &text)
{
    return QStringLiteral("<html><body>") + text + QStringLiteral("</body></html>");
}

} // namespace

/// Reading the record of one file of the local library.
class TestLocalRecord : public QObject
{
    Q_OBJECT

private slots:
    void record_isRead_data();
    void record_isRead();
    void textWithoutRecord_givesNothing_data();
    void textWithoutRecord_givesNothing();
    void tenMegabytes_areRead();
};

void TestLocalRecord::record_isRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("question");
    QTest::addColumn<QString>("answer");
    const QString question = QStringLiteral("<p>问题01：如何登录？</p>");
    const QString asked = QStringLiteral("如何登录？");

    QTest::newRow("question and two paragraphs")
        << inBody(question + QStringLiteral("<p>一</p><p>二</p>")) << asked
        << QStringLiteral("<p>一</p><p>二</p>");
    QTest::newRow("lines between the paragraphs are skipped")
        << inBody(QLatin1Char('\n') + question + QStringLiteral("\n<p>一</p>\n \t\n<p>二</p>\n"))
        << asked << QStringLiteral("<p>一</p><p>二</p>");
    QTest::newRow("inner tags and pictures are kept")
        << inBody(question
                  + QStringLiteral("<p><b>一</b><br/>二</p>"
                                   "<p><img src=\"data:image/png;base64,AA==\" style=\"\"/></p>"))
        << asked
        << QStringLiteral("<p><b>一</b><br/>二</p>"
                          "<p><img src=\"data:image/png;base64,AA==\" style=\"\"/></p>");
    QTest::newRow("blanks inside a paragraph are kept")
        << inBody(question + QStringLiteral("<p> 一 </p>")) << asked
        << QStringLiteral("<p> 一 </p>");
    QTest::newRow("a paragraph of blanks is skipped")
        << inBody(question + QStringLiteral("<p>  \n\t</p><p>一</p>")) << asked
        << QStringLiteral("<p>一</p>");
    QTest::newRow("what stands between two paragraphs becomes one")
        << inBody(question + QStringLiteral("<p>一</p><br><p>二</p>")) << asked
        << QStringLiteral("<p>一</p><p><br></p><p>二</p>");
    QTest::newRow("what follows the last paragraph becomes one")
        << inBody(question + QStringLiteral("<p>一</p>尾")) << asked
        << QStringLiteral("<p>一</p><p>尾</p>");
    QTest::newRow("one paragraph: no answer") << inBody(question) << asked << QString();
    QTest::newRow("exactly the prefix: no question text")
        << inBody(QStringLiteral("<p>问题01：</p><p>一</p>")) << QString()
        << QStringLiteral("<p>一</p>");
    QTest::newRow("shorter than the prefix: no question text")
        << inBody(QStringLiteral("<p>问题</p><p>一</p>")) << QString()
        << QStringLiteral("<p>一</p>");
    QTest::newRow("any five characters are the prefix")
        << inBody(QStringLiteral("<p>如何登录云桌面？</p><p>一</p>")) << QStringLiteral("桌面？")
        << QStringLiteral("<p>一</p>");
    QTest::newRow("blanks count as characters of the prefix")
        << inBody(QStringLiteral("<p>\n 问题01：如何登录？</p><p>一</p>"))
        << QStringLiteral("1：如何登录？") << QStringLiteral("<p>一</p>");
    QTest::newRow("body never closed")
        << QStringLiteral("<body>") + question + QStringLiteral("<p>一</p>") << asked
        << QStringLiteral("<p>一</p>");
    QTest::newRow("body only closed: what follows counts")
        << question + QStringLiteral("</body>") + question + QStringLiteral("<p>一</p>") << asked
        << QStringLiteral("<p>一</p>");
    QTest::newRow("two bodies: the first counts")
        << inBody(question + QStringLiteral("<p>一</p>")) + inBody(QStringLiteral("<p>二</p>"))
        << asked << QStringLiteral("<p>一</p>");
    QTest::newRow("question never closed: cut at the next tag")
        << inBody(QStringLiteral("<p>问题01：如何登录？<p>一</p>")) << asked
        << QStringLiteral("<p>一</p>");
    QTest::newRow("tag with an attribute is text")
        << inBody(question + QStringLiteral("<p class=\"x\">一</p>")) << asked
        << QStringLiteral("<p><p class=\"x\">一</p>");
    QTest::newRow("upper-case paragraphs are text")
        << inBody(question + QStringLiteral("<P>一</P><p>二</p>")) << asked
        << QStringLiteral("<p><P>一</P></p><p>二</p>");
}

void TestLocalRecord::record_isRead()
{
    QFETCH(QString, text);
    QFETCH(QString, question);
    QFETCH(QString, answer);
    const auto record = readLocalRecord(text);
    QVERIFY(record.has_value());
    QCOMPARE(record->question, question);
    QCOMPARE(record->answer, answer);
}

void TestLocalRecord::textWithoutRecord_givesNothing_data()
{
    QTest::addColumn<QString>("text");
    const QString paragraphs = QStringLiteral("<p>问题01：如何登录？</p><p>一</p>");
    QTest::newRow("nothing") << QString();
    QTest::newRow("no body") << paragraphs;
    QTest::newRow("upper-case body")
        << QStringLiteral("<BODY>") + paragraphs + QStringLiteral("</BODY>");
    QTest::newRow("body with an attribute") << QStringLiteral("<body class=\"x\">") + paragraphs;
    QTest::newRow("empty body") << inBody(QString());
    QTest::newRow("body without paragraphs") << inBody(QStringLiteral("问题01：如何登录？"));
    QTest::newRow("paragraph that only begins") << inBody(QStringLiteral("<p>问题01：如何？"));
    QTest::newRow("upper-case paragraphs only")
        << inBody(QStringLiteral("<P>问题01：如何登录？</P><P>一</P>"));
    QTest::newRow("empty first paragraph") << inBody(QStringLiteral("<p></p><p>一</p>"));
    QTest::newRow("first paragraph of one control character")
        << inBody(QStringLiteral("<p>\u0005</p><p>一</p>"));
    QTest::newRow("first paragraph that begins with a lower one")
        << inBody(QStringLiteral("<p>\u0001题01：如何？</p><p>一</p>"));
    QTest::newRow("body closed before it begins") << QStringLiteral("</body><body>") + paragraphs;
}

void TestLocalRecord::textWithoutRecord_givesNothing()
{
    QFETCH(QString, text);
    QVERIFY(!readLocalRecord(text).has_value());
}

void TestLocalRecord::tenMegabytes_areRead()
{
    constexpr int paragraphs = 500'000;
    QString text = QStringLiteral("<p>问题01：如何登录？</p>");
    for (int i = 0; i < paragraphs; ++i) {
        text += QStringLiteral("<p>一二三四五六七八九十一二三</p>");
    }
    const auto record = readLocalRecord(inBody(text));
    QVERIFY(record.has_value());
    QCOMPARE(record->question, QStringLiteral("如何登录？"));
    QCOMPARE(record->answer.count(QStringLiteral("<p>")), paragraphs);
}

QTEST_GUILESS_MAIN(TestLocalRecord)
#include "tst_localrecord.moc"
