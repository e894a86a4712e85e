#include "service/reply/listedquestion.h"
#include "service/request/idpinterface.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QHash>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

namespace {

// Time limits of the call for suggestions.
constexpr int shortMs = 100;    // for one that is not answered
constexpr int amplyMs = 30'000; // for one that is

const QByteArray oneSuggestion
    = R"({"errorCode":"0","result":[{"question":"late","id":1}]})"; // a reply with it
const QByteArray noResult
    = R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})"; // to a question

} // namespace

/// Suggestions and questions that come into each other's waits.
class TestSuggestionWaits : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void questionSentWhileSuggestionsAreFetched_showsNoPopup();
    void questionAskedDuringTheNextFetch_closesTheOpenPopupAtOnce_data();
    void questionAskedDuringTheNextFetch_closesTheOpenPopupAtOnce();
    void sending_closesThePopupAtOnce();
    void textTypedOnDuringTheFetch_showsNoPopup_untilTheNextTick();
    void answerBetweenCallAndReply_showsNoPopupForTheTextSent();
    void laterFetchInsideAnEarlierOne_keepsItsPopup();
    void questionThatHangsInsideATick_stopsTheTicks_untilItsWaitEnds_data();
    void questionThatHangsInsideATick_stopsTheTicks_untilItsWaitEnds();
    void clickWhileAnAnswerIsAwaited_getsItsOwnAnswer();

private:
    void tick(const QString &text);
    [[nodiscard]] int calls() const { return m_bench->bodies(WindowBench::suggestPath).size(); }

    std::unique_ptr<WindowBench> m_bench;
};

void TestSuggestionWaits::init()
{
    m_bench = std::make_unique<WindowBench>();
    m_bench->startGreeted();
    m_bench->timer("associationTick").stop(); // the tests tick themselves
}

void TestSuggestionWaits::cleanup()
{
    m_bench.reset();
}

void TestSuggestionWaits::tick(const QString &text)
{
    m_bench->input()->setPlainText(text);
    m_bench->window().showAssociation();
}

void TestSuggestionWaits::questionSentWhileSuggestionsAreFetched_showsNoPopup()
{
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply("{}")));
    m_bench->setSuggestionLimit(shortMs);
    QTimer::singleShot(0, &m_bench->window(), [this] { m_bench->window().send_messages(); });
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("a")});
}

void TestSuggestionWaits::questionAskedDuringTheNextFetch_closesTheOpenPopupAtOnce_data()
{
    QTest::addColumn<QString>("question");
    QTest::newRow("what is typed") << QStringLiteral("ab");
    QTest::newRow("a hot question") << QStringLiteral("问3");
    QTest::newRow("a recommendation") << QStringLiteral("荐");
    QTest::newRow("the guard tool's") << QStringLiteral("警");
}

void TestSuggestionWaits::questionAskedDuringTheNextFetch_closesTheOpenPopupAtOnce()
{
    QFETCH(QString, question);
    m_bench->window().findChild<QARegion *>()->showRecommendOnly({{QStringLiteral("荐"), 7}},
                                                                 QStringLiteral("问"));
    const QHash<QString, std::function<void()>> ways{
        {QStringLiteral("ab"),
         [this] {
             m_bench->window().send_messages();
         }},
        {QStringLiteral("问3"),
         [this] {
             m_bench->hotRow(3)->click();
         }},
        {QStringLiteral("荐"),
         [this] {
             m_bench->button(QStringLiteral("荐"))->click();
         }},
        {QStringLiteral("警"),
         [this] {
             m_bench->window().sendSysguardQuest(
                 {{QStringLiteral("question"), QStringLiteral("警")}});
         }},
    };
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() != nullptr);
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply("{}")));
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply(noResult)));
    m_bench->onceRequested(WindowBench::suggestPath, 2, ways.value(question));
    bool closed = false;
    m_bench->onceRequested(WindowBench::askPath, 1, [this, &closed] {
        closed = m_bench->popup() == nullptr;
        m_bench->server().release();
    });
    tick(QStringLiteral("ab"));
    QVERIFY(closed);
    QCOMPARE(m_bench->questions(), QStringList{question});
    QVERIFY(m_bench->popup() == nullptr);
}

void TestSuggestionWaits::sending_closesThePopupAtOnce()
{
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() != nullptr);
    bool closed = false;
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply(noResult)));
    m_bench->onceRequested(WindowBench::askPath, 1, [this, &closed] {
        closed = m_bench->popup() == nullptr;
        m_bench->server().release();
    });
    QTest::keyClick(m_bench->input(), Qt::Key_Return);
    QVERIFY(closed);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("a")});
}

