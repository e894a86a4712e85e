#include "app/base/apppaths.h"
#include "tests/service/support/refusingport.h"
#include "tests/support/logcapture.h"
#include "tests/ui/support/windowbench.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/windowform.h"
#include "ui/mainwindow/windowmodes.h"
#include "ui/mainwindow/windowtimers.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QLabel>
#include <QListWidget>
#include <QMovie>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

/// The starts of the window, and its ways between loading, the service and local answers.
class TestWindowModes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void timers_haveTheirPaces();
    void vdiStart_serviceUp();
    void vdiStart_overlayUntilTheFirstReply();
    void vdiStart_serviceDown_data();
    void vdiStart_serviceDown();
    void vdiStart_serviceUpLater_theRefreshSaysSo();
    void vdiStart_askedLate_afterAFailedFetch_isAnswered();
    void ombraStart_loggedOut_thenIn();
    void ombraStart_loggedOut_staysWhileThePollFindsNothing();
    void ombraStart_loggedIn_neverPolls();
    void ombraStart_withoutClientSettings_isLoggedOut();
    void shortcutInstallation_watchesNoProcess();
    void windowGoesWhileFetchesRun();
    void fetchedQuestions_areTakenByTheWindow();

private:
    void restart(const QString &callerType);

    std::unique_ptr<WindowBench> m_bench;
};

namespace {

constexpr int amplyMs = 60'000;

} // namespace

void TestWindowModes::init()
{
    m_bench = std::make_unique<WindowBench>();
}

void TestWindowModes::cleanup()
{
    m_bench.reset();
}

void TestWindowModes::restart(const QString &callerType)
{
    m_bench.reset();
    m_bench = std::make_unique<WindowBench>(callerType);
}

