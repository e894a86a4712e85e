#include "tests/ui/support/windowbench.h"

#include "app/base/apppaths.h"
#include "resources/resources.h"
#include "service/request/idpinterface.h"
#include "tests/support/logcapture.h"
#include "ui/answer/bubble/messagebubble.h"
#include "ui/answer/bubble/questionbubble.h"
#include "ui/answer/qaregion.h"
#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"
#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

const QString greetingText = QStringLiteral("您好，我是Miravel，请简要描述您的问题或错误提示!");
const QString notLoggedInText
    = QStringLiteral("您好，我是Miravel，您的桌面尚未登录鉴权，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。"
                     "我将会在您登录鉴权后，提供更多智能服务。");
const QString noNetworkText
    = QStringLiteral("您好，我是Miravel，由于网络连接失败，暂时无法提供智能服务。"
                     "您可在“热门问答”区域查看常见问题。");
const QString refreshFailedText
    = QStringLiteral("热门问题刷新失败，您可在“热门问答”区域查看常见问题。");
const QString refreshedText = QStringLiteral("热门问题刷新成功。");

const QByteArray WindowBench::hotPath = "/hot";
const QByteArray WindowBench::suggestPath = "/suggest";
const QByteArray WindowBench::askPath = "/ask";

namespace {

constexpr int hurryMs = 5;
constexpr int patientMs = 30'000; // only a failing test waits that long

ServedReply questionList(int count, const QString &text, int firstId)
{
    QJsonArray array;
    for (int i = 1; i <= count; ++i) {
        array.append(QJsonObject{{QStringLiteral("question"), text + QString::number(i)},
                                 {QStringLiteral("id"), firstId + i}});
    }
    const QJsonObject reply{{QStringLiteral("errorCode"), QStringLiteral("0")},
                            {QStringLiteral("result"), array}};
    return httpReply(QJsonDocument(reply).toJson(QJsonDocument::Compact));
}

template <typename Bubble>
QStringList bubbleTexts(const QWidget &window)
{
    QStringList texts;
    const auto bubbles = window.findChildren<Bubble *>();
    for (const Bubble *bubble : bubbles) {
        texts.append(bubble->accessibleName()); // there even while the entry sleeps
    }
    return texts;
}

QPushButton *rowButton(const QListWidget *list, int number)
{
    const QWidget *row = list->itemWidget(list->item(number - 1));
    return row == nullptr ? nullptr : row->findChild<QPushButton *>();
}

} // namespace

WindowBench::WindowBench(const QString &callerType)
    : m_server(std::make_unique<TestServer>())
{
    initResources();
    m_config.setServer(m_server->port());
    m_config.set(QStringLiteral("url/hoturl"), QLatin1String(hotPath));
    m_config.set(QStringLiteral("url/associateurl"), QLatin1String(suggestPath));
    m_config.set(QStringLiteral("url/askquesturl"), QLatin1String(askPath));
    m_config.set(QStringLiteral("ihttpInfo/iHttpMode"), QStringLiteral("0"));
    serveHotQuestions(40);
    serveSuggestions(3);
    m_server->setReplyFor(askPath, httpReply(R"({"errorCode":"0","result":{"resultType":)"
                                             R"("QA_NORMAL_RESULT","reply":"<p>答</p>"}})"));
    initAppPaths(callerType);
    QDir(m_config.root()).mkpath(QStringLiteral("Miravel"));
    QDir::setCurrent(m_config.root() + QStringLiteral("/Miravel"));
    setLoginState(0);
    makeWindow();
}

WindowBench::~WindowBench()
{
    m_window.reset();
    m_server.reset();
    QDir::setCurrent(QDir::tempPath());
}

void WindowBench::makeWindow()
{
    // The guard's thread says when it listens; waited for, that is in no test's log.
    const LogCapture log;
    const auto isListening = [&log] {
        return !log.linesWith(QStringLiteral("info: Tcp listen")).isEmpty();
    };
    m_window = std::make_unique<Miravel>();
    setSuggestionLimit(patientMs);
    m_window->show();
    m_window->activateWindow();
    if (!QTest::qWaitFor(isListening, patientMs)) {
        qFatal("the guard's thread does not listen");
    }
}

void WindowBench::setSuggestionLimit(int ms) const
{
    m_window->findChild<QARegion *>()->service().associationTimeoutMs = ms;
}

bool WindowBench::putPointer()
{
    const QPoint place(300, 300);
    QCursor::setPos(place);
    return QTest::qWaitFor([place] { return QCursor::pos() == place; }, patientMs);
}

