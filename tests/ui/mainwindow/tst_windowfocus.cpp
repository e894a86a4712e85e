#include "service/reply/listedquestion.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <memory>

/// Where the keyboard's focus is after things have been used or have gone.
class TestWindowFocus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sending_leadsToTheBox();
    void hotQuestion_leadsToTheBox_beforeTheAnswer_data() { mouseAndKey(); }
    void hotQuestion_leadsToTheBox_beforeTheAnswer();
    void localQuestion_leadsToTheBox();
    void suggestion_leadsToTheBox_beforeTheAnswer_data() { mouseAndKey(); }
    void suggestion_leadsToTheBox_beforeTheAnswer();
    void recommendation_leadsToTheBox_beforeTheAnswer_data() { mouseAndKey(); }
    void recommendation_leadsToTheBox_beforeTheAnswer();
    void guardQuestion_leavesTheFocus();
    void foldBar_handsTheFocusToTheOther();
    void folding_leavesTheFocusOfOthers();
    void refresh_leavesTheFocusInItsRow_data();
    void refresh_leavesTheFocusInItsRow();
    void refreshWithFewerQuestions_leadsToTheNextPage();
    void nextPageByKey_keepsTheFocus();
    void networkProblem_leavesTheFocusInItsRow();
    void otherMode_leadsToTheBox();
    void titleButtons_takeNoFocusFromTheMouse();
    void minimised_andRestored_theFocusIsWhereItWas();

private:
    [[nodiscard]] QWidget *focus() const { return m_bench->window().focusWidget(); }
    [[nodiscard]] QARegion *region() const { return m_bench->window().findChild<QARegion *>(); }

    /// Writes a local library of \a count questions "如何1", ...
    static void writeLibrary(int count);

    /// Presses \a control by the key or by the mouse.
    static void use(QWidget *control, bool byKey);

    static void mouseAndKey();

    /// Whether the box has the focus while the service is asked the first question.
    [[nodiscard]] std::shared_ptr<bool> boxDuringQuestion();

    std::unique_ptr<WindowBench> m_bench;
};

void TestWindowFocus::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->timer("associationTick").stop();
    m_bench->startGreeted();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    m_bench->input()->setFocus();
}

void TestWindowFocus::cleanup()
{
    m_bench.reset();
}

void TestWindowFocus::writeLibrary(int count)
{
    QDir().mkdir(QStringLiteral("LocalQA"));
    for (int number = 0; number < count; ++number) {
        QFile file(QStringLiteral("LocalQA/%1.txt").arg(number));
        const QString text = QStringLiteral("<body>\n<p>问题01：如何%1</p>\n<p>答</p>\n</body>");
        if (!file.open(QIODevice::WriteOnly) || file.write(text.arg(number + 1).toUtf8()) < 0) {
            qFatal("The file cannot be written");
        }
    }
}

void TestWindowFocus::use(QWidget *control, bool byKey)
{
    if (byKey) {
        control->setFocus(Qt::TabFocusReason);
        QTest::keyClick(control, Qt::Key_Space);
    } else {
        QTest::mouseClick(control, Qt::LeftButton);
    }
}

void TestWindowFocus::mouseAndKey()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("mouse") << false;
    QTest::newRow("key") << true;
}

std::shared_ptr<bool> TestWindowFocus::boxDuringQuestion()
{
    auto met = std::make_shared<bool>(false);
    m_bench->server().setReplyFor(
        WindowBench::askPath,
        held(httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})")));
    m_bench->onceRequested(WindowBench::askPath, 1, [this, met] {
        *met = focus() == m_bench->input();
        m_bench->server().release();
    });
    return met;
}

void TestWindowFocus::sending_leadsToTheBox()
{
    QPushButton *send = m_bench->button(QStringLiteral("发送"));
    for (const bool byKey : {false, true}) {
        m_bench->input()->setPlainText(QStringLiteral("问"));
        use(send, byKey);
        QCOMPARE(focus(), m_bench->input());
        QTest::keyClick(focus(), Qt::Key_Space);
        QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral(" "));
    }
    QCOMPARE(m_bench->questions().size(), 2);
}

void TestWindowFocus::hotQuestion_leadsToTheBox_beforeTheAnswer()
{
    QFETCH(const bool, byKey);
    const auto inBox = boxDuringQuestion();
    use(m_bench->hotRow(2), byKey);
    QVERIFY(*inBox);
    QCOMPARE(focus(), m_bench->input());
    QTest::keyClick(focus(), Qt::Key_Space);
    QTest::keyClick(focus(), Qt::Key_Space);
    QCOMPARE(m_bench->questions().size(), 1);
}

void TestWindowFocus::localQuestion_leadsToTheBox()
{
    writeLibrary(5);
    m_bench->window().refreshLocalQA();
    use(m_bench->hotRow(2), true);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("如何2")});
    QCOMPARE(focus(), m_bench->input());
}

