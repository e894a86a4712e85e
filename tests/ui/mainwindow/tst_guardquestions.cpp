#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "tests/localchannel/support/freeport.h"
#include "tests/localchannel/support/guardclient.h"
#include "tests/service/support/testserver.h"
#include "tests/support/logcapture.h"
#include "tests/support/testconfig.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/mainwindow/miravel.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// The questions of the guard tool in the main window.
class TestGuardQuestions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void beforeTheFirstFetch_itIsExplained_andReportedAsFinished();
    void emptyQuestion_isReportedWithoutABubble_data();
    void emptyQuestion_isReportedWithoutABubble();
    void afterTheFirstFetch_itIsAskedAsATypedQuestion();
    void question_isCutAtTheFirstNul();
    void blanks_areAskedAsTheyAre();
    void postedBeforeReadiness_isAskedAfterTheGreeting();
    void waitingQuestions_areAskedOneByOneInOrder();
    void tenThousandWaiting_areHandedOverOnAFlatStack();
    void lastWindowClosed_endsTheHandingOver();
    void windowGoesWithAClientConnected();

private:
    [[nodiscard]] QStringList questions() const;
    [[nodiscard]] QStringList messages() const;
    [[nodiscard]] QStringList asked() const;
    void start();
    void post(GuardClient &client, const QByteArray &document) const;

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<Miravel> m_window;
    quint16 m_port = 0;
};

namespace {

constexpr int waitMs = 30'000;
const QString notLoggedIn
    = QStringLiteral("您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。"
                     "我将会在您登录鉴权后，提供更多智能服务。");
const QByteArray hotReply = R"({"errorCode":"0","result":[{"id":1,"question":"如何修改密码？"}]})";
const QByteArray answerReply
    = R"({"errorCode":"0","result":{"resultType":"QA_NORMAL_RESULT","reply":"<p>答</p>"}})";

QJsonObject guardQuestion(const QString &question)
{
    return {{QStringLiteral("question"), question}};
}

QByteArray document(const QString &question)
{
    return QJsonDocument(guardQuestion(question)).toJson(QJsonDocument::Compact);
}

} // namespace

void TestGuardQuestions::initTestCase()
{
    initResources();
}

