#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

/// Hot questions in the window: lists of all lengths, odd entries, and clicks on them.
class TestHotQuestions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void lists_data();
    void lists();
    void listOfNone_isAFailure();
    void oddEntries_data();
    void oddEntries();
    void click_asksAsHotQuestion_withItsId_data();
    void click_asksAsHotQuestion_withItsId();
    void clickOnAnEmptyRow_asksNothing();
    void clickOffline_onAQuestionThatIsNotThere_showsNothing();
    void clickWhileAnAnswerIsAwaited_getsItsOwnAnswer();
    void refreshWhileTheClickedQuestionIsAwaited();

private:
    void serve(const QJsonArray &entries);
    void next();

    std::unique_ptr<WindowBench> m_bench;
};

void TestHotQuestions::init()
{
    m_bench = std::make_unique<WindowBench>();
}

void TestHotQuestions::cleanup()
{
    m_bench.reset();
}

void TestHotQuestions::serve(const QJsonArray &entries)
{
    const QJsonObject reply{{QStringLiteral("errorCode"), QStringLiteral("0")},
                            {QStringLiteral("result"), entries}};
    m_bench->server().setReplyFor(WindowBench::hotPath,
                                  httpReply(QJsonDocument(reply).toJson(QJsonDocument::Compact)));
}

void TestHotQuestions::next()
{
    QTest::mouseClick(m_bench->button(QStringLiteral("换一换")), Qt::LeftButton);
}

void TestHotQuestions::lists_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QVector<int>>("starts");
    QTest::newRow("1") << 1 << QVector<int>{0, 0};
    QTest::newRow("10") << 10 << QVector<int>{0, 0};
    QTest::newRow("16") << 16 << QVector<int>{0, 0};
    QTest::newRow("17") << 17 << QVector<int>{0, 0};
    QTest::newRow("31") << 31 << QVector<int>{0, 0};
    QTest::newRow("32") << 32 << QVector<int>{0, 16, 0};
    QTest::newRow("40") << 40 << QVector<int>{0, 16, 0, 16};
    QTest::newRow("1000") << 1000 << QVector<int>{0, 16, 32, 48};
}

void TestHotQuestions::lists()
{
    QFETCH(int, count);
    QFETCH(QVector<int>, starts);
    m_bench->serveHotQuestions(count);
    m_bench->startGreeted();
    for (const int start : starts) {
        const QStringList rows = m_bench->hotRows();
        QCOMPARE(rows.size(), 16);
        for (int row = 0; row < rows.size(); ++row) {
            const QString question
                = start + row < count ? QStringLiteral("问%1").arg(start + row + 1) : QString();
            QCOMPARE(rows.at(row), QStringLiteral("%1. %2").arg(row + 1).arg(question));
        }
        next();
    }
}

void TestHotQuestions::listOfNone_isAFailure()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    QVERIFY(m_bench->hotRows().isEmpty());
    QVERIFY(!m_bench->button(QStringLiteral("换一换"))->isVisible());
}

void TestHotQuestions::oddEntries_data()
{
    QTest::addColumn<QJsonValue>("entry");
    QTest::addColumn<QString>("row");
    QTest::newRow("no text") << QJsonValue(QJsonObject{{QStringLiteral("id"), 1}})
                             << QStringLiteral("1. ");
    QTest::newRow("no object") << QJsonValue(QStringLiteral("问")) << QStringLiteral("1. ");
    QTest::newRow("null") << QJsonValue() << QStringLiteral("1. ");
    QTest::newRow("text that is a number")
        << QJsonValue(QJsonObject{{QStringLiteral("question"), 5}}) << QStringLiteral("1. ");
    QTest::newRow("markup") << QJsonValue(
        QJsonObject{{QStringLiteral("question"), QStringLiteral("<b>粗</b>")}})
                            << QStringLiteral("1. <b>粗</b>");
    QTest::newRow("lines") << QJsonValue(
        QJsonObject{{QStringLiteral("question"), QStringLiteral("一\n二\r\n三\t四")}})
                           << QStringLiteral("1. 一 二  三 四");
    QTest::newRow("other lines") << QJsonValue(
        QJsonObject{{QStringLiteral("question"), QStringLiteral("一\u2028二\u2029三\u0085四")}})
                                 << QStringLiteral("1. 一 二 三 四");
}

void TestHotQuestions::oddEntries()
{
    QFETCH(QJsonValue, entry);
    QFETCH(QString, row);
    serve({entry});
    m_bench->startGreeted();
    QCOMPARE(m_bench->hotRows().first(), row);
}

