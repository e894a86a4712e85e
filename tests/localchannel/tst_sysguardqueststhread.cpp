#include "app/base/apppaths.h"
#include "app/base/texttools.h"
#include "localchannel/sysguardqueststhread.h"
#include "tests/localchannel/support/freeport.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QDir>
#include <QTcpServer>
#include <QTest>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

/// The whole channel: real clients, the server on its thread, the questions on this one.
class TestSysguardQuestsThread : public QObject
{
    Q_OBJECT

signals:
    /// As the main window reports a finished question.
    void finished();

private slots:
    void init();
    void cleanup();

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
    void questionOf64MiB_inPieces_isNoQuestion_andTheNextGoodOneIs();
    void clientThatLeavesInTheMiddle_doesNoHarm_data();
    void clientThatLeavesInTheMiddle_doesNoHarm();
    void clientThatNeverReads_losesNoQuestion();
    void tenThousandBeforeReadiness_goOutInOrderOnAFlatStack();
    void twoHundredClientsAtOnce_loseNothing();
    void clientsRightAfterOneAnother_areAllAcknowledged();
    void floodWhileTheWindowIsBusy_isHeldBack();

    void portTaken_leavesTheQueueWorking();
    void portOutOfRange_countsModulo65536();
    void portZero_listens();
    void stopWithClients_closesTheirConnections();
    void stopWhileTheServerIsHeldBack_ends();
    void stopRightAfterTheStart_ends();
    void destructionWhileClientsSend_isClean();

private:
    void start(const QString &port);
    void startListening();
    [[nodiscard]] std::unique_ptr<GuardClient> connected();
    [[nodiscard]] std::unique_ptr<GuardClient> asking(const QByteArray &question);
    [[nodiscard]] bool answersAGoodQuestion();
    [[nodiscard]] int badMessages() const;
    [[nodiscard]] bool haveLeft(int clients) const;
    void ask(const QJsonObject &object);

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<SysguardQuestsThread> m_thread;
    quint16 m_port = 0;
    QStringList m_asked;
    std::function<void()> m_whileAsked; ///< called while a question is being dealt with
    quintptr m_lowestFrame = 0;
    quintptr m_highestFrame = 0;
};

namespace {

constexpr int waitMs = 30'000;
const QString replyLogged = QStringLiteral("reply content: {\"code\":\"0\"}");
const QString success = QStringLiteral("info: Tcp listen the port ");
// A client whose connection is deleted under it is no longer called QTcpSocket.
const QString leaving = QStringLiteral("Client is disconnected from Q");

/// How many clients countLeaving() has seen going.
std::atomic<int> clientsGone{0};

/// For a test that logs too much to keep.
void countLeaving(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (text.startsWith(leaving)) {
        ++clientsGone;
    }
}

QByteArray document(const QByteArray &question)
{
    return "{\"question\":\"" + question + "\"}";
}

} // namespace

void TestSysguardQuestsThread::init()
{
    m_config = std::make_unique<TestConfig>();
    QVERIFY(QDir::setCurrent(m_config->root()));
    initAppPaths(QString());
    m_log = std::make_unique<LogCapture>();
    m_asked.clear();
    m_whileAsked = nullptr;
    m_lowestFrame = 0;
    m_highestFrame = 0;
}

void TestSysguardQuestsThread::cleanup()
{
    m_thread.reset();
    QCOMPARE(m_log->foreignLines(), QStringList()); // the toolkit has nothing to complain about
    m_log.reset();
    QDir::setCurrent(QDir::rootPath());
    m_config.reset();
}

void TestSysguardQuestsThread::start(const QString &port)
{
    m_config->set(QStringLiteral("SysguardPort/port1"), port);
    m_thread = std::make_unique<SysguardQuestsThread>(this);
    connect(m_thread.get(), &SysguardQuestsThread::sysQuests_signal, this,
            &TestSysguardQuestsThread::ask);
    connect(this, &TestSysguardQuestsThread::finished, m_thread.get(),
            &SysguardQuestsThread::QAFinishedNestQuest, Qt::QueuedConnection);
    m_thread->start();
}

