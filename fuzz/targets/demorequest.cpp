#include "fuzz/support/check.h"
#include "fuzz/support/parts.h"
#include "fuzz/support/target.h"
#include "service/request/requestsigning.h"
#include "tools/demoservice/requests/requestbody.h"
#include "tools/demoservice/requests/requestrecord.h"
#include "tools/demoservice/requests/requestverifier.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cmath>

namespace {

constexpr std::int64_t nowMs = 1'700'000'000'000;
constexpr std::int64_t maxSkewMs = 300'000;
const QByteArray tenant = QByteArrayLiteral("demo-tenant");
const QByteArray applicationKey = QByteArrayLiteral("demo-key");
const QByteArray rightSignature = QByteArrayLiteral("RIGHT"); ///< in an input stands for it

/// The header lines of \a block, "name: value" each. A signature that is to be right is made by the
/// program's own code.
demo::HeaderLines headersOf(const QByteArray &block, const QByteArray &secret)
{
    demo::HeaderLines headers;
    for (const QByteArray &line : block.split('\n')) {
        const int colon = line.indexOf(':');
        if (colon >= 0) {
            headers[line.left(colon).toLower().toStdString()].push_back(
                line.mid(colon + 1).trimmed().toStdString());
        }
    }
    const auto first = [&headers](const char *name) {
        const auto found = headers.find(name);
        return found == headers.end() ? QString() : QString::fromStdString(found->second.front());
    };
    const auto signature = headers.find("x-ca-signature");
    if (signature != headers.end() && signature->second.front() == rightSignature.toStdString()) {
        const QString text = QLatin1String("tenantId=") + first("tenantid")
                           + QLatin1String("&x-ca-key=") + first("x-ca-key")
                           + QLatin1String("&x-ca-nonce=") + first("x-ca-nonce")
                           + QLatin1String("&x-ca-secret=") + QString::fromUtf8(secret)
                           + QLatin1String("&x-ca-timestamp=") + first("x-ca-timestamp");
        signature->second.front() = requestSignature(text, QString::fromUtf8(secret)).toStdString();
    }
    return headers;
}

/// \a value whole: what Qt makes of a byte array ends at its first NUL.
QString textOf(const QByteArray &value)
{
    return QString::fromLatin1(value.constData(), value.size());
}

bool isFresh(const QString &timestamp)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9]+\\z"));
    bool fits = false;
    const qint64 value = timestamp.toLongLong(&fits);
    return digits.match(timestamp).hasMatch() && fits && std::llabs(value - nowMs) <= maxSkewMs;
}

/// Whether the request is to be accepted, as the protocol has it, when \a signature is the right
/// one.
bool plainlyAccepted(const demo::HeaderLines &headers, const QByteArray &signature)
{
    static const QRegularExpression nonce(QStringLiteral(
        "\\A\\{[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}\\}\\z"));
    QHash<QByteArray, QByteArray> values;
    for (const char *name : {"content-type", "tenantid", "x-ca-key", "x-ca-timestamp", "x-ca-nonce",
                             "x-ca-signature", "x-ap-shost"}) {
        const auto found = headers.find(name);
        if (found == headers.end() || found->second.size() != 1) {
            return false;
        }
        values.insert(name, QByteArray::fromStdString(found->second.front()));
    }
    const QByteArray type = values.value("content-type");
    return (type == "application/json" || type.startsWith("application/json;"))
        && values.value("tenantid") == tenant && values.value("x-ca-key") == applicationKey
        && isFresh(textOf(values.value("x-ca-timestamp")))
        && nonce.match(textOf(values.value("x-ca-nonce"))).hasMatch()
        && values.value("x-ca-signature") == signature;
}

QByteArray signatureFor(const demo::HeaderLines &headers, const QByteArray &secret)
{
    demo::HeaderLines signedOnes = headers;
    signedOnes["x-ca-signature"] = {rightSignature.toStdString()};
    QByteArray block;
    for (const auto &[name, lines] : signedOnes) {
        block += QByteArray::fromStdString(name) + ':' + QByteArray::fromStdString(lines.front())
               + '\n';
    }
    return QByteArray::fromStdString(headersOf(block, secret).at("x-ca-signature").front());
}

void checkBody(demo::Call call, const QByteArray &text)
{
    std::string error;
    const auto body = demo::parseRequestBody(call, text.toStdString(), error);
    check(body.has_value() == error.empty(), "a refused body has a reason");
    if (!body) {
        return;
    }
    QJsonParseError problem;
    const QJsonObject object = QJsonDocument::fromJson(text, &problem).object();
    check(body->recommendSize >= 0, "nobody wants fewer than no questions");
    if (problem.error != QJsonParseError::NoError) {
        return;
    }
    const auto isNumber = [&object](const char *name, std::int64_t value) {
        return object.value(QLatin1String(name)).toDouble() == static_cast<double>(value);
    };
    check(isNumber("recommendSize", body->recommendSize), "the number of questions is that sent");
    check(call != demo::Call::Ask || isNumber("questionId", body->questionId),
          "the id is the one that was sent");
    const QString words
        = object.value(call == demo::Call::Ask ? QLatin1String("rawQuery") : QLatin1String("text"))
              .toString();
    const std::string &read = call == demo::Call::Ask ? body->rawQuery : body->text;
    check(call == demo::Call::Hot || QString::fromStdString(read) == words,
          "the words are those that were sent");
}

void checkRecord(const demo::HeaderLines &headers, const QByteArray &path, const QByteArray &body,
                 const demo::Verdict &verdict)
{
    demo::RequestRecord record;
    record.path = path.toStdString();
    record.body = body.toStdString();
    record.verdict = verdict;
    for (const auto &[name, lines] : headers) {
        record.headers.emplace_back(name, lines.front());
    }
    const std::string line = demo::logLine(record);
    check(line.find('\n') == std::string::npos && line.find('\r') == std::string::npos,
          "a request is one line of the log");
    const std::string shown
        = demo::toJson(record).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(shown)).object();
    check(!object.isEmpty() || shown.size() > 1000, "a record can be shown");
}

} // namespace

/// The demo service's check of a request: header lines, body, the service's secret, the path.
void runTarget(const QByteArray &input)
{
    const QByteArrayList parts = partsOf(input, 4);
    const QByteArray secret = QString::fromUtf8(parts.at(2)).toUtf8();
    const demo::HeaderLines headers = headersOf(parts.at(0), secret);
    demo::RequestVerifier verifier(tenant.toStdString(), applicationKey.toStdString(),
                                   secret.toStdString(), maxSkewMs);
    const demo::Verdict verdict = verifier.verify(headers, nowMs);
    check(verdict.accepted() == plainlyAccepted(headers, signatureFor(headers, secret)),
          "a request is accepted by the protocol's rules");
    check(verdict.accepted() == verdict.message.empty(), "a refusal has a reason");
    const demo::Verdict again = verifier.verify(headers, nowMs);
    check(!again.accepted()
              && (!verdict.accepted() || again.refusal == demo::Refusal::ReplayedNonce),
          "nothing is accepted twice");

    for (int call = 0; call < demo::callCount; ++call) {
        checkBody(static_cast<demo::Call>(call), parts.at(1));
    }
    checkRecord(headers, parts.at(3), parts.at(1), verdict);
}
