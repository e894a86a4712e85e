#include "app/apppaths.h"
#include "resources/resources.h"
#include "tests/service/support/logcapture.h"
#include "tests/service/support/refusingport.h"
#include "tests/service/support/testconfig.h"
#include "tests/service/support/testserver.h"
#include "ui/answer/messagebubble.h"
#include "ui/answer/qaregion.h"
#include "ui/answer/questionbubble.h"
#include "ui/mainwindow/miravel.h"

#include <QClipboard>
#include <QDir>
#include <QGraphicsDropShadowEffect>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>

/// The main window: its form, its input, and when a question is asked or explained away.
class TestMiravel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void form();
    void titleBar_places();
    void inputPanel_places();
    void inputBox_takesTypingStyleWithTheFirstTick();
    void inputBox_hasTheFocusAtStart();
    void savedAnimations_areRemovedAtStart();
    void centredOnTheScreen();
    void returnSends_shiftReturnToo();
    void keypadEnter_insertsALine();
    void blankText_isNotSent_butCleared();
    void sendButton_sends();
    void typedTextIsSimplified();
    void beforeTheFirstFetch_questionsAreExplained();
    void afterTheFirstFetch_questionsAreAsked();
    void failedFirstFetch_saysSo_andQuestionsAreAskedAllTheSame();
    void launcherStart_loggedOut_saysSo();
    void launcherStart_loggedIn_goesOnline();
    void loginPoll_switchesOnlineOnce();
    void focusOut_movesTheCursorToTheEnd();
    void dragging_movesTheWindow();
    void minimiseAndCloseButtons();
    void windowGoesWhileTheFetchRuns();
    void conversation_isNeverPaintedOverTheInput();

private:
    void setLoginState(int state) const;
    [[nodiscard]] QStringList messages() const;
    [[nodiscard]] QStringList questions() const;
    [[nodiscard]] QTextEdit *input() const { return m_window->findChild<QTextEdit *>(); }
    [[nodiscard]] QPushButton *button(const QString &name) const;
    [[nodiscard]] QStringList askedQuestions() const;

    std::unique_ptr<TestConfig> m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<Miravel> m_window;
};

namespace {

const QString greeting = QStringLiteral("您好，我是Miravel，请简要描述您的问题或错误提示!");
const QString notLoggedIn
    = QStringLiteral("您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。"
                     "我将会在您登录鉴权后，提供更多智能服务。");
const QString noNetwork
    = QStringLiteral("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。");

const QByteArray hotReply = R"({"errorCode":"0","result":[{"id":1,"question":"如何修改密码？"}]})";
const QByteArray answerReply
    = R"({"errorCode":"0","result":{"resultType":"QA_NORMAL_RESULT","reply":"<p>答</p>"}})";

} // namespace

void TestMiravel::initTestCase()
{
    initResources();
}

void TestMiravel::init()
{
    m_config = std::make_unique<TestConfig>();
    m_server = std::make_unique<TestServer>();
    m_config->setServer(m_server->port());
    m_config->set(QStringLiteral("url/hoturl"), QStringLiteral("/hot"));
    m_config->set(QStringLiteral("url/askquesturl"), QStringLiteral("/ask"));
    m_config->set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    m_server->setReplyFor("/hot", httpReply(hotReply));
    m_server->setReplyFor("/ask", httpReply(answerReply));
    initAppPaths(QStringLiteral("vdi"));
    QDir(m_config->root()).mkpath(QStringLiteral("Miravel"));
    QDir::setCurrent(m_config->root() + QStringLiteral("/Miravel"));
    setLoginState(0);
    m_window = std::make_unique<Miravel>();
    m_window->show();
}

void TestMiravel::cleanup()
{
    m_window.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
    m_config.reset();
}

void TestMiravel::setLoginState(int state) const
{
    QFile settings(m_config->root() + QStringLiteral("/config/CommonTerminal.ini"));
    if (!settings.open(QIODevice::WriteOnly)) {
        qFatal("The settings file cannot be written");
    }
    // Of a different length each time, so that the toolkit's cache sees the change.
    settings.write("[RemLastUser]\nlastuser=user" + QByteArray(state * 3, 'x')
                   + "\n[LoginMode]\nloginstate=" + QByteArray::number(state) + "\n");
}