void TestSysguardQuestsThread::startListening()
{
    m_port = freePort();
    start(QString::number(m_port));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(success).size(), 1, waitMs);
}

void TestSysguardQuestsThread::ask(const QJsonObject &object)
{
    const char here = 0;
    const auto frame = reinterpret_cast<quintptr>(&here);
    m_lowestFrame = m_lowestFrame == 0 ? frame : qMin(m_lowestFrame, frame);
    m_highestFrame = qMax(m_highestFrame, frame);
    m_asked.append(object.value(QLatin1String("question")).toString());
    if (m_whileAsked) {
        m_whileAsked();
    }
    emit finished();
}

std::unique_ptr<GuardClient> TestSysguardQuestsThread::connected()
{
    auto client = std::make_unique<GuardClient>(m_port);
    return client->connects() ? std::move(client) : nullptr;
}

std::unique_ptr<GuardClient> TestSysguardQuestsThread::asking(const QByteArray &question)
{
    auto client = connected();
    if (client) {
        client->send(document(question));
    }
    return client;
}

bool TestSysguardQuestsThread::answersAGoodQuestion()
{
    const auto client = asking("good");
    return client && QTest::qWaitFor([&client] { return !client->received().isEmpty(); }, waitMs)
        && client->received() == acknowledgementBytes() && m_asked.last() == QLatin1String("good");
}

bool TestSysguardQuestsThread::haveLeft(int clients) const
{
    // Whoever leaves takes the current client along, so a test waits before the next one asks.
    return QTest::qWaitFor(
        [this, clients] {
            return m_log->linesWith(QStringLiteral("info: ") + leaving).size() == clients;
        },
        waitMs);
}

int TestSysguardQuestsThread::badMessages() const
{
    return m_log->linesWith(QStringLiteral("graver: parseJson:")).size();
}

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
    a->send(document("c"));
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
    QTest::newRow("blanks around") << " \r\n" + document("a") + "\r\n " << QStringLiteral("a");
    QTest::newRow("array") << QByteArrayLiteral("[]") << QString();
    QTest::newRow("no question") << QByteArrayLiteral("{}") << QString();
    QTest::newRow("question that is no text") << QByteArrayLiteral("{\"question\":1}") << QString();
    QTest::newRow("rubbish behind a NUL")
        << document("a") + QByteArray("\0{", 2) << QStringLiteral("a");
    QTest::newRow("bytes that are no UTF-8")
        << document("a\xff") << throughLocalEncoding(QStringLiteral("a\uFFFD"));
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
    QTest::newRow("two documents") << document("a") + document("b");
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
    for (const char byte : document("a")) {
        client->send(QByteArray(1, byte));
        ++sent;
        QVERIFY(QTest::qWaitFor([this, sent] { return badMessages() == sent; }, waitMs));
    }
    QCOMPARE(client->received(), QByteArray());
    QCOMPARE(m_asked, QStringList());
    QVERIFY(answersAGoodQuestion());
}

void TestSysguardQuestsThread::questionOf64MiB_inPieces_isNoQuestion_andTheNextGoodOneIs()
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

void TestSysguardQuestsThread::clientThatLeavesInTheMiddle_doesNoHarm_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("at once") << QByteArray();
    QTest::newRow("of a document") << QByteArrayLiteral("{\"question\":\"a");
    QTest::newRow("of a large one") << "{\"question\":\"" + QByteArray(1024 * 1024, 'x');
    QTest::newRow("before its acknowledgement") << document("a");
}

void TestSysguardQuestsThread::clientThatLeavesInTheMiddle_doesNoHarm()
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

void TestSysguardQuestsThread::clientThatNeverReads_losesNoQuestion()
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
        client.write(document(QByteArray::number(i)));
        client.flush();
        QVERIFY(QTest::qWaitFor([this, i] { return m_asked.size() > i; }, waitMs));
    }
    QVERIFY(answersAGoodQuestion());
}

