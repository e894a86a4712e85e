#include "tests/ui/answer/list/listtest.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <algorithm>

namespace {

/// An entry that may sleep, with a button in it.
class Sleeper : public Entry
{
public:
    Sleeper(int entryHeight, QWidget *parent)
        : Entry(entryHeight, parent)
    {
        new QPushButton(this); // of this entry
    }

protected:
    bool canSleep() const override { return true; }
    void rebuild() override { new QPushButton(this); }
};

} // namespace

/// In which order the entries of a list wake when it scrolls, and that those it leaves sleep soon.
class TestWakingEntries : public ListTest
{
    Q_OBJECT

private slots:
    void init();
    void scrolling_wakesAtOnceWhatIsSeen();
    void whatIsNear_wakesOneByOne_theNearestFirst();
    void manyJumps_leaveNothingAwakeBehind();
    void tabKey_getsIntoWhatHasNotWokenYet();

private:
    static constexpr int count = 200;
    static constexpr int entryHeight = 100; ///< px
    static constexpr int seen = 5;          ///< entries that a view shows which begins in one
    static constexpr int near = 8 + seen + 8;

    [[nodiscard]] const ConversationItem *entry(int row) const;
    [[nodiscard]] int awake() const;

    /// Scrolls until entry \a row is the first, of which 50 px are seen.
    void scrollTo(int row) const { bar()->setValue(row * entryHeight + entryHeight / 2); }
};

void TestWakingEntries::init()
{
    ListTest::init();
    QCursor::setPos(0, 0); // an entry under the mouse stays awake
    m_window->move(100, 100);
    for (int row = 0; row < count; ++row) {
        m_list->append(new Sleeper(entryHeight, m_list->nextParent()));
    }
    scrollTo(50);
    QTRY_COMPARE(awake(), near);
}

const ConversationItem *TestWakingEntries::entry(int row) const
{
    return qobject_cast<const ConversationItem *>(m_list->itemWidget(m_list->item(row)));
}

int TestWakingEntries::awake() const
{
    int number = 0;
    for (int row = 0; row < count; ++row) {
        number += entry(row)->isAwake() ? 1 : 0;
    }
    return number;
}

void TestWakingEntries::scrolling_wakesAtOnceWhatIsSeen()
{
    scrollTo(100);
    for (int row = 100; row < 100 + seen; ++row) {
        QVERIFY(entry(row)->isAwake());
    }
    QVERIFY(!entry(99)->isAwake());
    QVERIFY(!entry(100 + seen)->isAwake());
}

void TestWakingEntries::whatIsNear_wakesOneByOne_theNearestFirst()
{
    scrollTo(100);
    constexpr int middle = 100 + seen / 2;
    int before = awake();
    for (int distance = seen / 2 + 1; distance <= near / 2;) {
        QCoreApplication::processEvents(); // one turn
        QVERIFY(awake() <= before + 1);
        before = awake();
        for (; entry(middle - distance)->isAwake() && entry(middle + distance)->isAwake();
             ++distance) { }
        for (int further = distance + 1; further <= near / 2 && distance < near / 2; ++further) {
            QVERIFY(!entry(middle - further)->isAwake());
            QVERIFY(!entry(middle + further)->isAwake());
        }
    }
    QCOMPARE(awake(), near);
}

void TestWakingEntries::manyJumps_leaveNothingAwakeBehind()
{
    // What piles up is paid for at once later on.
    for (int row = 60; row < 190; row += 7) {
        scrollTo(row);
        QCoreApplication::processEvents();
        QVERIFY2(awake() <= near + seen, qPrintable(QString::number(awake())));
    }
    QTRY_COMPARE(awake(), near);
}

void TestWakingEntries::tabKey_getsIntoWhatHasNotWokenYet()
{
    constexpr int lastAwake = 62;
    m_window->activateWindow();
    entry(lastAwake)->findChild<QPushButton *>()->setFocus();
    QTRY_VERIFY(entry(lastAwake)->findChild<QPushButton *>()->hasFocus());
    scrollTo(lastAwake - seen + 1);
    QVERIFY(!entry(lastAwake + 1)->isAwake());
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
    QVERIFY(entry(lastAwake + 1)->isAncestorOf(m_window->focusWidget()));
}

QTEST_MAIN(TestWakingEntries)
#include "tst_wakingentries.moc"
