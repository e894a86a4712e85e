#include "service/diagnosis/systemcommand.h"

#include <QDeadlineTimer>

namespace {

constexpr int goneMs = 1000; // a killed process needs but a moment

int remainingMs(const QDeadlineTimer &deadline)
{
    return static_cast<int>(deadline.remainingTime());
}

} // namespace

SystemCommand::SystemCommand(const QString &program, const QStringList &arguments,
                             qint64 maxOutputBytes)
    : m_maxOutputBytes(maxOutputBytes)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(program, arguments, QIODevice::ReadWrite);
}

SystemCommand::~SystemCommand()
{
    m_process.kill();
    m_process.waitForFinished(goneMs); // else QProcess warns, and waits for much longer
}

bool SystemCommand::startedWithin(int limitMs)
{
    return m_process.waitForStarted(limitMs);
}

void SystemCommand::closeInput()
{
    m_process.closeWriteChannel();
}

bool SystemCommand::finishedWithin(int limitMs)
{
    const QDeadlineTimer deadline(qMax(limitMs, 0));
    while (m_process.state() != QProcess::NotRunning) {
        if (deadline.hasExpired() || m_process.bytesAvailable() > m_maxOutputBytes) {
            return false;
        }
        // waitForFinished() need not return while a command keeps printing, nor could the output be
        // measured meanwhile: it is for those that have closed their output.
        if (!m_process.waitForReadyRead(remainingMs(deadline))) {
            m_process.waitForFinished(remainingMs(deadline));
        }
    }
    return true;
}

QByteArray SystemCommand::output()
{
    return m_process.readAll();
}
