#include "app/base/apppaths.h"
#include "localchannel/sysguardqueststhread.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"

#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// Which question of the guard tool is handed over when; without a server.
class TestGuardQueue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void port_isReadFromTheLayoutsFile_data();
    void port_isReadFromTheLayoutsFile();
    void portThatIsNoNumber_isZero_data();
    void portThatIsNoNumber_isZero();
    void unknownLayout_readsNoFile();
    void parent_isNotTheOwner();

    void questionBeforeReadiness_isHeldAndThenHandedOver();
    void threeQuestionsBeforeReadiness_goOutOneAtATime();
    void finishedQuestionWithAnEmptyList_doesAndLogsNothing();
    void readinessWithAnEmptyList_isOnlyLogged();
    void readinessAgain_handsOverTheNext();
    void questionWhenReady_goesOutAtOnce();
    void questionWhileAnotherWaits_waitsBehindIt();
    void questionDuringAnAtOnceQuestion_goesOutAtOnceToo();
    void questionsInsideEachOther_areBounded();
    void objectIsHandedOverUnchanged();
    void array_handsOverAnEmptyObject();
    void badMessage_isLoggedAndDropped();
    void receivedText_isLoggedUpToTheFirstNul();
    void stopped_handsOverNothingMore();

private:
    void makeQueue();
    void post(const QByteArray &question);
    [[nodiscard]] QStringList handedOver() const;

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<SysguardQuestsThread> m_queue;
    std::unique_ptr<QSignalSpy> m_questions;
};

namespace {

const QString portKey = QStringLiteral("SysguardPort/port1");

QString questionOf(const QJsonObject &object)
{
    return object.value(QLatin1String("question")).toString();
}

QString received(const QByteArray &question)
{
    return QStringLiteral("info: sysguard bytearray date")
         + QString::fromUtf8(questionDocument(question));
}

} // namespace

void TestGuardQueue::init()
{
    m_config = std::make_unique<TestConfig>();
    m_config->set(portKey, QStringLiteral("26001"));
    m_config->enter();
    m_log = std::make_unique<LogCapture>();
    makeQueue();
    m_log->clear();
}

void TestGuardQueue::cleanup()
{
    m_queue.reset();
    m_log.reset();
    m_config.reset();
}

void TestGuardQueue::makeQueue()
{
    m_queue = std::make_unique<SysguardQuestsThread>(this);
    m_questions
        = std::make_unique<QSignalSpy>(m_queue.get(), &SysguardQuestsThread::sysQuests_signal);
}

void TestGuardQueue::post(const QByteArray &question)
{
    m_queue->socketReadData(questionDocument(question));
}

QStringList TestGuardQueue::handedOver() const
{
    QStringList texts;
    for (const QList<QVariant> &arguments : *m_questions) {
        texts.append(questionOf(arguments.first().toJsonObject()));
    }
    return texts;
}

void TestGuardQueue::port_isReadFromTheLayoutsFile_data()
{
    QTest::addColumn<QString>("caller");
    QTest::newRow("started by a caller") << QStringLiteral("vdi");
    QTest::newRow("shortcut") << QString();
}

void TestGuardQueue::port_isReadFromTheLayoutsFile()
{
    QFETCH(QString, caller);
    m_config->enter(caller);
    makeQueue();
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("info: SysguardQuestsThread port =26001")));
}

void TestGuardQueue::portThatIsNoNumber_isZero_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("text") << QStringLiteral("guard");
    QTest::newRow("empty") << QString();
    QTest::newRow("fraction") << QStringLiteral("26001.5");
}

void TestGuardQueue::portThatIsNoNumber_isZero()
{
    QFETCH(QString, value);
    m_config->set(portKey, value);
    makeQueue();
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("info: SysguardQuestsThread port =0")));
}

void TestGuardQueue::unknownLayout_readsNoFile()
{
    miravelVersion = QStringLiteral("velista_new");
    makeQueue();
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("info: SysguardQuestsThread port =0")));
}

void TestGuardQueue::parent_isNotTheOwner()
{
    QVERIFY(m_queue->parent() == nullptr);
}

void TestGuardQueue::questionBeforeReadiness_isHeldAndThenHandedOver()
{
    post("a");
    QCOMPARE(handedOver(), QStringList());
    m_queue->rightRegionIniSuccess();
    QCOMPARE(handedOver(), QStringList(QStringLiteral("a")));
    QCOMPARE(
        m_log->lines(),
        QStringList({received("a"), QStringLiteral("info: right region initialize success: true"),
                     QStringLiteral("info: sysMessage list is not empty, size: 1"),
                     QStringLiteral("info: After remove, sysMessage size: 0"),
                     QStringLiteral("info: emit sysQuests_signal sysMessageList ")}));
    m_log->clear();
    m_queue->QAFinishedNestQuest();
    QCOMPARE(m_log->lines(), QStringList()); // the list is empty again
}