void WindowBench::dropWindow()
{
    m_window.reset();
}

void WindowBench::startGreeted()
{
    m_window->startForVdiClient();
    QTRY_VERIFY(messages().contains(greetingText));
}

void WindowBench::setLoginState(int state)
{
    QFile settings(m_config.root() + QStringLiteral("/config/CommonTerminal.ini"));
    if (!settings.open(QIODevice::WriteOnly)) {
        qFatal("The settings file cannot be written");
    }
    // Of a different length each time, so that Qt's cache sees the change.
    settings.write("[RemLastUser]\nlastuser=user" + QByteArray(++m_writes, 'x')
                   + "\n[LoginMode]\nloginstate=" + QByteArray::number(state) + "\n");
}

void WindowBench::removeClientSettings() const
{
    QFile::remove(m_config.root() + QStringLiteral("/config/CommonTerminal.ini"));
}

void WindowBench::serveHotQuestions(int count)
{
    m_server->setReplyFor(hotPath, questionList(count, QStringLiteral("问"), 1000));
}

void WindowBench::serveSuggestions(int count)
{
    m_server->setReplyFor(suggestPath, questionList(count, QStringLiteral("建议"), 100));
}

void WindowBench::hurry(const char *name)
{
    timer(name).setInterval(hurryMs);
}

QTimer &WindowBench::timer(const char *name) const
{
    auto *found = m_window->findChild<QTimer *>(QLatin1String(name));
    if (found == nullptr) {
        qFatal("There is no timer %s", name);
    }
    return *found;
}

bool WindowBench::runs(const char *name) const
{
    return timer(name).isActive();
}

QTextEdit *WindowBench::input() const
{
    return m_window->findChild<QTextEdit *>();
}

QPushButton *WindowBench::button(const QString &name) const
{
    const auto buttons = m_window->findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->text() == name || candidate->accessibleName() == name) {
            return candidate;
        }
    }
    return nullptr;
}

void WindowBench::send(const QString &text)
{
    input()->setPlainText(text);
    m_window->send_messages();
}

QStringList WindowBench::messages() const
{
    return bubbleTexts<MessageBubble>(*m_window);
}

QStringList WindowBench::questions() const
{
    return bubbleTexts<QuestionBubble>(*m_window);
}

QStringList WindowBench::hotRows() const
{
    QStringList texts;
    const auto *column = m_window->findChild<HotQuestionsColumn *>();
    const auto *list = column->findChild<QListWidget *>();
    for (int number = 1; number <= list->count(); ++number) {
        const QPushButton *row = rowButton(list, number);
        texts.append(row == nullptr ? QString() : row->text());
    }
    return texts;
}

QStringList WindowBench::firstRows(int count)
{
    QStringList rows;
    for (int i = 1; i <= count; ++i) {
        rows.append(QStringLiteral("%1. 问%1").arg(i));
    }
    return rows;
}

QPushButton *WindowBench::hotRow(int number) const
{
    const auto *column = m_window->findChild<HotQuestionsColumn *>();
    return rowButton(column->findChild<QListWidget *>(), number);
}

SuggestionPopup *WindowBench::popup() const
{
    const auto popups = m_window->findChildren<SuggestionPopup *>();
    for (SuggestionPopup *candidate : popups) {
        if (candidate->isVisible()) {
            return candidate;
        }
    }
    return nullptr;
}

QPushButton *WindowBench::suggestion(int number) const
{
    return rowButton(popup()->findChild<QListWidget *>(), number);
}

QVector<QJsonObject> WindowBench::bodies(const QByteArray &path) const
{
    QVector<QJsonObject> found;
    const auto requests = m_server->requests();
    for (const ReceivedRequest &request : requests) {
        if (request.target == path) {
            found.append(QJsonDocument::fromJson(request.body).object());
        }
    }
    return found;
}

void WindowBench::onceRequested(const QByteArray &path, int count,
                                const std::function<void()> &action)
{
    auto *look = new QTimer(m_window.get());
    QObject::connect(look, &QTimer::timeout, look, [this, look, path, count, action] {
        if (bodies(path).size() >= count) {
            look->stop();
            action();
        }
    });
    look->start(hurryMs);
}

void WindowBench::askPending(const std::function<void()> &meanwhile)
{
    m_server->setReplyFor(
        askPath,
        held(httpReply(R"({"errorCode":"0","result":{"resultType":"NO_RESULT","reply":"x"}})")));
    onceRequested(askPath, 1, [this, meanwhile] {
        meanwhile();
        m_server->release();
    });
    send(QStringLiteral("先问"));
}
