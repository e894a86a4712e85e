#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/dialogs/aboutdialog.h"
#include "ui/mainwindow/frame/aboutmenu.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

/// What the about button leads to: the dialog, or a menu.
class TestAboutMenu : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void environmentType_data();
    void environmentType();
    void entries();
    void about_opensTheDialog();
    void everyClick_opensAMenuOfItsOwn();
    void esc_closesMenuAndDialog();
    void dialog_isModal_andDeletedOnClose();
    void windowGoesWithMenuAndDialogOpen();

private:
    void makeWindow(const QString &environmentType);
    [[nodiscard]] AboutMenu *menu() const { return m_bench->window().findChild<AboutMenu *>(); }
    [[nodiscard]] AboutDialog *dialog() const
    {
        return m_bench->window().findChild<AboutDialog *>();
    }
    [[nodiscard]] QPushButton *button() const { return m_bench->button(QStringLiteral("关于")); }

    std::unique_ptr<WindowBench> m_bench;
};

void TestAboutMenu::init()
{
    m_bench = std::make_unique<WindowBench>();
}

void TestAboutMenu::cleanup()
{
    m_bench.reset();
}

void TestAboutMenu::makeWindow(const QString &environmentType)
{
    m_bench->config().set(QStringLiteral("SysEnvironment/EnvType"), environmentType);
    m_bench->makeWindow();
}

void TestAboutMenu::environmentType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("opensMenu");
    QTest::newRow("1") << QStringLiteral("1") << false;
    QTest::newRow("0") << QStringLiteral("0") << true;
    QTest::newRow("2") << QStringLiteral("2") << true;
    QTest::newRow("no number") << QStringLiteral("office") << true;
    QTest::newRow("empty") << QString() << true;
}

void TestAboutMenu::environmentType()
{
    QFETCH(QString, type);
    QFETCH(bool, opensMenu);
    makeWindow(type);
    QVERIFY(button()->styleSheet().startsWith(
        QStringLiteral("QPushButton{border-image: url(:/Images/btn-about.png);border:none;}")));
    QCOMPARE(button()->styleSheet().contains(QStringLiteral("menu-indicator")), opensMenu);
    QTest::mouseClick(button(), Qt::LeftButton);
    QCOMPARE(menu() != nullptr, opensMenu);
    QCOMPARE(dialog() != nullptr, !opensMenu);
}

void TestAboutMenu::entries()
{
    makeWindow(QStringLiteral("2"));
    QVERIFY(WindowBench::putPointer());
    m_bench->window().about_menuClicked();
    QCOMPARE(menu()->pos(), QCursor::pos());
    QCOMPARE(button()->menu(), menu());
    const QList<QAction *> actions = menu()->actions();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("帮助与反馈"));
    QCOMPARE(actions.at(0)->objectName(), QStringLiteral("actHelp"));
    QCOMPARE(actions.at(1)->text(), QStringLiteral("关于"));
    QCOMPARE(actions.at(1)->objectName(), QStringLiteral("actAbout"));
    for (const QAction *action : actions) {
        QCOMPARE(action->font().family(), QStringLiteral("Arail,Microsoft YaHei"));
        QCOMPARE(action->font().pixelSize(), 12);
    }
}

void TestAboutMenu::about_opensTheDialog()
{
    makeWindow(QStringLiteral("2"));
    m_bench->window().about_menuClicked();
    const LogCapture log;
    QTest::mouseClick(menu(), Qt::LeftButton, {},
                      menu()->actionGeometry(menu()->actions().at(1)).center());
    QCOMPARE(log.lines().value(0), QStringLiteral("debug: click to about btn"));
    QVERIFY(dialog() != nullptr);
    QTRY_VERIFY(menu() == nullptr);
}

void TestAboutMenu::everyClick_opensAMenuOfItsOwn()
{
    makeWindow(QStringLiteral("2"));
    for (int i = 0; i < 3; ++i) {
        QTest::mouseClick(button(), Qt::LeftButton);
        QVERIFY(menu() != nullptr);
        QVERIFY(menu()->isVisible());
        menu()->close();
        QTRY_VERIFY(menu() == nullptr);
    }
}

void TestAboutMenu::esc_closesMenuAndDialog()
{
    makeWindow(QStringLiteral("2"));
    m_bench->window().about_menuClicked();
    QTest::keyClick(menu(), Qt::Key_Escape);
    QTRY_VERIFY(menu() == nullptr);
    m_bench->window().about_clicked();
    QTest::keyClick(dialog(), Qt::Key_Escape);
    QTRY_VERIFY(dialog() == nullptr);
    QVERIFY(m_bench->window().isVisible());
}

void TestAboutMenu::dialog_isModal_andDeletedOnClose()
{
    m_bench->window().about_clicked();
    QVERIFY(dialog()->isModal());
    QVERIFY(dialog()->isVisible());
    QVERIFY(dialog()->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(dialog()->parentWidget(), &m_bench->window());
}

void TestAboutMenu::windowGoesWithMenuAndDialogOpen()
{
    makeWindow(QStringLiteral("2"));
    m_bench->window().about_clicked();
    m_bench->window().about_menuClicked();
    m_bench->dropWindow();
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

QTEST_MAIN(TestAboutMenu)
#include "tst_aboutmenu.moc"
