#include "tests/ui/answer/list/listtest.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/foldbar.h"
#include "ui/answer/picture/conversationpictures.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <vector>

/// A conversation of more px than a widget can measure.
class TestTallConversation : public ListTest
{
    Q_OBJECT

private slots:
    void furtherThanAWidgetReaches_entriesAreSeen();
    void furtherThanAWidgetReaches_changedHeightMovesWhatFollows();
    void furtherThanAWidgetReaches_answersFold();
    void furtherThanAWidgetReaches_focusIsRevealed();
    void moreThanAScrollBarCounts_isCutOff();
};

void TestTallConversation::furtherThanAWidgetReaches_entriesAreSeen()
{
    // More than QWIDGETSIZE_MAX, also in one section.
    constexpr int count = 120;
    constexpr int tall = 1'000'000;
    for (int i = 0; i < count; ++i) {
        append(tall);
    }
    append(height);
    QVERIFY(bar()->maximum() == count * tall);
    m_list->scrollToBottom();
    QCOMPARE(mistakeAt(count), QString());
    for (const int row : {0, 16, 17, 49, 50, 100, 3, 119, 60}) {
        bar()->setValue(row * tall);
        QCOMPARE(mistakeAt(row), QString());
        bar()->setValue(row * tall + tall / 2);
        const QWidget *entry = m_list->itemWidget(m_list->item(row));
        QCOMPARE(placeOf(entry), QRect(0, -tall / 2, width, tall));
        QCOMPARE(entry->visibleRegion(), QRegion(0, tall / 2, m_list->viewport()->width(), height));
    }
}

void TestTallConversation::furtherThanAWidgetReaches_changedHeightMovesWhatFollows()
{
    constexpr int tall = 9'000'000;
    QList<Entry *> entries;
    for (int i = 0; i < 100; ++i) {
        entries.append(append(height));
    }
    entries.first()->setItemHeight(tall);
    entries.at(1)->setItemHeight(tall);
    m_list->scrollToBottom();
    QCOMPARE(mistakeAt(99), QString());
    bar()->setValue(2 * tall);
    QCOMPARE(mistakeAt(2), QString());
    entries.at(1)->setItemHeight(height);
    entries.first()->setItemHeight(height);
    bar()->setValue(height);
    QCOMPARE(mistakeAt(1), QString());
    QCOMPARE(placeOf(entries.at(2)), QRect(0, height, width, height));
    m_list->scrollToBottom();
    QCOMPARE(mistakeAt(99), QString());
}

void TestTallConversation::furtherThanAWidgetReaches_answersFold()
{
    append(9'000'000);
    append(9'000'000);
    ConversationPictures pictures;
    auto *answer = new AnswerItem(QStringLiteral("标题"), m_list->nextParent());
    answer->setReply(QStringLiteral("<p>一行文字</p>").repeated(30), QString(), pictures);
    answer->setFoldState(FoldState::Folded);
    m_list->append(answer);
    connect(answer, &AnswerItem::foldRequested, answer, &AnswerItem::setFoldState);
    const int folded = answer->height();
    for (const int bar : {0, 1, 0}) { // that which opens, and that which retracts
        auto *const button = answer->findChildren<FoldBar *>().at(bar)->findChild<QPushButton *>();
        m_list->reveal(button);
        QCOMPARE(button->visibleRegion(), QRegion(button->rect()));
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(answer->height() > folded, bar == 0);
    }
}

void TestTallConversation::furtherThanAWidgetReaches_focusIsRevealed()
{
    constexpr int tall = 9'000'000;
    append(height);
    append(tall);
    append(tall);
    Entry *last = append(height);
    m_list->reveal(last->findChild<QLabel *>());
    QVERIFY(m_list->rect().contains(placeOf(last->findChild<QLabel *>())));
    bar()->setValue(0);
    auto *icon = last->findChild<QLabel *>();
    icon->setFocusPolicy(Qt::StrongFocus);
    m_window->activateWindow();
    m_list->setFocus();
    QTRY_VERIFY(m_list->hasFocus());
    QTest::keyClick(m_list, Qt::Key_Tab);
    QVERIFY(icon->hasFocus());
    QVERIFY(m_list->rect().contains(placeOf(icon)));
}

void TestTallConversation::moreThanAScrollBarCounts_isCutOff()
{
    // All entries together: more than 2^31 px.
    constexpr int tall = 16'000'000;
    for (int i = 0; i < 140; ++i) {
        append(tall);
    }
    m_list->scrollToBottom();
    QVERIFY(bar()->value() > 130 * tall);
    bar()->setValue(130 * tall);
    QCOMPARE(mistakeAt(130), QString());
    QCOMPARE(m_list->visualRect(m_list->model()->index(139, 0)).height(), 0);
}

QTEST_MAIN(TestTallConversation)
#include "tst_tallconversation.moc"