void TestGuardQueue::threeQuestionsBeforeReadiness_goOutOneAtATime()
{
    post("a");
    post("b");
    post("c");
    m_queue->rightRegionIniSuccess();
    QCOMPARE(handedOver(), QStringList(QStringLiteral("a")));
    m_log->clear();
    m_queue->QAFinishedNestQuest();
    QCOMPARE(handedOver(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(m_log->lines(),
             QStringList({QStringLiteral("info: sysMessage list is not empty, size: 2"),
                          QStringLiteral("info: After remove, sysMessage size: 1"),
                          QStringLiteral("info: emit sysQuests_signal sysMessageList ")}));
    m_queue->QAFinishedNestQuest();
    QCOMPARE(handedOver(),
             QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    m_queue->QAFinishedNestQuest();
    QCOMPARE(m_questions->size(), 3);
}

void TestGuardQueue::finishedQuestionWithAnEmptyList_doesAndLogsNothing()
{
    m_queue->QAFinishedNestQuest();
    QCOMPARE(m_questions->size(), 0);
    QCOMPARE(m_log->lines(), QStringList());
}

void TestGuardQueue::readinessWithAnEmptyList_isOnlyLogged()
{
    m_queue->rightRegionIniSuccess();
    QCOMPARE(m_questions->size(), 0);
    QCOMPARE(m_log->lines(),
             QStringList(QStringLiteral("info: right region initialize success: true")));
}

void TestGuardQueue::readinessAgain_handsOverTheNext()
{
    post("a");
    post("b");
    m_queue->rightRegionIniSuccess();
    m_queue->rightRegionIniSuccess();
    QCOMPARE(handedOver(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void TestGuardQueue::questionWhenReady_goesOutAtOnce()
{
    m_queue->rightRegionIniSuccess();
    m_log->clear();
    post("a");
    QCOMPARE(handedOver(), QStringList(QStringLiteral("a")));
    QCOMPARE(m_log->lines(),
             QStringList({received("a"), QStringLiteral("info: emit sysQuests_signal now")}));
}

void TestGuardQueue::questionWhileAnotherWaits_waitsBehindIt()
{
    post("a");
    post("b");
    m_queue->rightRegionIniSuccess();
    post("c");
    QCOMPARE(handedOver(), QStringList(QStringLiteral("a")));
    m_queue->QAFinishedNestQuest();
    m_queue->QAFinishedNestQuest();
    QCOMPARE(handedOver(),
             QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
}

void TestGuardQueue::questionDuringAnAtOnceQuestion_goesOutAtOnceToo()
{
    m_queue->rightRegionIniSuccess();
    connect(m_queue.get(), &SysguardQuestsThread::sysQuests_signal, this,
            [this](const QJsonObject &question) {
                if (questionOf(question) == QLatin1String("a")) {
                    post("b"); // as it arrives while the answer to the first is awaited
                }
            });
    post("a");
    QCOMPARE(handedOver(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

void TestGuardQueue::questionsInsideEachOther_areBounded()
{
    constexpr int questions = 10 * SysguardQuestsThread::mostAtOnce;
    m_queue->rightRegionIniSuccess();
    int posted = 0;
    int deepest = 0;
    int depth = 0;
    connect(m_queue.get(), &SysguardQuestsThread::sysQuests_signal, this, [&] {
        deepest = qMax(deepest, ++depth);
        while (posted < questions) {
            post(QByteArray::number(posted++));
        }
        QMetaObject::invokeMethod(m_queue.get(), &SysguardQuestsThread::QAFinishedNestQuest,
                                  Qt::QueuedConnection);
        --depth;
    });
    post(QByteArray::number(posted++));
    QTRY_COMPARE(m_questions->size(), questions);
    QCOMPARE(deepest, SysguardQuestsThread::mostAtOnce);
}

void TestGuardQueue::objectIsHandedOverUnchanged()
{
    m_queue->rightRegionIniSuccess();
    m_queue->socketReadData(
        QByteArrayLiteral(" {\"question\":\"登录\",\"rawquery\":\"b\",\"more\":[1,{}]}\r\n"));
    QCOMPARE(m_questions->first().first().toJsonObject(),
             QJsonObject({{QStringLiteral("question"), QStringLiteral("登录")},
                          {QStringLiteral("rawquery"), QStringLiteral("b")},
                          {QStringLiteral("more"), QJsonArray({1, QJsonObject()})}}));
}

void TestGuardQueue::array_handsOverAnEmptyObject()
{
    m_queue->socketReadData(QByteArrayLiteral("[1,2]"));
    m_queue->rightRegionIniSuccess();
    m_queue->socketReadData(QByteArrayLiteral("[]"));
    QCOMPARE(m_questions->size(), 2);
    QCOMPARE(m_questions->at(0).first().toJsonObject(), QJsonObject());
    QCOMPARE(m_questions->at(1).first().toJsonObject(), QJsonObject());
}

void TestGuardQueue::badMessage_isLoggedAndDropped()
{
    m_queue->rightRegionIniSuccess();
    m_log->clear();
    m_queue->socketReadData(QByteArrayLiteral("{\"question\":\"a\"}{\"question\":\"b\"}"));
    QCOMPARE(m_questions->size(), 0);
    QCOMPARE(m_log->lines(),
             QStringList({QStringLiteral("info: sysguard bytearray date{\"question\":\"a\"}"
                                         "{\"question\":\"b\"}"),
                          QStringLiteral("graver: parseJson:garbage at the end of the document")}));
    post("c");
    QCOMPARE(handedOver(), QStringList(QStringLiteral("c")));
}

void TestGuardQueue::receivedText_isLoggedUpToTheFirstNul()
{
    m_queue->socketReadData(QByteArray(" {} \0rest", 9));
    QCOMPARE(m_log->lines(), QStringList(QStringLiteral("info: sysguard bytearray date {} ")));
}

void TestGuardQueue::stopped_handsOverNothingMore()
{
    post("a");
    m_queue->stop();
    m_queue->rightRegionIniSuccess();
    post("b");
    m_queue->QAFinishedNestQuest();
    QCOMPARE(m_questions->size(), 0);
}

QTEST_GUILESS_MAIN(TestGuardQueue)
#include "tst_guardqueue.moc"