void TestSysguardQuestsThread::tenThousandBeforeReadiness_goOutInOrderOnAFlatStack()
{
    constexpr int questions = 10'000;
    constexpr quintptr flat = 16 * 1024; // bytes
    startListening();
    QStringList expected;
    QVector<QByteArray> documents;
    for (int i = 0; i < questions; ++i) {
        expected.append(QString::number(i));
        documents.append(document(QByteArray::number(i)));
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

void TestSysguardQuestsThread::twoHundredClientsAtOnce_loseNothing()
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
        all[i]->send(document(expected.at(int(i)).toLatin1()));
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

void TestSysguardQuestsThread::clientsRightAfterOneAnother_areAllAcknowledged()
{
    constexpr int clients = 500;
    startListening();
    m_thread->rightRegionIniSuccess();
    // The end of each must not reach the channel after the question of the next.
    QVERIFY(postAll(m_port, QVector<QByteArray>(clients, document("x")), Connections::OneEach));
    QCOMPARE(m_asked.size(), clients);
}

void TestSysguardQuestsThread::floodWhileTheWindowIsBusy_isHeldBack()
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

void TestSysguardQuestsThread::portTaken_leavesTheQueueWorking()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress(QHostAddress::LocalHost)));
    start(QString::number(other.serverPort()));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(QStringLiteral("graver: ")).size(), 1, waitMs);
    m_thread->socketReadData(document("a"));
    m_thread->rightRegionIniSuccess();
    QCOMPARE(m_asked, QStringList(QStringLiteral("a")));
    QCOMPARE(m_log->lines().filter(replyLogged), QStringList());
}

void TestSysguardQuestsThread::portOutOfRange_countsModulo65536()
{
    m_port = freePort();
    start(QString::number(65536 + m_port));
    QTRY_COMPARE_WITH_TIMEOUT(
        m_log->timelessLines().last(),
        QStringLiteral("info: Tcp listen the port %1 is success., time: <time>").arg(m_port),
        waitMs);
    QCOMPARE(m_log->lines().first(),
             QStringLiteral("info: SysguardQuestsThread port =%1").arg(65536 + m_port));
    m_thread->rightRegionIniSuccess();
    QVERIFY(answersAGoodQuestion());
}

void TestSysguardQuestsThread::portZero_listens()
{
    start(QStringLiteral("0"));
    QTRY_COMPARE_WITH_TIMEOUT(m_log->linesWith(success + QLatin1Char('0')).size(), 1, waitMs);
}

void TestSysguardQuestsThread::stopWithClients_closesTheirConnections()
{
    startListening();
    const auto a = asking("a");
    const auto silent = connected();
    QVERIFY(a && silent);
    QTRY_COMPARE_WITH_TIMEOUT(a->received(), acknowledgementBytes(), waitMs);
    m_thread->stop();
    QVERIFY(m_thread->wait(waitMs));
    QTRY_VERIFY_WITH_TIMEOUT(a->isClosed() && silent->isClosed(), waitMs);
    m_thread->socketReadData(document("late")); // nobody is there to acknowledge it
}

void TestSysguardQuestsThread::stopWhileTheServerIsHeldBack_ends()
{
    startListening();
    const auto client = connected();
    QVERIFY(client);
    QTcpSocket sender;
    sender.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    QVERIFY(sender.waitForConnected(waitMs));
    const QByteArray piece(1024 * 1024, '{');
    do {
        sender.write(piece);
    } while (sender.waitForBytesWritten(1000)); // until the server is held back
    m_thread->stop();
    QVERIFY(m_thread->wait(waitMs));
}

void TestSysguardQuestsThread::stopRightAfterTheStart_ends()
{
    for (int i = 0; i < 50; ++i) {
        start(QStringLiteral("0"));
        m_thread.reset();
    }
}

void TestSysguardQuestsThread::destructionWhileClientsSend_isClean()
{
    for (int i = 0; i < 10; ++i) {
        m_log->clear();
        startListening();
        m_thread->rightRegionIniSuccess();
        std::vector<std::unique_ptr<GuardClient>> clients;
        for (int j = 0; j < 5; ++j) {
            clients.push_back(asking(QByteArray::number(j)));
            QVERIFY(clients.back());
        }
        m_thread.reset();
    }
}

QTEST_GUILESS_MAIN(TestSysguardQuestsThread)
#include "tst_sysguardqueststhread.moc"
