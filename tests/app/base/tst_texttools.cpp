#include "app/base/texttools.h"

#include <QTest>

/// Texts that are not as texts should be.
class TestTextTools : public QObject
{
    Q_OBJECT

private slots:
    void utf8_endsAtTheFirstNul();
    void wholeCharacters_replacesHalves_data();
    void wholeCharacters_replacesHalves();
};

void TestTextTools::utf8_endsAtTheFirstNul()
{
    QCOMPARE(utf8UpToNul(QByteArray("a\xc3\xa9\0b", 5)), QStringLiteral("a\u00e9"));
    QCOMPARE(utf8UpToNul(QByteArray()), QString());
    QCOMPARE(utf8UpToNul("a\xff"), QStringLiteral("a\ufffd"));
}

void TestTextTools::wholeCharacters_replacesHalves_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("whole");
    const QString first = QChar(0xd83d);
    const QString second = QChar(0xde00);
    const QString mark = QChar(0xfffd);
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("pair") << QLatin1Char('a') + first + second << QLatin1Char('a') + first + second;
    QTest::newRow("two pairs") << first + second + first + second
                               << first + second + first + second;
    QTest::newRow("first half at the end") << QLatin1Char('a') + first << QLatin1Char('a') + mark;
    QTest::newRow("second half at the beginning")
        << second + QLatin1Char('a') << mark + QLatin1Char('a');
    QTest::newRow("turned round") << second + first << mark + mark;
    QTest::newRow("first half before a pair") << first + first + second << mark + first + second;
    QTest::newRow("second half behind a pair") << first + second + second << first + second + mark;
}

void TestTextTools::wholeCharacters_replacesHalves()
{
    QFETCH(QString, text);
    QFETCH(QString, whole);
    QCOMPARE(wholeCharacters(text), whole);
}

QTEST_GUILESS_MAIN(TestTextTools)
#include "tst_texttools.moc"
