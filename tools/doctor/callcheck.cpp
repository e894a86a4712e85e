#include "tools/doctor/callcheck.h"

#include "service/reply/replyreading.h"
#include "service/request/httpsrequest.h"
#include "service/request/servicecall.h"
#include "tools/doctor/replyjudgement.h"
#include "tools/doctor/servicelog.h"

#include <QElapsedTimer>

namespace {

constexpr int suggestionLimitMs = 400; // the program waits no longer
constexpr int suggestionTries = 3;

/// What came of one call.
struct Outcome
{
    Finding finding;
    qint64 tookMs;
};

Outcome make(httpsRequest &request, ServiceLog &log, int limitMs, const CallKind &kind,
             const ServiceCall &call)
{
    log.clear();
    QByteArray reply;
    QElapsedTimer clock;
    clock.start();
    const int result
        = request.SendHttpsRequest(call.urlPath, call.httpMode, limitMs, &reply, call.body, false);
    const qint64 took = clock.elapsed();
    if (result != 0) {
        return {toMend(QStringLiteral("%1: no reply within %2 s")
                           .arg(QLatin1String(kind.name))
                           .arg(limitMs / 1000),
                       QStringLiteral("The server takes the connection and says nothing: see "
                                      "whether the service is alive.")),
                took};
    }
    const QString error = log.after(QStringLiteral("https reply error:"));
    const Finding finding = judgeReply(kind, reply, error);
    if (finding.grade != Finding::Grade::Good) {
        return {finding, took};
    }
    return {good(finding.what + QStringLiteral(" (%1 ms)").arg(took)), took};
}

/// The fastest of some tries: the first reply after a while may be slow.
Outcome fastestSuggestions(httpsRequest &request, ServiceLog &log, int limitMs,
                           const QString &question)
{
    const ServiceCall call = associationCall(request.configPath, question);
    Outcome fastest = make(request, log, limitMs, associationKind, call);
    for (int i = 1; i < suggestionTries && fastest.tookMs > suggestionLimitMs; ++i) {
        const Outcome next = make(request, log, limitMs, associationKind, call);
        if (next.tookMs < fastest.tookMs) {
            fastest = next;
        }
    }
    return fastest;
}

Finding checkSuggestions(httpsRequest &request, ServiceLog &log, int limitMs,
                         const QString &question)
{
    const Outcome fastest = fastestSuggestions(request, log, limitMs, question);
    if (fastest.finding.grade == Finding::Grade::Good && fastest.tookMs > suggestionLimitMs) {
        return toMend(QStringLiteral("suggestions: the reply took %1 ms").arg(fastest.tookMs),
                      QStringLiteral("The program waits 400 ms: later suggestions are never shown. "
                                     "Mend the service or the network."));
    }
    return fastest.finding;
}

} // namespace

Findings checkCalls(httpsRequest &request, ServiceLog &log, int limitMs, const QString &question)
{
    Findings findings;
    findings.append(make(request, log, limitMs, hotKind, hotCall(request.configPath)).finding);
    findings.append(checkSuggestions(request, log, limitMs, question));
    AskFields fields;
    fields.rawQuery = question;
    fields.source = QStringLiteral("rawquery");
    findings.append(
        make(request, log, limitMs, askKind, askCall(request.configPath, fields)).finding);
    return findings;
}