void TestWindowFocus::suggestion_leadsToTheBox_beforeTheAnswer()
{
    QFETCH(const bool, byKey);
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->window().showAssociation_process();
    const auto inBox = boxDuringQuestion();
    use(m_bench->suggestion(2), byKey);
    QVERIFY(*inBox);
    QCOMPARE(focus(), m_bench->input());
}

void TestWindowFocus::recommendation_leadsToTheBox_beforeTheAnswer()
{
    QFETCH(const bool, byKey);
    region()->showRecommendOnly({{QStringLiteral("推荐一"), 1}}, QStringLiteral("问"));
    const auto inBox = boxDuringQuestion();
    use(m_bench->button(QStringLiteral("推荐一")), byKey);
    QVERIFY(*inBox);
    QCOMPARE(focus(), m_bench->input());
    QTest::keyClick(focus(), Qt::Key_Space);
    QCOMPARE(m_bench->questions().size(), 1);
}

void TestWindowFocus::guardQuestion_leavesTheFocus()
{
    QPushButton *close = m_bench->button(QStringLiteral("关闭"));
    close->setFocus();
    m_bench->window().sendSysguardQuest({{QStringLiteral("question"), QStringLiteral("问")}});
    QCOMPARE(focus(), close);
}

void TestWindowFocus::foldBar_handsTheFocusToTheOther()
{
    region()->showAnswer(QStringLiteral("题"), QStringLiteral("<p>段</p>").repeated(40));
    QPushButton *open = m_bench->button(QStringLiteral("展开"));
    QPushButton *retract = m_bench->button(QStringLiteral("收起"));
    for (const bool byKey : {false, true}) {
        use(open, byKey);
        QCOMPARE(focus(), retract);
        use(retract, byKey);
        QCOMPARE(focus(), open);
    }
}

void TestWindowFocus::folding_leavesTheFocusOfOthers()
{
    region()->showAnswer(QStringLiteral("题"), QStringLiteral("<p>段</p>").repeated(40));
    region()->FoldToOpen_answer(0);
    QCOMPARE(focus(), m_bench->input());
    region()->OpenToFold_answer(0);
    QCOMPARE(focus(), m_bench->input());
}

void TestWindowFocus::refresh_leavesTheFocusInItsRow_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("the first") << 1;
    QTest::newRow("another") << 3;
}

void TestWindowFocus::refresh_leavesTheFocusInItsRow()
{
    QFETCH(int, row);
    m_bench->serveHotQuestions(20);
    const QPushButton *before = m_bench->hotRow(row);
    m_bench->hotRow(row)->setFocus();
    QStringList visited;
    const auto note = connect(
        qApp, &QApplication::focusChanged, this, [&visited](QWidget *, const QWidget *now) {
            visited.append(now == nullptr ? QString() : now->accessibleName());
        });
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_VERIFY(m_bench->hotRow(row) != before);
    disconnect(note);
    QCOMPARE(focus(), m_bench->hotRow(row));
    QVERIFY(!visited.contains(QStringLiteral("关于"))); // nor is it read out on the way
}

void TestWindowFocus::refreshWithFewerQuestions_leadsToTheNextPage()
{
    m_bench->serveHotQuestions(2);
    m_bench->hotRow(5)->setFocus();
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().at(4), QStringLiteral("5. "));
    QCOMPARE(focus(), m_bench->button(QStringLiteral("换一换")));
}

void TestWindowFocus::nextPageByKey_keepsTheFocus()
{
    QPushButton *next = m_bench->button(QStringLiteral("换一换"));
    use(next, true);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
    QCOMPARE(focus(), next);
}

void TestWindowFocus::networkProblem_leavesTheFocusInItsRow()
{
    writeLibrary(5);
    m_bench->hotRow(3)->setFocus();
    m_bench->window().refreshLocalQA();
    QCOMPARE(m_bench->hotRow(3)->accessibleName(), QStringLiteral("如何3"));
    QCOMPARE(focus(), m_bench->hotRow(3));
}

void TestWindowFocus::otherMode_leadsToTheBox()
{
    m_bench->hotRow(3)->setFocus();
    m_bench->window().startForLauncher();
    QCOMPARE(focus(), m_bench->input());
}

void TestWindowFocus::titleButtons_takeNoFocusFromTheMouse()
{
    QTest::mouseClick(m_bench->button(QStringLiteral("最小化")), Qt::LeftButton);
    QCOMPARE(focus(), m_bench->input());
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
    QCOMPARE(focus(), m_bench->input());
}

void TestWindowFocus::minimised_andRestored_theFocusIsWhereItWas()
{
    m_bench->hotRow(4)->setFocus();
    QTest::mouseClick(m_bench->button(QStringLiteral("最小化")), Qt::LeftButton);
    QTRY_VERIFY(m_bench->window().isMinimized());
    m_bench->window().showNormal();
    QVERIFY(QTest::qWaitForWindowActive(&m_bench->window()));
    QCOMPARE(focus(), m_bench->hotRow(4));
}

QTEST_MAIN(TestWindowFocus)
#include "tst_windowfocus.moc"
