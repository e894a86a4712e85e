#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/input/inputmenu.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

/// The context menu of the input box.
class TestInputMenu : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void form();
    void rows_data();
    void rows();
    void withoutSelection_cutAndCopyAreGreyed();
    void withoutTextOnTheClipboard_pasteIsGreyed_data();
    void withoutTextOnTheClipboard_pasteIsGreyed();
    void cut();
    void copy();
    void paste_replacesTheSelection();
    void paste_takesPlainTextAlone();
    void returnKey_doesWhatTheArrowsChose();
    void rightClick_opensTheMenu();
    void openMenu_keepsTheCursor_untilItIsClosed();
    void esc_closesTheMenu();
    void secondMenu_replacesTheFirst();
    void slotsWithoutAMenu_workAllTheSame();
    void windowGoesWithTheMenuOpen();

private:
    [[nodiscard]] InputMenu *menu() const { return m_bench->window().findChild<InputMenu *>(); }
    [[nodiscard]] QPushButton *row(const char *text) const;
    void open();
    [[nodiscard]] bool isClosed() const { return menu() == nullptr || !menu()->isVisible(); }

    std::unique_ptr<WindowBench> m_bench;
};

void TestInputMenu::init()
{
    m_bench = std::make_unique<WindowBench>();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    QApplication::clipboard()->setText(QStringLiteral("pasted"));
    m_bench->input()->setPlainText(QStringLiteral("one two"));
    m_bench->input()->selectAll();
}

void TestInputMenu::cleanup()
{
    m_bench.reset();
}

QPushButton *TestInputMenu::row(const char *text) const
{
    const auto buttons = menu()->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text() == QString::fromUtf8(text)) {
            return button;
        }
    }
    return nullptr;
}

void TestInputMenu::open()
{
    m_bench->window().inputEdit_rightMenu();
    QVERIFY(menu() != nullptr);
    QVERIFY(menu()->isVisible());
}

void TestInputMenu::form()
{
    open();
    QCOMPARE(menu()->size(), QSize(137, 93));
    QVERIFY(menu()->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(menu()->windowFlags() & Qt::NoDropShadowWindowHint);
    QVERIFY(menu()->testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(menu()->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(menu()->styleSheet(),
             QStringLiteral("QMenu{background-color: #ffffff;border:1px solid rgba(5, 34, 91, "
                            "0.2); border-radius: 6px;}"));
    QCOMPARE(menu()->actions().size(), 3);
    QCOMPARE(row("剪切")->mapTo(menu(), QPoint(0, 33)).y(), row("复制")->y());
    QCOMPARE(row("复制")->mapTo(menu(), QPoint(0, 27)).y(), row("粘贴")->y());
}

void TestInputMenu::rows_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("margins");
    QTest::newRow("cut") << QByteArray("剪切") << QStringLiteral("Ctrl+X") << QSize(135, 33)
                         << QStringLiteral("margin-top:6px;margin-bottom:0px;");
    QTest::newRow("copy") << QByteArray("复制") << QStringLiteral("Ctrl+C") << QSize(135, 27)
                          << QStringLiteral("margin-top:0px;margin-bottom:0px;");
    QTest::newRow("paste") << QByteArray("粘贴") << QStringLiteral("Ctrl+V") << QSize(135, 33)
                           << QStringLiteral("margin-top:0px;margin-bottom:6px;");
}

void TestInputMenu::rows()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, shortcut);
    QFETCH(QSize, size);
    QFETCH(QString, margins);
    open();
    const QPushButton *button = row(text);
    if (button == nullptr) {
        QFAIL("there is no such row");
    }
    QVERIFY(button->isEnabled());
    QVERIFY(button->isFlat());
    QCOMPARE(button->size(), size);
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(button->styleSheet().contains(QStringLiteral("text-align:left")));
    QVERIFY(button->styleSheet().contains(margins));
    QVERIFY(button->styleSheet().contains(QStringLiteral("color: #1d2633;font:14px")));
    QVERIFY(button->styleSheet().contains(
        QStringLiteral("QPushButton:hover{background-color: #f4f5f8;")));
    const auto *hint = button->findChild<QLabel *>();
    QVERIFY(hint != nullptr);
    QCOMPARE(hint->text(), shortcut);
    QVERIFY(hint->styleSheet().contains(QStringLiteral("color: #757575;font:12px")));
}

void TestInputMenu::withoutSelection_cutAndCopyAreGreyed()
{
    m_bench->input()->moveCursor(QTextCursor::Start);
    open();
    for (const char *text : {"剪切", "复制"}) {
        QVERIFY(!row(text)->isEnabled());
        QVERIFY(row(text)->styleSheet().contains(QStringLiteral("color: #d0d2d9")));
        QVERIFY(row(text)->findChild<QLabel *>()->styleSheet().contains(QStringLiteral("#d0d2d9")));
        QTest::mouseClick(row(text), Qt::LeftButton);
    }
    QVERIFY(row("粘贴")->isEnabled());
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("one two"));
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("pasted"));
}

