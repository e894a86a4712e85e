#include "app/base/texttools.h"
#include "tests/localchannel/support/channeltest.h"

#include <QTest>

/// The whole channel: which messages are questions, and which client is told so.
class TestSysguardQuestsThread : public ChannelTest
{
    Q_OBJECT

private slots:
    void question_isHandedOverAndAcknowledged();
    void questionBeforeReadiness_isAcknowledgedAtOnce();
    void questionWhenReady_isAcknowledgedWhenItHasBeenDealtWith();
    void twoClientsInterleaved_theLastSpeakerGetsTheAcknowledgements();
    void aLeavesWhileBIsCurrent_bLosesItsAcknowledgement();
    void everyGoodMessage_isAcknowledged_data();
    void everyGoodMessage_isAcknowledged();
    void badMessage_isNotAnswered_andTheNextGoodOneIs_data();
    void badMessage_isNotAnswered_andTheNextGoodOneIs();
    void byteByByte_isNoQuestion_andTheNextGoodOneIs();
};

void TestSysguardQuestsThread::question_isHandedOverAndAcknowledged()
{
    startListening();
    m_thread->rightRegionIniSuccess();
    const auto client = asking("登录");
    QVERIFY(client);
    QTRY_COMPARE_WITH_TIMEOUT(client->received(), acknowledgementBytes(), waitMs);
    QCOMPARE(m_asked, QStringList(QStringLiteral("登录")));
    QVERIFY(!client->isClosed());
    QVERIFY(m_log->lines().contains(QStringLiteral("info: ") + replyLogged));
}

void TestSysguardQuestsThread::questionBeforeReadiness_isAcknowledgedAtOnce()
{
    startListening();
    const auto client = asking("a");
    QVERIFY(client);
    QTRY_COMPARE_WITH_TIMEOUT(client->received(), acknowledgementBytes(), waitMs);
    QCOMPARE(m_asked, QStringList());
    m_thread->rightRegionIniSuccess();
    QCOMPARE(m_asked, QStringList(QStringLiteral("a")));
    QCOMPARE(client->received(), acknowledgementBytes());
}

void TestSysguardQuestsThread::questionWhenReady_isAcknowledgedWhenItHasBeenDealtWith()
{
    startListening();
    m_thread->rightRegionIniSuccess();
    QStringList logged;
    m_whileAsked = [this, &logged] {
        logged = m_log->lines();
    };
    const auto client = asking("a");
    QVERIFY(client);
    QTRY_COMPARE_WITH_TIMEOUT(client->received(), acknowledgementBytes(), waitMs);
    QCOMPARE(logged.last(), QStringLiteral("info: emit sysQuests_signal now"));
    QCOMPARE(logged.filter(replyLogged), QStringList());
    QCOMPARE(m_log->lines().filter(replyLogged).size(), 1);
}

void TestSysguardQuestsThread::twoClientsInterleaved_theLastSpeakerGetsTheAcknowledgements()
{
    startListening();
    const auto a = asking("a");
    QVERIFY(a);
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), acknowledgementBytes(), waitMs);
    const auto b = asking("b");
    QVERIFY(b);
    QTRY_COMPARE_WITH_TIMEOUT(b->received(), acknowledgementBytes(), waitMs);
    a->send(questionDocument("c"));
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), acknowledgementBytes() + acknowledgementBytes(),
                              waitMs);
    m_thread->rightRegionIniSuccess();
    QTRY_COMPARE_WITH_TIMEOUT(
        m_asked, QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}),
        waitMs);
    QCOMPARE(b->received(), acknowledgementBytes());
}

void TestSysguardQuestsThread::aLeavesWhileBIsCurrent_bLosesItsAcknowledgement()
{
    startListening();
    const auto a = asking("a");
    QVERIFY(a);
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), acknowledgementBytes(), waitMs);
    const auto b = asking("b");
    QVERIFY(b);
    QTRY_COMPARE_WITH_TIMEOUT(b->received(), acknowledgementBytes(), waitMs);
    a->leave();
    QTRY_VERIFY_WITH_TIMEOUT(b->isClosed(), waitMs);
    m_thread->rightRegionIniSuccess();
    QTRY_COMPARE_WITH_TIMEOUT(m_asked.size(), 2, waitMs); // the questions are not lost
    QVERIFY(answersAGoodQuestion());
}

void TestSysguardQuestsThread::everyGoodMessage_isAcknowledged_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("question");
    QTest::newRow("blanks around")
        << " \r\n" + questionDocument("a") + "\r\n " << QStringLiteral("a");
    QTest::newRow("array") << QByteArrayLiteral("[]") << QString();
    QTest::newRow("no question") << QByteArrayLiteral("{}") << QString();
    QTest::newRow("question that is no text") << QByteArrayLiteral("{\"question\":1}") << QString();
    QTest::newRow("rubbish behind a NUL")
        << questionDocument("a") + QByteArray("\0{", 2) << QStringLiteral("a");
    QTest::newRow("bytes that are no UTF-8")
        << questionDocument("a\xff") << throughLocalEncoding(QStringLiteral("a\uFFFD"));
}

void TestSysguardQuestsThread::everyGoodMessage_isAcknowledged()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, question);
    startListening();
    m_thread->rightRegionIniSuccess();
    const auto client = connected();
    QVERIFY(client);
    client->send(data);
    QTRY_COMPARE_WITH_TIMEOUT(client->received(), acknowledgementBytes(), waitMs);
    QCOMPARE(m_asked, QStringList(question));
}

void TestSysguardQuestsThread::badMessage_isNotAnswered_andTheNextGoodOneIs_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("half a document") << QByteArrayLiteral("{\"question\":\"a");
    QTest::newRow("two documents") << questionDocument("a") + questionDocument("b");
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    QTest::newRow("a NUL") << QByteArray(1, '\0');
    QTest::newRow("100,000 deep") << QByteArray(100'000, '[');
    QTest::newRow("a number") << QByteArrayLiteral("7");
}

void TestSysguardQuestsThread::badMessage_isNotAnswered_andTheNextGoodOneIs()
{
    QFETCH(QByteArray, data);
    startListening();
    m_thread->rightRegionIniSuccess();
    const auto client = connected();
    QVERIFY(client);
    client->send(data);
    QTRY_VERIFY_WITH_TIMEOUT(badMessages() > 0, waitMs);
    QVERIFY(answersAGoodQuestion());
    QCOMPARE(client->received(), QByteArray());
    QCOMPARE(m_asked.size(), 1);
}

void TestSysguardQuestsThread::byteByByte_isNoQuestion_andTheNextGoodOneIs()
{
    startListening();
    m_thread->rightRegionIniSuccess();
    const auto client = connected();
    QVERIFY(client);
    int sent = 0;
    for (const char byte : questionDocument("a")) {
        client->send(QByteArray(1, byte));
        ++sent;
        QVERIFY(QTest::qWaitFor([this, sent] { return badMessages() == sent; }, waitMs));
    }
    QCOMPARE(client->received(), QByteArray());
    QCOMPARE(m_asked, QStringList());
    QVERIFY(answersAGoodQuestion());
}

QTEST_GUILESS_MAIN(TestSysguardQuestsThread)
#include "tst_sysguardqueststhread.moc"
