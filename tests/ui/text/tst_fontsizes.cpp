#include "ui/text/fontsizes.h"

#include <QTest>

/// Which markup asks for characters that are too large to be drawn.
class TestFontSizes : public QObject
{
    Q_OBJECT

private slots:
    void largestSize_isAllowed_data();
    void largestSize_isAllowed();
    void numbersThatAreNoSize_areHarmless_data();
    void numbersThatAreNoSize_areHarmless();
};

void TestFontSizes::largestSize_isAllowed_data()
{
    QTest::addColumn<QString>("size");
    QTest::addColumn<bool>("huge");
    QTest::newRow("200 px") << QStringLiteral("200px") << false;
    QTest::newRow("201 px") << QStringLiteral("201px") << true;
    QTest::newRow("200 points") << QStringLiteral("200pt") << false;
    QTest::newRow("200.5 points") << QStringLiteral("200.5pt") << true;
    QTest::newRow("99 px") << QStringLiteral("99px") << false;
    QTest::newRow("1000 px") << QStringLiteral("1000px") << true;
}

void TestFontSizes::largestSize_isAllowed()
{
    QFETCH(QString, size);
    QFETCH(bool, huge);
    QCOMPARE(hasHugeFonts(QStringLiteral("<b style='font-size:%1'>x</b>").arg(size)), huge);
    QCOMPARE(hasHugeFonts(QStringLiteral("<b style='FONT:%1 serif'>x</b>").arg(size)), huge);
}

void TestFontSizes::numbersThatAreNoSize_areHarmless_data()
{
    QTest::addColumn<QString>("html");
    QTest::newRow("words") << QStringLiteral("<b>font 2000 px</b>");
    QTest::newRow("a weight") << QStringLiteral("<b style='font-weight:900'>x</b>");
    QTest::newRow("a margin") << QStringLiteral("<p style='font-size:12px;margin:1000px'>x</p>");
    QTest::newRow("digits apart") << QStringLiteral("<b style='font-size:12px'>2 000 00</b>");
}

void TestFontSizes::numbersThatAreNoSize_areHarmless()
{
    QFETCH(QString, html);
    QVERIFY(!hasHugeFonts(html));
}

QTEST_MAIN(TestFontSizes)
#include "tst_fontsizes.moc"
