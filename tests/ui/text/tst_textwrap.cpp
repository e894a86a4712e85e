#include "tests/ui/text/plainwrap.h"
#include "ui/text/textwrap.h"

#include <QFontMetrics>
#include <QTest>

/// Breaking a question into lines.
class TestTextWrap : public QObject
{
    Q_OBJECT

private slots:
    void marks_areKeptUpToAHundred();
    void rowPart_isLongerThanARow();
    void shownPart_cutsOnlyWhatIsTooLong();
    void shownPart_countsTurnsAndJoinersAsFive();
    void textThatFits_isUnchanged();
    void textOfExactlyTheWidth_staysOnOneLine();
    void onePixelMore_breaks();
    void result_isThatOfThePlainRule_data();
    void result_isThatOfThePlainRule();
    void firstCharacterWiderThanTheLine_leavesAnEmptyLine();
    void surrogatePair_isNeverCut();
    void hundredThousandCharacters_wrapInLinearTime();
    void lines_areNeverWiderThanTheLimit();

private:
    static QFontMetrics metrics();
};

namespace {

constexpr int lineWidth = 446;

} // namespace

QFontMetrics TestTextWrap::metrics()
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(14);
    return QFontMetrics(font);
}

void TestTextWrap::shownPart_countsTurnsAndJoinersAsFive()
{
    const QString turns = QStringLiteral("\u202Ea\u202Db"); // 12 for 4 characters
    const int shown = maxShownCharacters / 12 * 4;
    QCOMPARE(shownPart(turns.repeated(shown / 4)).size(), shown);
    const QString cut = shownPart(turns.repeated(shown));
    QVERIFY(cut.endsWith(QChar(u'…')));
    QVERIFY(cut.size() <= shown + turns.size());
    const QString joined = QStringLiteral("\U0001F468\u200D\U0001F469").repeated(5000);
    QVERIFY(shownPart(joined).size() < joined.size());
    QVERIFY(shownPart(joined).at(shownPart(joined).size() - 2)
            != QChar(u'\xD83D')); // no pair is torn
}

void TestTextWrap::textThatFits_isUnchanged()
{
    QCOMPARE(brokenToWidth(metrics(), QString(), lineWidth), QString());
    QCOMPARE(brokenToWidth(metrics(), QStringLiteral("桌面黑屏"), lineWidth),
             QStringLiteral("桌面黑屏"));
}

void TestTextWrap::textOfExactlyTheWidth_staysOnOneLine()
{
    const QString text = QStringLiteral("虚拟桌面登录不上去怎么办");
    const int width = metrics().horizontalAdvance(text);
    QCOMPARE(brokenToWidth(metrics(), text, width), text);
}

void TestTextWrap::onePixelMore_breaks()
{
    const QString text = QStringLiteral("虚拟桌面登录不上去怎么办");
    const int width = metrics().horizontalAdvance(text) - 1;
    const QString wrapped = brokenToWidth(metrics(), text, width);
    QCOMPARE(wrapped, QStringLiteral("虚拟桌面登录不上去怎\n么办"));
}

void TestTextWrap::result_isThatOfThePlainRule_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Chinese") << QStringLiteral("云桌面打印机无法使用怎么办").repeated(20);
    QTest::newRow("Latin") << QStringLiteral("The quick brown fox jumps over it. ").repeated(20);
    QTest::newRow("mixed") << QStringLiteral("登录时报错 0x80004005, please help！").repeated(20);
    QTest::newRow("one word") << QString(900, QLatin1Char('w'));
    QTest::newRow("narrow") << QString(900, QLatin1Char('i'));
    QTest::newRow("halves of pairs")
        << QStringLiteral("a\xD83D").repeated(100) + QStringLiteral("\xDE00").repeated(100);
    QTest::newRow("half a pair at the end") << QStringLiteral("虚拟桌面") + QChar(u'\xD83D');
    QTest::newRow("kerning") << QStringLiteral("AVAToWaVeLTYAV").repeated(40);
}

void TestTextWrap::result_isThatOfThePlainRule()
{
    QFETCH(QString, text);
    for (const int width : {40, 100, lineWidth}) {
        QCOMPARE(brokenToWidth(metrics(), text, width), plainlyBroken(metrics(), text, width));
    }
}

void TestTextWrap::firstCharacterWiderThanTheLine_leavesAnEmptyLine()
{
    QCOMPARE(brokenToWidth(metrics(), QStringLiteral("桌"), 5), QStringLiteral("\n桌"));
    QCOMPARE(brokenToWidth(metrics(), QStringLiteral("桌面"), 5), QStringLiteral("\n桌\n\n面"));
}

void TestTextWrap::surrogatePair_isNeverCut()
{
    const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80").repeated(60);
    for (int width = 30; width < 60; ++width) {
        const QStringList lines = brokenToWidth(metrics(), emoji, width).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            QVERIFY(line.isEmpty() || line.at(0).isHighSurrogate());
            QVERIFY(line.isEmpty() || line.at(line.size() - 1).isLowSurrogate());
        }
    }
}

void TestTextWrap::hundredThousandCharacters_wrapInLinearTime()
{
    // Ended by the test's own time-out if the cost were quadratic.
    const QString text = QStringLiteral("虚拟桌面ab").repeated(100000 / 6);
    const QString wrapped = brokenToWidth(metrics(), text, lineWidth);
    QCOMPARE(QString(wrapped).remove(QLatin1Char('\n')), text);
}

void TestTextWrap::lines_areNeverWiderThanTheLimit()
{
    const QString text = QStringLiteral("远程桌面 connection lost，请问如何处理？").repeated(50);
    const QStringList lines = brokenToWidth(metrics(), text, lineWidth).split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 10);
    for (const QString &line : lines) {
        QVERIFY2(metrics().horizontalAdvance(line) <= lineWidth, qPrintable(line));
    }
}

void TestTextWrap::marks_areKeptUpToAHundred()
{
    const QString marked
        = QLatin1Char('a') + QString(100, QChar(0x301)) + QStringLiteral("b\u00adc");
    QCOMPARE(withoutMarkRuns(marked), marked);
    const QString more = QLatin1Char('a') + QString(30, QChar(0xad)) + QString(500, QChar(0x301));
    QCOMPARE(withoutMarkRuns(more + QLatin1Char('b') + more).size(), 2 * 101 + 1);
    QVERIFY(withoutMarkRuns(more + QLatin1Char('b')).endsWith(QLatin1Char('b')));
    const QString marks(100, QChar(0x301));
    QCOMPARE(withoutMarkRuns(marks), marks);
    QCOMPARE(withoutMarkRuns(marks + marks), marks);
}

void TestTextWrap::rowPart_isLongerThanARow()
{
    const QString longest(mostOfARow, QLatin1Char('i'));
    QCOMPARE(rowPart(longest), longest);
    QCOMPARE(rowPart(longest + longest), longest + QChar(u'…'));
}

void TestTextWrap::shownPart_cutsOnlyWhatIsTooLong()
{
    const QString longest(maxShownCharacters, QChar(u'长'));
    QCOMPARE(shownPart(longest), longest);
    QCOMPARE(shownPart(longest + QLatin1Char('x')), longest + QChar(u'…'));
    const QString pairs = QLatin1Char('x') + QStringLiteral("\U0001F600").repeated(longest.size());
    QCOMPARE(shownPart(pairs).size(), maxShownCharacters); // no pair is torn
    QVERIFY(shownPart(pairs).at(maxShownCharacters - 2).isLowSurrogate());
}

QTEST_MAIN(TestTextWrap)
#include "tst_textwrap.moc"
