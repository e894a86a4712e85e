#include "tests/support/logcapture.h"
#include "tests/ui/dialogs/dialogtest.h"
#include "ui/dialogs/licensetext.h"
#include "ui/dialogs/opensoulicense.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGraphicsDropShadowEffect>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTcpServer>
#include <QTest>
#include <QTextEdit>

/// The licence dialog, opened from the About dialog.
class TestOpenSouLicense : public DialogTest
{
    Q_OBJECT

private slots:
    void licence_isShown();
    void licence_form();
    void licence_liesBesideTheConfiguration_inBothLayouts_data();
    void licence_liesBesideTheConfiguration_inBothLayouts();
    void licence_buttonsClose_data();
    void licence_buttonsClose();
    void escape_closesTheLicence_aboutStays();
    void licenceButton_doubleClick_opensOne();
    void licenceButton_isBackAfterASecond();
    void licenceFileMissing_warns_andTheButtonStays();
    void licenceFileIsAFolder_warns();
    void licenceFileMissing_thenThere_opens();
    void licenceFileEmpty_opensEmpty();
    void licenceFileOfFiveMegabytes_opens();
    void licenceFileOfOneEndlessWord_opens();
    void licenceTags_areRendered();
    void licenceText_isReadInTheSystemsCodePage();
    void licenceScript_neitherRunsNorShows();
    void licencePictures_areNeverFetched();
    void licenceText_canOnlyBeSelected();
    void aboutGoesWhileTheLicenceIsOpen();
    void shippedLicence_isPlainAscii_andNamesWhatIsUsed();
};

