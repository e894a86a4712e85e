// Logs through the real handler, for tests that need another process:
// logwriter <base path> <name> <number of messages> [fatal]

#include "app/base/loghandler.h"
#include "app/base/logstream.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        return EXIT_FAILURE;
    }
    initLogSetting(QStringLiteral("DEBUG"), arguments.at(1));
    qInstallMessageHandler(logMessageHandler);
    const int count = arguments.at(3).toInt();
    for (int i = 0; i < count; ++i) {
        LOG_DEBUG() << arguments.at(2) << "-" << i << ".";
    }
    if (arguments.contains(QStringLiteral("fatal"))) {
        qFatal("the end");
    }
    return EXIT_SUCCESS;
}
