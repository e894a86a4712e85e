#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"

#include <QDir>
#include <QFile>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>

/// The main window: its form, its input, and when a question is asked or explained away.
class TestMiravel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void form();
    void titleBar_places();
    void inputPanel_places();
    void inputBox_takesTypingStyleWithTheFirstTick();
    void inputBox_hasTheFocusAtStart();
    void savedAnimations_areRemovedAtStart();
    void centredOnTheScreen();
    void returnSends_shiftReturnToo();
    void keypadEnter_insertsALine();
    void blankText_isNotSent_butCleared();
    void sendButton_sends();
    void typedTextIsSimplified();
    void beforeTheFirstFetch_questionsAreExplained();
    void afterTheFirstFetch_questionsAreAsked();
    void focusOut_movesTheCursorToTheEnd();
    void dragging_movesTheWindow();
    void minimiseAndCloseButtons();
    void conversation_isNeverPaintedOverTheInput();

private:
    [[nodiscard]] QStringList messages() const { return m_bench->messages(); }
    [[nodiscard]] QStringList questions() const { return m_bench->questions(); }
    [[nodiscard]] QTextEdit *input() const { return m_bench->input(); }
    [[nodiscard]] QPushButton *button(const QString &name) const { return m_bench->button(name); }
    [[nodiscard]] QStringList askedQuestions() const;

    std::unique_ptr<WindowBench> m_bench;
    Miravel *m_window = nullptr; // the bench's
};

void TestMiravel::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->serveHotQuestions(1);
    m_window = &m_bench->window();
}

void TestMiravel::cleanup()
{
    m_bench.reset();
}

QStringList TestMiravel::askedQuestions() const
{
    QStringList texts;
    const auto bodies = m_bench->bodies(WindowBench::askPath);
    for (const QJsonObject &body : bodies) {
        texts.append(body.value(QLatin1String("rawQuery")).toString());
    }
    return texts;
}

void TestMiravel::form()
{
    QCOMPARE(m_window->objectName(), QStringLiteral("Miravel"));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Miravel"));
    QCOMPARE(m_window->size(), QSize(920, 640));
    QCOMPARE(m_window->minimumSize(), QSize(920, 640));
    QCOMPARE(m_window->maximumSize(), QSize(920, 640));
    QCOMPARE(static_cast<int>(m_window->windowFlags()), 0xE801);
    QVERIFY(m_window->testAttribute(Qt::WA_QuitOnClose));
    QCOMPARE(m_window->findChild<QARegion *>()->geometry(), QRect(2, 58, 646, 490));
}

void TestMiravel::titleBar_places()
{
    QCOMPARE(button(QStringLiteral("关于"))->geometry(), QRect(828, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("最小化"))->geometry(), QRect(855, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("关闭"))->geometry(), QRect(882, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("关于"))->styleSheet(),
             QStringLiteral("QPushButton{border-image: url(:/Images/btn-about.png);border:none;}"));
    const QWidget *front = button(QStringLiteral("关于"))->parentWidget();
    QCOMPARE(QRect(front->mapTo(m_window, QPoint()), front->size()), QRect(0, 0, 920, 59));
    const auto *picture = front->findChild<QLabel *>();
    QCOMPARE(picture->geometry(), QRect(24, 16, 111, 26));
    QCOMPARE(picture->pixmap(Qt::ReturnByValue).size(), QSize(111, 26));
    const QWidget *bar = front->parentWidget();
    QCOMPARE(bar->geometry(), QRect(1, 1, 920, 56));
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(bar->graphicsEffect());
    QVERIFY(shadow != nullptr);
    QCOMPARE(shadow->blurRadius(), 8.0);
    QCOMPARE(shadow->offset(), QPointF(0, 0));
    QCOMPARE(shadow->color(), QColor(0xDC, 0xDC, 0xDC));
}

