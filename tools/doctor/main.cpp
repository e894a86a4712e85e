#include "app/base/apppaths.h"
#include "app/base/librarysearch.h"
#include "service/request/httpsrequest.h"
#include "tools/doctor/callcheck.h"
#include "tools/doctor/endpointcheck.h"
#include "tools/doctor/fontcheck.h"
#include "tools/doctor/installationcheck.h"
#include "tools/doctor/machinecheck.h"
#include "tools/doctor/report.h"
#include "tools/doctor/servicelog.h"
#include "tools/doctor/settingscheck.h"
#include "tools/doctor/surroundings.h"
#include "tools/doctor/usercheck.h"
#include "tools/doctor/vpncheck.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int somethingToMend = 1;
constexpr int wrongCommandLine = 2;
constexpr int longestWaitS = 3600;

struct Options
{
    QString folder;
    QString question;
    bool shortcut = false;
    bool verbose = false;
    int limitMs = 0;
};

/// Ends the process for --help and for a command line that cannot be understood.
Options readCommandLine(const QApplication &app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Looks over an installation of Miravel, as the program itself reads it, and "
                       "makes each of the service's calls. Exit status: 0 when all is well, 1 when "
                       "there is something to mend, 2 for a wrong command line."));
    const QCommandLineOption shortcut(
        QStringLiteral("shortcut"),
        QStringLiteral("The program is started from a shortcut, without --Type."));
    const QCommandLineOption question(QStringLiteral("question"),
                                      QStringLiteral("What is asked, and suggestions fetched for."),
                                      QStringLiteral("text"), QStringLiteral("云桌面"));
    const QCommandLineOption wait(QStringLiteral("wait"),
                                  QStringLiteral("How long a reply is waited for, in seconds."),
                                  QStringLiteral("seconds"), QStringLiteral("20"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Print what the program would log."));
    parser.addOptions({shortcut, question, wait, verbose});
    const QCommandLineOption help = parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("The folder that holds the program."));
    if (!parser.parse(app.arguments())) {
        std::fprintf(stderr, "doctor: %s\n", qPrintable(parser.errorText()));
        std::exit(wrongCommandLine);
    }
    if (parser.isSet(help)) {
        parser.showHelp();
    }
    bool isNumber = false;
    const int seconds = parser.value(wait).toInt(&isNumber);
    const QStringList folders = parser.positionalArguments();
    if (folders.size() != 1 || !isNumber || seconds < 1 || seconds > longestWaitS) {
        std::fprintf(stderr,
                     "doctor: one folder, and a number of seconds from 1 to %d, are "
                     "wanted; --help says more\n",
                     longestWaitS);
        std::exit(wrongCommandLine);
    }
    return {folders.first(), parser.value(question), parser.isSet(shortcut), parser.isSet(verbose),
            seconds * 1000};
}

bool examine(const Options &options)
{
    Report report(stdout);
    ServiceLog log(options.verbose);
    report.begin(QStringLiteral("The installation"));
    report.add(checkInstallation());
    report.add(checkMachine(miravelConfigPath()));
    report.add(checkFont());
    report.add(checkUser());
    report.begin(QStringLiteral("The settings"));
    report.add(checkSettings(miravelConfigPath()));
    httpsRequest request;
    report.begin(QStringLiteral("The way to the service"));
    report.add(checkEndpoint(request));
    report.add(checkVpnLibraries());
    if (resolvedEndpoint().isComplete()) {
        report.begin(QStringLiteral("The service"));
        report.add(checkCalls(request, log, options.limitMs, options.question));
    }
    return report.conclude();
}

} // namespace

int main(int argc, char *argv[])
{
    narrowLibrarySearch();
    showNoWindow();
    askForRights();
    const QApplication app(argc, argv);
    const Options options = readCommandLine(app);
    if (!QDir::setCurrent(options.folder)) {
        std::fprintf(stderr, "doctor: there is no folder %s\n", qPrintable(options.folder));
        return wrongCommandLine;
    }
    initAppPaths(options.shortcut ? QString() : QStringLiteral("vdi"));
    return examine(options) ? EXIT_SUCCESS : somethingToMend;
}
