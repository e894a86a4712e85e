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

/// Suggestions while the user types, in the window and from a real server.
class TestSuggestions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tick_runsOnceASecond();
    void oneCharacter_asksOnce_untilTheTextChanges();
    void changeOfBlanks_asksAgain();
    void typedText_isSentAsItStands();
    void beforeTheFirstHotQuestions_nothingIsAsked();
    void afterAFailedFirstFetch_suggestionsAreAskedAllTheSame();
    void emptyBox_asksNothing_andClosesThePopup();
    void nextReply_replacesThePopup();
    void replyWithoutSuggestions_showsNothing();
    void failedCall_showsNothing_data();
    void failedCall_showsNothing();
    void click_clearsTheBox_andAsksAsAssociate();
    void clickWithTheKeyboard_asksToo();
    void closeButton_closesOnly();
    void esc_closes_fromBoxAndRow();
    void runawayPattern_doesNotFreeze();
    void popup_growsAboveTheInputPanel();

private:
    void tick(const QString &text);
    [[nodiscard]] int calls() const { return m_bench->bodies(WindowBench::suggestPath).size(); }

    std::unique_ptr<WindowBench> m_bench;
};

void TestSuggestions::init()
{
    m_bench = std::make_unique<WindowBench>();
    if (QLatin1String(QTest::currentTestFunction())
            != QStringLiteral("beforeTheFirstHotQuestions_nothingIsAsked")
        && QLatin1String(QTest::currentTestFunction())
               != QStringLiteral("afterAFailedFirstFetch_suggestionsAreAskedAllTheSame")) {
        m_bench->startGreeted();
    }
    if (QLatin1String(QTest::currentTestFunction()) != QStringLiteral("tick_runsOnceASecond")) {
        m_bench->timer("associationTick").stop(); // the tests tick themselves
    }
}

void TestSuggestions::cleanup()
{
    m_bench.reset();
}

void TestSuggestions::tick(const QString &text)
{
    m_bench->input()->setPlainText(text);
    m_bench->window().showAssociation();
}

void TestSuggestions::tick_runsOnceASecond()
{
    QVERIFY(m_bench->timer("associationTick").isActive());
    QCOMPARE(m_bench->timer("associationTick").interval(), 1000);
    QTest::keyClicks(m_bench->input(), QStringLiteral("a"));
    QTRY_VERIFY(m_bench->popup() != nullptr);
}

void TestSuggestions::oneCharacter_asksOnce_untilTheTextChanges()
{
    const LogCapture log;
    tick(QStringLiteral("a"));
    m_bench->window().showAssociation();
    m_bench->window().showAssociation();
    QCOMPARE(calls(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("info: nSize")),
             QStringList{QStringLiteral("info: nSize_association: 3")});
    tick(QStringLiteral("ab"));
    QCOMPARE(calls(), 2);
}

void TestSuggestions::changeOfBlanks_asksAgain()
{
    tick(QStringLiteral("a"));
    tick(QStringLiteral("a "));
    tick(QStringLiteral(" "));
    QCOMPARE(calls(), 3);
}

void TestSuggestions::typedText_isSentAsItStands()
{
    tick(QStringLiteral(" 桌面\n黑屏 "));
    QString sent;
    for (const QJsonValue value : m_bench->bodies(WindowBench::suggestPath).value(0)) {
        if (value.toString().contains(QStringLiteral("桌面"))) {
            sent = value.toString();
        }
    }
    QCOMPARE(sent, QStringLiteral(" 桌面\n黑屏 "));
}

void TestSuggestions::beforeTheFirstHotQuestions_nothingIsAsked()
{
    tick(QStringLiteral("a"));
    QCOMPARE(m_bench->server().connectionCount(), 0);
    QVERIFY(m_bench->popup() == nullptr);
    m_bench->startGreeted();
    m_bench->window().showAssociation(); // the same text
    QCOMPARE(calls(), 0);
    tick(QStringLiteral("ab"));
    QCOMPARE(calls(), 1);
}

void TestSuggestions::afterAFailedFirstFetch_suggestionsAreAskedAllTheSame()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() != nullptr);
}

void TestSuggestions::emptyBox_asksNothing_andClosesThePopup()
{
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() != nullptr);
    tick(QString());
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(calls(), 1);
    m_bench->window().showAssociation(); // closes what is closed
    tick(QStringLiteral("a"));
    QCOMPARE(calls(), 2);
    QVERIFY(m_bench->popup() != nullptr);
}