void TestInputMenu::withoutTextOnTheClipboard_pasteIsGreyed_data()
{
    QTest::addColumn<bool>("picture");
    QTest::newRow("nothing at all") << false;
    QTest::newRow("a picture") << true;
}

void TestInputMenu::withoutTextOnTheClipboard_pasteIsGreyed()
{
    QFETCH(bool, picture);
    if (picture) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        QApplication::clipboard()->setImage(image);
    } else {
        QApplication::clipboard()->setMimeData(new QMimeData);
    }
    open();
    QVERIFY(!row("粘贴")->isEnabled());
    QVERIFY(row("粘贴")->styleSheet().contains(QStringLiteral("color: #d0d2d9")));
    QVERIFY(row("剪切")->isEnabled());
}

void TestInputMenu::cut()
{
    open();
    QTest::mouseClick(row("剪切"), Qt::LeftButton);
    QCOMPARE(m_bench->input()->toPlainText(), QString());
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("one two"));
    QTRY_VERIFY(menu() == nullptr);
}

void TestInputMenu::copy()
{
    open();
    QTest::mouseClick(row("复制"), Qt::LeftButton);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("one two"));
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("one two"));
    QTRY_VERIFY(menu() == nullptr);
}

void TestInputMenu::paste_replacesTheSelection()
{
    open();
    QTest::mouseClick(row("粘贴"), Qt::LeftButton);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("pasted"));
    QTRY_VERIFY(menu() == nullptr);
}

void TestInputMenu::paste_takesPlainTextAlone()
{
    auto *data = new QMimeData;
    data->setText(QStringLiteral("bold"));
    data->setHtml(QStringLiteral("<b style='font-size:40px'>bold</b>"));
    QApplication::clipboard()->setMimeData(data);
    open();
    QTest::mouseClick(row("粘贴"), Qt::LeftButton);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("bold"));
    QVERIFY(!m_bench->input()->toHtml().contains(QStringLiteral("40px")));
}

void TestInputMenu::returnKey_doesWhatTheArrowsChose()
{
    open();
    QTest::keyClick(menu(), Qt::Key_Down);
    QVERIFY(row("剪切")->isDown());
    QTest::keyClick(menu(), Qt::Key_Down);
    QVERIFY(!row("剪切")->isDown());
    QVERIFY(row("复制")->isDown());
    QTest::keyClick(menu(), Qt::Key_Return);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("one two"));
    QTRY_VERIFY(menu() == nullptr);
    QVERIFY(m_bench->questions().isEmpty()); // the key sent nothing
}

void TestInputMenu::rightClick_opensTheMenu()
{
    QVERIFY(WindowBench::putPointer());
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
    QApplication::sendEvent(m_bench->input()->viewport(), &event);
    QVERIFY(menu() != nullptr);
    QCOMPARE(menu()->pos(), QCursor::pos());
}

void TestInputMenu::openMenu_keepsTheCursor_untilItIsClosed()
{
    QTextCursor cursor = m_bench->input()->textCursor();
    cursor.setPosition(1);
    cursor.setPosition(4, QTextCursor::KeepAnchor);
    m_bench->input()->setTextCursor(cursor);
    open();
    QFocusEvent toTheMenu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(m_bench->input(), &toTheMenu);
    QCOMPARE(m_bench->input()->textCursor().selectedText(), QStringLiteral("ne "));
    QTest::mouseClick(row("复制"), Qt::LeftButton);
    QFocusEvent away(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(m_bench->input(), &away);
    QCOMPARE(m_bench->input()->textCursor().position(), 7);
    QVERIFY(!m_bench->input()->textCursor().hasSelection());
}

void TestInputMenu::esc_closesTheMenu()
{
    open();
    QTest::keyClick(menu(), Qt::Key_Escape);
    QTRY_VERIFY(menu() == nullptr);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("one two"));
    m_bench->input()->moveCursor(QTextCursor::Start);
    QFocusEvent away(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(m_bench->input(), &away);
    QCOMPARE(m_bench->input()->textCursor().position(), 7);
}

void TestInputMenu::secondMenu_replacesTheFirst()
{
    open();
    const QPointer<InputMenu> first = menu();
    m_bench->window().inputEdit_rightMenu();
    QTRY_VERIFY(first.isNull());
    QVERIFY(menu() != nullptr);
    QVERIFY(menu()->isVisible());
    m_bench->input()->moveCursor(QTextCursor::Start);
    QFocusEvent toTheMenu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(m_bench->input(), &toTheMenu);
    QCOMPARE(m_bench->input()->textCursor().position(), 0);
}

void TestInputMenu::slotsWithoutAMenu_workAllTheSame()
{
    m_bench->window().copy_slots();
    m_bench->window().cut_slots();
    QCOMPARE(m_bench->input()->toPlainText(), QString());
    m_bench->window().paste_slots();
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("one two"));
}

void TestInputMenu::windowGoesWithTheMenuOpen()
{
    open();
    m_bench->dropWindow();
    QVERIFY(QApplication::activePopupWidget() == nullptr);
}

QTEST_MAIN(TestInputMenu)
#include "tst_inputmenu.moc"