void TestOpenSouLicense::licence_isShown()
{
    writeLicence("first line<br>second line");
    openAbout();
    const LogCapture log;
    OpenSouLicense *licence = openLicence();
    QVERIFY(licence->isModal());
    QVERIFY(licence->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(licence->parentWidget(), m_about.get());
    QCOMPARE(view(licence)->toPlainText(), QStringLiteral("first line\nsecond line"));
    QCOMPARE(log.lines(), QStringList{QStringLiteral("debug: Enter on_opensrclicense_clicked")});
    QCOMPARE(complaints(log), QStringList());
}

void TestOpenSouLicense::licence_form()
{
    writeLicence("text");
    openAbout();
    OpenSouLicense *licence = openLicence();
    const auto style = [licence](const char *name) {
        return licence->findChild<QWidget *>(QLatin1String(name))->styleSheet();
    };
    QCOMPARE(licence->windowFlags() & ~Qt::WindowCloseButtonHint, dialogFlags);
    QVERIFY(licence->testAttribute(Qt::WA_TranslucentBackground));
    auto *shadow = licence->findChild<QGraphicsDropShadowEffect *>();
    QCOMPARE(shadow->offset(), QPointF(0, 0));
    QCOMPARE(shadow->color(), QColor(127, 127, 127, 127));
    QCOMPARE(shadow->blurRadius(), 5.0);
    QCOMPARE(style("logoButton"),
             QStringLiteral("QPushButton{border-image:url(:/Images/logo-16.png);}"));
    QCOMPARE(licence->findChild<QLabel *>(QStringLiteral("titleLabel"))->text(),
             QStringLiteral("Miravel用到的开源软件："));
    QCOMPARE(style("titleLabel"),
             QStringLiteral("font:12px \"Arail,Microsoft YaHei\";color: black;"));
    QCOMPARE(licence->findChild<QLabel *>(QStringLiteral("headingLabel"))->text(),
             QStringLiteral("开源协议"));
    QCOMPARE(style("headingLabel"),
             QStringLiteral("font:12px \"Arail,Microsoft YaHei\";color: rgb(0,120,215);"));
    QCOMPARE(licence->findChild<QScrollArea *>()->styleSheet(),
             QStringLiteral("QScrollBar:vertical{background:#FFFFFF;width:4px;}QScrollBar::handle:"
                            "vertical{background:#d9dee6;border-radius:2px;min-height:50px;}"
                            "QScrollArea{border:2px;color:blue;}"));
    auto *affirm = licence->findChild<QPushButton *>(QStringLiteral("affirmButton"));
    QCOMPARE(affirm->text(), QStringLiteral("确定"));
    QCOMPARE(affirm->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(affirm->styleSheet(),
             QStringLiteral("QPushButton{background-color:rgb(42, 100, 244);color:white;font:bold "
                            "12px Microsoft YaHei;border:none;}QPushButton:hover{background-color:"
                            "rgb(51, 109, 255);}QPushButton:pressed{background-color:rgb(38, 95, "
                            "237);}QPushButton:checked{background-color:rgb(143, 155, 182);}"));
    QCOMPARE(
        licence->findChild<QPushButton *>(QStringLiteral("opensrclicense_close"))->cursor().shape(),
        Qt::PointingHandCursor);
    QCOMPARE(view(licence)->verticalScrollBar()->sizeHint().width(), 4);
}

void TestOpenSouLicense::licence_liesBesideTheConfiguration_inBothLayouts_data()
{
    QTest::addColumn<QString>("callerType");
    QTest::addColumn<QString>("path");
    QTest::newRow("caller") << QStringLiteral("vdi")
                            << QStringLiteral("../config/OpenSourceLicense.txt");
    QTest::newRow("shortcut") << QString() << QStringLiteral("config/OpenSourceLicense.txt");
}

void TestOpenSouLicense::licence_liesBesideTheConfiguration_inBothLayouts()
{
    QFETCH(QString, callerType);
    QFETCH(QString, path);
    writeFile(path, "the right one");
    openAbout(callerType);
    QCOMPARE(view(openLicence())->toPlainText(), QStringLiteral("the right one"));
}

void TestOpenSouLicense::licence_buttonsClose_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("close") << QStringLiteral("opensrclicense_close");
    QTest::newRow("confirm") << QStringLiteral("affirmButton");
}

void TestOpenSouLicense::licence_buttonsClose()
{
    QFETCH(QString, name);
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    licence->findChild<QPushButton *>(name)->click();
    QTRY_VERIFY(licence.isNull());
    QVERIFY(m_about->isVisible());
}

void TestOpenSouLicense::escape_closesTheLicence_aboutStays()
{
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    QVERIFY(QTest::qWaitForWindowActive(licence));
    QTest::keyClick(view(licence), Qt::Key_Escape);
    QTRY_VERIFY(licence.isNull());
    QVERIFY(m_about->isVisible());
}

void TestOpenSouLicense::licenceButton_doubleClick_opensOne()
{
    writeLicence("text");
    openAbout();
    QPushButton *licence = button(QStringLiteral("licenseButton"));
    QTest::mouseClick(licence, Qt::LeftButton);
    QTest::mouseClick(licence, Qt::LeftButton);
    QCOMPARE(licences().size(), 1);
    // Not even after the first one was closed at once.
    licences().at(0)->close();
    QTRY_COMPARE(licences().size(), 0);
    QTest::mouseClick(licence, Qt::LeftButton);
    QCOMPARE(licences().size(), 0);
}

void TestOpenSouLicense::licenceButton_isBackAfterASecond()
{
    writeLicence("text");
    openAbout();
    QPushButton *licence = button(QStringLiteral("licenseButton"));
    QElapsedTimer time;
    time.start();
    openLicence()->close();
    QVERIFY(!licence->isEnabled());
    QTRY_VERIFY(licence->isEnabled());
    QVERIFY(time.elapsed() >= 900); // coarse timers may come early by a twentieth
    QVERIFY(openLicence()->isVisible());
}

void TestOpenSouLicense::licenceFileMissing_warns_andTheButtonStays()
{
    openAbout();
    const LogCapture log;
    clickLicence();
    clickLicence();
    QCOMPARE(log.lines(),
             (QStringList{QStringLiteral("debug: Enter on_opensrclicense_clicked"), cannotOpen,
                          QStringLiteral("debug: Enter on_opensrclicense_clicked"), cannotOpen}));
    QVERIFY(button(QStringLiteral("licenseButton"))->isEnabled());
    QCOMPARE(licences().size(), 1);
    QVERIFY(!licences().at(0)->isVisible());
}

void TestOpenSouLicense::licenceFileIsAFolder_warns()
{
    QVERIFY(QDir().mkpath(QStringLiteral("../config/OpenSourceLicense.txt")));
    openAbout();
    const LogCapture log;
    clickLicence();
    QCOMPARE(log.lines().last(), cannotOpen);
}

void TestOpenSouLicense::licenceFileMissing_thenThere_opens()
{
    openAbout();
    clickLicence();
    writeLicence("now there");
    QCOMPARE(view(openLicence())->toPlainText(), QStringLiteral("now there"));
}

void TestOpenSouLicense::licenceFileEmpty_opensEmpty()
{
    writeLicence(QByteArray());
    openAbout();
    QCOMPARE(view(openLicence())->toPlainText(), QString());
}

void TestOpenSouLicense::licenceFileOfFiveMegabytes_opens()
{
    QByteArray text("<p>begin</p>\n");
    const QByteArray paragraph("<p>Permission is granted to <b>anybody</b> to use this.</p>\n");
    while (text.size() < 5 * 1024 * 1024) {
        text += paragraph;
    }
    writeLicence(text + "<p>end</p>");
    openAbout();
    const QString shown = view(openLicence())->toPlainText();
    QVERIFY(shown.startsWith(QLatin1String("begin")));
    QVERIFY(shown.endsWith(QLatin1String("end")));
}

void TestOpenSouLicense::licenceFileOfOneEndlessWord_opens()
{
    const QByteArray word(1024 * 1024, 'x');
    writeLicence(word);
    openAbout();
    // Laid out in one piece it would take minutes: the test program would not come to its end.
    OpenSouLicense *licence = openLicence();
    QVERIFY(QTest::qWaitForWindowExposed(licence));
    QVERIFY(view(licence)->toPlainText().remove(QChar(0x200b)) == QLatin1String(word));
    QCOMPARE(view(licence)->horizontalScrollBar()->maximum(), 0);
}

void TestOpenSouLicense::licenceTags_areRendered()
{
    writeLicence("<h1>Title</h1><p>a <b>bold</b> word &amp; a &lt;sign&gt;</p>");
    openAbout();
    QTextEdit *text = view(openLicence());
    QCOMPARE(text->toPlainText(), QStringLiteral("Title\na bold word & a <sign>"));
    QTextCursor cursor(text->document());
    cursor.setPosition(text->toPlainText().indexOf(QLatin1String("bold")) + 2);
    QCOMPARE(cursor.charFormat().fontWeight(), static_cast<int>(QFont::Bold));
}

void TestOpenSouLicense::licenceText_isReadInTheSystemsCodePage()
{
    const QString text = QStringLiteral("许可 é");
    writeLicence(text.toLocal8Bit());
    openAbout();
    QCOMPARE(view(openLicence())->toPlainText(), QString::fromLocal8Bit(text.toLocal8Bit()));
}

void TestOpenSouLicense::licenceScript_neitherRunsNorShows()
{
    writeLicence("<p>before</p><script>document.write('written')</script>"
                 "<p onclick=\"alert(1)\">after</p><a href=\"javascript:alert(1)\">link</a>");
    openAbout();
    const QString shown = view(openLicence())->toPlainText();
    QVERIFY(shown.contains(QLatin1String("before")));
    QVERIFY(shown.contains(QLatin1String("after")));
    QVERIFY(!shown.contains(QLatin1String("written")));
}

void TestOpenSouLicense::licencePictures_areNeverFetched()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QImage picture(300, 200, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString file = m_folder->filePath(QStringLiteral("picture.png"));
    QVERIFY(picture.save(file));
    writeLicence(QStringLiteral("<img src=\"http://127.0.0.1:%1/a.png\"><img src=\"%2\">"
                                "<img src=\"file://%2\"><img src=\":/Images/Sysico.png\">"
                                "<link rel=\"stylesheet\" href=\"%2\"><p>text</p>")
                     .arg(server.serverPort())
                     .arg(file)
                     .toLocal8Bit());
    openAbout();
    OpenSouLicense *licence = openLicence();
    QVERIFY(QTest::qWaitForWindowExposed(licence));
    const QImage shown = view(licence)->grab().toImage();
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            QVERIFY(shown.pixelColor(x, y) != QColor(Qt::red));
        }
    }
    QVERIFY(view(licence)->document()->size().height() < 200);
    QVERIFY(!server.hasPendingConnections());
}

