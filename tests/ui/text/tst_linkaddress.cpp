#include "ui/text/linkaddress.h"

#include <QTest>
#include <QUrl>

/// Which links may be opened, and how an address is shown to a person.
class TestLinkAddress : public QObject
{
    Q_OBJECT

private slots:
    void webAndMail_mayBeOpened_data();
    void webAndMail_mayBeOpened();
    void everythingElse_isRefused_data();
    void everythingElse_isRefused();
    void anOrdinaryAddress_isShownAsItIs_data();
    void anOrdinaryAddress_isShownAsItIs();
    void whatTurnsOrHidesText_isShownEscaped_data();
    void whatTurnsOrHidesText_isShownEscaped();
    void halfAPair_isShownAsUnreadable();
    void aLongAddress_isCut();
    void toolTip_ofALongAddress_hasLines();
    void toolTip_isNeverMarkup();
    void toolTip_ofNoLink_isNone();
};

void TestLinkAddress::webAndMail_mayBeOpened_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address :
         {"http://example.com", "https://example.com/a?b=c#d", "HTTPS://EXAMPLE.COM/",
          "http://127.0.0.1:8080/x", "http://[::1]/", "https://user@example.com/",
          "http://example.com/c:/windows/notepad.exe", "mailto:it@example.com",
          "mailto:it@example.com?subject=a%20b", "MAILTO:it@example.com"}) {
        QTest::newRow(address) << QString::fromLatin1(address);
    }
    QTest::newRow("chinese host") << QStringLiteral("https://例子.中国/路径");
}

void TestLinkAddress::webAndMail_mayBeOpened()
{
    QFETCH(QString, address);
    QVERIFY(mayBeOpened(QUrl(address)));
}

void TestLinkAddress::everythingElse_isRefused_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"",
                                "#",
                                "?",
                                "c:",
                                "c:/windows/notepad.exe",
                                "C:\\windows\\notepad.exe",
                                "c|/x",
                                "x:y",
                                "notepad.exe",
                                "/etc/passwd",
                                "../a",
                                "//host/share/a.exe",
                                "\\\\host\\share\\a.exe",
                                "http:calc.exe",
                                "http:",
                                "http:/",
                                "http://",
                                "http:///c:/x",
                                "https:c:/x",
                                "http:\\\\host\\a",
                                " http://example.com",
                                "\thttp://example.com",
                                "\nhttp://example.com",
                                "\x01http://example.com",
                                "ht\ntp://example.com",
                                "%68ttp://example.com",
                                "http%3A//example.com",
                                "http://exa mple.com",
                                "http://example.com:99999/",
                                "mailto://host/share",
                                "mail to:x",
                                "file:///etc/passwd",
                                "FILE:///etc/passwd",
                                "file://host/share/a.exe",
                                "FiLe:a",
                                "javascript:alert(1)",
                                "vbscript:x",
                                "data:text/html,x",
                                "ftp://example.com/",
                                "ms-msdt:/id x",
                                "search-ms:query=x",
                                "shell:startup",
                                "ms-settings:",
                                "tel:1",
                                "blob:x",
                                "about:blank",
                                "view-source:http://example.com",
                                "jar:http://example.com!/",
                                "http+x://example.com",
                                "httpx://example.com",
                                "qrc:/Images/a.png",
                                ":/Images/a.png",
                                "smb://host/share"}) {
        QTest::newRow(address) << QString::fromLatin1(address);
    }
    QTest::newRow("nul before") << QString(QChar(0)) + QStringLiteral("http://example.com");
    QTest::newRow("nul inside") << QStringLiteral("ht") + QChar(0)
                                       + QStringLiteral("tp://example.com");
    QTest::newRow("full-width colon") << QStringLiteral("http：//example.com");
    QTest::newRow("zero-width before") << QChar(0x200b) + QStringLiteral("http://example.com");
    QTest::newRow("mark before") << QChar(0xfeff) + QStringLiteral("http://example.com");
    QTest::newRow("letter like another") << QStringLiteral("\u04bbttp://example.com");
}

void TestLinkAddress::everythingElse_isRefused()
{
    QFETCH(QString, address);
    QVERIFY(!mayBeOpened(QUrl(address)));
}

