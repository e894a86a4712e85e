#include "tests/ui/answer/list/listtest.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/foldbar.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <vector>

/// The list of the conversation lays out its items itself: where they are, and what moves.
class TestConversationList : public ListTest
{
    Q_OBJECT

private slots:
    void scrollBar_isThin();
    void items_lieBelowEachOther();
    void itemWidgets_areThoseOfTheirItems();
    void wholeEntry_keepsItsParent();
    void entryBuiltElsewhere_isMovedIn();
    void entriesBuiltBeforeTheirTurn_findTheirSections();
    void entry_isReadAsItsAccessibleName();
    void shortList_doesNotScroll();
    void longList_scrollsByThePixel();
    void scrollToBottom_showsTheLastItem();
    void changedHeight_movesWhatFollows();
    void indexAt_findsTheItem();
    void scrollTo_hints();
    void wheelAndKeys_scroll();
    void clickBesideATallEntry_doesNotScroll();
    void entries_paintWhatTheyShow();
    void farDown_itemsAreStillInPlace();
};

void TestConversationList::scrollBar_isThin()
{
    const QString style = bar()->styleSheet();
    QVERIFY(style.contains(QLatin1String("width:14px")));
    QVERIFY(style.contains(QLatin1String("margin:0px 10px 0px 0px")));
    QVERIFY(style.contains(QLatin1String("background:rgba(207,207,207,70%)")));
    QCOMPARE(style.count(QLatin1String("background:rgba(207,207,207,100%)")), 2);
    QCOMPARE(m_list->contentsMargins(), QMargins());
}

void TestConversationList::items_lieBelowEachOther()
{
    const QWidget *first = append(50);
    const QWidget *second = append(120);
    const QWidget *third = append(30);
    QCOMPARE(placeOf(first), QRect(0, 0, width, 50));
    QCOMPARE(placeOf(second), QRect(0, 50, width, 120));
    QCOMPARE(placeOf(third), QRect(0, 170, width, 30));
    QCOMPARE(m_list->visualItemRect(m_list->item(1)), QRect(0, 50, width, 120));
    QVERIFY(third->isVisible());
}

void TestConversationList::itemWidgets_areThoseOfTheirItems()
{
    QWidget *first = append(50);
    QWidget *second = append(60);
    QCOMPARE(m_list->count(), 2);
    QCOMPARE(m_list->itemWidget(m_list->item(0)), first);
    QCOMPARE(m_list->itemWidget(m_list->item(1)), second);
    QCOMPARE(m_list->item(1)->sizeHint(), QSize(width, 60));
}

void TestConversationList::wholeEntry_keepsItsParent()
{
    const Entry *first = append(50);
    const Entry *second = append(60);
    QCOMPARE(first->parentChanges, 0);
    QCOMPARE(second->parentChanges, 0);
    QVERIFY(second->isVisible());
}

void TestConversationList::entryBuiltElsewhere_isMovedIn()
{
    append(50);
    auto *entry = new Entry(70, nullptr);
    m_list->append(entry);
    QVERIFY(m_list->viewport()->isAncestorOf(entry));
    QCOMPARE(placeOf(entry), QRect(0, 50, width, 70));
    QVERIFY(entry->isVisible());
}

void TestConversationList::entriesBuiltBeforeTheirTurn_findTheirSections()
{
    constexpr int count = 120;
    std::vector<Entry *> entries;
    entries.reserve(count);
    for (int i = 0; i < count; ++i) {
        entries.push_back(new Entry(10, m_list->nextParent()));
    }
    for (Entry *entry : entries) {
        m_list->append(entry);
    }
    for (int i = 0; i < 120; ++i) {
        QCOMPARE(placeOf(entries.at(static_cast<std::size_t>(i))), QRect(0, 10 * i, width, 10));
    }
}

void TestConversationList::entry_isReadAsItsAccessibleName()
{
    auto *entry = new Entry(70, m_list->nextParent());
    entry->setAccessibleName(QStringLiteral("一个问题"));
    m_list->append(entry);
    QCOMPARE(m_list->item(0)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("一个问题"));
}

void TestConversationList::shortList_doesNotScroll()
{
    append(height);
    QCOMPARE(bar()->maximum(), 0);
    QVERIFY(!bar()->isVisible());
}

void TestConversationList::longList_scrollsByThePixel()
{
    const QWidget *first = append(300);
    append(301);
    QCOMPARE(bar()->maximum(), 201);
    QTRY_VERIFY(bar()->isVisible());
    bar()->setValue(7);
    QCOMPARE(placeOf(first).top(), -7);
    bar()->setValue(0);
    QCOMPARE(placeOf(first).top(), 0);
}

void TestConversationList::scrollToBottom_showsTheLastItem()
{
    for (int i = 0; i < 50; ++i) {
        const QWidget *last = append(40 + i);
        m_list->scrollToBottom();
        QCOMPARE(bar()->value(), bar()->maximum());
        QVERIFY(placeOf(last).bottom() < height);
    }
}