void TestWindowModes::timers_haveTheirPaces()
{
    QCOMPARE(m_bench->timer("associationTick").interval(), 1000);
    QCOMPARE(m_bench->timer("loginPoll").interval(), 60'000);
    QCOMPARE(m_bench->timer("processWatch").interval(), 60'000);
    QCOMPARE(m_bench->timer("hotRefresh").interval(), 1'800'000);
    QVERIFY(m_bench->runs("associationTick"));
    QVERIFY(!m_bench->runs("loginPoll"));
    QVERIFY(!m_bench->runs("processWatch"));
    QVERIFY(!m_bench->runs("hotRefresh"));
}

void TestWindowModes::vdiStart_serviceUp()
{
    const LogCapture log;
    QSignalSpy ready(&m_bench->window(), &Miravel::rightRegionSuccess);
    m_bench->startGreeted();
    QCOMPARE(m_bench->messages(), QStringList{greetingText});
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
    QCOMPARE(ready.count(), 1);
    QVERIFY(m_bench->runs("hotRefresh"));
    QVERIFY(m_bench->runs("processWatch"));
    QVERIFY(!m_bench->runs("loginPoll"));
    QCOMPARE(log.linesWith(QStringLiteral("info: begin")),
             QStringList{QStringLiteral("info: begin to start qthread for get hot questions")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")),
             QStringList{
                 QStringLiteral("info: Get hot issues successfully! hot_questions_num: (%d)40")});
}

void TestWindowModes::vdiStart_overlayUntilTheFirstReply()
{
    m_bench->server().setReplyFor(
        WindowBench::hotPath,
        held(httpReply(R"({"errorCode":"0","result":[{"id":1,"question":"问1"}]})")));
    m_bench->window().startForVdiClient();
    const auto *movie = m_bench->window().findChild<QMovie *>();
    QVERIFY(movie != nullptr);
    const auto *label = qobject_cast<QLabel *>(movie->parent());
    QCOMPARE(label->geometry(), QRect(385, 190, 150, 260));
    QCOMPARE(label->parentWidget()->geometry(), QRect(0, 0, 920, 640));
    QCOMPARE(label->parentWidget()->styleSheet(),
             QStringLiteral("QWidget{background-color: rgba(17,17,17,20%);}"));
    QVERIFY(movie->isValid());
    QCOMPARE(label->pixmap(Qt::ReturnByValue).size(), QSize(150, 164));
    QCOMPARE(movie->state(), QMovie::NotRunning); // until the window has had its first picture
    m_bench->window().show();
    QTRY_COMPARE(movie->state(), QMovie::Running);
    QCOMPARE(label->movie(), movie);
    m_bench->server().release();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(m_bench->window().findChild<QMovie *>() == nullptr);
}

void TestWindowModes::vdiStart_serviceDown_data()
{
    QTest::addColumn<bool>("refused");
    QTest::newRow("nobody listens") << true;
    QTest::newRow("the reply is an error") << false;
}

void TestWindowModes::vdiStart_serviceDown()
{
    QFETCH(bool, refused);
    const RefusingPort closed;
    m_bench->serveHotQuestions(0);
    if (refused) {
        m_bench->config().setServer(closed.port());
    }
    const LogCapture log;
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    QCOMPARE(log.linesWith(QStringLiteral("warning: Network")),
             QStringList{QStringLiteral("warning: Network problem! failed to get hot issues.")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get Location")),
             QStringList{QStringLiteral("info: Get Location hot issues ! "
                                        "Location_hot_questions_num: (%d)0netHotWork：true")});
    QVERIFY(m_bench->window().findChild<QMovie *>() == nullptr);
    QVERIFY(!m_bench->runs("processWatch"));
    QVERIFY(m_bench->runs("hotRefresh"));
}

void TestWindowModes::vdiStart_serviceUpLater_theRefreshSaysSo()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    m_bench->serveHotQuestions(40);
    const LogCapture log;
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE(m_bench->messages(), (QStringList{noNetworkText, refreshedText}));
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
    QCOMPARE(log.linesWith(QStringLiteral("info: refresh")),
             QStringList{QStringLiteral("info: refresh hot questions timer by a new qthread")});
    QCOMPARE(log.linesWith(QStringLiteral("info: Get hot")),
             QStringList{QStringLiteral("info: Get hot issues successfully, refresh")});
    QTest::mouseClick(m_bench->hotRow(2), Qt::LeftButton);
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 1);
}

void TestWindowModes::vdiStart_askedLate_afterAFailedFetch_isAnswered()
{
    m_bench->serveHotQuestions(0);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE(m_bench->messages(), QStringList{noNetworkText});
    const LogCapture log;
    m_bench->send(QStringLiteral("问"));
    QCOMPARE(log.linesWith(QStringLiteral("info: send")),
             QStringList{QStringLiteral("info: send messages by idp qa request, "
                                        "isGetHotQuests:true. netHotWork:true")});
    QCOMPARE(m_bench->bodies(WindowBench::askPath).size(), 1);
}

void TestWindowModes::ombraStart_loggedOut_thenIn()
{
    restart(QStringLiteral("ombra"));
    m_bench->hurry("loginPoll");
    const LogCapture log;
    m_bench->window().startForLauncher();
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QCOMPARE(log.lines().value(0), QStringLiteral("info: Account not logged in!"));
    QVERIFY(m_bench->runs("loginPoll"));
    QVERIFY(!m_bench->runs("hotRefresh"));
    const QPointer<HotQuestionsColumn> local = m_bench->window().findChild<HotQuestionsColumn *>();
    m_bench->setLoginState(1);
    QTRY_COMPARE(m_bench->messages(), (QStringList{notLoggedInText, greetingText}));
    QCOMPARE(log.linesWith(QStringLiteral("info: Account is")),
             QStringList{QStringLiteral("info: Account is logged in!")});
    QVERIFY(!m_bench->runs("loginPoll"));
    QVERIFY(m_bench->runs("hotRefresh"));
    QVERIFY(local.isNull());
    QCOMPARE(m_bench->window().findChildren<HotQuestionsColumn *>().size(), 1);
    QCOMPARE(m_bench->hotRows(), WindowBench::firstRows(16));
    QCOMPARE(m_bench->bodies(WindowBench::hotPath).size(), 1);
}

void TestWindowModes::ombraStart_loggedOut_staysWhileThePollFindsNothing()
{
    restart(QStringLiteral("ombra"));
    m_bench->hurry("loginPoll");
    const LogCapture log;
    m_bench->window().startForLauncher();
    QTRY_VERIFY(log.linesWith(QStringLiteral("info: Account not logged in!")).size() > 5);
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QCOMPARE(m_bench->server().connectionCount(), 0);
    m_bench->send(QStringLiteral("问"));
    QCOMPARE(m_bench->messages(), (QStringList{notLoggedInText, notLoggedInText}));
}

void TestWindowModes::ombraStart_loggedIn_neverPolls()
{
    restart(QStringLiteral("ombra"));
    m_bench->setLoginState(1);
    m_bench->hurry("loginPoll");
    m_bench->window().startForLauncher();
    QTRY_COMPARE(m_bench->messages(), QStringList{greetingText});
    QVERIFY(!m_bench->runs("loginPoll"));
    QVERIFY(m_bench->runs("hotRefresh"));
    QVERIFY(m_bench->runs("processWatch"));
}

void TestWindowModes::ombraStart_withoutClientSettings_isLoggedOut()
{
    restart(QStringLiteral("ombra"));
    m_bench->removeClientSettings();
    const LogCapture log;
    m_bench->window().startForLauncher();
    QCOMPARE(log.lines().value(0), QStringLiteral("info: Account not logged in!"));
    QCOMPARE(m_bench->messages(), QStringList{notLoggedInText});
    QVERIFY(m_bench->runs("loginPoll"));
}

void TestWindowModes::shortcutInstallation_watchesNoProcess()
{
    restart(QString());
    QVERIFY(QDir(m_bench->config().root())
                .rename(QStringLiteral("config"), QStringLiteral("Miravel/config")));
    m_bench->makeWindow();
    m_bench->startGreeted();
    QVERIFY(!m_bench->runs("processWatch"));
    QVERIFY(m_bench->runs("hotRefresh"));
}

void TestWindowModes::windowGoesWhileFetchesRun()
{
    m_bench->startGreeted();
    m_bench->server().setReplyFor(WindowBench::hotPath, held(httpReply("{}")));
    // One after another: Qt now and then does not find the host when several threads look for it at
    // once.
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->bodies(WindowBench::hotPath).size(), 2, amplyMs);
    m_bench->window().refreshHotQuestionsTimer();
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->bodies(WindowBench::hotPath).size(), 3, amplyMs);
    m_bench->window().startForVdiClient();
    QTRY_COMPARE_WITH_TIMEOUT(m_bench->bodies(WindowBench::hotPath).size(), 4, amplyMs);
    const LogCapture log;
    QElapsedTimer clock;
    clock.start();
    m_bench->dropWindow();
    QVERIFY(clock.elapsed() < amplyMs);
    QTRY_COMPARE(m_bench->server().leftWhileHeld(), 3);
    QCOMPARE(log.foreignLines(), QStringList());
}

void TestWindowModes::fetchedQuestions_areTakenByTheWindow()
{
    QWidget window;
    const WindowForm form = buildWindowForm(window, false);
    WindowTimers timers(&window);
    WindowModes modes(form, timers);
    const QSignalSpy first(&modes, &WindowModes::firstFetched);
    const QSignalSpy again(&modes, &WindowModes::refetched);
    modes.startForVdiClient();
    QTRY_COMPARE(first.count(), 1);
    modes.fetchAgain();
    QTRY_COMPARE(again.count(), 1);
    // Nobody has taken them.
    QVERIFY(!modes.hotQuestionsReturned());
    QCOMPARE(modes.column()->findChild<QListWidget *>()->count(), 0);
    modes.takeFirst(first.first().first().toJsonArray());
    QVERIFY(modes.hotQuestionsReturned());
    QCOMPARE(modes.column()->findChild<QListWidget *>()->count(), 16);
}

QTEST_MAIN(TestWindowModes)
#include "tst_windowmodes.moc"
