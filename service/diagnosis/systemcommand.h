#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

/// A console command of the system, started with this object, waited for in place and killed with
/// it: whatever the command does, no process, zombie or open pipe is left behind, and no wait is
/// longer than asked for. (On Windows Qt's reader may take some seconds more to turn away
/// from a command that prints faster than it reads.) Its error output is discarded. Made, used and
/// destroyed on one thread, which needs no event loop.
class SystemCommand final
{
    Q_DISABLE_COPY_MOVE(SystemCommand)

public:
    /// More than any command has to say: 256 MiB.
    static constexpr qint64 defaultMaxOutputBytes = 268'435'456;

    /// Starts \a program, looked for as the system looks for commands, with \a arguments. One that
    /// prints more than \a maxOutputBytes counts as never finishing.
    explicit SystemCommand(const QString &program, const QStringList &arguments = {},
                           qint64 maxOutputBytes = defaultMaxOutputBytes);
    ~SystemCommand();

    /// Waits at most \a limitMs milliseconds for the start. False when there is no such program.
    [[nodiscard]] bool startedWithin(int limitMs);

    /// Closes the command's input, so that it reads the end of it.
    void closeInput();

    /// Waits at most \a limitMs milliseconds for the end, collecting the output meanwhile. True for
    /// one that has ended, in whatever way, or never began.
    [[nodiscard]] bool finishedWithin(int limitMs);

    /// Takes what the command has printed so far.
    [[nodiscard]] QByteArray output();

private:
    QProcess m_process;
    qint64 m_maxOutputBytes;
};