QStringList TestMiravel::messages() const
{
    QStringList texts;
    const auto bubbles = m_window->findChildren<MessageBubble *>();
    for (const MessageBubble *bubble : bubbles) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

QStringList TestMiravel::questions() const
{
    QStringList texts;
    const auto bubbles = m_window->findChildren<QuestionBubble *>();
    for (const QuestionBubble *bubble : bubbles) {
        texts.append(bubble->label()->text());
    }
    return texts;
}

QPushButton *TestMiravel::button(const QString &name) const
{
    const auto buttons = m_window->findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->text() == name || candidate->accessibleName() == name) {
            return candidate;
        }
    }
    return nullptr;
}

QStringList TestMiravel::askedQuestions() const
{
    QStringList texts;
    const auto requests = m_server->requests();
    for (const ReceivedRequest &request : requests) {
        if (request.target == "/ask") {
            texts.append(QJsonDocument::fromJson(request.body)
                             .object()
                             .value(QLatin1String("rawQuery"))
                             .toString());
        }
    }
    return texts;
}

void TestMiravel::form()
{
    QCOMPARE(m_window->objectName(), QStringLiteral("Miravel"));
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Miravel"));
    QCOMPARE(m_window->size(), QSize(920, 640));
    QCOMPARE(m_window->minimumSize(), QSize(920, 640));
    QCOMPARE(m_window->maximumSize(), QSize(920, 640));
    QCOMPARE(static_cast<int>(m_window->windowFlags()), 0xE801);
    QVERIFY(m_window->testAttribute(Qt::WA_QuitOnClose));
    QCOMPARE(m_window->findChild<QARegion *>()->geometry(), QRect(2, 58, 646, 490));
}

void TestMiravel::titleBar_places()
{
    QCOMPARE(button(QStringLiteral("关于"))->geometry(), QRect(828, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("最小化"))->geometry(), QRect(855, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("关闭"))->geometry(), QRect(882, 21, 16, 16));
    QCOMPARE(button(QStringLiteral("关于"))->styleSheet(),
             QStringLiteral("QPushButton{border-image: url(:/Images/btn-about.png);border:none;}"));
    const QWidget *front = button(QStringLiteral("关于"))->parentWidget();
    QCOMPARE(QRect(front->mapTo(m_window.get(), QPoint()), front->size()), QRect(0, 0, 920, 59));
    const auto *picture = front->findChild<QLabel *>();
    QCOMPARE(picture->geometry(), QRect(24, 16, 111, 26));
    QCOMPARE(picture->pixmap(Qt::ReturnByValue).size(), QSize(111, 26));
    const QWidget *bar = front->parentWidget();
    QCOMPARE(bar->geometry(), QRect(1, 1, 920, 56));
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(bar->graphicsEffect());
    QVERIFY(shadow != nullptr);
    QCOMPARE(shadow->blurRadius(), 8.0);
    QCOMPARE(shadow->offset(), QPointF(0, 0));
    QCOMPARE(shadow->color(), QColor(0xDC, 0xDC, 0xDC));
}

