#include "tests/support/virtualdisplay.h"

#include <QDeadlineTimer>
#include <QProcessEnvironment>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QThread>

namespace {

constexpr int patienceMs = 20'000; // only a failing test waits that long
constexpr unsigned long pollMs = 20;

// Display numbers, above those that people and their sessions use.
constexpr int firstNumber = 100;
constexpr int endOfNumbers = 10'000;
constexpr int attempts = 20;

} // namespace

QString VirtualDisplay::missingTools()
{
#ifdef Q_OS_WIN
    return QStringLiteral("Windows shows no windows on an X display of the test's own.");
#else
    QStringList missing;
    for (const QString &tool :
         {QStringLiteral("Xvfb"), QStringLiteral("openbox"), QStringLiteral("xdotool")}) {
        if (QStandardPaths::findExecutable(tool).isEmpty()) {
            missing << tool;
        }
    }
    return missing.isEmpty() ? QString() : QStringLiteral("Not installed: ") + missing.join(u' ');
#endif
}

bool VirtualDisplay::start()
{
    for (int attempt = 0; attempt < attempts && m_name.isEmpty(); ++attempt) {
        startServer(QRandomGenerator::global()->bounded(firstNumber, endOfNumbers));
    }
    return !m_name.isEmpty();
}

void VirtualDisplay::startServer(int number)
{
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    // The server locks a number that it is given, or ends at once; left to choose, it would take
    // over one that is in use. -displayfd makes the server print the number when it takes clients.
    // Without -noreset the server would begin anew, and refuse whoever connects meanwhile, each
    // time its last client leaves.
    const QString name = QLatin1Char(':') + QString::number(number);
    m_server.start(QStringLiteral("Xvfb"), {name, QStringLiteral("-displayfd"), QStringLiteral("1"),
                                            QStringLiteral("-noreset"), QStringLiteral("-screen"),
                                            QStringLiteral("0"), QStringLiteral("1280x1024x24"),
                                            QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    if (!m_server.nextLine(patienceMs).isEmpty()) {
        m_name = name;
    }
}

bool VirtualDisplay::startWindowManager()
{
    m_windowManager.setProcessEnvironment(environment());
    m_windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    const QDeadlineTimer deadline(patienceMs);
    // A managed display tells how many desktops it has.
    while (xdotool({QStringLiteral("get_num_desktops")}).isEmpty()) {
        if (deadline.hasExpired() || !m_windowManager.isRunning()) {
            return false;
        }
        QThread::msleep(pollMs);
    }
    return true;
}

QString VirtualDisplay::name() const
{
    return m_name;
}

QProcessEnvironment VirtualDisplay::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_name);
    return environment;
}

QString VirtualDisplay::xdotool(const QStringList &arguments) const
{
    ChildProcess process;
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral("xdotool"), arguments);
    if (!process.endsWith(0, patienceMs)) {
        return {};
    }
    return QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
}

QString VirtualDisplay::visibleWindow(qint64 pid) const
{
    return xdotool({QStringLiteral("search"), QStringLiteral("--all"),
                    QStringLiteral("--onlyvisible"), QStringLiteral("--pid"), QString::number(pid)})
        .section(QLatin1Char('\n'), 0, 0);
}

QString VirtualDisplay::waitForWindow(qint64 pid) const
{
    const QDeadlineTimer deadline(patienceMs);
    QString window = visibleWindow(pid);
    while (window.isEmpty() && !deadline.hasExpired()) {
        QThread::msleep(pollMs);
        window = visibleWindow(pid);
    }
    return window;
}