void TestMiravel::inputPanel_places()
{
    QCOMPARE(input()->parentWidget()->geometry(), QRect(1, 490, 647, 149));
    QCOMPARE(input()->geometry(), QRect(16, 8, 616, 82));
    QCOMPARE(input()->placeholderText(), QStringLiteral("您可以尝试在此描述您的问题。"));
    QVERIFY(!input()->acceptRichText());
    QVERIFY(!input()->acceptDrops());
    QVERIFY(!input()->viewport()->acceptDrops());
    QCOMPARE(input()->contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(button(QStringLiteral("发送"))->geometry(), QRect(538, 97, 86, 29));
    QCOMPARE(button(QStringLiteral("发送"))->cursor().shape(), Qt::PointingHandCursor);
}

void TestMiravel::inputBox_takesTypingStyleWithTheFirstTick()
{
    QCOMPARE(input()->styleSheet(),
             QStringLiteral("QTextEdit{selection-color:white;selection-background-color:rgb(0,120,"
                            "215);color:rgb(168,178,191);font:bold 14px Microsoft "
                            "YaHei;border:none;}"));
    m_window->showAssociation();
    QCOMPARE(input()->styleSheet(),
             QStringLiteral("QTextEdit{selection-color:white;selection-background-color:rgb(0,120,"
                            "215);color:rgb(29,38,51);font:14px Microsoft YaHei;border:none;}"));
    QCOMPARE(input()->palette().color(QPalette::Text), QColor(29, 38, 51));
    QCOMPARE(input()->palette().color(QPalette::PlaceholderText), QColor(168, 178, 191));
}

void TestMiravel::inputBox_hasTheFocusAtStart()
{
    QCOMPARE(m_window->focusWidget(), input());
}

void TestMiravel::savedAnimations_areRemovedAtStart()
{
    QVERIFY(QDir().mkpath(QStringLiteral("gif/kept")));
    for (const char *name : {"gif/0.gif", "gif/other.txt", "gif/kept/1.gif"}) {
        QFile file{QLatin1String(name)};
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    m_bench->makeWindow();
    QVERIFY(!QFile::exists(QStringLiteral("gif/0.gif")));
    QVERIFY(!QFile::exists(QStringLiteral("gif/other.txt")));
    QVERIFY(QFile::exists(QStringLiteral("gif/kept/1.gif")));
}

void TestMiravel::centredOnTheScreen()
{
    const QSize screen = m_window->screen()->geometry().size();
    QCOMPARE(m_window->pos(), QPoint((screen.width() - 920) / 2, (screen.height() - 640) / 2));
}

void TestMiravel::returnSends_shiftReturnToo()
{
    QTest::keyClicks(input(), QStringLiteral("one"));
    QTest::keyClick(input(), Qt::Key_Return);
    QTest::keyClicks(input(), QStringLiteral("two"));
    QTest::keyClick(input(), Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(questions(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    QCOMPARE(input()->toPlainText(), QString());
}

void TestMiravel::keypadEnter_insertsALine()
{
    QTest::keyClicks(input(), QStringLiteral("one"));
    QTest::keyClick(input(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(input()->toPlainText(), QStringLiteral("one\n"));
    QVERIFY(questions().isEmpty());
}

void TestMiravel::blankText_isNotSent_butCleared()
{
    const LogCapture log;
    input()->setPlainText(QStringLiteral(" \n\t \n"));
    m_window->send_messages();
    QVERIFY(questions().isEmpty());
    QVERIFY(messages().isEmpty());
    QCOMPARE(input()->toPlainText(), QString());
    QCOMPARE(log.lines(), QStringList());
}

void TestMiravel::sendButton_sends()
{
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    QTest::mouseClick(button(QStringLiteral("发送")), Qt::LeftButton);
    QCOMPARE(questions(), QStringList{QStringLiteral("桌面黑屏")});
}

void TestMiravel::typedTextIsSimplified()
{
    input()->setPlainText(QStringLiteral("  桌面 \n\n 黑屏\t怎么办  "));
    m_window->send_messages();
    QCOMPARE(questions(), QStringList{QStringLiteral("桌面 黑屏 怎么办")});
}

void TestMiravel::beforeTheFirstFetch_questionsAreExplained()
{
    const LogCapture log;
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QCOMPARE(messages(), QStringList{notLoggedInText});
    QCOMPARE(log.linesWith(QStringLiteral("info: send messages")),
             QStringList{QStringLiteral("info: send messages when not logged in, "
                                        "isGetHotQuests:false. netHotWork:false")});
    QCOMPARE(m_bench->server().connectionCount(), 0);
}

void TestMiravel::afterTheFirstFetch_questionsAreAsked()
{
    QSignalSpy ready(m_window, &Miravel::rightRegionSuccess);
    m_window->startForVdiClient();
    QTRY_COMPARE(messages(), QStringList{greetingText});
    QCOMPARE(ready.count(), 1);
    const LogCapture log;
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QCOMPARE(askedQuestions(), QStringList{QStringLiteral("桌面黑屏")});
    QCOMPARE(log.linesWith(QStringLiteral("info: send")),
             QStringList{QStringLiteral("info: send messages by idp qa request, "
                                        "isGetHotQuests:true. netHotWork:false")});
}

void TestMiravel::focusOut_movesTheCursorToTheEnd()
{
    m_window->activateWindow();
    input()->setPlainText(QStringLiteral("abc"));
    input()->setFocus();
    QTRY_VERIFY(input()->hasFocus());
    input()->moveCursor(QTextCursor::Start);
    button(QStringLiteral("发送"))->setFocus();
    QCOMPARE(input()->textCursor().position(), 3);
}

void TestMiravel::dragging_movesTheWindow()
{
    const QPoint start = m_window->pos();
    const QPoint grip(400, 30);
    QTest::mousePress(m_window, Qt::LeftButton, {}, grip);
    QMouseEvent drag(QEvent::MouseMove, grip, m_window->mapToGlobal(grip) + QPoint(15, -7),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window, &drag);
    QCOMPARE(m_window->pos(), start + QPoint(15, -7));
    QTest::mouseRelease(m_window, Qt::LeftButton, {}, grip);

    QMouseEvent later(QEvent::MouseMove, grip, m_window->mapToGlobal(grip) + QPoint(50, 50),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window, &later);
    QCOMPARE(m_window->pos(), start + QPoint(15, -7));
}

void TestMiravel::minimiseAndCloseButtons()
{
    QTest::mouseClick(button(QStringLiteral("最小化")), Qt::LeftButton);
    QVERIFY(m_window->isMinimized());
    m_window->showNormal();
    const LogCapture log;
    QTest::mouseClick(button(QStringLiteral("关闭")), Qt::LeftButton);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("info: click to Close the window")});
}

void TestMiravel::conversation_isNeverPaintedOverTheInput()
{
    m_window->startForVdiClient();
    QTRY_COMPARE(messages(), QStringList{greetingText});
    const auto lineColour = [this] {
        return m_window->screen()->grabWindow(m_window->winId()).toImage().pixelColor(300, 490);
    };
    QTRY_COMPARE(lineColour(), QColor(208, 210, 217));
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QTRY_COMPARE(lineColour(), QColor(208, 210, 217));
}

QTEST_MAIN(TestMiravel)
#include "tst_miravel.moc"
