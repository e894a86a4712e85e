#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <memory>

/// The suggestions by keyboard.
class TestSuggestionKeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void down_leadsIntoTheSuggestions();
    void down_aboveTheLastLine_staysInTheBox();
    void down_aboveTheLastWrappedLine_staysInTheBox();
    void down_withShift_selects();
    void down_withoutSuggestions_staysInTheBox();
    void upAndDown_moveAmongTheSuggestions_andStopAtTheEnds();
    void returnKey_asksAndLeadsBack();
    void keypadEnter_asks();
    void escape_leadsBackToTheBox();

private:
    [[nodiscard]] QWidget *focus() const { return m_bench->window().focusWidget(); }
    void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(focus(), pressed, modifiers);
    }
    void suggestFor(const QString &typed);

    std::unique_ptr<WindowBench> m_bench;
};

void TestSuggestionKeys::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    m_bench->input()->setFocus();
}

void TestSuggestionKeys::cleanup()
{
    m_bench.reset();
}

void TestSuggestionKeys::suggestFor(const QString &typed)
{
    m_bench->input()->setPlainText(typed);
    m_bench->input()->moveCursor(QTextCursor::End);
    m_bench->window().showAssociation_process();
    if (m_bench->popup() == nullptr) {
        qFatal("no suggestions");
    }
}

void TestSuggestionKeys::down_leadsIntoTheSuggestions()
{
    suggestFor(QStringLiteral("一行"));
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->suggestion(1));
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("一行"));
}

void TestSuggestionKeys::down_aboveTheLastLine_staysInTheBox()
{
    suggestFor(QStringLiteral("一行\n二行"));
    m_bench->input()->moveCursor(QTextCursor::Start);
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->input());
    QCOMPARE(m_bench->input()->textCursor().blockNumber(), 1);
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->suggestion(1));
}

void TestSuggestionKeys::down_aboveTheLastWrappedLine_staysInTheBox()
{
    suggestFor(QStringLiteral("长").repeated(60)); // more than one line of 616 px, less than three
    m_bench->input()->moveCursor(QTextCursor::Start);
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->input());
    QVERIFY(m_bench->input()->textCursor().position() > 0);
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->suggestion(1));
}

void TestSuggestionKeys::down_withShift_selects()
{
    suggestFor(QStringLiteral("一行"));
    key(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(focus(), m_bench->input());
}

void TestSuggestionKeys::down_withoutSuggestions_staysInTheBox()
{
    m_bench->input()->setPlainText(QStringLiteral("一行"));
    key(Qt::Key_Down);
    QCOMPARE(focus(), m_bench->input());
}

void TestSuggestionKeys::upAndDown_moveAmongTheSuggestions_andStopAtTheEnds()
{
    suggestFor(QStringLiteral("a"));
    key(Qt::Key_Down);
    for (const int row : {2, 3, 3}) {
        key(Qt::Key_Down);
        QCOMPARE(focus(), m_bench->suggestion(row));
    }
    for (const int row : {2, 1, 1}) {
        key(Qt::Key_Up);
        QCOMPARE(focus(), m_bench->suggestion(row));
    }
}

void TestSuggestionKeys::returnKey_asksAndLeadsBack()
{
    suggestFor(QStringLiteral("a"));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("建议2")});
    QCOMPARE(focus(), m_bench->input());
    QVERIFY(m_bench->popup() == nullptr);
    QVERIFY(m_bench->input()->toPlainText().isEmpty());
    key(Qt::Key_Return);
    QCOMPARE(m_bench->questions().size(), 1);
}

void TestSuggestionKeys::keypadEnter_asks()
{
    suggestFor(QStringLiteral("a"));
    key(Qt::Key_Down);
    key(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("建议1")});
}

void TestSuggestionKeys::escape_leadsBackToTheBox()
{
    suggestFor(QStringLiteral("a"));
    key(Qt::Key_Down);
    key(Qt::Key_Escape);
    QCOMPARE(focus(), m_bench->input());
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("a"));
    QVERIFY(m_bench->questions().isEmpty());
}

QTEST_MAIN(TestSuggestionKeys)
#include "tst_suggestionkeys.moc"
