#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/reply/listedquestion.h"
#include "service/request/idpinterface.h"
#include "tests/ui/support/picturereply.h"
#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/conversationcopier.h"
#include "ui/answer/list/conversationlist.h"
#include "ui/answer/picture/picturerow.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/recommend/recommendbox.h"
#include "ui/answer/recommend/recommendonlyitem.h"
#include "ui/answer/recommend/recommendpage.h"
#include "ui/preview/imagedisplay.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCursor>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// Entries far from what is seen have no widgets; nobody may notice.
class TestSleepingEntries : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void farEntries_sleep_nearOnesDoNot();
    void wokenEntries_lookAsBefore();
    void wokenAnswer_keepsItsFold();
    void foldingASleepingAnswer_wakesIt();
    void entryWithASelection_staysAwake_andIsCopiedByItsNumber();
    void wokenText_isCopiedByItsNumber();
    void entryWithTheFocus_staysAwake();
    void entryWithTheFocus_staysAwake_whileAnotherWindowIsActive();
    void answersWithPictures_sleepToo();
    void wokenPictures_lookAsBefore();
    void wokenPicture_isPreviewedAndCopiedByItsNumber();
    void answerWithAnimation_staysAwakeWhileItPlays();
    void answerSleeps_onceItsPicturesAreDecoded();
    void boxes_sleepToo();
    void wokenBoxes_lookAsBefore_onTheirPage();
    void wokenBox_isAskedFromAndPaged();
    void switchingASleepingBox_wakesIt();
    void boxThatIsAskedFrom_maySleepMeanwhile();
    void sleepingBox_takesLittleMemory();
    void veryLongAnswer_staysAwake();
    void neverScrolledTo_sleepsToo();
    void tabKey_bringsWhatItReachesIntoView();
    void foldingFarAbove_movesAllThatFollows();

private:
    void addExchanges(int count);
    void addBoxes(int count = 1);
    [[nodiscard]] RecommendOnlyItem *box() const;
    static void letSleep();
    [[nodiscard]] QList<QuestionBubble *> questions() const;
    [[nodiscard]] QList<AnswerItem *> answers() const;
    [[nodiscard]] QScrollBar *bar() const { return m_list->verticalScrollBar(); }

    std::unique_ptr<QARegion> m_region;
    ConversationList *m_list = nullptr;
};

namespace {

constexpr int many = 35;

QString question(int number)
{
    return QStringLiteral("第%1个问题").arg(number);
}

QByteArray picture(const QSize &size, const QColor &colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return encoded(image);
}

QString recommendation(int number)
{
    return QStringLiteral("推荐的第%1个问题").arg(number);
}

} // namespace

void TestSleepingEntries::initTestCase()
{
    initResources();
    initAppPaths(QString());
}

void TestSleepingEntries::init()
{
    m_region = std::make_unique<QARegion>();
    m_list = m_region->findChild<ConversationList *>();
    m_region->resize(647, 490);
    m_region->move(100, 100);
    QCursor::setPos(0, 0); // an entry under the mouse stays awake
    m_region->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_region.get()));
}

void TestSleepingEntries::cleanup()
{
    m_region.reset();
}

void TestSleepingEntries::addExchanges(int count)
{
    for (int i = 0; i < count; ++i) {
        m_region->addQuestionBubble(question(questions().size()));
        m_region->showAnswer(QStringLiteral("标题"), QStringLiteral("<p>段落<b>粗</b></p>"));
    }
    letSleep();
}

/// Answers with recommendations, and boxes in place of answers, in turn.
void TestSleepingEntries::addBoxes(int count)
{
    QVector<ListedQuestion> recommends;
    for (int number = 0; number < 15; ++number) {
        recommends.append({recommendation(number), number});
    }
    for (int i = 0; i < count; ++i) {
        m_region->showAnswerWithRecommends(QStringLiteral("荐"), QStringLiteral("<p>段</p>"),
                                           recommends, QString());
        m_region->showRecommendOnly(recommends, QString());
    }
    QCoreApplication::processEvents();
}

