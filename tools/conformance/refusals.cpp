#include "tools/conformance/refusals.h"

#include "tools/conformance/replyjudge.h"

#include <QUuid>

namespace {

constexpr int refusalLimitMs = 10000;
constexpr qint64 dayMs = qint64(24) * 3600 * 1000;

const char *const signatureHeader = "x-ca-signature";

QByteArray withOneDigitChanged(QByteArray signature)
{
    signature[0] = signature.at(0) == '0' ? '1' : '0';
    return signature;
}

/// A right request, then spoilt.
struct Wrong
{
    const char *id;
    const char *what; ///< as the report says it
    bool must;        ///< whether accepting it is a fault; else it is only noted

    /// Signs with credentials that are wrong from the start, or nothing.
    void (*spoilCredentials)(RequestCredentials &credentials);
    void (*spoilLetter)(Letter &letter);
};

void leaveCredentials(RequestCredentials &)
{
}
void leaveLetter(Letter &)
{
}

void shiftTime(RequestCredentials &credentials, qint64 ms)
{
    credentials.timestamp = QString::number(credentials.timestamp.toLongLong() + ms);
}

template <const char *const &name>
void without(Letter &letter)
{
    removeHeader(letter, name);
}

const char *const tenantHeader = "tenantId";
const char *const keyHeader = "x-ca-key";
const char *const timeHeader = "x-ca-timestamp";
const char *const nonceHeader = "x-ca-nonce";
const char *const hostHeader = "X-Ap-sHost";

const Wrong wrongs[] = {
    {"wrong-signature", "a signature with one digit changed", true, leaveCredentials,
     [](Letter &letter) {
         setHeader(letter, signatureHeader, withOneDigitChanged(headerOf(letter, signatureHeader)));
     }},
    {"other-secret", "a signature with another secret", true,
     [](RequestCredentials &credentials) { credentials.secret += QStringLiteral("x"); },
     leaveLetter},
    {"empty-signature", "an empty signature", true, leaveCredentials,
     [](Letter &letter) {
         setHeader(letter, signatureHeader, "");
     }},
    {"changed-nonce", "another nonce than was signed", true, leaveCredentials,
     [](Letter &letter) {
         setHeader(letter, nonceHeader, QUuid::createUuid().toString().toLatin1());
     }},
    {"changed-time", "another time than was signed", true, leaveCredentials,
     [](Letter &letter) {
         const qint64 time = headerOf(letter, timeHeader).toLongLong();
         setHeader(letter, timeHeader, QByteArray::number(time + 1));
     }},
    {"unknown-tenant", "an unknown tenant", true,
     [](RequestCredentials &credentials) { credentials.tenantId += QStringLiteral("-unknown"); },
     leaveLetter},
    {"unknown-key", "an unknown key", true,
     [](RequestCredentials &credentials) { credentials.key += QStringLiteral("-unknown"); },
     leaveLetter},
    {"stale", "a time a day ago", true,
     [](RequestCredentials &credentials) { shiftTime(credentials, -dayMs); }, leaveLetter},
    {"early", "a time a day ahead", true,
     [](RequestCredentials &credentials) { shiftTime(credentials, dayMs); }, leaveLetter},
    {"bad-time", "a time that is no number", true,
     [](RequestCredentials &credentials) { credentials.timestamp = QStringLiteral("now"); },
     leaveLetter},
    {"bad-nonce", "a nonce that is no UUID in braces", false,
     [](RequestCredentials &credentials) { credentials.nonce.remove(QLatin1Char('{')); },
     leaveLetter},
    {"no-tenant", "no header tenantId", true, leaveCredentials, without<tenantHeader>},
    {"no-key", "no header x-ca-key", true, leaveCredentials, without<keyHeader>},
    {"no-time", "no header x-ca-timestamp", true, leaveCredentials, without<timeHeader>},
    {"no-nonce", "no header x-ca-nonce", true, leaveCredentials, without<nonceHeader>},
    {"no-signature", "no header x-ca-signature", true, leaveCredentials, without<signatureHeader>},
    {"no-host", "no header X-Ap-sHost", false, leaveCredentials, without<hostHeader>},
    {"wrong-type", "a Content-Type that is not JSON", false, leaveCredentials,
     [](Letter &letter) {
         setHeader(letter, "Content-Type", "text/plain");
     }},
    {"damaged-body", "a body cut in half", true, leaveCredentials,
     [](Letter &letter) {
         letter.body.truncate(letter.body.size() / 2);
     }},
    {"empty-body", "no body", true, leaveCredentials,
     [](Letter &letter) {
         letter.body.clear();
     }},
    {"list-body", "a body that is a list", true, leaveCredentials,
     [](Letter &letter) {
         letter.body = "[" + letter.body + "]";
     }},
    {"bare-body", "a body without a member", false, leaveCredentials,
     [](Letter &letter) {
         letter.body = "{}";
     }},
    {"wrong-path", "a path that does not exist", false, leaveCredentials,
     [](Letter &letter) {
         letter.path += QStringLiteral("-no-such-call");
     }},
    {"wrong-method", "GET instead of POST", false, leaveCredentials,
     [](Letter &letter) {
         letter.verb = "GET";
         letter.body.clear();
     }},
};

Check judged(const QString &id, const QString &what, const Response &response,
             const Findings &complaints)
{
    if (complaints.isEmpty()) {
        return {id, good(what + QStringLiteral(": refused, ") + refusalWords(response)),
                response.tookMs};
    }
    Finding worst = complaints.first();
    for (const Finding &complaint : complaints) {
        if (complaint.grade == Finding::Grade::Mend) {
            worst = complaint;
        }
    }
    worst.what = what + QStringLiteral(": ") + worst.what;
    return {id, worst, response.tookMs};
}

Check checkOne(const Examinee &examinee, CallName call, const Wrong &wrong)
{
    RequestCredentials credentials = examinee.credentials();
    wrong.spoilCredentials(credentials);
    Letter letter = signedLetter(examinee.pathOf(call), examinee.bodyOf(call), credentials,
                                 examinee.server());
    const QByteArray signature = headerOf(letter, signatureHeader);
    wrong.spoilLetter(letter);
    // A signature that was sent may be told of.
    const QByteArray secretOne
        = headerOf(letter, signatureHeader) == signature ? QByteArray() : signature;
    const Response response = examinee.send(letter, refusalLimitMs);
    return judged(nameOf(call) + QLatin1String(".refuses.") + QLatin1String(wrong.id),
                  QLatin1String(wrong.what), response,
                  judgeRefusal(response, refusalLimitMs, wrong.must, examinee.secret(), secretOne));
}

Check notExamined(const QString &id, const QString &what)
{
    return {id, note(what + QStringLiteral(": not examined, no right request is answered"),
                     QStringLiteral("Mend the call, then examine again."))};
}

/// Whether a right request that was just refused fell to the nonce, which a forged one had carried
/// before.
Check afterForgery(const Examinee &examinee, CallName call, const QString &prefix)
{
    const QString id = prefix + QStringLiteral("nonce-kept");
    const int limit = examinee.limitMs(call);
    const Response fresh = examinee.send(examinee.letterOf(call, examinee.bodyOf(call)), limit);
    if (!judgeEnvelope(fresh, limit).complaints.isEmpty()) {
        return notExamined(id, QStringLiteral("a nonce used by a forged request"));
    }
    return {id,
            toMend(QStringLiteral("a forged request has used up the nonce of a right one"),
                   QStringLiteral("Remember a nonce only when the signature is right: else "
                                  "anybody can block requests.")),
            fresh.tookMs};
}

} // namespace

