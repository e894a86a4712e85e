#pragma once

#include "tests/service/support/testserver.h"
#include "tests/support/testconfig.h"
#include "ui/mainwindow/miravel.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>

class QLabel;
class QPushButton;
class QTextEdit;
class QTimer;
class SuggestionPopup;

/// The window on an installation of its own, with a server of its own, as the caller "vdi" or
/// another starts it. Its timers run at their own pace unless a test makes them shorter.
class WindowBench final
{
    Q_DISABLE_COPY_MOVE(WindowBench)

public:
    explicit WindowBench(const QString &callerType = QStringLiteral("vdi"));
    ~WindowBench();

    [[nodiscard]] TestConfig &config() { return m_config; }
    [[nodiscard]] TestServer &server() { return *m_server; }
    [[nodiscard]] Miravel &window() { return *m_window; }

    /// Makes the window anew, as after a change of the settings.
    void makeWindow();

    /// Lets the window go.
    void dropWindow();

    /// Starts as the client does and waits for the greeting.
    void startGreeted();

    /// Writes the client's settings file with this state of the login.
    void setLoginState(int state);
    void removeClientSettings() const;

    /// What the service answers from now on: \a count hot questions "问1", "问2", ... with the ids
    /// 1001, 1002, ...; none is a failure.
    void serveHotQuestions(int count);

    /// The same for suggestions "建议1", ... with the ids 101, ...
    void serveSuggestions(int count);

    /// How long the window waits for suggestions, in ms, from now on. Unless set it is more than a
    /// busy machine needs.
    void setSuggestionLimit(int ms) const;

    /// Runs the timer \a name every few milliseconds from now on, if it runs at all.
    void hurry(const char *name);
    [[nodiscard]] QTimer &timer(const char *name) const;
    [[nodiscard]] bool runs(const char *name) const;

    [[nodiscard]] QTextEdit *input() const;

    /// The button with this text or accessible name; null when there is none.
    [[nodiscard]] QPushButton *button(const QString &name) const;

    /// Puts \a text into the box and sends it.
    void send(const QString &text);

    /// The texts of the assistant's plain messages and of the user's questions, oldest first.
    [[nodiscard]] QStringList messages() const;
    [[nodiscard]] QStringList questions() const;

    /// The texts of the rows of hot questions, e.g. "1. 问1".
    [[nodiscard]] QStringList hotRows() const;

    /// The first \a count of them as the service's first page has them.
    [[nodiscard]] static QStringList firstRows(int count);

    /// Row \a number of them, counted from 1.
    [[nodiscard]] QPushButton *hotRow(int number) const;

    /// The open popup of suggestions; null when there is none.
    [[nodiscard]] SuggestionPopup *popup() const;

    /// Row \a number of it, counted from 1.
    [[nodiscard]] QPushButton *suggestion(int number) const;

    /// The bodies that the service got at \a path, oldest first.
    [[nodiscard]] QVector<QJsonObject> bodies(const QByteArray &path) const;

    /// Does \a action as soon as the service has got \a count requests at \a path: inside the wait
    /// for the reply of the last, if it is held.
    void onceRequested(const QByteArray &path, int count, const std::function<void()> &action);

    /// Asks a question whose answer comes only after \a meanwhile has been done.
    void askPending(const std::function<void()> &meanwhile);

    /// Puts the mouse pointer where a menu has room beside it; false when it does not get there.
    [[nodiscard]] static bool putPointer();

    static const QByteArray hotPath;
    static const QByteArray suggestPath;
    static const QByteArray askPath;

private:
    TestConfig m_config;
    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<Miravel> m_window;
    int m_writes = 0;
};

/// The assistant's own messages.
extern const QString greetingText;
extern const QString notLoggedInText;
extern const QString noNetworkText;
extern const QString refreshFailedText;
extern const QString refreshedText;