RecommendOnlyItem *TestSleepingEntries::box() const
{
    return m_region->findChild<RecommendOnlyItem *>();
}

/// Lets happen what waits for its turn: the list's timer of no length began before this one.
void TestSleepingEntries::letSleep()
{
    QCoreApplication::processEvents();
    QEventLoop turn;
    QTimer last;
    connect(&last, &QTimer::timeout, &turn, &QEventLoop::quit);
    last.start(0);
    turn.exec();
}

QList<QuestionBubble *> TestSleepingEntries::questions() const
{
    return m_region->findChildren<QuestionBubble *>();
}

QList<AnswerItem *> TestSleepingEntries::answers() const
{
    return m_region->findChildren<AnswerItem *>();
}

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

void TestSleepingEntries::answersWithPictures_sleepToo()
{
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({300, 200}, Qt::red)));
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
    QVERIFY(m_region->findChildren<PictureRow *>().isEmpty());
}

void TestSleepingEntries::wokenPictures_lookAsBefore()
{
    m_region->showAnswer(QStringLiteral("图"),
                         QStringLiteral("<p>上</p>") + tag("png", picture({300, 100}, Qt::red))
                             + tag("png", "none") + QStringLiteral("<p>下</p>")
                             + tag("png", picture({60, 20}, Qt::blue)));
    bar()->setValue(0);
    letSleep();
    const int height = answers().first()->height();
    m_region->FoldToOpen_answer(0);
    const QImage before = answers().first()->grab().toImage();
    addExchanges(many);
    QVERIFY(!answers().first()->isAwake());
    bar()->setValue(0);
    QVERIFY(answers().first()->isAwake());
    QTRY_COMPARE(answers().first()->grab().toImage(), before);
    m_region->OpenToFold_answer(0);
    QCOMPARE(answers().first()->height(), height);
}

void TestSleepingEntries::wokenPicture_isPreviewedAndCopiedByItsNumber()
{
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({10, 10}, Qt::red)));
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({20, 10}, Qt::green))
                                                   + tag("png", picture({30, 10}, Qt::blue)));
    addExchanges(many);
    QVERIFY(!answers().at(1)->isAwake());
    m_region->qaRightHitMenu_copySlots(2, ConversationCopier::Picture);
    QCOMPARE(QApplication::clipboard()->pixmap().width(), 30);
    bar()->setValue(0);
    QTest::mouseClick(answers().at(1)->content()->pictureRows().at(1)->button(), Qt::LeftButton);
    QCOMPARE(m_region->preview()->currentIndex(), 2);
    QSignalSpy menus(answers().at(1), &AnswerItem::pictureMenuRequested);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1));
    QApplication::sendEvent(answers().at(1)->content()->pictureRows().at(0)->button(), &event);
    QCOMPARE(menus, (QList<QVariantList>{{1}}));
}

