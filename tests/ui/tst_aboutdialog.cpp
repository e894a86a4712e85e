#include "app/apppaths.h"
#include "resources/resources.h"
#include "tests/service/support/logcapture.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/dialogs/licensetext.h"
#include "ui/dialogs/opensoulicense.h"
#include "ui/dialogs/rightsnotice.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

namespace {

constexpr Qt::WindowFlags dialogFlags
    = Qt::Tool | Qt::MSWindowsFixedSizeDialogHint | Qt::FramelessWindowHint;

const QString cannotOpen = QStringLiteral("warning: Couldn't open json file.");

void writeFile(const QString &path, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

/// What the toolkit complained about, but for what its platform without a screen cannot do.
QStringList complaints(const LogCapture &log)
{
    QStringList lines = log.foreignLines();
    const auto platformOnly = [](const QString &line) {
        return line.contains(QLatin1String("This plugin does not support"));
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), platformOnly), lines.end());
    return lines;
}

} // namespace

/// The About dialog and the licence dialog that it opens.
class TestAboutDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void form_pictures();
    void version_isReadAndLogged_data();
    void version_isReadAndLogged();
    void version_missing_isEmpty();
    void version_withMarkup_isShownLiterally();
    void unknownLayout_noVersion_theButtonOnlyWarns();
    void rightsNotice_followsTheSign();
    void closeButton_closes();
    void escape_closesAbout();
    void deletesItself_whenItsParentOpensItAsStated();
    void dragging_withTheLeftButton();
    void dragging_otherButtonsDoNothing();
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

private:
    void openAbout(const QString &callerType = QStringLiteral("vdi"));
    void writeLicence(const QByteArray &text) const;
    void clickLicence() const { button(QStringLiteral("licenseButton"))->click(); }
    [[nodiscard]] QPushButton *button(const QString &name) const;
    [[nodiscard]] QString styleOf(const QString &name) const;
    [[nodiscard]] QList<OpenSouLicense *> licences() const;
    [[nodiscard]] OpenSouLicense *openLicence() const;
    [[nodiscard]] static QTextEdit *view(const QWidget *licence);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
    std::unique_ptr<AboutDialog> m_about;
};

void TestAboutDialog::initTestCase()
{
    initResources();
    m_before = QDir::currentPath();
}

void TestAboutDialog::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("bin")));
    QDir::setCurrent(m_folder->filePath(QStringLiteral("bin")));
    writeFile(QStringLiteral("../config/Miravel.ini"), "[Version]\nversion=3.2.1\n");
}

void TestAboutDialog::cleanup()
{
    m_about.reset();
    QDir::setCurrent(m_before);
    m_folder.reset();
}

void TestAboutDialog::openAbout(const QString &callerType)
{
    initAppPaths(callerType);
    m_about = std::make_unique<AboutDialog>(nullptr);
    m_about->show();
    QVERIFY(QTest::qWaitForWindowActive(m_about.get()));
}

void TestAboutDialog::writeLicence(const QByteArray &text) const
{
    writeFile(m_folder->filePath(QStringLiteral("config/OpenSourceLicense.txt")), text);
}

QPushButton *TestAboutDialog::button(const QString &name) const
{
    return m_about->findChild<QPushButton *>(name);
}

QString TestAboutDialog::styleOf(const QString &name) const
{
    return m_about->findChild<QWidget *>(name)->styleSheet();
}

QList<OpenSouLicense *> TestAboutDialog::licences() const
{
    return m_about->findChildren<OpenSouLicense *>();
}

OpenSouLicense *TestAboutDialog::openLicence() const
{
    clickLicence();
    OpenSouLicense *licence = m_about->findChild<OpenSouLicense *>();
    if (!licence || !licence->isVisible()) {
        qFatal("no licence dialog");
    }
    return licence;
}

QTextEdit *TestAboutDialog::view(const QWidget *licence)
{
    return licence->findChild<QTextEdit *>();
}

