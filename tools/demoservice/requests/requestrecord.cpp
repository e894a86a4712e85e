#include "tools/demoservice/requests/requestrecord.h"

#include "tools/demoservice/requests/verdictsteps.h"

#include <strings.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace demo {

namespace {

using nlohmann::json;

constexpr int msPerSecond = 1000;

/// JSON-escaped text on one line, whatever bytes it holds.
std::string quoted(const std::string &text)
{
    return json(text).dump(-1, ' ', false, json::error_handler_t::replace);
}

/// The member as text; "-" if it is not there or of another type.
std::string shown(const json &object, const char *member)
{
    const auto found = object.find(member);
    if (found == object.end()) {
        return "-";
    }
    if (found->is_string() || found->is_number_integer()) {
        return found->dump();
    }
    return "-";
}

std::string bodyFields(const std::string &body)
{
    static constexpr std::array<std::pair<const char *, const char *>, 6> fields
        = {{{"question", "rawQuery"},
            {"text", "text"},
            {"source", "source"},
            {"accountId", "accountId"},
            {"originalQuestion", "originalQuestion"},
            {"questionId", "questionId"}}};
    json object = json::parse(body, nullptr, false);
    if (!object.is_object()) {
        object = json::object();
    }
    std::string text;
    for (const auto &[name, member] : fields) {
        text += std::string(" ") + name + "=" + shown(object, member);
    }
    return text;
}

bool isSignature(const std::string &header)
{
    return strcasecmp(header.c_str(), "x-ca-signature") == 0;
}

} // namespace

std::string isoTimeNow()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
    const auto seconds = static_cast<std::time_t>(ms / msPerSecond);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    std::array<char, 32> date{};
    const std::size_t length = std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &utc);
    std::array<char, 8> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>(ms % msPerSecond));
    return std::string(date.data(), length) + fraction.data();
}

std::string logLine(const RequestRecord &record)
{
    const std::string call = record.call ? callName(*record.call) : "-";
    const std::string method = record.method.empty() ? "-" : record.method;
    return "time=" + record.time + " scheme=" + record.scheme + " call=" + call
         + " method=" + method + " path=" + quoted(record.path)
         + " verdict=" + (record.verdict.accepted() ? "accepted" : "refused")
         + " reason=" + factsOf(record.verdict.refusal).reason
         + " signature=" + signatureStateName(record.verdict.signature) + " status="
         + std::to_string(record.httpStatus) + " fault=" + record.fault + bodyFields(record.body);
}

json toJson(const RequestRecord &record)
{
    json headers = json::array();
    for (const auto &[name, value] : record.headers) {
        headers.push_back({{"name", name}, {"value", isSignature(name) ? "(hidden)" : value}});
    }
    json call = nullptr;
    if (record.call) {
        call = callName(*record.call);
    }
    return {{"time", record.time},
            {"scheme", record.scheme},
            {"method", record.method},
            {"path", record.path},
            {"headers", headers},
            {"body", record.body},
            {"call", call},
            {"verdict", record.verdict.accepted() ? "accepted" : "refused"},
            {"reason", factsOf(record.verdict.refusal).reason},
            {"signature", signatureStateName(record.verdict.signature)},
            {"status", record.httpStatus},
            {"fault", record.fault},
            {"steps", stepsOf(record)}};
}

} // namespace demo