void TestSleepingEntries::answerWithAnimation_staysAwakeWhileItPlays()
{
    QTemporaryDir folder;
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    QFile file(QStringLiteral(":/Images/waiting.gif"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_region->showAnswer(QStringLiteral("动图"), tag("gif", file.readAll()));
    addExchanges(many);
    QVERIFY(answers().at(0)->isAwake()); // or it would not go on where it rests
    QVERIFY(!answers().at(1)->isAwake());
    QDir::setCurrent(before);
}

void TestSleepingEntries::answerSleeps_onceItsPicturesAreDecoded()
{
    // Before that nobody knows its height: the header may promise what the data do not hold.
    m_region->showAnswer(QStringLiteral("图"), tag("png", picture({2000, 1000}, Qt::red)));
    PictureRow *row = answers().first()->content()->pictureRows().first();
    QVERIFY(row->label()->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY(!answers().first()->content()->maySleep());
    QTRY_VERIFY(answers().first()->content()->maySleep());
    QCOMPARE(row->label()->pixmap(Qt::ReturnByValue).size(), QSize(220, 110));
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
}

void TestSleepingEntries::boxes_sleepToo()
{
    addBoxes();
    addExchanges(many);
    QVERIFY(!answers().at(0)->isAwake());
    QVERIFY(answers().at(0)->box() == nullptr);
    QVERIFY(!box()->isAwake());
    QVERIFY(box()->box() == nullptr);
    QVERIFY(m_region->findChildren<RecommendBox *>().isEmpty());
}

void TestSleepingEntries::wokenBoxes_lookAsBefore_onTheirPage()
{
    addBoxes();
    m_region->switchAnswerRecommends(0, QString());
    m_region->switchRecommendOnly(0, QString());
    const QImage answer = answers().first()->grab().toImage();
    const QImage only = box()->grab().toImage();
    addExchanges(many);
    QVERIFY(!answers().first()->isAwake());
    bar()->setValue(0);
    letSleep();
    QVERIFY(answers().first()->isAwake());
    QCOMPARE(answers().first()->grab().toImage(), answer);
    QCOMPARE(box()->grab().toImage(), only);
}

void TestSleepingEntries::wokenBox_isAskedFromAndPaged()
{
    addBoxes();
    addExchanges(many);
    bar()->setValue(0);
    const auto clickThirdRow = [](RecommendBox *clicked) {
        clicked->findChildren<RecommendPage *>().last()->questions().at(2)->setFocus();
        QTest::keyClick(clicked->window()->focusWidget(), Qt::Key_Space);
    };
    const int before = questions().size();
    m_region->service().askTimeoutMs = 1; // nobody answers
    clickThirdRow(answers().first()->box());
    QCOMPARE(questions().size(), before + 1);
    QCOMPARE(questions().last()->label()->text(), recommendation(2));
    m_region->switchRecommendOnly(0, QString());
    clickThirdRow(box()->box());
    QCOMPARE(questions().last()->label()->text(), recommendation(12));
}

void TestSleepingEntries::switchingASleepingBox_wakesIt()
{
    addBoxes();
    addExchanges(many);
    m_region->switchAnswerRecommends(0, QString());
    m_region->switchRecommendOnly(0, QString());
    QVERIFY(answers().first()->isAwake());
    QCOMPARE(answers().first()->box()->place().cursor, 10);
    QCOMPARE(box()->box()->place().cursor, 10);
}

void TestSleepingEntries::boxThatIsAskedFrom_maySleepMeanwhile()
{
    addBoxes();
    connect(answers().first(), &AnswerItem::recommendClicked, this, [this] {
        m_list->setFocus();
        addExchanges(many); // as others may while the question waits
    });
    m_region->service().askTimeoutMs = 1; // nobody answers
    auto *button = qobject_cast<QPushButton *>(answers().first()->box()->part(1));
    QVERIFY(button != nullptr);
    const QPointer<QPushButton> clicked = button;
    button->click();
    QVERIFY(clicked.isNull());
    QVERIFY(!answers().first()->isAwake());
}

void TestSleepingEntries::sleepingBox_takesLittleMemory()
{
#ifdef __GLIBC__
    constexpr int more = 40;
    addBoxes(5); // what the first ones need for all
    addExchanges(many);
    const auto allocated = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    const double before = allocated();
    addBoxes(more);
    addExchanges(many);
    const double kib = (allocated() - before) / 1024;
    m_region.reset();
    init();
    addExchanges(many);
    const double around = allocated();
    addExchanges(many);
    const double each = (kib - (allocated() - around) / 1024) / (2 * more);
    qInfo("a sleeping box: %.1f KiB", each);
    QVERIFY(each < 24);
#else
    QSKIP("only the C library of Linux tells what is allocated");
#endif
}

void TestSleepingEntries::veryLongAnswer_staysAwake()
{
    m_region->showAnswer(QStringLiteral("长"), QStringLiteral("<p>一行文字</p>").repeated(500));
    addExchanges(many);
    QVERIFY(answers().at(0)->isAwake());
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