void TestAboutDialog::form()
{
    openAbout();
    QCOMPARE(m_about->windowFlags() & ~Qt::WindowCloseButtonHint, dialogFlags);
    QVERIFY(m_about->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_about->layout()->contentsMargins(), QMargins(5, 5, 5, 5));
    auto *product = m_about->findChild<QLabel *>(QStringLiteral("productLabel"));
    const QString blue
        = QStringLiteral("QLabel{color:rgb(0,120,215); background-color:transparent;}");
    QCOMPARE(product->text(), QStringLiteral("Miravel"));
    QCOMPARE(product->styleSheet(), blue);
    QCOMPARE(styleOf(QStringLiteral("versionLabel")), blue);
    QCOMPARE(styleOf(QStringLiteral("noticeLabel")),
             QStringLiteral("color: gray; font: 12px \"Arail,Microsoft YaHei\";"));
    QPushButton *licence = button(QStringLiteral("licenseButton"));
    QCOMPARE(licence->text(), QStringLiteral("开源许可"));
    QCOMPARE(licence->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(licence->styleSheet(),
             QStringLiteral("QPushButton{background-color:transparent;color:rgb(0,120,215);"
                            "font:12px Microsoft YaHei;border:none;}"));
    QPushButton *close = button(QStringLiteral("about_close"));
    QCOMPARE(close->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(close->accessibleName(), QStringLiteral("关闭"));
    QCOMPARE(close->toolTip(), QStringLiteral("关闭"));
}

void TestAboutDialog::form_pictures()
{
    openAbout();
    QCOMPARE(styleOf(QStringLiteral("iconLabel")),
             QStringLiteral("border-image:url(:/Images/Sysico.png);background-color:transparent;"));
    QCOMPARE(
        styleOf(QStringLiteral("makerLabel")),
        QStringLiteral("border-image:url(:/Images/Ostrelico.png);background-color:transparent;"));
    QCOMPARE(styleOf(QStringLiteral("dividerLabel")),
             QStringLiteral("QLabel{border-width:0;border-style:outset;background-color: rgb(80, "
                            "80, 80);}"));
    int transparent = 0;
    const QList<QFrame *> frames = m_about->findChildren<QFrame *>();
    for (const QFrame *frame : frames) {
        transparent += frame->styleSheet()
                            == QLatin1String("QFrame{border-width:0;border-style:outset;"
                                             "background-color:transparent;}")
                         ? 1
                         : 0;
    }
    QCOMPARE(transparent, 4);
    // The rows of the close button's strip are really drawn.
    const QImage normal = button(QStringLiteral("about_close"))->grab().toImage();
    button(QStringLiteral("about_close"))->setDown(true);
    QVERIFY(button(QStringLiteral("about_close"))->grab().toImage() != normal);
}

void TestAboutDialog::version_isReadAndLogged_data()
{
    QTest::addColumn<QString>("callerType");
    QTest::addColumn<QString>("path");
    QTest::newRow("caller") << QStringLiteral("ombra") << QStringLiteral("../config/Miravel.ini");
    QTest::newRow("shortcut") << QString() << QStringLiteral("config/Miravel.ini");
}

void TestAboutDialog::version_isReadAndLogged()
{
    QFETCH(QString, callerType);
    QFETCH(QString, path);
    writeFile(path, "[Version]\nversion=7.10.4 beta\n");
    const LogCapture log;
    openAbout(callerType);
    QCOMPARE(m_about->findChild<QLabel *>(QStringLiteral("versionLabel"))->text(),
             QStringLiteral("7.10.4 beta"));
    QCOMPARE(log.lines(), QStringList{QStringLiteral("info: Current version = 7.10.4 beta")});
    QCOMPARE(complaints(log), QStringList());
}

void TestAboutDialog::version_missing_isEmpty()
{
    QVERIFY(QFile::remove(QStringLiteral("../config/Miravel.ini")));
    const LogCapture log;
    openAbout();
    QCOMPARE(m_about->findChild<QLabel *>(QStringLiteral("versionLabel"))->text(), QString());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("info: Current version = ")});
}

