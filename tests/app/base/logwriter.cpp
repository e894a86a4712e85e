// Logs through the real handler, for tests that need another process:
// logwriter <base path> <name> <number of messages> [fatal|together]
// "together": each message is the first of a thread of its own, all at once.

#include "app/base/loghandler.h"
#include "app/base/logstream.h"

#include <QCoreApplication>

#include <atomic>
#include <thread>
#include <vector>

namespace {

void log(const QString &name, int count)
{
    for (int i = 0; i < count; ++i) {
        LOG_DEBUG() << name << "-" << i << ".";
    }
}

void logTogether(const QString &name, int count)
{
    std::atomic<int> ready = 0;
    std::vector<std::thread> workers;
    workers.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        workers.emplace_back([i, count, &name, &ready] {
            ++ready;
            while (ready < count) {
                std::this_thread::yield();
            }
            LOG_DEBUG() << name << "-" << i << ".";
        });
    }
    for (std::thread &worker : workers) {
        worker.join();
    }
}

} // namespace

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
    if (arguments.contains(QStringLiteral("together"))) {
        logTogether(arguments.at(2), count);
    } else {
        log(arguments.at(2), count);
    }
    if (arguments.contains(QStringLiteral("fatal"))) {
        qFatal("the end");
    }
    return EXIT_SUCCESS;
}