void TestOpenSouLicense::licenceText_canOnlyBeSelected()
{
    writeLicence("<a href=\"https://other.example/\">link</a>");
    openAbout();
    QTextEdit *text = view(openLicence());
    QCOMPARE(text->textInteractionFlags(), Qt::TextInteractionFlags(Qt::TextSelectableByMouse));
    QTest::keyClicks(text, QStringLiteral("typed"));
    QCOMPARE(text->toPlainText(), QStringLiteral("link"));
    QTest::mouseDClick(text->viewport(), Qt::LeftButton, {}, text->cursorRect().center());
    QCOMPARE(text->textCursor().selectedText(), QStringLiteral("link"));
}

void TestOpenSouLicense::aboutGoesWhileTheLicenceIsOpen()
{
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    m_about.reset();
    QVERIFY(licence.isNull());
}

void TestOpenSouLicense::shippedLicence_isPlainAscii_andNamesWhatIsUsed()
{
    QFile file(QStringLiteral(MIRAVEL_LICENCE_FILE));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    for (const char byte : text) {
        QVERIFY(byte == '\n' || (byte >= ' ' && byte <= '~'));
    }
    writeLicence(text);
    openAbout();
    const QString shown = view(openLicence())->toPlainText();
    for (const char *name :
         {"Qt 5.15", "OpenSSL 3", "libstdc++", "winpthreads", "GNU LESSER GENERAL PUBLIC LICENSE",
          "GCC RUNTIME LIBRARY EXCEPTION", "Apache License"}) {
        QVERIFY2(shown.contains(QLatin1String(name)), name);
    }
    QVERIFY(!shown.contains(QLatin1String("<p>")));
}

QTEST_MAIN(TestOpenSouLicense)
#include "tst_opensoulicense.moc"