void TestGuardQuestions::init()
{
    m_config = std::make_unique<TestConfig>();
    m_server = std::make_unique<TestServer>();
    m_port = freePort();
    m_config->setServer(m_server->port());
    m_config->set(QStringLiteral("url/hoturl"), QStringLiteral("/hot"));
    m_config->set(QStringLiteral("url/askquesturl"), QStringLiteral("/ask"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    m_config->set(QStringLiteral("SysguardPort/port1"), QString::number(m_port));
    m_server->setReplyFor("/hot", httpReply(hotReply));
    m_server->setReplyFor("/ask", httpReply(answerReply));
    initAppPaths(QStringLiteral("vdi"));
    QDir(m_config->root()).mkpath(QStringLiteral("Miravel"));
    QVERIFY(QDir::setCurrent(m_config->root() + QStringLiteral("/Miravel")));
    m_log = std::make_unique<LogCapture>();
    m_window = std::make_unique<Miravel>();
    m_window->show();
    QVERIFY(QTest::qWaitFor(
        [this] {
            return !m_log->linesWith(QStringLiteral("info: Tcp listen the port ")).isEmpty();
        },
        waitMs));
}

void TestGuardQuestions::cleanup()
{
    m_window.reset();
    m_log.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

QStringList TestGuardQuestions::questions() const
{
    QStringList texts;
    for (const QuestionBubble *bubble : m_window->findChildren<QuestionBubble *>()) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

QStringList TestGuardQuestions::messages() const
{
    QStringList texts;
    for (const MessageBubble *bubble : m_window->findChildren<MessageBubble *>()) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

QStringList TestGuardQuestions::asked() const
{
    QStringList texts;
    for (const ReceivedRequest &request : m_server->requests()) {
        if (request.target == "/ask") {
            const QJsonObject body = QJsonDocument::fromJson(request.body).object();
            texts.append(body.value(QLatin1String("rawQuery")).toString() + QLatin1Char('|')
                         + body.value(QLatin1String("source")).toString());
        }
    }
    return texts;
}

void TestGuardQuestions::start()
{
    QSignalSpy ready(m_window.get(), &Miravel::rightRegionSuccess);
    m_window->startForVdiClient();
    QTRY_COMPARE_WITH_TIMEOUT(ready.size(), 1, waitMs);
}

void TestGuardQuestions::post(GuardClient &client, const QByteArray &text) const
{
    const auto received = [this] {
        return m_log->linesWith(QStringLiteral("info: sysguard bytearray date")).size();
    };
    const int before = received();
    client.send(text);
    QVERIFY(QTest::qWaitFor([&] { return received() > before; }, waitMs));
}

void TestGuardQuestions::beforeTheFirstFetch_itIsExplained_andReportedAsFinished()
{
    QSignalSpy finished(m_window.get(), &Miravel::QAFinished);
    m_log->clear();
    m_window->sendSysguardQuest(guardQuestion(QStringLiteral("黑屏")));
    QCOMPARE(questions(), QStringList(QStringLiteral("黑屏")));
    QCOMPARE(messages(), QStringList(notLoggedIn));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_log->timelessLines(),
             QStringList({QStringLiteral("info: send Sysguard Quest: <time>"),
                          QStringLiteral("info: send messages(Sysguard) when not logged in, "
                                         "isGetHotQuests:false. netHotWork:false"),
                          QStringLiteral("info: send QAFinished signal")}));
}

void TestGuardQuestions::emptyQuestion_isReportedWithoutABubble_data()
{
    QTest::addColumn<QJsonObject>("object");
    QTest::newRow("empty") << guardQuestion(QString());
    QTest::newRow("no question") << QJsonObject();
    QTest::newRow("no text") << QJsonObject({{QStringLiteral("question"), 7}});
    QTest::newRow("only behind a NUL") << guardQuestion(QString(QChar(0)) + QLatin1Char('a'));
}

void TestGuardQuestions::emptyQuestion_isReportedWithoutABubble()
{
    QFETCH(QJsonObject, object);
    QSignalSpy finished(m_window.get(), &Miravel::QAFinished);
    m_window->sendSysguardQuest(object);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(questions(), QStringList());
    QCOMPARE(messages(), QStringList());
}

void TestGuardQuestions::afterTheFirstFetch_itIsAskedAsATypedQuestion()
{
    start();
    m_log->clear();
    QSignalSpy finished(m_window.get(), &Miravel::QAFinished);
    m_window->sendSysguardQuest(guardQuestion(QStringLiteral("黑屏")));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(questions(), QStringList(QStringLiteral("黑屏")));
    QCOMPARE(asked(), QStringList(QStringLiteral("黑屏|rawquery")));
    QVERIFY(
        m_log->lines().contains(QStringLiteral("info: send messages(Sysguard) by idp qa request, "
                                               "isGetHotQuests:true. netHotWork:false")));
}

void TestGuardQuestions::question_isCutAtTheFirstNul()
{
    m_window->sendSysguardQuest(
        guardQuestion(QStringLiteral("黑") + QChar(0) + QStringLiteral("屏")));
    QCOMPARE(questions(), QStringList(QStringLiteral("黑")));
}

void TestGuardQuestions::blanks_areAskedAsTheyAre()
{
    start();
    m_window->sendSysguardQuest(guardQuestion(QStringLiteral(" a  b ")));
    QCOMPARE(asked(), QStringList(QStringLiteral(" a  b |rawquery")));
}

void TestGuardQuestions::postedBeforeReadiness_isAskedAfterTheGreeting()
{
    GuardClient client(m_port);
    QVERIFY(client.connects());
    post(client, document(QStringLiteral("黑屏")));
    QTRY_COMPARE_WITH_TIMEOUT(client.received(), acknowledgementBytes(), waitMs);
    QCOMPARE(questions(), QStringList());
    start();
    QCOMPARE(asked(), QStringList(QStringLiteral("黑屏|rawquery")));
    QCOMPARE(messages().size(), 1); // the greeting, and no explanation
    QCOMPARE(questions(), QStringList(QStringLiteral("黑屏")));
}

void TestGuardQuestions::waitingQuestions_areAskedOneByOneInOrder()
{
    QStringList expected;
    QVector<QByteArray> documents;
    for (int i = 0; i < 20; ++i) {
        documents.append(document(QString::number(i)));
        expected.append(QString::number(i) + QStringLiteral("|rawquery"));
    }
    QVERIFY(postAll(m_port, documents));
    start();
    QTRY_COMPARE_WITH_TIMEOUT(asked(), expected, waitMs);
}

void TestGuardQuestions::tenThousandWaiting_areHandedOverOnAFlatStack()
{
    constexpr int count = 10'000;
    constexpr quintptr flat = 65'536; // bytes
    quintptr lowest = 0;
    quintptr highest = 0;
    connect(m_window.get(), &Miravel::QAFinished, m_window.get(), [&] {
        const char here = 0;
        const auto frame = reinterpret_cast<quintptr>(&here);
        lowest = lowest == 0 ? frame : qMin(lowest, frame);
        highest = qMax(highest, frame);
    });
    // Without a question in them, so that this is not about bubbles.
    QVERIFY(postAll(m_port, QVector<QByteArray>(count, QByteArrayLiteral("{}"))));
    QSignalSpy finished(m_window.get(), &Miravel::QAFinished);
    start();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), count, waitMs);
    QVERIFY2(highest - lowest < flat, qPrintable(QString::number(highest - lowest)));
    QVERIFY(postAll(m_port, {document(QStringLiteral("黑屏"))}));
    QCOMPARE(questions(), QStringList(QStringLiteral("黑屏")));
}

void TestGuardQuestions::lastWindowClosed_endsTheHandingOver()
{
    GuardClient client(m_port);
    QVERIFY(client.connects());
    for (int i = 0; i < 10; ++i) {
        post(client, document(QString::number(i)));
    }
    QSignalSpy finished(m_window.get(), &Miravel::QAFinished);
    QMetaObject::invokeMethod(m_window.get(), &Miravel::close_windows, Qt::QueuedConnection);
    QApplication::exec(); // ends with the last window
    emit m_window->rightRegionSuccess();
    QTRY_VERIFY_WITH_TIMEOUT(client.isClosed(), waitMs);
    QCOMPARE(finished.size(), 0);
    QCOMPARE(asked(), QStringList());
}

void TestGuardQuestions::windowGoesWithAClientConnected()
{
    GuardClient client(m_port);
    QVERIFY(client.connects());
    post(client, document(QStringLiteral("黑屏")));
    m_window.reset();
    QTRY_VERIFY_WITH_TIMEOUT(client.isClosed(), waitMs);
    QCOMPARE(m_log->foreignLines(), QStringList());
}

QTEST_MAIN(TestGuardQuestions)
#include "tst_guardquestions.moc"
