#include "ui/mainwindow/processwatch.h"

#include "service/diagnosis/systemcommand.h"

QByteArray taskList(int limitMs)
{
    SystemCommand command(QStringLiteral("tasklist"));
    if (!command.finishedWithin(limitMs)) {
        return {};
    }
    QByteArray output = command.output();
    const int end = output.indexOf('\0');
    if (end >= 0) {
        output.truncate(end);
    }
    return output;
}

bool isListed(const QByteArray &taskList, const QString &executable)
{
    return !executable.isEmpty() && taskList.contains(executable.toLocal8Bit());
}

RunningPrograms runningPrograms(const WatchedPrograms &programs, int limitMs)
{
    const QByteArray list = taskList(limitMs); // one list for both, so one wait
    return {isListed(list, programs.vdiClient), isListed(list, programs.launcher)};
}
