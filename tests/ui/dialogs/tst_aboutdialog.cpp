#include "app/base/apppaths.h"
#include "tests/support/logcapture.h"
#include "tests/ui/dialogs/dialogtest.h"
#include "ui/dialogs/opensoulicense.h"
#include "ui/dialogs/rightsnotice.h"

#include <QApplication>
#include <QFile>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QImage>
#include <QLabel>
#include <QLayout>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTest>

/// The About dialog.
class TestAboutDialog : public DialogTest
{
    Q_OBJECT

private slots:
    void form();
    void card_hasItsShadow();
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
    void opensOverItsParent_data();
    void opensOverItsParent();
    void opensInTheMiddleOfItsParentsWindow();
    void dragging_withTheLeftButton();
    void dragging_otherButtonsDoNothing();
};

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

void TestAboutDialog::card_hasItsShadow()
{
    openAbout();
    const auto *card = m_about->findChild<QWidget *>(QStringLiteral("card"));
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(card->graphicsEffect());
    QVERIFY(shadow != nullptr);
    QCOMPARE(shadow->offset(), QPointF(0, 0));
    QCOMPARE(shadow->color(), QColor(127, 127, 127, 127));
    QCOMPARE(shadow->blurRadius(), 5.0);
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

void TestAboutDialog::opensOverItsParent_data()
{
    QTest::addColumn<QRect>("parent");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("in the middle") << QRect(100, 100, 400, 300) << QPoint(200, 150);
    QTest::newRow("parent above the screen") << QRect(100, -200, 400, 300) << QPoint(200, 0);
    QTest::newRow("parent left of the screen") << QRect(-300, 100, 400, 300) << QPoint(0, 150);
    QTest::newRow("parent below the screen") << QRect(100, 550, 400, 300) << QPoint(200, 400);
    QTest::newRow("parent right of the screen") << QRect(700, 100, 400, 300) << QPoint(600, 150);
    QTest::newRow("smaller parent") << QRect(300, 300, 20, 10) << QPoint(210, 205);
}

void TestAboutDialog::opensOverItsParent()
{
    QFETCH(QRect, parent);
    QFETCH(QPoint, place);
    QCOMPARE(placeOverParent(parent, {200, 200}, {0, 0, 800, 600}), place);
    // A screen that does not begin at the desktop's origin.
    const QPoint shift(1000, -300);
    const QRect screen(shift, QSize(800, 600));
    QCOMPARE(placeOverParent(parent.translated(shift), {200, 200}, screen), place + shift);
}

void TestAboutDialog::opensInTheMiddleOfItsParentsWindow()
{
    initAppPaths(QStringLiteral("vdi"));
    QWidget parent;
    parent.setGeometry(150, 130, 520, 300);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    AboutDialog about(&parent);
    about.show();
    QVERIFY(QTest::qWaitForWindowExposed(&about));
    QCOMPARE(about.geometry().center(), parent.frameGeometry().center());
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

QTEST_MAIN(TestAboutDialog)
#include "tst_aboutdialog.moc"
