#include "tests/support/logcapture.h"
#include "tests/ui/support/openedlinks.h"
#include "ui/text/bubblelabel.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

#include <memory>

/// Links in a label: whichever way one is used, the desktop sees only the web and mail.
class TestLinkLabel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void webAndMail_areOpened_data();
    void webAndMail_areOpened();
    void whatIsElse_isNamedInTheLog_data();
    void whatIsElse_isNamedInTheLog();
    void aPictureInALink_isCaughtToo();
    void aLinkInALink_isCaughtToo();
    void areas_openNothing();
    void anchorsWithoutAnAddress_openNothing();
    void aNewText_isCaughtToo();
    void withoutExternalLinks_nothingIsOpened();
    void externalLinks_stayObservable();
    void hoveredLink_saysWhereItLeads();
    void keyboardFocus_saysWhereItLeads();
    void deceivingAddress_isShownEscaped();
    void addressLikeMarkup_isShownAsItIs();

private:
    enum class Way {
        Mouse,
        Keyboard,
        ScreenReader,
    };

    void show(const QString &html);
    void showLink(const QString &attributes);
    void use(Way way);
    void hover(const QPoint &place);
    void expectOnly(const QStringList &opened, const QStringList &logged);
    [[nodiscard]] QPoint linkPlace() const { return {20, m_label->height() / 2}; }

    std::unique_ptr<QWidget> m_window;
    QLabel *m_label = nullptr;
};

namespace {

QString attribute(const QString &address)
{
    return QStringLiteral("href=\"%1\"").arg(address);
}

/// What Qt complained about, as a platform does that is to open a link and cannot.
QStringList complaints(const LogCapture &log)
{
    QStringList lines = log.foreignLines();
    lines.removeAll(QStringLiteral("warning: This plugin does not support raise()"));
    return lines;
}

} // namespace

void TestLinkLabel::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(500, 200);
    m_label = makeBubbleLabel(QStringLiteral("QLabel{font:14px;}"), m_window.get());
    m_label->setOpenExternalLinks(true);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TestLinkLabel::cleanup()
{
    QToolTip::hideText();
    m_window.reset();
}

void TestLinkLabel::show(const QString &html)
{
    setWrappedText(m_label, html);
    m_label->show();
    m_label->grab();
}

void TestLinkLabel::showLink(const QString &attributes)
{
    show(QStringLiteral("<p><a %1>点这里点这里点这里</a></p>").arg(attributes));
}

void TestLinkLabel::use(Way way)
{
    switch (way) {
    case Way::Mouse:
        QTest::mouseClick(m_label, Qt::LeftButton, Qt::NoModifier, linkPlace());
        QTest::mouseDClick(m_label, Qt::LeftButton, Qt::NoModifier, linkPlace());
        break;
    case Way::Keyboard:
        m_label->setFocus(Qt::TabFocusReason);
        QTest::keyClick(m_label, Qt::Key_Tab);
        QTest::keyClick(m_label, Qt::Key_Return);
        break;
    case Way::ScreenReader:
        QAccessibleInterface *reader = QAccessible::queryAccessibleInterface(m_label);
        QVERIFY(reader != nullptr);
        if (QAccessibleActionInterface *actions = reader->actionInterface()) {
            for (const QString &action : actions->actionNames()) {
                actions->doAction(action);
            }
        }
        break;
    }
}

void TestLinkLabel::hover(const QPoint &place)
{
    QMouseEvent move(QEvent::MouseMove, place, m_label->mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_label, &move);
}

void TestLinkLabel::webAndMail_areOpened_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("opened");
    const auto row = [](const char *html, const char *opened) {
        QTest::newRow(html) << QString::fromLatin1(html) << QString::fromLatin1(opened);
    };
    row("href=\"http://example.com/a\"", "http://example.com/a");
    row("href=\"https://example.com/a?b=1&amp;c=2\"", "https://example.com/a?b=1&c=2");
    row("href=\"HTTP://example.com\"", "http://example.com");
    row("HREF=http://example.com", "http://example.com");
    row("href=\"mailto:it@example.com\"", "mailto:it@example.com");
    row("href=\"http&#58;//example.com\"", "http://example.com");
    row("name=\"c:\" href=\"http://example.com\"", "http://example.com");
    row("href=\"http://example.com\" target=\"c:/x\"", "http://example.com");
}

