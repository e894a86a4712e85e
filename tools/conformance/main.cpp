#include "tools/conformance/acceptance.h"
#include "tools/conformance/examination.h"
#include "tools/conformance/options.h"
#include "tools/conformance/refusals.h"
#include "tools/doctor/report.h"
#include "tools/doctor/servicelog.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int somethingToMend = 1;
constexpr int wrongCommandLine = 2;

void print(Report &report, const Checks &checks)
{
    for (const Check &check : checks) {
        Finding finding = check.finding;
        finding.what.prepend(check.id + QStringLiteral(": "));
        if (check.tookMs >= 0) {
            finding.what += QStringLiteral(" (%1 ms)").arg(check.tookMs);
        }
        report.add({finding});
    }
}

void take(Examination &examination, Report &report, const Checks &checks)
{
    print(report, checks);
    examination.checks += checks;
}

void examineCalls(Examination &examination, Report &report, const Examinee &examinee,
                  const Options &options)
{
    Acceptance acceptance(examinee, options.question, options.answers);
    report.begin(QStringLiteral("Hot questions"));
    take(examination, report, acceptance.hot());
    report.begin(QStringLiteral("Suggestions"));
    take(examination, report, acceptance.association());
    report.begin(QStringLiteral("Answers"));
    take(examination, report, acceptance.ask());
}

void examineRefusals(Examination &examination, Report &report, const Examinee &examinee)
{
    for (const CallName call : {CallName::Hot, CallName::Association, CallName::Ask}) {
        report.begin(QStringLiteral("What %1 refuses").arg(nameOf(call)));
        take(examination, report, checkRefusals(examinee, call));
        take(examination, report, checkNonces(examinee, call));
    }
}

bool write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    const bool opened = name == QLatin1String("-")
                          ? file.open(stdout, QIODevice::WriteOnly)
                          : name.isEmpty() || file.open(QIODevice::WriteOnly);
    if (!opened || (!name.isEmpty() && file.write(bytes) != bytes.size())) {
        std::fprintf(stderr, "conformance: %s cannot be written\n", qPrintable(name));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const Options options = readOptions(QCoreApplication::arguments());
    const ServiceLog log(options.verbose);
    const Examinee examinee(options.settingsFile, options.address, options.waitMs);
    Report report(options.jsonFile == QLatin1String("-") ? stderr : stdout);
    Examination examination;
    examination.address = examinee.address();
    examination.tenant = examinee.tenant();
    examination.started = QDateTime::currentDateTimeUtc();
    report.begin(QStringLiteral("The question service at ") + examination.address);
    examineCalls(examination, report, examinee, options);
    examineRefusals(examination, report, examinee);
    examination.ended = QDateTime::currentDateTimeUtc();
    const bool conforms = report.conclude();
    if (!write(options.jsonFile, examinationAsJson(examination))
        || !write(options.summaryFile, examinationAsSummary(examination).toUtf8())) {
        return wrongCommandLine;
    }
    return conforms ? EXIT_SUCCESS : somethingToMend;
}
