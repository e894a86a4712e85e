#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"

#include <QPushButton>
#include <QTest>

#include <memory>

/// The hot questions fetched anew: what is shown, said and left alone.
class TestHotRefresh : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void refreshWithData_online_showsNoNote();
    void refreshWithoutData_online_fallsBackOnce();
    void refreshWithData_afterTheFallBack_saysSo();
    void overlappingRefreshes_eachShowTheirOwnResult();
    void refreshWhileAnAnswerIsAwaited();
    void refreshRunsEveryHalfHour_byTheTimer();

private:
    std::unique_ptr<WindowBench> m_bench;
};

void TestHotRefresh::init()
{
    m_bench = std::make_unique<WindowBench>();
}

void TestHotRefresh::cleanup()
{
    m_bench.reset();
}

void TestHotRefresh::refreshWithData_online_showsNoNote()
{
    m_bench->startGreeted();
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
    m_bench->serveHotQuestions(10);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问1"));
    QCOMPARE(m_bench->hotRows().at(10), QStringLiteral("11. "));
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
}

void TestHotRefresh::refreshWithoutData_online_fallsBackOnce()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    QVERIFY(!log.lines().filter(QStringLiteral("failed to get hot issues")).isEmpty());
    QVERIFY(!log.lines()
                 .filter(QStringLiteral("before hot issues online, now refresh LocalQA"))
                 .isEmpty());
    QVERIFY(m_bench->hotRow(1) == nullptr
            || m_bench->hotRows().first() != WindowBench::firstRows(1).first());

    const LogCapture second;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_VERIFY(!second.lines().filter(QStringLiteral("failed to get hot issues")).isEmpty());
    QCOMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    QVERIFY(second.lines().filter(QStringLiteral("now refresh LocalQA")).isEmpty());
}

void TestHotRefresh::refreshWithData_afterTheFallBack_saysSo()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    m_bench->serveHotQuestions(40);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(),
                 (QStringList{greetingText, refreshFailedText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
    QCOMPARE(m_bench->hotRows().first(), QStringLiteral("1. 问17"));
}

void TestHotRefresh::overlappingRefreshes_eachShowTheirOwnResult()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        held(httpReply(R"({"errorCode":"0","result":[{"id":1,"question":"早"}]})")));
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->bodies(WindowBench::hotPath).size(), 2);
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        httpReply(R"({"errorCode":"0","result":[{"id":2,"question":"晚"}]})"));
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 晚"));
    m_bench->server().release();
    QTRY_COMPARE(m_bench->hotRows().first(), QStringLiteral("1. 早"));
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")).size(), 2);
    QCOMPARE(m_bench->messages(), QStringList{greetingText}); // none of the two was cut short
}

void TestHotRefresh::refreshWhileAnAnswerIsAwaited()
{
    m_bench->startGreeted();
    m_bench->serveHotQuestions(0);
    m_bench->askPending([this] {
        m_bench->window().refreshHotQuestionsTimer();
        QTRY_COMPARE(m_bench->messages(), (QStringList{greetingText, refreshFailedText}));
    });
    QCOMPARE(m_bench->messages().size(), 3);
    QVERIFY(m_bench->messages().last().startsWith(QStringLiteral("您好，未找到匹配的问题")));
}

void TestHotRefresh::refreshRunsEveryHalfHour_byTheTimer()
{
    m_bench->hurry("hotRefresh");
    m_bench->startGreeted();
    QTRY_VERIFY(m_bench->bodies(WindowBench::hotPath).size() > 3);
    // Refreshes at this pace overlap: one may find the address empty that another resolves.
    QCOMPARE(m_bench->messages().first(), greetingText);
}

QTEST_MAIN(TestHotRefresh)
#include "tst_hotrefresh.moc"