void TestLinkLabel::webAndMail_areOpened()
{
    QFETCH(QString, html);
    QFETCH(QString, opened);
    for (const Way way : {Way::Mouse, Way::Keyboard}) {
        const OpenedLinks links({QUrl(opened).scheme()});
        const LogCapture log;
        init(); // a new text leaves the keyboard where it was in the old one
        showLink(html);
        use(way);
        QVERIFY(!links.addresses().isEmpty());
        QCOMPARE(links.addresses().first(), opened);
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(complaints(log), QStringList());
    }
}

void TestLinkLabel::whatIsElse_isNamedInTheLog_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *address) {
        QTest::newRow(address) << attribute(QString::fromLatin1(address))
                               << QString::fromLatin1(address);
    };
    row("c:/windows/notepad.exe");
    row("C:\\windows\\notepad.exe");
    row("z:x");
    row("calc.exe");
    row("../calc.exe");
    row("//host/share/calc.exe");
    row("\\\\host\\share\\calc.exe");
    row("file:///etc/passwd");
    row("FILE:///etc/passwd");
    row("javascript:alert(1)");
    row("ms-msdt:/id x");
    row("ms-cxh-full://0");
    row("ms-anything-new:x");
    row("data:text/html,x");
    row("ftp://example.com/");
    row("tel:110");
    row("http:calc.exe");
    row("http:///c:/x");
    row(" http://example.com");
    row("%68ttp://example.com");
    row("#anchor");
    const auto named = [](const char *name, const char *html, const char *address) {
        QTest::newRow(name) << QString::fromLatin1(html) << QString::fromLatin1(address);
    };
    named("entity", "href=\"c&#58;/x\"", "c:/x");
    named("without quotes", "href=c:/x", "c:/x");
    named("single quotes", "href='c:/x'", "c:/x");
    named("upper case attribute", "HREF=\"c:/x\"", "c:/x");
    named("beside a name", "name=\"http://example.com\" href=\"c:/x\"", "c:/x");
    named("two, the last one counts", "href=\"http://example.com\" href=\"c:/x\"", "c:/x");
    named("control character", "href=\"&#1;http://example.com\"", "\\u{1}http://example.com");
    named("direction", "href=\"&#8238;http://example.com\"", "\\u{202E}http://example.com");
    named("line end", "href=\"java\nscript:x\"", "java\\u{A}script:x");
}

void TestLinkLabel::whatIsElse_isNamedInTheLog()
{
    QFETCH(QString, html);
    QFETCH(QString, address);
    for (const Way way : {Way::Mouse, Way::Keyboard}) {
        const OpenedLinks links({QString(), QUrl(address).scheme()});
        const LogCapture log;
        init(); // a new text leaves the keyboard where it was in the old one
        showLink(html);
        use(way);
        QCOMPARE(links.addresses(), QStringList());
        QCOMPARE(complaints(log), QStringList()); // what the platform would say when asked
        QVERIFY(!log.lines().isEmpty());
        QCOMPARE(log.lines().first(), QStringLiteral("warning: link is not opened: ") + address);
    }
    const OpenedLinks links({QString(), QUrl(address).scheme()});
    const LogCapture log;
    init();
    showLink(html);
    use(Way::ScreenReader);
    QCOMPARE(links.addresses(), QStringList());
    QCOMPARE(complaints(log), QStringList());
}

void TestLinkLabel::expectOnly(const QStringList &opened, const QStringList &logged)
{
    const OpenedLinks links({QStringLiteral("c"), QStringLiteral("http"), QString()});
    const LogCapture log;
    QTest::mouseClick(m_label, Qt::LeftButton, Qt::NoModifier, linkPlace());
    QCOMPARE(links.addresses(), opened);
    QCOMPARE(log.lines(), logged);
    QCOMPARE(complaints(log), QStringList());
}

void TestLinkLabel::aPictureInALink_isCaughtToo()
{
    const LogCapture loading;
    show(QStringLiteral("<p><a href=\"c:/x\"><img src=\"x\" width=\"200\" height=\"20\"></a></p>"));
    expectOnly({}, {QStringLiteral("warning: link is not opened: c:/x")});
}

