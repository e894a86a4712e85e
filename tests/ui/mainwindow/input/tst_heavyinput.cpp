#include "tests/support/logcapture.h"
#include "tests/ui/support/guicost.h"
#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/input/inputbox.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

/// Whatever is pasted and sent, the window handles events again within a second of its thread's
/// processor time, and all of it is asked.
class TestHeavyInput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pasted_data();
    void pasted();
    void composed();
    void setByAProgram_data() { pasted_data(); }
    void setByAProgram();
    void typedBeyondTheBound_isShown();
    void heldText_isCopied_deleted_andBroughtBack();
    void heldText_hasTheLineEndsOfShownText();
    void textSetAfterAHeldOne_isTakenAsItIs();
    void pairAtTheBound_isNotTorn_data();
    void pairAtTheBound_isNotTorn();
    void note_hasRoomOnALineOfItsOwn();
    void shortPaste_isShownWhole();
    void guardQuestion();
    void hotQuestion();

private:
    void look(const char *what, const std::function<void()> &action);
    [[nodiscard]] QString asked() const;
    [[nodiscard]] QString copied() const;

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

constexpr qint64 mostStallMs = 1000;
constexpr qint64 mostMemoryMb = 1024;

} // namespace

void TestHeavyInput::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
    resetPeakMemory();
}

void TestHeavyInput::cleanup()
{
    m_bench.reset();
}

void TestHeavyInput::look(const char *what, const std::function<void()> &action)
{
    const qint64 stall = longestStallMs(action);
    qInfo("%s: %lld ms, %lld MiB", what, stall, peakMemoryMb());
    QVERIFY2(stall < mostStallMs * slowness(), what);
    QVERIFY2(peakMemoryMb() < mostMemoryMb, what);
}

QString TestHeavyInput::asked() const
{
    const auto bodies = m_bench->bodies(WindowBench::askPath);
    return bodies.isEmpty() ? QString()
                            : bodies.last().value(QStringLiteral("rawQuery")).toString();
}

/// Everything in the box, as it is copied.
QString TestHeavyInput::copied() const
{
    m_bench->input()->selectAll();
    m_bench->input()->copy();
    return QApplication::clipboard()->text();
}

void TestHeavyInput::pasted_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *part, int characters) {
        const QString text = QString::fromUtf8(part);
        QTest::newRow(name) << text.repeated(characters / text.size());
    };
    row("1 MB of letters", "x", 1'000'000);
    row("1 MB of ideographs", "长", 1'000'000);
    row("10 MB of letters", "x", 10'000'000);
    row("1 MB of words", "lorem ipsum ", 1'000'000);
    row("1 MB of lines", "一行\n", 1'000'000);
    row("1 MB of Thai", "ภาษาไทยสวัสดีครับ", 1'000'000);
    row("1 MB of Arabic", "مرحبابالعالم", 1'000'000);
    row("1 MB of family emoji", "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466",
        1'000'000);
    row("100,000 combining marks", "\u0301", 100'000);
    row("1 MB of turned directions", "\u202Ea\u202Db", 1'000'000);
}

void TestHeavyInput::pasted()
{
    QFETCH(QString, text);
    QApplication::clipboard()->setText(text);
    look("pasted", [this] { m_bench->input()->paste(); });
    look("typed on", [this] { QTest::keyClicks(m_bench->input(), QStringLiteral("a")); });
    look("scrolled", [this] { m_bench->input()->verticalScrollBar()->setValue(0); });
    look("ticked", [this] { m_bench->window().showAssociation(); });
    look("typed again", [this] {
        QTest::keyClicks(m_bench->input(), QStringLiteral("b"));
        m_bench->window().showAssociation();
    });
    look("sent", [this] { m_bench->window().send_messages(); });
    QVERIFY(asked() == (text + QStringLiteral("ab")).simplified());
    look("next question", [this] { m_bench->send(QStringLiteral("下一个")); });
    QCOMPARE(asked(), QStringLiteral("下一个"));
}

