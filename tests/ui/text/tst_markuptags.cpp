#include "ui/text/markuptags.h"

#include <QTest>

/// Which texts have to be read by Qt before it is known what their tags say.
class TestMarkupTags : public QObject
{
    Q_OBJECT

private slots:
    void disguise_isLookedForWhereItCounts_data();
    void disguise_isLookedForWhereItCounts();
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

QTEST_GUILESS_MAIN(TestMarkupTags)
#include "tst_markuptags.moc"