void TestMiravel::inputPanel_places()
{
    QCOMPARE(input()->parentWidget()->geometry(), QRect(1, 490, 647, 149));
    QCOMPARE(input()->geometry(), QRect(16, 8, 616, 82));
    QCOMPARE(input()->placeholderText(), QStringLiteral("您可以尝试在此描述您的问题。"));
    QVERIFY(!input()->acceptRichText());
    QVERIFY(!input()->acceptDrops());
    QVERIFY(!input()->viewport()->acceptDrops());
    QCOMPARE(input()->contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(button(QStringLiteral("发送"))->geometry(), QRect(538, 97, 86, 29));
    QCOMPARE(button(QStringLiteral("发送"))->cursor().shape(), Qt::PointingHandCursor);
}

void TestMiravel::inputBox_takesTypingStyleWithTheFirstTick()
{
    QCOMPARE(input()->styleSheet(),
             QStringLiteral("QTextEdit{selection-color:white;selection-background-color:rgb(0,120,"
                            "215);color:rgb(168,178,191);font:bold 14px Microsoft "
                            "YaHei;border:none;}"));
    m_window->showAssociation();
    QCOMPARE(input()->styleSheet(),
             QStringLiteral("QTextEdit{selection-color:white;selection-background-color:rgb(0,120,"
                            "215);color:rgb(29,38,51);font:14px Microsoft YaHei;border:none;}"));
    QCOMPARE(input()->palette().color(QPalette::Text), QColor(29, 38, 51));
    QCOMPARE(input()->palette().color(QPalette::PlaceholderText), QColor(168, 178, 191));
}

void TestMiravel::inputBox_hasTheFocusAtStart()
{
    QCOMPARE(m_window->focusWidget(), input());
}

void TestMiravel::savedAnimations_areRemovedAtStart()
{
    QVERIFY(QDir().mkpath(QStringLiteral("gif/kept")));
    for (const char *name : {"gif/0.gif", "gif/other.txt", "gif/kept/1.gif"}) {
        QFile file{QLatin1String(name)};
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    m_window = std::make_unique<Miravel>();
    QVERIFY(!QFile::exists(QStringLiteral("gif/0.gif")));
    QVERIFY(!QFile::exists(QStringLiteral("gif/other.txt")));
    QVERIFY(QFile::exists(QStringLiteral("gif/kept/1.gif")));
}

void TestMiravel::centredOnTheScreen()
{
    const QSize screen = m_window->screen()->geometry().size();
    QCOMPARE(m_window->pos(), QPoint((screen.width() - 920) / 2, (screen.height() - 640) / 2));
}

void TestMiravel::returnSends_shiftReturnToo()
{
    QTest::keyClicks(input(), QStringLiteral("one"));
    QTest::keyClick(input(), Qt::Key_Return);
    QTest::keyClicks(input(), QStringLiteral("two"));
    QTest::keyClick(input(), Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(questions(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    QCOMPARE(input()->toPlainText(), QString());
}

void TestMiravel::keypadEnter_insertsALine()
{
    QTest::keyClicks(input(), QStringLiteral("one"));
    QTest::keyClick(input(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(input()->toPlainText(), QStringLiteral("one\n"));
    QVERIFY(questions().isEmpty());
}

void TestMiravel::blankText_isNotSent_butCleared()
{
    const LogCapture log;
    input()->setPlainText(QStringLiteral(" \n\t \n"));
    m_window->send_messages();
    QVERIFY(questions().isEmpty());
    QVERIFY(messages().isEmpty());
    QCOMPARE(input()->toPlainText(), QString());
    QCOMPARE(log.lines(), QStringList());
}

void TestMiravel::sendButton_sends()
{
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    QTest::mouseClick(button(QStringLiteral("发送")), Qt::LeftButton);
    QCOMPARE(questions(), QStringList{QStringLiteral("桌面黑屏")});
}

void TestMiravel::typedTextIsSimplified()
{
    input()->setPlainText(QStringLiteral("  桌面 \n\n 黑屏\t怎么办  "));
    m_window->send_messages();
    QCOMPARE(questions(), QStringList{QStringLiteral("桌面 黑屏 怎么办")});
}

void TestMiravel::beforeTheFirstFetch_questionsAreExplained()
{
    const LogCapture log;
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QCOMPARE(messages(), QStringList{notLoggedIn});
    QCOMPARE(log.linesWith(QStringLiteral("info: send messages")),
             QStringList{QStringLiteral("info: send messages when not logged in, "
                                        "isGetHotQuests:false. netHotWork:false")});
    QCOMPARE(m_server->connectionCount(), 0);
}

void TestMiravel::afterTheFirstFetch_questionsAreAsked()
{
    QSignalSpy ready(m_window.get(), &Miravel::rightRegionSuccess);
    m_window->startForVdiClient();
    QTRY_COMPARE(messages(), QStringList{greeting});
    QCOMPARE(ready.count(), 1);
    const LogCapture log;
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QCOMPARE(askedQuestions(), QStringList{QStringLiteral("桌面黑屏")});
    QCOMPARE(log.linesWith(QStringLiteral("info: send")),
             QStringList{QStringLiteral("info: send messages by idp qa request, "
                                        "isGetHotQuests:true. netHotWork:false")});
}

void TestMiravel::failedFirstFetch_saysSo_andQuestionsAreAskedAllTheSame()
{
    m_server->setReplyFor("/hot", httpReply(R"({"errorCode":"50001","result":[]})"));
    const LogCapture log;
    m_window->startForVdiClient();
    QTRY_COMPARE(messages(), QStringList{noNetwork});
    QCOMPARE(log.linesWith(QStringLiteral("warning: Network")),
             QStringList{QStringLiteral("warning: Network problem! failed to get hot issues.")});
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QCOMPARE(askedQuestions(), QStringList{QStringLiteral("桌面黑屏")});
    QCOMPARE(log.linesWith(QStringLiteral("info: send")),
             QStringList{QStringLiteral("info: send messages by idp qa request, "
                                        "isGetHotQuests:true. netHotWork:true")});
}

void TestMiravel::launcherStart_loggedOut_saysSo()
{
    const LogCapture log;
    m_window->startForLauncher();
    QCOMPARE(messages(), QStringList{notLoggedIn});
    QCOMPARE(log.linesWith(QStringLiteral("info: Account")),
             QStringList{QStringLiteral("info: Account not logged in!")});
    QCOMPARE(m_server->connectionCount(), 0);
}

void TestMiravel::launcherStart_loggedIn_goesOnline()
{
    setLoginState(1);
    const LogCapture log;
    m_window->startForLauncher();
    QCOMPARE(log.linesWith(QStringLiteral("info: Account")),
             QStringList{QStringLiteral("info: Account is logged in!")});
    QTRY_COMPARE(messages(), QStringList{greeting});
}

void TestMiravel::loginPoll_switchesOnlineOnce()
{
    m_window->startForLauncher();
    setLoginState(1);
    m_window->JudgeUser_ifLogined_ByConfig();
    QTRY_COMPARE(messages(), (QStringList{notLoggedIn, greeting}));
}

void TestMiravel::focusOut_movesTheCursorToTheEnd()
{
    m_window->activateWindow();
    input()->setPlainText(QStringLiteral("abc"));
    input()->setFocus();
    QTRY_VERIFY(input()->hasFocus());
    input()->moveCursor(QTextCursor::Start);
    button(QStringLiteral("发送"))->setFocus();
    QCOMPARE(input()->textCursor().position(), 3);
}

void TestMiravel::dragging_movesTheWindow()
{
    const QPoint start = m_window->pos();
    const QPoint grip(400, 30);
    QTest::mousePress(m_window.get(), Qt::LeftButton, {}, grip);
    QMouseEvent drag(QEvent::MouseMove, grip, m_window->mapToGlobal(grip) + QPoint(15, -7),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &drag);
    QCOMPARE(m_window->pos(), start + QPoint(15, -7));
    QTest::mouseRelease(m_window.get(), Qt::LeftButton, {}, grip);

    QMouseEvent later(QEvent::MouseMove, grip, m_window->mapToGlobal(grip) + QPoint(50, 50),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &later);
    QCOMPARE(m_window->pos(), start + QPoint(15, -7));
}

void TestMiravel::minimiseAndCloseButtons()
{
    QTest::mouseClick(button(QStringLiteral("最小化")), Qt::LeftButton);
    QVERIFY(m_window->isMinimized());
    m_window->showNormal();
    const LogCapture log;
    QTest::mouseClick(button(QStringLiteral("关闭")), Qt::LeftButton);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("info: click to Close the window")});
}

void TestMiravel::windowGoesWhileTheFetchRuns()
{
    m_server->setReplyFor("/hot", held(httpReply(hotReply)));
    m_window->startForVdiClient();
    QTRY_COMPARE(m_server->requests().size(), 1);
    m_window.reset();
    QTRY_COMPARE(m_server->leftWhileHeld(), 1);
}

void TestMiravel::conversation_isNeverPaintedOverTheInput()
{
    m_window->startForVdiClient();
    QTRY_COMPARE(messages(), QStringList{greeting});
    const auto lineColour = [this] {
        return m_window->screen()->grabWindow(m_window->winId()).toImage().pixelColor(300, 490);
    };
    QTRY_COMPARE(lineColour(), QColor(208, 210, 217));
    input()->setPlainText(QStringLiteral("桌面黑屏"));
    m_window->send_messages();
    QTRY_COMPARE(lineColour(), QColor(208, 210, 217));
}

QTEST_MAIN(TestMiravel)
#include "tst_miravel.moc"
