#include "app/base/apppaths.h"
#include "app/base/loghandler.h"
#include "app/startup/singleapplication.h"
#include "bench/rows.h"
#include "bench/table.h"
#include "resources/resources.h"

#include <QFileInfo>
#include <QFont>

namespace {

struct Measurement
{
    const char *name;
    Rows (*measure)();
};

// Memory is counted best while little else has been allocated.
constexpr Measurement measurements[] = {
    {"start", measureStart},     {"conversation", measureConversation},
    {"request", measureRequest}, {"pictures", measurePictures},
    {"guard", measureGuard},     {"log", measureLog},
    {"stalls", measureStalls},
};

} // namespace

/// Usage: miravel_bench RESULTS [NAME...]: makes the named measurements, or all, prints their table
/// and writes it to the file RESULTS. The exit status says whether measuring worked, never what
/// came out.
int main(int argc, char *argv[])
{
    const SingleApplication app(argc, argv); // a second start is one of the rows
    QApplication::setFont(QFont(QStringLiteral("Microsoft YaHei")));
    initResources();
    initAppPaths(QString());
    // The program's own handler, at its default level, drops what is no error.
    initLogSetting(QString(), QString());
    qInstallMessageHandler(logMessageHandler);

    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        return 2;
    }
    const QString results = QFileInfo(arguments.at(1)).absoluteFilePath();
    Rows rows;
    for (const Measurement &measurement : measurements) {
        if (arguments.size() == 2 || arguments.mid(2).contains(QLatin1String(measurement.name))) {
            rows += measurement.measure();
        }
    }
    printTable(rows);
    return writeResults(rows, results) ? 0 : 1;
}
