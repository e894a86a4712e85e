#include "tests/localchannel/support/channeltest.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>

#include <atomic>
#include <vector>

/// The whole channel: many clients, many and large messages, clients that leave or never read.
class TestChannelLoad : public ChannelTest
{
    Q_OBJECT

private slots:
    void questionOf64MiB_inPieces_isNoQuestion_andTheNextGoodOneIs();
    void clientThatLeavesInTheMiddle_doesNoHarm_data();
    void clientThatLeavesInTheMiddle_doesNoHarm();
    void clientThatNeverReads_losesNoQuestion();
    void tenThousandBeforeReadiness_goOutInOrderOnAFlatStack();
    void twoHundredClientsAtOnce_loseNothing();
    void clientsRightAfterOneAnother_areAllAcknowledged();
    void floodWhileTheWindowIsBusy_isHeldBack();
};

namespace {

/// How many clients countLeaving() has seen going.
std::atomic<int> clientsGone{0};

/// For a test that logs too much to keep.
void countLeaving(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (text.startsWith(clientLeft)) {
        ++clientsGone;
    }
}

} // namespace

void TestChannelLoad::questionOf64MiB_inPieces_isNoQuestion_andTheNextGoodOneIs()
{
    startListening();
    m_thread->rightRegionIniSuccess();
    const auto client = connected();
    QVERIFY(client);
    const QByteArray end = QByteArrayLiteral("the end\"}");
    client->send("{\"question\":\"" + QByteArray(64 * 1024 * 1024, 'x') + end);
    const auto wholeArrived = [this, &end] {
        const QStringList pieces
            = m_log->linesWith(QStringLiteral("info: sysguard bytearray date"));
        return !pieces.isEmpty() && pieces.last().endsWith(QString::fromLatin1(end));
    };
    QTRY_VERIFY_WITH_TIMEOUT(wholeArrived(), 4 * waitMs);
    QCOMPARE(m_asked, QStringList());
    QVERIFY(answersAGoodQuestion());
}

void TestChannelLoad::clientThatLeavesInTheMiddle_doesNoHarm_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("at once") << QByteArray();
    QTest::newRow("of a document") << QByteArrayLiteral("{\"question\":\"a");
    QTest::newRow("of a large one") << "{\"question\":\"" + QByteArray(1024 * 1024, 'x');
    QTest::newRow("before its acknowledgement") << questionDocument("a");
}

void TestChannelLoad::clientThatLeavesInTheMiddle_doesNoHarm()
{
    QFETCH(QByteArray, sent);
    startListening();
    m_thread->rightRegionIniSuccess();
    constexpr int clients = 10;
    for (int i = 0; i < clients; ++i) {
        const auto client = connected();
        QVERIFY(client);
        client->send(sent);
        client->abort();
    }
    QVERIFY(haveLeft(clients));
    QVERIFY(answersAGoodQuestion());
}

void TestChannelLoad::clientThatNeverReads_losesNoQuestion()
{
    constexpr int questions = 100;
    startListening();
    m_thread->rightRegionIniSuccess();
    QTcpSocket client;
    client.setReadBufferSize(1);
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    QTRY_COMPARE_WITH_TIMEOUT(client.state(), QAbstractSocket::ConnectedState, waitMs);
    client.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    for (int i = 0; i < questions; ++i) {
        client.write(questionDocument(QByteArray::number(i)));
        client.flush();
        QVERIFY(QTest::qWaitFor([this, i] { return m_asked.size() > i; }, waitMs));
    }
    QVERIFY(answersAGoodQuestion());
}

void TestChannelLoad::tenThousandBeforeReadiness_goOutInOrderOnAFlatStack()
{
    constexpr int questions = 10'000;
    constexpr quintptr flat = quintptr(16) * 1024; // bytes
    startListening();
    QStringList expected;
    QVector<QByteArray> documents;
    for (int i = 0; i < questions; ++i) {
        expected.append(QString::number(i));
        documents.append(questionDocument(QByteArray::number(i)));
    }
    QVERIFY(postAll(m_port, documents));
    QCOMPARE(m_asked, QStringList());
    m_thread->rightRegionIniSuccess();
    QTRY_COMPARE_WITH_TIMEOUT(m_asked.size(), questions, 2 * waitMs);
    QCOMPARE(m_asked, expected);
    QVERIFY2(m_highestFrame - m_lowestFrame < flat,
             qPrintable(QString::number(m_highestFrame - m_lowestFrame)));
    QVERIFY(answersAGoodQuestion());
    QCOMPARE(m_asked.size(), questions + 1);
}

void TestChannelLoad::twoHundredClientsAtOnce_loseNothing()
{
    constexpr int clients = 200;
    startListening();
    std::vector<std::unique_ptr<GuardClient>> all;
    QStringList expected;
    for (int i = 0; i < clients; ++i) {
        all.push_back(std::make_unique<GuardClient>(m_port));
        expected.append(QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0')));
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        QVERIFY(all[i]->connects());
        all[i]->send(questionDocument(expected.at(int(i)).toLatin1()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_log->lines().filter(replyLogged).size(), clients, waitMs);
    m_thread->rightRegionIniSuccess();
    QTRY_COMPARE_WITH_TIMEOUT(m_asked.size(), clients, waitMs);
    m_asked.sort();
    QCOMPARE(m_asked, expected);
    const auto acknowledged = [&all] {
        int bytes = 0;
        for (const auto &client : all) {
            bytes += client->received().size();
        }
        return bytes;
    };
    QTRY_COMPARE_WITH_TIMEOUT(acknowledged(), clients * acknowledgementBytes().size(), waitMs);
    QVERIFY(answersAGoodQuestion());
}

void TestChannelLoad::clientsRightAfterOneAnother_areAllAcknowledged()
{
    constexpr int clients = 500;
    startListening();
    m_thread->rightRegionIniSuccess();
    // The end of each must not reach the channel after the question of the next.
    QVERIFY(
        postAll(m_port, QVector<QByteArray>(clients, questionDocument("x")), Connections::OneEach));
    QCOMPARE(m_asked.size(), clients);
}

void TestChannelLoad::floodWhileTheWindowIsBusy_isHeldBack()
{
    constexpr qint64 flood = 256LL * 1024 * 1024;
    startListening();
    m_thread->rightRegionIniSuccess();
    clientsGone = 0;
    qInstallMessageHandler(countLeaving);
    // Blocking, so that nothing is read on this thread while as much is sent as goes.
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    QVERIFY(client.waitForConnected(waitMs));
    const QByteArray piece(1024 * 1024, '{');
    qint64 accepted = 0;
    while (accepted < flood) {
        client.write(piece);
        if (!client.waitForBytesWritten(1000)) {
            break; // the server takes no more
        }
        accepted += piece.size();
    }
    QVERIFY2(accepted < flood / 2, qPrintable(QString::number(accepted)));
    client.abort();
    // What it has sent is read to its end; until then it is the client that spoke last.
    QTRY_COMPARE_WITH_TIMEOUT(clientsGone.load(), 1, waitMs);
    QVERIFY(answersAGoodQuestion());
}

QTEST_GUILESS_MAIN(TestChannelLoad)
#include "tst_channelload.moc"
