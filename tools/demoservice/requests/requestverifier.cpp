#include "tools/demoservice/requests/requestverifier.h"

#include "tools/demoservice/base/number.h"
#include "tools/demoservice/requests/signature.h"

#include <array>
#include <limits>
#include <utility>

namespace demo {

namespace {

constexpr const char *contentTypeHeader = "content-type";
constexpr const char *tenantHeader = "tenantid";
constexpr const char *keyHeader = "x-ca-key";
constexpr const char *timestampHeader = "x-ca-timestamp";
constexpr const char *nonceHeader = "x-ca-nonce";
constexpr const char *signatureHeader = "x-ca-signature";
constexpr const char *hostHeader = "x-ap-shost";
constexpr std::array<const char *, 7> neededHeaders
    = {contentTypeHeader, tenantHeader,    keyHeader, timestampHeader,
       nonceHeader,       signatureHeader, hostHeader};

const std::string &valueOf(const HeaderLines &headers, const char *name)
{
    static const std::string none;
    const auto found = headers.find(name);
    return found == headers.end() || found->second.empty() ? none : found->second.front();
}

Verdict refused(Refusal refusal, std::string message)
{
    return {refusal, SignatureState::NotChecked, std::move(message)};
}

Verdict checkPresence(const HeaderLines &headers)
{
    for (const char *name : neededHeaders) {
        const auto found = headers.find(name);
        if (found == headers.end()) {
            return refused(Refusal::MissingHeader, std::string("header ") + name + " is missing");
        }
        if (found->second.size() > 1) {
            return refused(Refusal::DuplicateHeader,
                           std::string("header ") + name + " is there more than once");
        }
    }
    return {};
}

bool isJsonType(const std::string &contentType)
{
    static const std::string json = "application/json";
    return contentType == json || contentType.rfind(json + ";", 0) == 0;
}

bool isSmallHex(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

/// A random UUID (RFC 4122, version 4) in braces.
bool isNonce(const std::string &nonce)
{
    // x a digit, 4 the version, v the variant, all else stands for itself
    static const std::string form = "{xxxxxxxx-xxxx-4xxx-vxxx-xxxxxxxxxxxx}";
    if (nonce.size() != form.size()) {
        return false;
    }
    for (std::size_t i = 0; i < form.size(); ++i) {
        const char c = nonce[i];
        const bool fits = form[i] == 'x' ? isSmallHex(c)
                        : form[i] == 'v' ? c == '8' || c == '9' || c == 'a' || c == 'b'
                                         : c == form[i];
        if (!fits) {
            return false;
        }
    }
    return true;
}

} // namespace

RequestVerifier::RequestVerifier(std::string tenant, std::string key, std::string secret,
                                 std::int64_t maxSkewMs)
    : m_tenant(std::move(tenant))
    , m_key(std::move(key))
    , m_secret(std::move(secret))
    , m_maxSkewMs(maxSkewMs)
    , m_nonces(2 * maxSkewMs)
{
}

Verdict RequestVerifier::verify(const HeaderLines &headers, std::int64_t nowMs)
{
    Verdict verdict = checkPresence(headers);
    if (!verdict.accepted()) {
        return verdict;
    }
    verdict = checkValues(headers, nowMs);
    verdict.signature = signatureState(headers);
    if (!verdict.accepted()) {
        return verdict;
    }
    if (verdict.signature == SignatureState::Bad) {
        verdict.refusal = Refusal::BadSignature;
        verdict.message = "the signature does not fit the request";
    } else if (!m_nonces.remember(valueOf(headers, nonceHeader), nowMs)) {
        verdict.refusal = Refusal::ReplayedNonce;
        verdict.message = "the nonce was used before";
    }
    return verdict;
}

Verdict RequestVerifier::checkValues(const HeaderLines &headers, std::int64_t nowMs) const
{
    if (!isJsonType(valueOf(headers, contentTypeHeader))) {
        return refused(Refusal::BadContentType, "Content-Type is not application/json");
    }
    if (!sameText(valueOf(headers, tenantHeader), m_tenant)) {
        return refused(Refusal::UnknownTenant, "this tenant is not known here");
    }
    if (!sameText(valueOf(headers, keyHeader), m_key)) {
        return refused(Refusal::UnknownKey, "this key does not belong to the tenant");
    }
    const auto timestamp = parseNumber(valueOf(headers, timestampHeader), 0,
                                       std::numeric_limits<std::int64_t>::max());
    if (!timestamp) {
        return refused(Refusal::BadTimestamp,
                       "x-ca-timestamp is no decimal number of milliseconds since 1970");
    }
    if (*timestamp < nowMs - m_maxSkewMs || *timestamp > nowMs + m_maxSkewMs) {
        return refused(Refusal::Stale, "x-ca-timestamp is too far from the time of the service");
    }
    if (!isNonce(valueOf(headers, nonceHeader))) {
        return refused(Refusal::BadNonce, "x-ca-nonce is no random UUID in braces");
    }
    return {};
}

SignatureState RequestVerifier::signatureState(const HeaderLines &headers) const
{
    const SignedValues values = {valueOf(headers, tenantHeader), valueOf(headers, keyHeader),
                                 valueOf(headers, nonceHeader), valueOf(headers, timestampHeader)};
    const std::string right = signatureOf(values, m_secret);
    const bool good = !right.empty() && sameText(valueOf(headers, signatureHeader), right);
    return good ? SignatureState::Good : SignatureState::Bad;
}

} // namespace demo