void TestSuggestions::nextReply_replacesThePopup()
{
    tick(QStringLiteral("a"));
    m_bench->serveSuggestions(10);
    tick(QStringLiteral("ab"));
    QCOMPARE(m_bench->popup()->geometry(), QRect(0, 194, 648, 296));
    QTRY_COMPARE(m_bench->window().findChildren<SuggestionPopup *>().size(), 1);
}

void TestSuggestions::replyWithoutSuggestions_showsNothing()
{
    tick(QStringLiteral("a"));
    m_bench->serveSuggestions(0);
    const LogCapture log;
    tick(QStringLiteral("ab"));
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(log.linesWith(QStringLiteral("info: nSize")),
             QStringList{QStringLiteral("info: nSize_association: 0")});
}

void TestSuggestions::failedCall_showsNothing_data()
{
    QTest::addColumn<QByteArray>("manner");
    QTest::newRow("no JSON") << QByteArray("text");
    QTest::newRow("dropped") << QByteArray("dropped");
    QTest::newRow("no answer in time") << QByteArray("held");
}

void TestSuggestions::failedCall_showsNothing()
{
    QFETCH(QByteArray, manner);
    const ServedReply reply = manner == "held"    ? held(httpReply("{}"))
                            : manner == "dropped" ? droppedReply()
                                                  : httpReply(manner);
    m_bench->server().setReplyFor(WindowBench::suggestPath, reply);
    if (manner == "held") {
        m_bench->setSuggestionLimit(shortMs);
    }
    tick(QStringLiteral("a"));
    QVERIFY(m_bench->popup() == nullptr);
    m_bench->setSuggestionLimit(amplyMs);
    m_bench->serveSuggestions(3);
    tick(QStringLiteral("ab"));
    QVERIFY(m_bench->popup() != nullptr);
}

void TestSuggestions::click_clearsTheBox_andAsksAsAssociate()
{
    tick(QStringLiteral("a"));
    QTest::mouseClick(m_bench->suggestion(2), Qt::LeftButton);
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->input()->toPlainText(), QString());
    QCOMPARE(m_bench->window().focusWidget(), m_bench->input());
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("建议2")});
    const auto asked = m_bench->bodies(WindowBench::askPath);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked.first().value(QStringLiteral("rawQuery")).toString(), QStringLiteral("建议2"));
    QVERIFY(asked.first().toVariantMap().values().contains(QStringLiteral("associate")));
    QCOMPARE(asked.first().value(QStringLiteral("questionId")).toInt(), 102);
    m_bench->window().showAssociation();
    QCOMPARE(calls(), 1);
}

void TestSuggestions::clickWithTheKeyboard_asksToo()
{
    tick(QStringLiteral("a"));
    m_bench->suggestion(1)->setFocus();
    QTest::keyClick(m_bench->suggestion(1), Qt::Key_Space);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("建议1")});
    QCOMPARE(m_bench->window().focusWidget(), m_bench->input());
}

void TestSuggestions::closeButton_closesOnly()
{
    tick(QStringLiteral("a"));
    auto *close = m_bench->popup()->findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("a"));
    QVERIFY(m_bench->questions().isEmpty());
    m_bench->window().showAssociation();
    QVERIFY(m_bench->popup() == nullptr);
    tick(QString());
    QVERIFY(m_bench->popup() == nullptr);
}

void TestSuggestions::esc_closes_fromBoxAndRow()
{
    tick(QStringLiteral("a"));
    QTest::keyClick(m_bench->input(), Qt::Key_Escape);
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->input()->toPlainText(), QStringLiteral("a"));
    tick(QStringLiteral("ab"));
    m_bench->suggestion(2)->setFocus();
    QTest::keyClick(m_bench->suggestion(2), Qt::Key_Escape);
    QVERIFY(m_bench->popup() == nullptr);
    QCOMPARE(m_bench->window().focusWidget(), m_bench->input());
    QTest::keyClick(m_bench->input(), Qt::Key_Escape); // nothing is open
    QVERIFY(m_bench->window().isVisible());
}

void TestSuggestions::runawayPattern_doesNotFreeze()
{
    const LogCapture log;
    m_bench->serveSuggestions(21);
    tick(QStringLiteral("((.*)*)*x((a+)+)+$"));
    QVERIFY(m_bench->popup() != nullptr);
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestSuggestions::popup_growsAboveTheInputPanel()
{
    tick(QStringLiteral("a"));
    QCOMPARE(m_bench->popup()->geometry(), QRect(0, 390, 648, 100));
    const QWidget *shown = m_bench->window().childAt(300, 440);
    QVERIFY(m_bench->popup()->isAncestorOf(shown));
}

QTEST_MAIN(TestSuggestions)
#include "tst_suggestions.moc"