void TestHeavyInput::composed()
{
    const QString text = QStringLiteral("长").repeated(1'000'000);
    QInputMethodEvent event;
    event.setCommitString(text);
    look("committed", [&] { QApplication::sendEvent(m_bench->input(), &event); });
    QVERIFY(m_bench->input()->toPlainText().size() <= InputBox::mostShown);
    look("typed on", [this] { QTest::keyClicks(m_bench->input(), QStringLiteral("a")); });
    look("sent", [this] { m_bench->window().send_messages(); });
    QVERIFY(asked() == text + QLatin1Char('a'));
    QInputMethodEvent shortOne;
    shortOne.setCommitString(QStringLiteral("短"));
    QApplication::sendEvent(m_bench->input(), &shortOne);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("短"));
}

/// As what serves the user in place of the keyboard sets it.
void TestHeavyInput::setByAProgram()
{
    QFETCH(QString, text);
    // Making blocks of lines takes Qt long before anybody can know of them: fewer of those.
    text.truncate(text.contains(QLatin1Char('\n')) ? 200'000 : text.size());
    look("set", [&] { m_bench->input()->setPlainText(text); });
    QVERIFY(m_bench->input()->toPlainText().size() <= InputBox::mostShown + 1);
    look("typed on", [this] {
        m_bench->input()->moveCursor(QTextCursor::End);
        QTest::keyClicks(m_bench->input(), QStringLiteral("a"));
    });
    look("sent", [this] { m_bench->window().send_messages(); });
    QVERIFY(asked() == (text + QLatin1Char('a')).simplified());
}

void TestHeavyInput::typedBeyondTheBound_isShown()
{
    const QString text(InputBox::mostShown - 1, QLatin1Char('x'));
    m_bench->input()->setPlainText(text);
    m_bench->input()->moveCursor(QTextCursor::End);
    QTest::keyClicks(m_bench->input(), QStringLiteral("abc"));
    QCOMPARE(m_bench->input()->toPlainText(), text + QStringLiteral("abc"));
}

void TestHeavyInput::heldText_isCopied_deleted_andBroughtBack()
{
    const QString text = QString(InputBox::mostShown, QChar(u'长')) + QStringLiteral("末\n尾");
    QApplication::clipboard()->setText(text);
    m_bench->input()->paste();
    QVERIFY(copied() == text);
    m_bench->input()->moveCursor(QTextCursor::End);
    QTest::keyClick(m_bench->input(), Qt::Key_Backspace);
    QVERIFY(copied().size() < text.size());
    m_bench->input()->undo();
    QVERIFY(copied() == text);
    m_bench->window().send_messages();
    QVERIFY(asked() == text.simplified());
}

void TestHeavyInput::heldText_hasTheLineEndsOfShownText()
{
    const QString lines = QStringLiteral("一\u2028二\u00A0三");
    const QString rest(InputBox::mostShown, QChar(u'长'));
    QApplication::clipboard()->setText(lines + rest + lines);
    m_bench->input()->paste();
    const QString plain = QStringLiteral("一\n二 三");
    QVERIFY(copied() == plain + rest + plain);
    m_bench->window().send_messages();
    QVERIFY(asked() == (plain + rest + plain).simplified());
}

/// Qt gives a text that is set the format of what the cursor stood behind.
void TestHeavyInput::textSetAfterAHeldOne_isTakenAsItIs()
{
    QApplication::clipboard()->setText(QString(2 * InputBox::mostShown, QChar(u'长')));
    m_bench->input()->paste();
    m_bench->input()->selectAll();
    m_bench->window().send_messages();
    m_bench->input()->setPlainText(QStringLiteral("短的"));
    QVERIFY(copied() == QStringLiteral("短的"));
    m_bench->window().send_messages();
    QVERIFY(asked() == QStringLiteral("短的"));
    m_bench->input()->setPlainText(QString(2 * InputBox::mostShown, QLatin1Char('x')));
    QVERIFY(copied() == QString(2 * InputBox::mostShown, QLatin1Char('x')));
}

void TestHeavyInput::pairAtTheBound_isNotTorn_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("pairs begin at even places") << QString();
    QTest::newRow("pairs begin at odd places") << QStringLiteral("x");
}

