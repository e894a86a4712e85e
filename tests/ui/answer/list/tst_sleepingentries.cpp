#include "tests/ui/answer/list/sleeptest.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTest>

/// Entries far from what is seen have no widgets; nobody may notice.
class TestSleepingEntries : public SleepTest
{
    Q_OBJECT

private slots:
    void farEntries_sleep_nearOnesDoNot();
    void wokenEntries_lookAsBefore();
    void wokenAnswer_keepsItsFold();
    void foldingASleepingAnswer_wakesIt();
    void entryWithASelection_staysAwake_andIsCopiedByItsNumber();
    void wokenText_isCopiedByItsNumber();
    void entryWithTheFocus_staysAwake();
    void entryWithTheFocus_staysAwake_whileAnotherWindowIsActive();
    void veryLongAnswer_staysAwake();
    void longestAnswerThatSleeps_data();
    void longestAnswerThatSleeps();
    void neverScrolledTo_sleepsToo();
    void tabKey_bringsWhatItReachesIntoView();
    void foldingFarAbove_movesAllThatFollows();
};

void TestSleepingEntries::farEntries_sleep_nearOnesDoNot()
{
    addExchanges(many);
    QVERIFY(!questions().first()->isAwake());
    QVERIFY(!answers().first()->isAwake());
    QVERIFY(questions().first()->findChildren<QWidget *>().isEmpty());
    QVERIFY(questions().last()->isAwake());
    QVERIFY(answers().last()->isAwake());
    bar()->setValue(0);
    letSleep();
    QVERIFY(questions().first()->isAwake());
    QVERIFY(answers().first()->isAwake());
    QVERIFY(!questions().last()->isAwake());
    QCOMPARE(m_list->count(), 2 * many);
}

void TestSleepingEntries::wokenEntries_lookAsBefore()
{
    addExchanges(2);
    m_region->addRobotMessage(QStringLiteral("一条消息"));
    m_region->addQuestionBubble(QStringLiteral("很长的问题，").repeated(20));
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    bar()->setValue(0);
    letSleep();
    const QImage before = m_list->grab().toImage();
    const QRect label = questions().first()->label()->geometry();
    addExchanges(many);
    QVERIFY(!questions().first()->isAwake());
    bar()->setValue(0);
    QCOMPARE(questions().first()->label()->geometry(), label);
    QCOMPARE(questions().first()->label()->text(), question(0));
    // The scroll bar's handle is another size now.
    const QRect entries(0, 0, 600, m_list->height());
    QCOMPARE(m_list->grab(entries).toImage(), before.copy(entries));
}

void TestSleepingEntries::wokenAnswer_keepsItsFold()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    QTest::mouseClick(answers().first()->findChildren<QPushButton *>().first(), Qt::LeftButton);
    const int opened = answers().first()->height();
    QVERIFY(opened > 400);
    m_list->setFocus(); // an entry with the focus stays awake
    addExchanges(many);
    QVERIFY(!answers().first()->isAwake());
    QCOMPARE(answers().first()->height(), opened);
    bar()->setValue(0);
    const auto buttons = answers().first()->findChildren<QPushButton *>();
    QVERIFY(!buttons.at(0)->isVisible());
    QVERIFY(buttons.at(1)->isVisible());
    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QCOMPARE(answers().first()->size(), QSize(648, 230));
    QCOMPARE(answers().at(1)->size(), QSize(648, 230));
}

void TestSleepingEntries::foldingASleepingAnswer_wakesIt()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    addExchanges(many);
    AnswerItem *answer = answers().first();
    QVERIFY(!answer->isAwake());
    answer->setFoldState(FoldState::Opened);
    QVERIFY(answer->isAwake());
    QCOMPARE(answer->height(),
             answer->titleLabel()->height() + answer->content()->contentHeight() + 100);
}

void TestSleepingEntries::entryWithASelection_staysAwake_andIsCopiedByItsNumber()
{
    addExchanges(3);
    questions().at(1)->label()->setSelection(0, 3);
    addExchanges(many);
    QVERIFY(!questions().at(0)->isAwake());
    QVERIFY(questions().at(1)->isAwake());
    m_region->qaRightHitMenu_copySlots(1, ConversationCopier::Question);
    QCOMPARE(QApplication::clipboard()->text(), question(1).left(3));
    m_region->qaRightHitMenu_copySlots(0, ConversationCopier::Question);
    QCOMPARE(QApplication::clipboard()->text(), QString());
}