void TestLinkAddress::anOrdinaryAddress_isShownAsItIs_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("web") << QStringLiteral("https://example.com/a%20b?c=d&e=%E4%BD%A0#f");
    QTest::newRow("blank") << QStringLiteral("c:/program files/a.exe");
    QTest::newRow("backslash") << QStringLiteral("\\\\host\\share");
    QTest::newRow("chinese") << QStringLiteral("https://例子.中国/路径");
    QTest::newRow("beyond 16 bits") << QStringLiteral("https://example.com/😀𠀀");
    QTest::newRow("nothing") << QString();
}

void TestLinkAddress::anOrdinaryAddress_isShownAsItIs()
{
    QFETCH(QString, address);
    QCOMPARE(readableAddress(address), address);
}

void TestLinkAddress::whatTurnsOrHidesText_isShownEscaped_data()
{
    QTest::addColumn<uint>("character");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, uint character, const char *shown) {
        QTest::newRow(name) << character << QString::fromLatin1(shown);
    };
    row("nul", 0, "\\u{0}");
    row("tabulator", '\t', "\\u{9}");
    row("line end", '\n', "\\u{A}");
    row("delete", 0x7f, "\\u{7F}");
    row("soft hyphen", 0xad, "\\u{AD}");
    row("hard blank", 0xa0, "\\u{A0}");
    row("arabic letter mark", 0x61c, "\\u{61C}");
    row("zero-width space", 0x200b, "\\u{200B}");
    row("zero-width joiner", 0x200d, "\\u{200D}");
    row("right-to-left mark", 0x200f, "\\u{200F}");
    row("line separator", 0x2028, "\\u{2028}");
    row("right-to-left override", 0x202e, "\\u{202E}");
    row("pop isolate", 0x2069, "\\u{2069}");
    row("ideographic space", 0x3000, "\\u{3000}");
    row("hangul filler", 0x3164, "\\u{3164}");
    row("empty braille pattern", 0x2800, "\\u{2800}");
    row("variation selector", 0xfe0f, "\\u{FE0F}");
    row("byte order mark", 0xfeff, "\\u{FEFF}");
    row("private use", 0xe000, "\\u{E000}");
    row("tag", 0xe0041, "\\u{E0041}");
}

void TestLinkAddress::whatTurnsOrHidesText_isShownEscaped()
{
    QFETCH(uint, character);
    QFETCH(QString, shown);
    const QString text = QChar::requiresSurrogates(character)
                           ? QString::fromUcs4(&character, 1)
                           : QString(QChar(static_cast<ushort>(character)));
    QCOMPARE(readableAddress(QStringLiteral("http://a/") + text + QStringLiteral("gpj.exe")),
             QStringLiteral("http://a/") + shown + QStringLiteral("gpj.exe"));
}

void TestLinkAddress::halfAPair_isShownAsUnreadable()
{
    QCOMPARE(readableAddress(QStringLiteral("http://a/") + QChar(0xd800)),
             QStringLiteral("http://a/") + QChar(QChar::ReplacementCharacter));
}

void TestLinkAddress::aLongAddress_isCut()
{
    const QString address = QStringLiteral("http://a/") + QString(100000, QLatin1Char('x'));
    QCOMPARE(readableAddress(address), address.left(1000) + QChar(0x2026));
}

void TestLinkAddress::toolTip_ofALongAddress_hasLines()
{
    const QString address = QStringLiteral("http://a/") + QString(141, QLatin1Char('x'));
    QCOMPARE(linkToolTip(address), address.left(100) + QLatin1Char('\n') + address.mid(100));
}

void TestLinkAddress::toolTip_isNeverMarkup()
{
    const QString address = QStringLiteral("<img src='http://a/'>");
    const QString tip = linkToolTip(address);
    QVERIFY(tip.contains(QLatin1String("&lt;img")));
    QVERIFY(!tip.contains(QLatin1String("<img")));
}

void TestLinkAddress::toolTip_ofNoLink_isNone()
{
    QVERIFY(linkToolTip(QString()).isEmpty());
}

QTEST_GUILESS_MAIN(TestLinkAddress)
#include "tst_linkaddress.moc"
