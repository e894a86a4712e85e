#include "tests/support/logcapture.h"
#include "tests/ui/dialogs/dialogtest.h"
#include "tests/ui/support/openedlinks.h"
#include "ui/dialogs/opensoulicense.h"

#include <QHelpEvent>
#include <QTest>
#include <QTextEdit>
#include <QToolTip>

/// Links in the licence text lead nowhere.
class TestLicenceLinks : public DialogTest
{
    Q_OBJECT

private slots:
    void clickedLink_isNamedInTheLog_data();
    void clickedLink_isNamedInTheLog();
    void selectingALink_saysNothing();
    void clickBesideALink_saysNothing();
    void keyboard_usesNoLink();
    void hoveredLink_saysWhereItLeads();
    void nothingElse_isReadFromAFile();
};

namespace {

QPoint placeOf(const QTextEdit *text)
{
    return text->cursorRect().center() + QPoint(10, 0);
}

} // namespace

void TestLicenceLinks::clickedLink_isNamedInTheLog_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"c:/windows/notepad.exe", "notepad.exe", "file:///etc/passwd",
                                "javascript:alert(1)", "https://other.example/"}) {
        QTest::newRow(address) << QString::fromLatin1(address);
    }
}

void TestLicenceLinks::clickedLink_isNamedInTheLog()
{
    QFETCH(QString, address);
    writeLicence(QStringLiteral("<a href=\"%1\">linklinklink</a>").arg(address).toLocal8Bit());
    openAbout();
    QTextEdit *text = view(openLicence());
    const OpenedLinks links({QString(), QUrl(address).scheme()});
    const LogCapture log;
    QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, placeOf(text));
    QCOMPARE(links.addresses(), QStringList());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("warning: link is not opened: ") + address});
    QCOMPARE(complaints(log), QStringList());
}

void TestLicenceLinks::selectingALink_saysNothing()
{
    writeLicence("<a href=\"c:/x\">linklinklink</a>");
    openAbout();
    QTextEdit *text = view(openLicence());
    const LogCapture log;
    const QPoint place = placeOf(text);
    QTest::mousePress(text->viewport(), Qt::LeftButton, {}, place);
    QMouseEvent move(QEvent::MouseMove, place + QPoint(20, 0),
                     text->viewport()->mapToGlobal(place + QPoint(20, 0)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(text->viewport(), &move);
    QTest::mouseRelease(text->viewport(), Qt::LeftButton, {}, place + QPoint(20, 0));
    QVERIFY(text->textCursor().hasSelection());
    QCOMPARE(log.lines(), QStringList());
}

void TestLicenceLinks::clickBesideALink_saysNothing()
{
    writeLicence("<a href=\"c:/x\">link</a> and no link here");
    openAbout();
    QTextEdit *text = view(openLicence());
    const LogCapture log;
    QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, placeOf(text) + QPoint(60, 0));
    QTest::mouseClick(text->viewport(), Qt::RightButton, {}, placeOf(text));
    QCOMPARE(log.lines(), QStringList());
}

void TestLicenceLinks::keyboard_usesNoLink()
{
    writeLicence("<a href=\"c:/x\">link</a>");
    openAbout();
    QTextEdit *text = view(openLicence());
    text->setFocus(Qt::TabFocusReason);
    const OpenedLinks links({QStringLiteral("c")});
    const LogCapture log;
    QTest::keyClick(text, Qt::Key_Return);
    QTest::keyClick(text, Qt::Key_Tab);
    QCOMPARE(links.addresses(), QStringList());
    QCOMPARE(log.lines(), QStringList());
}

void TestLicenceLinks::hoveredLink_saysWhereItLeads()
{
    writeLicence("<a href=\"c:/x\">link</a> and no link here");
    openAbout();
    QTextEdit *text = view(openLicence());
    const auto hover = [text](const QPoint &place) {
        QHelpEvent help(QEvent::ToolTip, place, text->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(text->viewport(), &help);
    };
    hover(placeOf(text));
    QCOMPARE(QToolTip::text(), QStringLiteral("c:/x"));
    hover(placeOf(text) + QPoint(60, 0));
    QTRY_VERIFY(!QToolTip::isVisible());
}

void TestLicenceLinks::nothingElse_isReadFromAFile()
{
    writeLicence("text");
    openAbout();
    QTextEdit *text = view(openLicence());
    const QUrl readable = QUrl::fromLocalFile(QCoreApplication::applicationFilePath());
    for (const auto type : {QTextDocument::HtmlResource, QTextDocument::StyleSheetResource}) {
        QVERIFY(!text->loadResource(type, readable).isValid());
    }
    const QVariant picture = text->loadResource(QTextDocument::ImageResource, readable);
    QCOMPARE(picture.value<QImage>().size(), QSize(1, 1));
}

QTEST_MAIN(TestLicenceLinks)
#include "tst_licencelinks.moc"