void TestSleepingEntries::wokenText_isCopiedByItsNumber()
{
    addExchanges(many);
    bar()->setValue(0);
    questions().at(1)->label()->setSelection(0, question(1).size());
    answers().at(1)->content()->paragraphs().first()->setSelection(0, 3);
    m_region->qaRightHitMenu_copySlots(1, ConversationCopier::Question);
    QCOMPARE(QApplication::clipboard()->text(), question(1));
    m_region->qaRightHitMenu_copySlots(1, ConversationCopier::Paragraph);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("段落粗"));
}

void TestSleepingEntries::entryWithTheFocus_staysAwake()
{
    addExchanges(2);
    m_region->activateWindow();
    questions().at(0)->label()->setFocus();
    QTRY_VERIFY(questions().at(0)->label()->hasFocus());
    addExchanges(many);
    QVERIFY(questions().at(0)->isAwake());
    QVERIFY(!questions().at(1)->isAwake());
}

void TestSleepingEntries::entryWithTheFocus_staysAwake_whileAnotherWindowIsActive()
{
    addExchanges(2);
    m_region->activateWindow();
    questions().at(0)->label()->setFocus();
    QTRY_VERIFY(questions().at(0)->label()->hasFocus());
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(QApplication::activeWindow() == &other);
    addExchanges(many);
    QVERIFY(questions().at(0)->isAwake());
    QCOMPARE(m_region->focusWidget(), questions().at(0)->label());
    QVERIFY(!questions().at(1)->isAwake());
}

void TestSleepingEntries::veryLongAnswer_staysAwake()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(500));
    addExchanges(many);
    QVERIFY(answers().at(0)->isAwake());
}

void TestSleepingEntries::longestAnswerThatSleeps_data()
{
    QTest::addColumn<int>("characters");
    QTest::addColumn<bool>("isAwake");
    // 4,000, of which a row itself counts 7.
    QTest::newRow("the longest") << 3993 << false;
    QTest::newRow("a character more") << 3994 << true;
}

void TestSleepingEntries::longestAnswerThatSleeps()
{
    QFETCH(int, characters);
    QFETCH(bool, isAwake);
    const QString text(characters, QLatin1Char('x'));
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>%1</p>").arg(text));
    addExchanges(many);
    QCOMPARE(answers().at(0)->isAwake(), isAwake);
}

void TestSleepingEntries::neverScrolledTo_sleepsToo()
{
    for (int i = 0; i < many; ++i) {
        m_region->addRobotMessage(QStringLiteral("消息"));
    }
    letSleep();
    QCOMPARE(bar()->value(), 0);
    const auto *last = qobject_cast<ConversationItem *>(m_list->itemWidget(m_list->item(many - 1)));
    QVERIFY(!last->isAwake());
    m_list->scrollToBottom();
    QVERIFY(last->isAwake());
}

void TestSleepingEntries::tabKey_bringsWhatItReachesIntoView()
{
    addExchanges(many);
    bar()->setValue(0);
    m_region->activateWindow();
    questions().first()->label()->setFocus();
    QTRY_VERIFY(questions().first()->label()->hasFocus());
    for (int i = 0; i < 40; ++i) {
        QTest::keyClick(m_region->focusWidget(), Qt::Key_Tab);
        const QWidget *focused = m_region->focusWidget();
        const int top = focused->mapTo(m_list->viewport(), QPoint()).y();
        QVERIFY(top >= 0);
        QVERIFY(top + focused->height() <= m_list->viewport()->height());
    }
    QVERIFY(bar()->value() > m_list->viewport()->height());
}

void TestSleepingEntries::foldingFarAbove_movesAllThatFollows()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(20));
    addExchanges(many); // more than one section of the list
    const int folded = answers().last()->mapTo(m_list, QPoint()).y();
    const int height = answers().first()->height();
    m_region->FoldToOpen_answer(0);
    const int more = answers().first()->height() - height;
    QVERIFY(more > 0);
    QCOMPARE(answers().last()->mapTo(m_list, QPoint()).y(), folded + more);
}

QTEST_MAIN(TestSleepingEntries)
#include "tst_sleepingentries.moc"