void TestHeavyInput::pairAtTheBound_isNotTorn()
{
    QFETCH(QString, before);
    const QString text = before + QStringLiteral("\U0001F600").repeated(InputBox::mostShown);
    const auto verifyWhole = [&] {
        const QString shown = m_bench->input()->toPlainText();
        const int held = shown.indexOf(QChar::ObjectReplacementCharacter);
        QVERIFY(held > 0);
        QVERIFY(shown.at(held - 1).isLowSurrogate());
        QVERIFY(copied() == text);
        m_bench->input()->clear();
    };
    QApplication::clipboard()->setText(text);
    m_bench->input()->paste();
    verifyWhole();
    m_bench->input()->setPlainText(text);
    verifyWhole();
}

void TestHeavyInput::note_hasRoomOnALineOfItsOwn()
{
    QTextEdit *box = m_bench->input();
    const QString lines = QStringLiteral("一行\n").repeated(1000);
    const QString filled = QStringLiteral("长").repeated(InputBox::mostShown - lines.size());
    box->setPlainText(lines + filled.left(filled.size() - 1) + QLatin1Char('\n'));
    box->moveCursor(QTextCursor::End);
    QApplication::clipboard()->setText(QStringLiteral("x").repeated(1000));
    box->paste();
    const QTextBlock block = box->document()->lastBlock();
    QCOMPARE(block.text(), QString(QChar::ObjectReplacementCharacter));
    const QImage seen = box->viewport()->grab().toImage();
    const auto inkIn = [&](int top, int bottom) {
        int ink = 0;
        for (int y = top; y <= bottom; ++y) {
            for (int x = 0; x < box->cursorRect().left() - 2; ++x) {
                ink += qGray(seen.pixel(x, y)) < 200 ? 1 : 0;
            }
        }
        return ink;
    };
    const QRect caret = box->cursorRect();
    QVERIFY(inkIn(caret.top(), caret.bottom()) > 100);
    QCOMPARE(inkIn(seen.height() - 1, seen.height() - 1), 0); // else it was cut off
    QRgb darkest = qRgb(255, 255, 255);
    for (int x = 0; x < caret.left() - 2; ++x) {
        for (int y = caret.top(); y <= caret.bottom(); ++y) {
            darkest = qGray(seen.pixel(x, y)) < qGray(darkest) ? seen.pixel(x, y) : darkest;
        }
    }
    QCOMPARE(QColor(darkest), QColor(117, 117, 117));
    const auto *layout = box->document()->documentLayout();
    QCOMPARE(qRound(layout->blockBoundingRect(block).height()),
             qRound(layout->blockBoundingRect(box->document()->begin()).height()));
}

void TestHeavyInput::shortPaste_isShownWhole()
{
    const QString text(InputBox::mostShown - 1, QChar(u'长'));
    QApplication::clipboard()->setText(text);
    m_bench->input()->paste();
    QVERIFY(m_bench->input()->toPlainText() == text);
}

void TestHeavyInput::guardQuestion()
{
    const QString text(10'000'000, QLatin1Char('x'));
    look("asked", [&] {
        m_bench->window().sendSysguardQuest(QJsonObject{{QStringLiteral("question"), text}});
    });
    QVERIFY(asked() == text);
}

void TestHeavyInput::hotQuestion()
{
    const QString text(1'000'000, QChar(u'长'));
    look("asked", [&] { m_bench->window().hotRecom_list_click(text, 1); });
    QVERIFY(asked() == text);
}

QTEST_MAIN(TestHeavyInput)
#include "tst_heavyinput.moc"
