#include "tests/support/logcapture.h"
#include "ui/mainwindow/suggestions/suggestionhighlight.h"

#include <QElapsedTimer>
#include <QTest>

namespace {

const QString start = QStringLiteral(
    "<font style='font-size:12px; background-color:white; color:rgb(41,100,245);'>");
const QString end = QStringLiteral("</font>");

constexpr qint64 blinkMs = 3000; // what must not freeze would take minutes

QString marked(const QString &text)
{
    return start + text + end;
}

} // namespace

/// What is marked in a suggestion: the typed text is a regular expression, good or bad.
class TestSuggestionHighlight : public QObject
{
    Q_OBJECT

private slots:
    void marks_data();
    void marks();
    void marksNothing_data();
    void marksNothing();
    void badPattern_warnsOfNothing();
    void patternThatRunsAway_isGivenUp_data();
    void patternThatRunsAway_isGivenUp();
    void endlessText_isLeftAlone();
};

void TestSuggestionHighlight::marks_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("html");
    QTest::newRow("once") << QStringLiteral("桌面") << QStringLiteral("登录桌面失败")
                          << QStringLiteral("登录") + marked(QStringLiteral("桌面"))
                                 + QStringLiteral("失败");
    QTest::newRow("everywhere, in any case")
        << QStringLiteral("vpn") << QStringLiteral("VPN and vpn")
        << marked(QStringLiteral("VPN")) + QStringLiteral(" and ") + marked(QStringLiteral("vpn"));
    QTest::newRow("dot matches any character")
        << QStringLiteral("a.c") << QStringLiteral("abc") << marked(QStringLiteral("abc"));
    QTest::newRow("plus repeats") << QStringLiteral("o+") << QStringLiteral("foo")
                                  << QLatin1Char('f') + marked(QStringLiteral("oo"));
    QTest::newRow("brackets are a choice") << QStringLiteral("[xy]") << QStringLiteral("my")
                                           << QLatin1Char('m') + marked(QStringLiteral("y"));
    QTest::newRow("markup is shown as it is")
        << QStringLiteral("b") << QStringLiteral("<b>&")
        << QStringLiteral("&lt;") + marked(QStringLiteral("b")) + QStringLiteral("&gt;&amp;");
    QTest::newRow("markup is typed") << QStringLiteral("<b>") << QStringLiteral("a<b>")
                                     << QLatin1Char('a') + marked(QStringLiteral("&lt;b&gt;"));
    QTest::newRow("empty matches mark every gap")
        << QStringLiteral("a|") << QStringLiteral("ba")
        << marked(QString()) + QLatin1Char('b') + marked(QStringLiteral("a")) + marked(QString());
    QTest::newRow("two groups keep the first") << QStringLiteral("a)(b") << QStringLiteral("xab")
                                               << QLatin1Char('x') + marked(QStringLiteral("a"));
}

void TestSuggestionHighlight::marks()
{
    QFETCH(QString, typed);
    QFETCH(QString, text);
    QFETCH(QString, html);
    SuggestionHighlight highlight(typed);
    QCOMPARE(highlight.apply(text), html);
    QCOMPARE(highlight.apply(text), html);
}

void TestSuggestionHighlight::marksNothing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("not in the text") << QStringLiteral("x");
    QTest::newRow("open bracket") << QStringLiteral("[");
    QTest::newRow("open group") << QStringLiteral("(");
    QTest::newRow("closed group") << QStringLiteral(")");
    QTest::newRow("lone star") << QStringLiteral("*");
    QTest::newRow("lone plus") << QStringLiteral("+");
    QTest::newRow("trailing backslash") << QStringLiteral("桌\\");
    QTest::newRow("backwards range") << QStringLiteral("[z-a]");
    QTest::newRow("half a character") << QString(QChar(0xD83D));
    QTest::newRow("deep nesting") << QString(100'000, QLatin1Char('('));
    QTest::newRow("huge repetition") << QStringLiteral("((桌{999}){999}){999}");
    QTest::newRow("no group, which would lose the text") << QStringLiteral("?:桌面");
    QTest::newRow("no group but empty branches") << QStringLiteral("?|");
    QTest::newRow("moved start") << QStringLiteral("(?=桌面\\K)");
    QTest::newRow("a command to the matcher") << QStringLiteral("*LIMIT_MATCH=4000000000)(桌");
    QTest::newRow("a megabyte") << QString(1'000'000, QChar(u'桌'));
}

void TestSuggestionHighlight::marksNothing()
{
    QFETCH(QString, typed);
    SuggestionHighlight highlight(typed);
    QCOMPARE(highlight.apply(QStringLiteral("登录桌面失败")), QString());
}

void TestSuggestionHighlight::badPattern_warnsOfNothing()
{
    const LogCapture log;
    SuggestionHighlight highlight(QStringLiteral("(["));
    QCOMPARE(highlight.apply(QStringLiteral("([")), QString());
    QCOMPARE(log.foreignLines() + log.lines(), QStringList());
}

void TestSuggestionHighlight::patternThatRunsAway_isGivenUp_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("nested repetition") << QStringLiteral("(a+)+$");
    QTest::newRow("nested star") << QStringLiteral("((a*)*)*b");
    QTest::newRow("alternatives") << QStringLiteral("(a|aa)+$");
    QTest::newRow("three stars") << QStringLiteral(".*.*.*b");
    QTest::newRow("ten stars") << QStringLiteral("a*a*a*a*a*a*a*a*a*a*b");
    QTest::newRow("recursion") << QStringLiteral("(a?(?1)?a?)*b");
    QTest::newRow("back references") << QStringLiteral("(a+)\\2+\\2+b");
    QTest::newRow("behind a command") << QStringLiteral("*LIMIT_MATCH=4000000000)((a+)+$");
}

void TestSuggestionHighlight::patternThatRunsAway_isGivenUp()
{
    QFETCH(QString, typed);
    const QString text = QString(250, QLatin1Char('a')) + QLatin1Char('!');
    SuggestionHighlight highlight(typed);
    QElapsedTimer clock;
    clock.start();
    for (int row = 0; row < 21; ++row) {
        QCOMPARE(highlight.apply(text), QString());
    }
    qInfo("21 rows took %lld ms", clock.elapsed());
    QVERIFY(clock.elapsed() < blinkMs);
}

void TestSuggestionHighlight::endlessText_isLeftAlone()
{
    SuggestionHighlight highlight(QStringLiteral("a"));
    QCOMPARE(highlight.apply(QString(10'000, QLatin1Char('a'))), QString());
    QCOMPARE(highlight.apply(QStringLiteral("a")), marked(QStringLiteral("a")));
}

QTEST_GUILESS_MAIN(TestSuggestionHighlight)
#include "tst_suggestionhighlight.moc"