void TestLinkLabel::aLinkInALink_isCaughtToo()
{
    show(QStringLiteral("<p><a href=\"http://a/\"><a href=\"c:/x\">点这里点这里</a></a></p>"));
    expectOnly({}, {QStringLiteral("warning: link is not opened: c:/x")});
    show(QStringLiteral(
        "<p><a href=\"c:/x\"><b><a href=\"http://a/\">点这里点这里</a></b></a></p>"));
    expectOnly({QStringLiteral("http://a/")}, {});
}

void TestLinkLabel::areas_openNothing()
{
    show(QStringLiteral("<p><map name=\"m\"><area href=\"c:/x\" coords=\"0,0,400,400\"></map>"
                        "点这里点这里点这里</p>"));
    expectOnly({}, {});
}

void TestLinkLabel::anchorsWithoutAnAddress_openNothing()
{
    showLink(QStringLiteral("name=\"c:/x\""));
    expectOnly({}, {});
    showLink(QStringLiteral("href=\"\""));
    expectOnly({}, {});
}

void TestLinkLabel::aNewText_isCaughtToo()
{
    showLink(attribute(QStringLiteral("http://a/")));
    m_label->setText(QStringLiteral("plain"));
    m_label->setText(QStringLiteral("<p><a href=\"c:/x\">点这里点这里</a></p>"));
    m_label->setOpenExternalLinks(true);
    m_label->grab();
    expectOnly({}, {QStringLiteral("warning: link is not opened: c:/x")});
}

void TestLinkLabel::withoutExternalLinks_nothingIsOpened()
{
    m_label->setOpenExternalLinks(false);
    showLink(attribute(QStringLiteral("http://a/")));
    expectOnly({}, {QStringLiteral("warning: link is not opened: http://a/")});
    showLink(attribute(QStringLiteral("c:/x")));
    expectOnly({}, {QStringLiteral("warning: link is not opened: c:/x")});
}

void TestLinkLabel::externalLinks_stayObservable()
{
    showLink(attribute(QStringLiteral("c:/x")));
    use(Way::Mouse);
    QVERIFY(m_label->openExternalLinks());
    QVERIFY(m_label->property("openExternalLinks").toBool());
}

void TestLinkLabel::hoveredLink_saysWhereItLeads()
{
    showLink(attribute(QStringLiteral("http://example.com/a%20b")));
    QVERIFY(m_label->toolTip().isEmpty());
    hover(linkPlace());
    QCOMPARE(m_label->toolTip(), QStringLiteral("http://example.com/a%20b"));
    hover({m_label->width() - 1, m_label->height() - 1});
    QVERIFY(m_label->toolTip().isEmpty());
}

void TestLinkLabel::keyboardFocus_saysWhereItLeads()
{
    show(QStringLiteral("<p>前言 <a href=\"http://one.example/\">一</a> 与 "
                        "<a href=\"c:/two\">二</a></p>"));
    m_label->setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_label, Qt::Key_Tab);
    QCOMPARE(QToolTip::text(), QStringLiteral("http://one.example/"));
    QTest::keyClick(m_label, Qt::Key_Tab);
    QCOMPARE(QToolTip::text(), QStringLiteral("c:/two"));
    QTest::keyClick(m_label, Qt::Key_Tab);
    QTRY_VERIFY(!QToolTip::isVisible());
}

void TestLinkLabel::deceivingAddress_isShownEscaped()
{
    showLink(QStringLiteral("href=\"http://a/&#8238;gpj.exe\""));
    hover(linkPlace());
    QCOMPARE(m_label->toolTip(), QStringLiteral("http://a/\\u{202E}gpj.exe"));
}

void TestLinkLabel::addressLikeMarkup_isShownAsItIs()
{
    showLink(QStringLiteral("href=\"&lt;b&gt;http://a/&lt;/b&gt;\""));
    hover(linkPlace());
    QTextDocument shown;
    shown.setHtml(m_label->toolTip());
    QCOMPARE(shown.toPlainText(), QStringLiteral("<b>http://a/</b>"));
}

QTEST_MAIN(TestLinkLabel)
#include "tst_linklabel.moc"
