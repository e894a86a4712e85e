#include "tests/support/generator.h"
#include "ui/text/markupscan.h"
#include "ui/text/markuptags.h"

#include <QTest>
#include <QTextDocument>
#include <QTextTable>

#include <limits>

/// What the scan of markup expects, against what Qt makes of the same generated markup.
class TestMarkupProperties : public QObject
{
    Q_OBJECT

private slots:
    void qtMakesNotFarMoreCells_thanTheScanExpects();
    void tableOfCells_isExpectedExactly();
    void tableOfTallCells_isNotExpectedSmaller();

private:
    static QString soup(Generator &generator);
    static QString table(Generator &generator, int mostRowsOfACell);
    static double cellsOfQt(const QString &html);
    static double cellsExpected(const QString &html);
};

namespace {

constexpr double costOfCell = 140;

double cellsBelow(const QTextFrame *frame)
{
    double cells = 0;
    if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
        cells = double(table->rows()) * table->columns();
    }
    const QList<QTextFrame *> children = frame->childFrames();
    for (const QTextFrame *child : children) {
        cells += cellsBelow(child);
    }
    return cells;
}

} // namespace

/// Pieces of tables in any order, whole and broken, plain and disguised.
QString TestMarkupProperties::soup(Generator &generator)
{
    static const QStringList pieces{
        QStringLiteral("<table>"),
        QStringLiteral("<TABLE border=1>"),
        QStringLiteral("</table>"),
        QStringLiteral("<tr>"),
        QStringLiteral("</tr>"),
        QStringLiteral("<td>"),
        QStringLiteral("<th>"),
        QStringLiteral("</td>"),
        QStringLiteral("<td "),
        QStringLiteral("<th\t"),
        QStringLiteral("< td "),
        QStringLiteral("<'td' "),
        QStringLiteral("<t&#100; "),
        QStringLiteral("<t&#x64 "),
        QStringLiteral("<\"tr\">"),
        QStringLiteral("<t&#97;ble>"),
        QStringLiteral("colspan=2 "),
        QStringLiteral("rowspan=3 "),
        QStringLiteral("colspan='3'"),
        QStringLiteral("ROWSPAN = \"2\""),
        QStringLiteral("colspan=&#52;"),
        QStringLiteral("&#99;olspan=3 "),
        QStringLiteral("'rowspan'=2"),
        QStringLiteral("colspan=x"),
        QStringLiteral("colspan='&#52;' "),
        QStringLiteral("x='\\'>' "),
        QStringLiteral("x=\"&quot;>\" "),
        QStringLiteral("\\"),
        QStringLiteral("colspan=+2 "),
        QStringLiteral("colspan="),
        QStringLiteral("title='>' "),
        QStringLiteral("x= \">\" "),
        QStringLiteral(">"),
        QStringLiteral("/>"),
        QStringLiteral("<"),
        QStringLiteral("'"),
        QStringLiteral("\""),
        QStringLiteral("="),
        QStringLiteral(" "),
        QStringLiteral("&"),
        QStringLiteral("&#"),
        QStringLiteral(";"),
        QStringLiteral("<!-- "),
        QStringLiteral("-->"),
        QStringLiteral("<!x "),
        QStringLiteral("<!-->"),
        QStringLiteral("<p>"),
        QStringLiteral("</p>"),
        QStringLiteral("<style>"),
        QStringLiteral("</style>"),
        QStringLiteral("<div>"),
        QStringLiteral("</div>"),
        QStringLiteral("<tbody>"),
        QStringLiteral("<thead>"),
        QStringLiteral("字"),
        QStringLiteral("<li>"),
    };
    QString html;
    const int count = generator.between(1, 40);
    for (int i = 0; i < count; ++i) {
        html += pieces.at(generator.between(0, pieces.size() - 1));
    }
    return html;
}

double TestMarkupProperties::cellsOfQt(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    return cellsBelow(document.rootFrame());
}

double TestMarkupProperties::cellsExpected(const QString &html)
{
    return markupCost(html, std::numeric_limits<double>::max()) / costOfCell;
}

void TestMarkupProperties::qtMakesNotFarMoreCells_thanTheScanExpects()
{
    Generator generator;
    // Qt puts broken tables together in its own way; of 200,000 none had 2.6 times as many.
    constexpr int mostTimesExpected = 5;
    double most = 0;
    for (int i = 0; i < 20'000; ++i) {
        const QString html = soup(generator);
        const double cells = cellsOfQt(html);
        most = qMax(most, cells);
        QVERIFY2(cells <= mostTimesExpected * cellsExpected(html),
                 qPrintable(
                     QStringLiteral("%1 of %2: %3").arg(cells).arg(cellsExpected(html)).arg(html)));
    }
    QVERIFY(most > 5); // the pieces do become tables
}

QString TestMarkupProperties::table(Generator &generator, int mostRowsOfACell)
{
    QString html = QStringLiteral("<table>");
    const int rows = generator.between(1, 6);
    for (int row = 0; row < rows; ++row) {
        html += QLatin1String("<tr>");
        const int cells = generator.between(1, 5);
        for (int cell = 0; cell < cells; ++cell) {
            html += QStringLiteral("<td colspan=%1 rowspan=%2>x</td>")
                        .arg(generator.between(1, 4))
                        .arg(generator.between(1, mostRowsOfACell));
        }
        html += QLatin1String("</tr>");
    }
    return html + QLatin1String("</table>");
}

void TestMarkupProperties::tableOfCells_isExpectedExactly()
{
    Generator generator;
    constexpr double elements = 7; // what the tags themselves cost, in cells
    for (int i = 0; i < 2'000; ++i) {
        const QString html = table(generator, 1);
        const double beside = cellsExpected(html) - cellsOfQt(html);
        QVERIFY2(beside >= 0 && beside < elements, qPrintable(html));
    }
}

void TestMarkupProperties::tableOfTallCells_isNotExpectedSmaller()
{
    Generator generator;
    for (int i = 0; i < 2'000; ++i) {
        const QString html = table(generator, 4);
        QVERIFY2(cellsExpected(html) >= cellsOfQt(html), qPrintable(html));
    }
}

QTEST_MAIN(TestMarkupProperties)
#include "tst_markupproperties.moc"
