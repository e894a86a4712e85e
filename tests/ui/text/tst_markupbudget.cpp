#include "tests/support/logcapture.h"
#include "ui/text/markupbudget.h"
#include "ui/text/markupscan.h"

#include <QTest>

/// Markup is shown as it is unless Qt would spend too long on it.
class TestMarkupBudget : public QObject
{
    Q_OBJECT

private slots:
    void ordinaryMarkup_isKept_data();
    void ordinaryMarkup_isKept();
    void dearMarkup_givesItsText_data();
    void dearMarkup_givesItsText();
    void disguisedMarkup_isSeenThrough_data();
    void disguisedMarkup_isSeenThrough();
    void severalTexts_shareOneBudget();
    void bareText_isReadable_data();
    void bareText_isReadable();
};

void TestMarkupBudget::ordinaryMarkup_isKept_data()
{
    QTest::addColumn<QString>("html");
    const auto row = [](const char *name, const QString &html) {
        QTest::newRow(name) << html;
    };
    row("nothing", QString());
    row("no markup", QStringLiteral("a < b"));
    row("styled words",
        QStringLiteral("<span style=\"font-size:16px;color:#102030\">字</span><br>").repeated(500));
    row("a table of 100 rows", QStringLiteral("<table>")
                                   + QStringLiteral("<tr><td>a</td><td>b</td></tr>").repeated(100)
                                   + QStringLiteral("</table>"));
    row("1,000 entries", QStringLiteral("<ul>") + QStringLiteral("<li>a</li>").repeated(1000)
                             + QStringLiteral("</ul>"));
    row("twenty levels", QStringLiteral("<div>").repeated(20) + QStringLiteral("x"));
    row("a large heading", QStringLiteral("<b style=\"font-size:120px\">x</b>"));
    row("a wide table", QStringLiteral("<table border=1 cellspacing=0 cellpadding=1000 "
                                       "style='margin:1000px'><tr><td>x</td></tr></table>"));
    row("a cell down more rows than there are", QStringLiteral("<td ROWSPAN = '9999'>"));
    row("what is no entity for its blank", QStringLiteral("<t&#x64 ; colspan=9999>"));
    row("a wide margin", QStringLiteral("<b style=\"font-weight:bold;margin:1000px\">x</b>"));
}

void TestMarkupBudget::ordinaryMarkup_isKept()
{
    QFETCH(QString, html);
    const LogCapture log;
    QCOMPARE(MarkupBudget().affordable(html), html);
    QVERIFY(log.lines().isEmpty());
}

