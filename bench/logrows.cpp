#include "app/base/loghandler.h"
#include "app/base/logstream.h"
#include "bench/rows.h"
#include "bench/timing.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

constexpr int rounds = 30;
constexpr int lines = 200;

double writtenCost()
{
    return microseconds([] {
               for (int i = 0; i < lines; ++i) {
                   LOG_WARNING() << "The network is connected, but the reply is empty." << i;
               }
           })
         / lines;
}

double droppedCost()
{
    return microseconds([] {
               for (int i = 0; i < lines; ++i) {
                   LOG_DEBUG() << "nSize_Recom:" << i << "reply_Type:";
               }
           })
         / lines;
}

double bareCost(const QString &path)
{
    const QByteArray line(
        "Warning:[2026-01-01 00:00:00 file:logrows.cpp line:24]: The network is connected\n");
    return microseconds([&] {
               for (int i = 0; i < lines; ++i) {
                   QFile file(path);
                   file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
                   file.write(line);
                   file.close();
                   static_cast<void>(QFileInfo(path).size());
               }
           })
         / lines;
}

} // namespace

Rows measureLog()
{
    const QTemporaryDir folder;
    initLogSetting(QStringLiteral("WARN"), folder.filePath(QStringLiteral("ours")));
    const QtMessageHandler before = qInstallMessageHandler(logMessageHandler);
    const QString bareFile = folder.filePath(QStringLiteral("bare.log"));
    const TwoCosts written
        = compare(rounds, writtenCost, [&bareFile] { return bareCost(bareFile); });
    std::vector<double> dropped;
    for (int round = 0; round < rounds; ++round) {
        dropped.push_back(droppedCost());
    }
    qInstallMessageHandler(before);
    return {
        {QStringLiteral("log-line"), QStringLiteral("one written log line"),
         QStringLiteral("open, append, close, size query"), QStringLiteral("µs"), written.first,
         written.second, 1.3},
        {QStringLiteral("dropped-log-line"), QStringLiteral("one dropped log line"), QString(),
         QStringLiteral("µs"), median(dropped), 0, 1},
    };
}
