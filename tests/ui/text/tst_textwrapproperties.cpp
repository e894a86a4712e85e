#include "tests/support/generator.h"
#include "tests/ui/text/plainwrap.h"
#include "ui/text/textwrap.h"

#include <QFontMetrics>
#include <QLoggingCategory>
#include <QTest>

/// Breaking and cutting texts, over generated ones of every script.
class TestTextWrapProperties : public QObject
{
    Q_OBJECT

private slots:
    void broken_isThePlainRule();
    void broken_keepsEveryCharacter();
    void brokenToALine_hasNoWiderOne();
    void markRuns_areLeftOutBehindAHundred();
    void cut_endsWithAnEllipsis_andTearsNoPair();

private:
    static QFontMetrics metrics();
};

QFontMetrics TestTextWrapProperties::metrics()
{
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(14);
    return QFontMetrics(font);
}

void TestTextWrapProperties::broken_isThePlainRule()
{
    Generator generator;
    for (int i = 0; i < 1500; ++i) {
        const QString text = generator.text(50);
        const int width = generator.anyOrder(0, 600);
        QCOMPARE(brokenToWidth(metrics(), text, width), plainlyBroken(metrics(), text, width));
    }
}

void TestTextWrapProperties::broken_keepsEveryCharacter()
{
    Generator generator;
    for (int i = 0; i < 1500; ++i) {
        const QString text = generator.text(100);
        const QString broken = brokenToWidth(metrics(), text, generator.anyOrder(0, 600));
        QCOMPARE(QString(broken).remove(QLatin1Char('\n')), text);
        QVERIFY(!broken.contains(QLatin1String("\n\n\n")));
    }
}

void TestTextWrapProperties::brokenToALine_hasNoWiderOne()
{
    // The sum of single widths, less than the limit, is what is known of a line.
    Generator generator;
    for (int i = 0; i < 400; ++i) {
        const QString text = generator.text(100);
        const int width = generator.between(100, 600);
        const QStringList lines = brokenToWidth(metrics(), text, width).split(QLatin1Char('\n'));
        for (int line = 0; line < lines.size() - 1; ++line) {
            int sum = 0;
            for (const uint character : lines.at(line).toUcs4()) {
                sum += metrics().horizontalAdvance(QString::fromUcs4(&character, 1));
            }
            QVERIFY2(sum < width, qUtf8Printable(lines.at(line)));
        }
    }
}

void TestTextWrapProperties::markRuns_areLeftOutBehindAHundred()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false")); // one for each text
    Generator generator;
    const QStringList marks{QString(QChar(0x301)), QString(QChar(0x200d)), QString(QChar(0x20dd))};
    for (int i = 0; i < 2000; ++i) {
        QString text;
        QString expected;
        for (int run = generator.between(0, 5); run > 0; --run) {
            const QString letters = generator.oneOf({QStringLiteral("a"), QStringLiteral("桌b")});
            const QString mark = generator.oneOf(marks);
            const int length = generator.between(0, 220);
            text += letters + mark.repeated(length);
            expected += letters + mark.repeated(qMin(length, 100));
        }
        QCOMPARE(withoutMarkRuns(text), expected);
    }
}

void TestTextWrapProperties::cut_endsWithAnEllipsis_andTearsNoPair()
{
    Generator generator;
    for (int i = 0; i < 300; ++i) {
        const QString pair = QStringLiteral("\U0001F600");
        const QString text
            = QString(generator.between(0, 1), QLatin1Char('x'))
            + pair.repeated(generator.between(mostOfARow / 2 - 9, mostOfARow / 2 + 9));
        const QString row = rowPart(text);
        if (text.size() <= mostOfARow) {
            QCOMPARE(row, text);
            continue;
        }
        QVERIFY(row.endsWith(QChar(u'…')) && text.startsWith(row.chopped(1)));
        QVERIFY(row.size() - 1 <= mostOfARow && row.size() - 1 >= mostOfARow - 1);
        QVERIFY(!row.at(row.size() - 2).isHighSurrogate());
    }
}

QTEST_MAIN(TestTextWrapProperties)
#include "tst_textwrapproperties.moc"
