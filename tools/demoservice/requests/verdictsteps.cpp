#include "tools/demoservice/requests/verdictsteps.h"

#include "tools/demoservice/requests/signature.h"

#include <algorithm>
#include <array>

namespace demo {

namespace {

using nlohmann::json;

constexpr const char *hiddenSecret = "(the secret)";

bool sameName(const std::string &one, const std::string &other)
{
    return one.size() == other.size()
        && std::equal(one.begin(), one.end(), other.begin(),
                      [](char a, char b) { return (a | 0x20) == (b | 0x20); });
}

std::string header(const RequestRecord &record, const std::string &name)
{
    for (const auto &[key, value] : record.headers) {
        if (sameName(key, name)) {
            return value;
        }
    }
    return {};
}

std::string signedText(const RequestRecord &record)
{
    const SignedValues values = {header(record, "tenantId"), header(record, "x-ca-key"),
                                 header(record, "x-ca-nonce"), header(record, "x-ca-timestamp")};
    return "HMAC-SHA-256, keyed with the secret, of: " + stringToSign(values, hiddenSecret);
}

/// One check: its words, and the refusals that mean that it failed.
struct Step
{
    const char *what;
    Refusal refusal;
    Refusal other;
    std::string (*shown)(const RequestRecord &record);
};

template <const char *const &name>
std::string valueOf(const RequestRecord &record)
{
    return header(record, name);
}

std::string countOfHeaders(const RequestRecord &record)
{
    return std::to_string(record.headers.size()) + " headers";
}

std::string sizeOfBody(const RequestRecord &record)
{
    return std::to_string(record.body.size()) + " bytes";
}

const char *const typeHeader = "Content-Type";
const char *const tenantHeader = "tenantId";
const char *const keyHeader = "x-ca-key";
const char *const timeHeader = "x-ca-timestamp";
const char *const nonceHeader = "x-ca-nonce";

const std::array<Step, 9> steps = {{
    {"The seven headers are there, each once", Refusal::MissingHeader, Refusal::DuplicateHeader,
     countOfHeaders},
    {"The body is said to be JSON", Refusal::BadContentType, Refusal::BadContentType,
     valueOf<typeHeader>},
    {"The tenant is known", Refusal::UnknownTenant, Refusal::UnknownTenant, valueOf<tenantHeader>},
    {"The key is the tenant's", Refusal::UnknownKey, Refusal::UnknownKey, valueOf<keyHeader>},
    {"The time is near the service's own", Refusal::BadTimestamp, Refusal::Stale,
     valueOf<timeHeader>},
    {"The nonce is a random UUID in braces", Refusal::BadNonce, Refusal::BadNonce,
     valueOf<nonceHeader>},
    {"The signature is what the service works out", Refusal::BadSignature, Refusal::BadSignature,
     signedText},
    {"The nonce was not used before", Refusal::ReplayedNonce, Refusal::ReplayedNonce,
     valueOf<nonceHeader>},
    {"The body has the members of the call", Refusal::BadBody, Refusal::BadBody, sizeOfBody},
}};

bool failsAt(const Step &step, Refusal refusal)
{
    return refusal == step.refusal || refusal == step.other;
}

} // namespace

json stepsOf(const RequestRecord &record)
{
    const Refusal refusal = record.verdict.refusal;
    json list = json::array();
    if (refusal != Refusal::None
        && std::none_of(steps.begin(), steps.end(),
                        [refusal](const Step &step) { return failsAt(step, refusal); })) {
        return list; // it was no request of a call
    }
    bool reached = true;
    for (const Step &step : steps) {
        const bool failed = reached && failsAt(step, refusal);
        const char *const outcome = failed ? "failed" : reached ? "passed" : "not reached";
        const std::string shown = failed ? record.verdict.message + ": " : std::string();
        list.push_back({{"what", step.what},
                        {"outcome", outcome},
                        {"shown", reached ? shown + step.shown(record) : std::string()}});
        reached = reached && !failed;
    }
    return list;
}

} // namespace demo