void TestConversationList::changedHeight_movesWhatFollows()
{
    const QWidget *first = append(50);
    Entry *second = append(60);
    const QWidget *third = append(70);
    second->setItemHeight(200);
    QCOMPARE(m_list->item(1)->sizeHint(), QSize(width, 200));
    QCOMPARE(placeOf(first).top(), 0);
    QCOMPARE(placeOf(third), QRect(0, 250, width, 70));
    second->setItemHeight(200 + 70); // as high as both were
    QCOMPARE(placeOf(third).top(), 320);
    second->setItemHeight(10);
    QCOMPARE(placeOf(third).top(), 60);
}

void TestConversationList::indexAt_findsTheItem()
{
    append(300);
    append(300);
    append(300);
    QCOMPARE(m_list->indexAt({5, 0}).row(), 0);
    QCOMPARE(m_list->indexAt({5, 299}).row(), 0);
    QCOMPARE(m_list->indexAt({5, 300}).row(), 1);
    bar()->setValue(350);
    QCOMPARE(m_list->indexAt({5, 0}).row(), 1);
    QCOMPARE(m_list->indexAt({5, 260}).row(), 2);
    QVERIFY(!m_list->indexAt({5, 5000}).isValid());
    QVERIFY(!m_list->indexAt({5, -400}).isValid());
}

void TestConversationList::scrollTo_hints()
{
    const auto at = [this](int row) {
        return m_list->model()->index(row, 0);
    };
    for (int i = 0; i < 20; ++i) {
        append(100);
    }
    m_list->scrollTo(at(10), QAbstractItemView::PositionAtTop);
    QCOMPARE(bar()->value(), 1000);
    m_list->scrollTo(at(10), QAbstractItemView::PositionAtBottom);
    QCOMPARE(bar()->value(), 1100 - height);
    m_list->scrollTo(at(10), QAbstractItemView::PositionAtCenter);
    QCOMPARE(bar()->value(), 1050 - height / 2);
    m_list->scrollTo(at(10), QAbstractItemView::EnsureVisible);
    QCOMPARE(bar()->value(), 1050 - height / 2);
    m_list->scrollTo(at(0), QAbstractItemView::EnsureVisible);
    QCOMPARE(bar()->value(), 0);
    m_list->scrollTo(at(19), QAbstractItemView::EnsureVisible);
    QCOMPARE(bar()->value(), bar()->maximum());
}

void TestConversationList::wheelAndKeys_scroll()
{
    for (int i = 0; i < 20; ++i) {
        append(100);
    }
    QTest::keyClick(m_list, Qt::Key_PageDown);
    QCOMPARE(bar()->value(), height);
    QTest::keyClick(m_list, Qt::Key_End);
    QCOMPARE(bar()->value(), bar()->maximum());
    QTest::keyClick(m_list, Qt::Key_Up);
    QCOMPARE(bar()->value(), bar()->maximum() - bar()->singleStep());
    QTest::keyClick(m_list, Qt::Key_Down);
    QCOMPARE(bar()->value(), bar()->maximum());
    QTest::keyClick(m_list, Qt::Key_PageUp);
    QCOMPARE(bar()->value(), bar()->maximum() - height);
    QTest::keyClick(m_list, Qt::Key_Home);
    QCOMPARE(bar()->value(), 0);
    const QPoint middle(100, 100);
    QWheelEvent wheel(middle, m_list->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_list->viewport(), &wheel);
    QVERIFY(bar()->value() > 0);
}

void TestConversationList::clickBesideATallEntry_doesNotScroll()
{
    append(100);
    append(3 * height);
    append(100);
    bar()->setValue(150);
    // Qt scrolls 100 ms after the click can no longer become a double click.
    QApplication::setDoubleClickInterval(1);
    QSignalSpy scrolled(bar(), &QScrollBar::valueChanged);
    for (const auto click : {QTest::MouseClick, QTest::MouseDClick}) {
        QTest::mouseEvent(click, m_list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {5, height - 5});
        QVERIFY(!scrolled.wait(300));
    }
}

void TestConversationList::entries_paintWhatTheyShow()
{
    QWidget *first = append(100);
    first->setStyleSheet(QStringLiteral("background-color:rgb(255, 0, 0);"));
    QWidget *second = append(100);
    second->setStyleSheet(QStringLiteral("background-color:rgb(0, 0, 255);"));
    const QImage shot = m_list->grab().toImage();
    QCOMPARE(shot.pixelColor(10, 50), QColor(255, 0, 0));
    QCOMPARE(shot.pixelColor(10, 150), QColor(0, 0, 255));
    QCOMPARE(shot.pixelColor(10, 250), QColor(255, 255, 255));
}

void TestConversationList::farDown_itemsAreStillInPlace()
{
    // Further than a 16-bit number of pixels, at which the stock list loses its items.
    for (int i = 0; i < 800; ++i) {
        append(100);
    }
    m_list->scrollToBottom();
    const QWidget *last = m_list->itemWidget(m_list->item(799));
    QCOMPARE(placeOf(last), QRect(0, height - 100, width, 100));
    QCOMPARE(m_list->indexAt({5, height - 1}).row(), 799);
}

/// What is wrong with entry \a row, which begins where the view does; empty when nothing is.
QTEST_MAIN(TestConversationList)
#include "tst_conversationlist.moc"
