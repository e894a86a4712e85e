#include "ui/text/markuptags.h"

#include <QTest>

/// Tags as Qt reads them, and which texts have to be read by Qt before it is known what they say.
class TestMarkupTags : public QObject
{
    Q_OBJECT

private slots:
    void disguise_isLookedForWhereItCounts_data();
    void disguise_isLookedForWhereItCounts();
    void numbersOfEntities_areLetters_data();
    void numbersOfEntities_areLetters();
};

void TestMarkupTags::disguise_isLookedForWhereItCounts_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<bool>("may");
    QTest::newRow("plain") << QStringLiteral("<b style='font-size:12px'>x</b>") << false;
    QTest::newRow("an apostrophe in the words") << QStringLiteral("<p>it&#39;s</p>") << false;
    QTest::newRow("a path in the words") << QStringLiteral("<p>C:\\Users\\a</p>") << false;
    QTest::newRow("an entity in a name") << QStringLiteral("<t&#97;ble>") << true;
    QTest::newRow("an entity in a value") << QStringLiteral("<p>a<b id=\"&#57;\">b</b>") << true;
    QTest::newRow("an escape in a value") << QStringLiteral("<b style='f\\6fnt:9px'>x</b>") << true;
    QTest::newRow("an escape in a style")
        << QStringLiteral("<style>b{f\\6fnt:9px}</style>") << true;
}

void TestMarkupTags::disguise_isLookedForWhereItCounts()
{
    QFETCH(QString, html);
    QFETCH(bool, may);
    QCOMPARE(mayBeDisguised(html), may);
}

void TestMarkupTags::numbersOfEntities_areLetters_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    const auto row = [](const char *name, const char *written, const char *read) {
        QTest::newRow(name) << QString::fromLatin1(written) << QString::fromLatin1(read);
    };
    row("two digits", "1&#57;", "19");
    row("one digit", "&#9;1", "\t1");
    row("hexadecimal", "&#x39;1", "91");
    row("no digit", "&#;1", "&#;1");
    row("no hexadecimal digit", "&#x;1", "&#x;1");
    row("no number", "&#5z;1", "&#5z;1");
    row("beyond 16 bits", "&#65593;1", "&#65593;1");
    row("a name", "&lt;1", "&lt;1");
    row("no end", "&#57", "&#57");
    row("nothing behind it", "1&", "1&");
}

void TestMarkupTags::numbersOfEntities_areLetters()
{
    QFETCH(QString, written);
    QFETCH(QString, read);
    const MarkupTag tag = nextMarkupTag(QStringLiteral("<b id=\"%1\">").arg(written), 0);
    const QVector<QPair<QString, QString>> expected{{QStringLiteral("id"), read}};
    QCOMPARE(tag.attributes, expected);
}

QTEST_GUILESS_MAIN(TestMarkupTags)
#include "tst_markuptags.moc"