void TestAboutDialog::version_withMarkup_isShownLiterally()
{
    writeFile(QStringLiteral("../config/Miravel.ini"), "[Version]\nversion=\"<b>1</b>\"\n");
    openAbout();
    auto *label = m_about->findChild<QLabel *>(QStringLiteral("versionLabel"));
    QCOMPARE(label->text(), QStringLiteral("<b>1</b>"));
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void TestAboutDialog::unknownLayout_noVersion_theButtonOnlyWarns()
{
    writeFile(QStringLiteral("config/OpenSourceLicense.txt"), "text");
    initAppPaths(QString());
    miravelVersion = QStringLiteral("ELSEWHERE");
    const LogCapture log;
    m_about = std::make_unique<AboutDialog>(nullptr);
    m_about->show();
    QCOMPARE(m_about->findChild<QLabel *>(QStringLiteral("versionLabel"))->text(), QString());
    clickLicence();
    QCOMPARE(log.lines().last(), cannotOpen);
    QCOMPARE(complaints(log), QStringList());
    QVERIFY(!licences().at(0)->isVisible());
    QVERIFY(button(QStringLiteral("licenseButton"))->isEnabled());
}

void TestAboutDialog::rightsNotice_followsTheSign()
{
    openAbout();
    const QString notice = m_about->findChild<QLabel *>(QStringLiteral("noticeLabel"))->text();
    QVERIFY(notice.size() > 1);
    QCOMPARE(notice, QStringLiteral("©") + rightsNotice());
}

void TestAboutDialog::closeButton_closes()
{
    openAbout();
    button(QStringLiteral("about_close"))->click();
    QVERIFY(!m_about->isVisible());
}

void TestAboutDialog::escape_closesAbout()
{
    openAbout();
    QTest::keyClick(m_about.get(), Qt::Key_Escape);
    QVERIFY(!m_about->isVisible());
}

void TestAboutDialog::deletesItself_whenItsParentOpensItAsStated()
{
    initAppPaths(QStringLiteral("vdi"));
    QWidget parent;
    parent.show();
    for (const bool byKey : {true, false}) {
        const QPointer<AboutDialog> about = new AboutDialog(&parent);
        about->setAttribute(Qt::WA_DeleteOnClose);
        about->setModal(true);
        about->show();
        QVERIFY(QTest::qWaitForWindowActive(about));
        if (byKey) {
            QTest::keyClick(about, Qt::Key_Escape);
        } else {
            about->findChild<QPushButton *>(QStringLiteral("about_close"))->click();
        }
        QTRY_VERIFY(about.isNull());
    }
    QVERIFY(parent.isVisible());
}

void TestAboutDialog::dragging_withTheLeftButton()
{
    writeLicence("text");
    openAbout();
    for (QWidget *dialog :
         {static_cast<QWidget *>(m_about.get()), static_cast<QWidget *>(openLicence())}) {
        dialog->move(20, 30);
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(15, 20), QPointF(15, 20),
                          QPointF(35.4, 50.4), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(dialog, &press);
        QMouseEvent drag(QEvent::MouseMove, QPointF(15, 20), QPointF(15, 20), QPointF(44.6, 42.5),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(dialog, &drag);
        QCOMPARE(dialog->pos(), QPoint(30, 23));
    }
}

void TestAboutDialog::dragging_otherButtonsDoNothing()
{
    openAbout();
    m_about->move(20, 30);
    const Qt::MouseButtons both = Qt::LeftButton | Qt::RightButton;
    for (const Qt::MouseButtons &held : {Qt::MouseButtons(Qt::RightButton), both}) {
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(15, 20), QPointF(35, 50),
                          Qt::RightButton, held, Qt::NoModifier);
        QApplication::sendEvent(m_about.get(), &press);
        QMouseEvent drag(QEvent::MouseMove, QPointF(95, 90), QPointF(115, 120), Qt::NoButton, held,
                         Qt::NoModifier);
        QApplication::sendEvent(m_about.get(), &drag);
        QCOMPARE(m_about->pos(), QPoint(20, 30));
    }
}

void TestAboutDialog::licence_isShown()
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

void TestAboutDialog::licence_form()
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

void TestAboutDialog::licence_liesBesideTheConfiguration_inBothLayouts_data()
{
    QTest::addColumn<QString>("callerType");
    QTest::addColumn<QString>("path");
    QTest::newRow("caller") << QStringLiteral("vdi")
                            << QStringLiteral("../config/OpenSourceLicense.txt");
    QTest::newRow("shortcut") << QString() << QStringLiteral("config/OpenSourceLicense.txt");
}

void TestAboutDialog::licence_liesBesideTheConfiguration_inBothLayouts()
{
    QFETCH(QString, callerType);
    QFETCH(QString, path);
    writeFile(path, "the right one");
    openAbout(callerType);
    QCOMPARE(view(openLicence())->toPlainText(), QStringLiteral("the right one"));
}

void TestAboutDialog::licence_buttonsClose_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("close") << QStringLiteral("opensrclicense_close");
    QTest::newRow("confirm") << QStringLiteral("affirmButton");
}