void TestSuggestionWaits::textTypedOnDuringTheFetch_showsNoPopup_untilTheNextTick()
{
    tick(QStringLiteral("a"));
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply(oneSuggestion)));
    m_bench->onceRequested(WindowBench::suggestPath, 2, [this] {
        m_bench->input()->setPlainText(QStringLiteral("abc"));
        m_bench->server().release();
    });
    const LogCapture log;
    tick(QStringLiteral("ab"));
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(log.linesWith(QStringLiteral("info: nSize")),
             QStringList{QStringLiteral("info: nSize_association: 1")});
    m_bench->serveSuggestions(3);
    m_bench->window().showAssociation();
    QVERIFY(m_bench->popup() != nullptr);
}

void TestSuggestionWaits::answerBetweenCallAndReply_showsNoPopupForTheTextSent()
{
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply(oneSuggestion)));
    m_bench->onceRequested(WindowBench::suggestPath, 1, [this] {
        m_bench->window().send_messages(); // answered at once
        m_bench->input()->setPlainText(QStringLiteral("b"));
        m_bench->server().release();
    });
    tick(QStringLiteral("a"));
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("a")});
    QVERIFY(m_bench->popup() == nullptr);
}

void TestSuggestionWaits::laterFetchInsideAnEarlierOne_keepsItsPopup()
{
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply(oneSuggestion)));
    m_bench->onceRequested(WindowBench::suggestPath, 1, [this] {
        m_bench->serveSuggestions(3);
        tick(QStringLiteral("ab"));
        m_bench->server().release();
    });
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() != nullptr);
    QCOMPARE(m_bench->suggestion(1)->accessibleName(), QStringLiteral("建议1"));
}

void TestSuggestionWaits::questionThatHangsInsideATick_stopsTheTicks_untilItsWaitEnds_data()
{
    QTest::addColumn<bool>("answered");
    QTest::newRow("answered late") << true;
    QTest::newRow("never answered") << false;
}

void TestSuggestionWaits::questionThatHangsInsideATick_stopsTheTicks_untilItsWaitEnds()
{
    QFETCH(bool, answered);
    constexpr int limitMs = 1000;
    constexpr int beyondTheLimits = 250; // ticks of 5 ms
    m_bench->server().setReplyFor(WindowBench::suggestPath, held(httpReply("{}")));
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply("{}")));
    m_bench->setSuggestionLimit(limitMs);
    m_bench->window().findChild<QARegion *>()->service().askTimeoutMs
        = answered ? amplyMs : limitMs;
    m_bench->onceRequested(WindowBench::suggestPath, 1,
                           [this] { m_bench->send(QStringLiteral("问")); });
    bool noTickWhileItHung = false;
    m_bench->onceRequested(WindowBench::askPath, 1, [this, answered, &noTickWhileItHung] {
        QTimer other; // as quick as the ticks, which wait for the call that all this is inside of
        const QSignalSpy others(&other, &QTimer::timeout);
        const QSignalSpy ticks(&m_bench->timer("associationTick"), &QTimer::timeout);
        other.start(m_bench->timer("associationTick").interval());
        m_bench->input()->setPlainText(QStringLiteral("b"));
        m_bench->serveSuggestions(3);
        m_bench->setSuggestionLimit(amplyMs);
        QTRY_VERIFY_WITH_TIMEOUT(others.size() >= beyondTheLimits, amplyMs);
        QCOMPARE(ticks.size(), 0);
        QCOMPARE(calls(), 1);
        noTickWhileItHung = true;
        if (answered) {
            m_bench->server().release();
        }
    });
    m_bench->hurry("associationTick");
    m_bench->input()->setPlainText(QStringLiteral("a"));
    m_bench->timer("associationTick").start();
    QTRY_VERIFY_WITH_TIMEOUT(m_bench->popup() != nullptr, amplyMs);
    QVERIFY(noTickWhileItHung);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("问")});
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("b"));
    QCOMPARE(calls(), 2);
    m_bench->input()->setPlainText(QStringLiteral("bc"));
    QTRY_COMPARE_WITH_TIMEOUT(calls(), 3, amplyMs);
}

void TestSuggestionWaits::clickWhileAnAnswerIsAwaited_getsItsOwnAnswer()
{
    m_bench->server().setReplyFor(
        WindowBench::askPath,
        held(httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})")));
    m_bench->onceRequested(WindowBench::askPath, 1, [this] {
        tick(QStringLiteral("a"));
        QVERIFY(m_bench->popup() != nullptr);
        m_bench->server().setReplyFor(
            WindowBench::askPath,
            httpReply(R"({"errorCode":"0","result":{"resultType":"QA_NORMAL_RESULT",)"
                      R"("reply":"<p>答</p>"}})"));
        QTest::mouseClick(m_bench->suggestion(1), Qt::LeftButton);
        m_bench->server().release();
    });
    m_bench->send(QStringLiteral("先问"));
    QCOMPARE(m_bench->questions(), (QStringList{QStringLiteral("先问"), QStringLiteral("建议1")}));
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 2);
    QVERIFY(m_bench->popup() == nullptr);
    QVERIFY(m_bench->messages().last().startsWith(QStringLiteral("您好，未找到匹配的问题")));
}

QTEST_MAIN(TestSuggestionWaits)
#include "tst_suggestionwaits.moc"