void TestMarkupBudget::dearMarkup_givesItsText_data()
{
    QTest::addColumn<QString>("html");
    const auto row = [](const QByteArray &name, const QString &html) {
        QTest::newRow(name.constData()) << html + QStringLiteral("里");
    };
    row("blocks", QStringLiteral("<div>").repeated(10'000));
    row("unknown elements", QStringLiteral("<x>").repeated(10'000));
    row("blocks that a comment seems to close", QStringLiteral("<x><!--</x>-->").repeated(10'000));
    row("blocks that a title seems to close", QStringLiteral("<x title='</x>'>").repeated(10'000));
    row("entries", QStringLiteral("<li></li>").repeated(10'000));
    row("cells", QStringLiteral("<td></td>").repeated(10'000));
    row("a cell across many", QStringLiteral("<td colspan=9999>"));
    row("a long table with a wide row", QStringLiteral("<table>")
                                            + QStringLiteral("<tr><td>").repeated(500)
                                            + QStringLiteral("<tr><td colspan=500>"));
    row("a wide table with many empty rows",
        QStringLiteral("<table><tr><td colspan=500>") + QStringLiteral("<tr>").repeated(500));
    row("cells pushed aside by those above",
        QStringLiteral("<table>") + QStringLiteral("<tr><td rowspan=200>").repeated(60));
    row("style rules", QStringLiteral("<style>") + QStringLiteral("b{}").repeated(5000)
                           + QStringLiteral("</style>") + QStringLiteral("<b></b>").repeated(5000));
    row("style rules at the end",
        QStringLiteral("<b></b>").repeated(5000) + QStringLiteral("<style>")
            + QStringLiteral("b{}").repeated(5000) + QStringLiteral("</style>"));
    for (const char *size : {"1001", "-1001", "30000000", "1e30", "-1e30", "inf", "nan"}) {
        const QByteArray name(size);
        row("spacing " + name,
            QStringLiteral("<TABLE cellspacing=%1><tr><td>").arg(QLatin1String(name)));
        row("padding " + name,
            QStringLiteral("<table cellpadding='%1'><tr><td>").arg(QLatin1String(name)));
    }
    row("a table's margin", QStringLiteral("<table style='margin:30000000px'><tr><td>"));
    row("a margin of a table's left", QStringLiteral("<table style='margin-left:1001px'><tr><td>"));
    row("a cell's padding", QStringLiteral("<table><tr><td style='padding:99999px'>"));
    row("by a style sheet", QStringLiteral("<style>table{margin:99999px}</style><table><tr><td>"));
    row("a table around a table",
        QStringLiteral("<table><tr><td><table cellpadding=99999><tr><td>"));
    row("a huge font", QStringLiteral("<b style='FONT-SIZE: 2000PX'>"));
    row("a huge font by an exponent", QStringLiteral("<b style='font-size:9e6pt'>"));
    row("a huge font by its short name", QStringLiteral("<b style='font:2000.5pt serif'>"));
}

void TestMarkupBudget::dearMarkup_givesItsText()
{
    QFETCH(QString, html);
    const LogCapture log;
    QCOMPARE(MarkupBudget().affordable(html), QStringLiteral("<p>里</p>"));
    QCOMPARE(log.linesWith(QStringLiteral("warning: ")).size(), 1);
}

void TestMarkupBudget::disguisedMarkup_isSeenThrough_data()
{
    QTest::addColumn<QString>("html");
    const auto row = [](const char *name, const QString &html) {
        QTest::newRow(name) << html + QStringLiteral("里");
    };
    row("a cell that says its columns twice", QStringLiteral("<td colspan=2 colspan=9999>"));
    row("a cell whose title names columns", QStringLiteral("<td title='colspan=1' colspan=9999>"));
    row("columns in entities", QStringLiteral("<td colspan=&#57;&#x39;99>"));
    row("columns behind a tab in an entity", QStringLiteral("<td colspan=&#9;9999>"));
    row("an attribute in entities", QStringLiteral("<td &#99;olspan=9999>"));
    row("an attribute in quotes", QStringLiteral("<td 'colspan'=9999>"));
    row("an element in entities", QStringLiteral("<t&#100; colspan=9999>"));
    row("an element in quotes", QStringLiteral("<'td' colspan=9999>"));
    row("an element behind a blank", QStringLiteral("<\ntd colspan=9999>"));
    row("a bracket in quotes behind a blank", QStringLiteral("<td x= '>' colspan=9999>"));
    row("a bracket behind a quote behind a backslash",
        QStringLiteral("<td x='\\'>' colspan=9999>"));
    row("a cell in a style", QStringLiteral("<style>a{}<td colspan=9999></style>"));
    row("a cell in a comment that ends early", QStringLiteral("<!>-- <td colspan=9999>-->"));
    row("a table in entities", QStringLiteral("<t&#97;ble cellpadding=99999><tr><td>"));
    row("a huge font in entities", QStringLiteral("<b style=\"f&#111;nt-size:2000px\">"));
    row("a huge font in escapes", QStringLiteral("<b style='f\\6fnt-size:2000px'>"));
    row("tables in entities, deep",
        QStringLiteral("<t&#97;ble><tr><td>").repeated(10) + QStringLiteral("<p>"));
}

/// As Qt sees through it.
void TestMarkupBudget::disguisedMarkup_isSeenThrough()
{
    QFETCH(QString, html);
    const LogCapture log;
    const QString shown = MarkupBudget().affordable(html);
    QVERIFY2(shown.contains(QStringLiteral("里")), qPrintable(shown));
    QVERIFY2(!shown.contains(QLatin1String("9999")) && !shown.contains(QLatin1Char('&')),
             qPrintable(shown));
    QCOMPARE(log.linesWith(QStringLiteral("warning: ")).size(), 1);
}

void TestMarkupBudget::severalTexts_shareOneBudget()
{
    const QString table = QStringLiteral("<td>x</td>").repeated(1200);
    MarkupBudget budget;
    QCOMPARE(budget.affordable(table), table);
    QVERIFY(budget.affordable(table) != table);
    const QString words = QStringLiteral("<b>x</b>");
    QCOMPARE(budget.affordable(words), words); // what costs little is still shown
}

void TestMarkupBudget::bareText_isReadable_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("bare");
    QTest::newRow("blocks") << "<div>a</div><div>b<br/><br>c</div>"
                            << "a<br>b<br>c";
    QTest::newRow("words") << "a <b>b</b> c"
                           << "a b c";
    QTest::newRow("entities") << "a &lt; b"
                              << "a &lt; b";
    QTest::newRow("hidden") << "<style>a{b}</style><!-- <c> -->d<script>e</script>f"
                            << "df";
    QTest::newRow("never closed") << "a<b title='"
                                  << "a";
    QTest::newRow("nothing in it") << "<div><p></div>"
                                   << "";
}

void TestMarkupBudget::bareText_isReadable()
{
    QFETCH(QString, html);
    QFETCH(QString, bare);
    QCOMPARE(bareText(html), bare);
}

QTEST_MAIN(TestMarkupBudget)
#include "tst_markupbudget.moc"