void TestHotQuestions::click_asksAsHotQuestion_withItsId_data()
{
    QTest::addColumn<QJsonValue>("id");
    QTest::addColumn<qint64>("asked");
    QTest::newRow("missing") << QJsonValue(QJsonValue::Undefined) << Q_INT64_C(0);
    QTest::newRow("negative") << QJsonValue(-5) << Q_INT64_C(-5);
    QTest::newRow("2^31") << QJsonValue(2147483648.0) << Q_INT64_C(2147483648);
    QTest::newRow("2^53") << QJsonValue(9007199254740992.0) << Q_INT64_C(9007199254740992);
    QTest::newRow("text") << QJsonValue(QStringLiteral("7")) << Q_INT64_C(0);
}

void TestHotQuestions::click_asksAsHotQuestion_withItsId()
{
    QFETCH(QJsonValue, id);
    QFETCH(qint64, asked);
    const QString question(10'000, QChar(u'长'));
    QJsonObject entry{{QStringLiteral("question"), question}};
    if (!id.isUndefined()) {
        entry.insert(QStringLiteral("id"), id);
    }
    serve({entry});
    m_bench->startGreeted();
    const LogCapture log;
    QTest::mouseClick(m_bench->hotRow(1), Qt::LeftButton);
    QCOMPARE(log.lines().value(0), QStringLiteral("info: hotRecom click.question: ") + question
                                       + QStringLiteral("questionId: ") + QString::number(asked));
    QCOMPARE(log.lines().value(1), QStringLiteral("info: getIDP: true"));
    const QJsonObject body = m_bench->bodies(WindowBench::askPath).value(0);
    QCOMPARE(body.value(QStringLiteral("rawQuery")).toString(), question);
    QCOMPARE(body.value(QStringLiteral("questionId")).toVariant().toLongLong(), asked);
    QVERIFY(body.toVariantMap().values().contains(QStringLiteral("hotquestion")));
}

void TestHotQuestions::clickOnAnEmptyRow_asksNothing()
{
    m_bench->serveHotQuestions(1);
    m_bench->startGreeted();
    QTest::mouseClick(m_bench->hotRow(16), Qt::LeftButton);
    QVERIFY(m_bench->questions().isEmpty());
    QVERIFY(m_bench->bodies(WindowBench::askPath).isEmpty());
}

void TestHotQuestions::clickOffline_onAQuestionThatIsNotThere_showsNothing()
{
    m_bench->window().startForLauncher();
    const LogCapture log;
    m_bench->window().hotRecom_list_click(QStringLiteral("没有这个"), 3);
    QCOMPARE(log.lines(), (QStringList{QStringLiteral("info: hotRecom click.question: 没有这个"
                                                      "questionId: 3"),
                                       QStringLiteral("info: getIDP: false"),
                                       QStringLiteral("info: locatNum: -1")}));
    QVERIFY(m_bench->questions().isEmpty());
    QCOMPARE(m_bench->window().getLocationQuest_Num(QStringLiteral("没有这个")), -1);
}

void TestHotQuestions::clickWhileAnAnswerIsAwaited_getsItsOwnAnswer()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply("{}")));
    m_bench->onceRequested(WindowBench::askPath, 1, [this] {
        m_bench->server().setReplyFor(
            WindowBench::askPath,
            httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})"));
        QTest::mouseClick(m_bench->hotRow(3), Qt::LeftButton);
        QVERIFY(m_bench->messages().last().startsWith(QStringLiteral("您好，未找到")));
        m_bench->server().release();
    });
    m_bench->send(QStringLiteral("先问"));
    QCOMPARE(m_bench->questions(), (QStringList{QStringLiteral("先问"), QStringLiteral("问3")}));
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 2);
}

void TestHotQuestions::refreshWhileTheClickedQuestionIsAwaited()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(WindowBench::askPath, held(httpReply("{}")));
    m_bench->serveHotQuestions(5);
    m_bench->onceRequested(WindowBench::askPath, 1, [this] {
        m_bench->window().refreshHotQuestionsTimer(); // the row whose click is under way goes
        QTRY_COMPARE(m_bench->hotRows().at(5), QStringLiteral("6. "));
        m_bench->server().release();
    });
    QTest::mouseClick(m_bench->hotRow(9), Qt::LeftButton);
    QCOMPARE(m_bench->questions(), QStringList{QStringLiteral("问9")});
}

QTEST_MAIN(TestHotQuestions)
#include "tst_hotquestions.moc"
