#include "tests/support/logcapture.h"
#include "ui/text/tabledepth.h"

#include <QTest>

/// Tables may lie in each other, but not so deep that Qt lays them out for ever.
class TestTableDepth : public QObject
{
    Q_OBJECT

private slots:
    void depth_data();
    void depth();
    void refusedTables_leaveTheirText();
    void wordsAboutTables_areKept();
};

namespace {

const QString innermost = QStringLiteral("里");

/// Tables around each other, \a levels of them.
QString nested(int levels)
{
    return QStringLiteral("<table><tr><td>").repeated(levels) + innermost
         + QStringLiteral("</td></tr></table>").repeated(levels);
}

/// The same, made \a characters long by what follows.
QString nested(int levels, int characters)
{
    const QString tables = nested(levels);
    return tables + QString(characters - tables.size(), QLatin1Char('x'));
}

} // namespace

void TestTableDepth::depth_data()
{
    constexpr int longest = 20000; // of what may have four levels
    QTest::addColumn<QString>("html");
    QTest::addColumn<int>("refused");
    QTest::newRow("none") << innermost << 0;
    QTest::newRow("one") << nested(1) << 0;
    QTest::newRow("four") << nested(4) << 0;
    QTest::newRow("five") << nested(5) << 5;
    QTest::newRow("forty") << nested(40) << 40;
    QTest::newRow("four in a text that is not long") << nested(4, longest) << 0;
    QTest::newRow("two in a long text") << nested(2, longest + 1) << 0;
    QTest::newRow("three in a long text") << nested(3, longest + 1) << 3;
    QTest::newRow("four in a long text") << nested(4, longest + 1) << 4;
    QTest::newRow("ten beside each other") << nested(1).repeated(10) << 0;
    QTest::newRow("five, in a frame and beside others")
        << nested(1) + QStringLiteral("<div>") + nested(5) << 5;
}

void TestTableDepth::depth()
{
    QFETCH(QString, html);
    QFETCH(int, refused);
    const LogCapture log;
    const QString shown = withoutDeepTables(html);
    QCOMPARE(shown == html, refused == 0);
    QCOMPARE(
        log.lines(),
        refused == 0
            ? QStringList()
            : QStringList{
                QStringLiteral("warning: tables lie too deep in each other: %1").arg(refused)});
}

void TestTableDepth::refusedTables_leaveTheirText()
{
    const QString html = QStringLiteral("<b>a &lt; b</b>") + nested(5) + QStringLiteral("c");
    const QString shown = withoutDeepTables(html);
    QVERIFY2(shown.startsWith(QStringLiteral("<p>a &lt; b<br>")), qPrintable(shown));
    QVERIFY2(shown.contains(innermost), qPrintable(shown));
    QVERIFY2(shown.endsWith(QStringLiteral("<br>c</p>")), qPrintable(shown));
    QVERIFY2(!shown.contains(QStringLiteral("table")), qPrintable(shown));
}

void TestTableDepth::wordsAboutTables_areKept()
{
    const QString html = QStringLiteral("A table, a Table and <i>tables</i>: four tables.");
    QCOMPARE(withoutDeepTables(html), html);
}

QTEST_MAIN(TestTableDepth)
#include "tst_tabledepth.moc"