Checks checkRefusals(const Examinee &examinee, CallName call)
{
    Checks checks;
    for (const Wrong &wrong : wrongs) {
        checks.append(checkOne(examinee, call, wrong));
    }
    return checks;
}

Checks checkNonces(const Examinee &examinee, CallName call)
{
    const QString prefix = nameOf(call) + QLatin1Char('.');
    const int limit = examinee.limitMs(call);
    const Letter letter = examinee.letterOf(call, examinee.bodyOf(call));
    Letter forged = letter;
    setHeader(forged, signatureHeader, withOneDigitChanged(headerOf(letter, signatureHeader)));
    static_cast<void>(examinee.send(forged, refusalLimitMs));
    const Response first = examinee.send(letter, limit);
    if (!judgeEnvelope(first, limit).complaints.isEmpty()) {
        return {afterForgery(examinee, call, prefix)};
    }
    const Response second = examinee.send(letter, refusalLimitMs);
    return {{prefix + QStringLiteral("nonce-kept"),
             good(QStringLiteral("a forged request uses no nonce up")), first.tookMs},
            judged(prefix + QStringLiteral("refuses.replayed-nonce"),
                   QStringLiteral("the same request again"), second,
                   judgeRefusal(second, refusalLimitMs, true, examinee.secret(), {}))};
}