void TestAboutDialog::licence_buttonsClose()
{
    QFETCH(QString, name);
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    licence->findChild<QPushButton *>(name)->click();
    QTRY_VERIFY(licence.isNull());
    QVERIFY(m_about->isVisible());
}

void TestAboutDialog::escape_closesTheLicence_aboutStays()
{
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    QVERIFY(QTest::qWaitForWindowActive(licence));
    QTest::keyClick(view(licence), Qt::Key_Escape);
    QTRY_VERIFY(licence.isNull());
    QVERIFY(m_about->isVisible());
}

void TestAboutDialog::licenceButton_doubleClick_opensOne()
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

void TestAboutDialog::licenceButton_isBackAfterASecond()
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

void TestAboutDialog::licenceFileMissing_warns_andTheButtonStays()
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

void TestAboutDialog::licenceFileIsAFolder_warns()
{
    QVERIFY(QDir().mkpath(QStringLiteral("../config/OpenSourceLicense.txt")));
    openAbout();
    const LogCapture log;
    clickLicence();
    QCOMPARE(log.lines().last(), cannotOpen);
}

void TestAboutDialog::licenceFileMissing_thenThere_opens()
{
    openAbout();
    clickLicence();
    writeLicence("now there");
    QCOMPARE(view(openLicence())->toPlainText(), QStringLiteral("now there"));
}

void TestAboutDialog::licenceFileEmpty_opensEmpty()
{
    writeLicence(QByteArray());
    openAbout();
    QCOMPARE(view(openLicence())->toPlainText(), QString());
}

void TestAboutDialog::licenceFileOfFiveMegabytes_opens()
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

void TestAboutDialog::licenceFileOfOneEndlessWord_opens()
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

void TestAboutDialog::licenceTags_areRendered()
{
    writeLicence("<h1>Title</h1><p>a <b>bold</b> word &amp; a &lt;sign&gt;</p>");
    openAbout();
    QTextEdit *text = view(openLicence());
    QCOMPARE(text->toPlainText(), QStringLiteral("Title\na bold word & a <sign>"));
    QTextCursor cursor(text->document());
    cursor.setPosition(text->toPlainText().indexOf(QLatin1String("bold")) + 2);
    QCOMPARE(cursor.charFormat().fontWeight(), static_cast<int>(QFont::Bold));
}

void TestAboutDialog::licenceText_isReadInTheSystemsCodePage()
{
    const QString text = QStringLiteral("许可 é");
    writeLicence(text.toLocal8Bit());
    openAbout();
    QCOMPARE(view(openLicence())->toPlainText(), QString::fromLocal8Bit(text.toLocal8Bit()));
}

void TestAboutDialog::licenceScript_neitherRunsNorShows()
{
    writeLicence("<p>before</p><script>document.write('written')</script>"
                 "<p onclick=\"alert(1)\">after</p><a href=\"javascript:alert(1)\">link</a>");
    openAbout();
    const QString shown = view(openLicence())->toPlainText();
    QVERIFY(shown.contains(QLatin1String("before")));
    QVERIFY(shown.contains(QLatin1String("after")));
    QVERIFY(!shown.contains(QLatin1String("written")));
}

void TestAboutDialog::licencePictures_areNeverFetched()
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

void TestAboutDialog::licenceText_canOnlyBeSelected()
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

void TestAboutDialog::aboutGoesWhileTheLicenceIsOpen()
{
    writeLicence("text");
    openAbout();
    const QPointer<OpenSouLicense> licence = openLicence();
    m_about.reset();
    QVERIFY(licence.isNull());
}

void TestAboutDialog::shippedLicence_isPlainAscii_andNamesWhatIsUsed()
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

QTEST_MAIN(TestAboutDialog)
#include "tst_aboutdialog.moc"
