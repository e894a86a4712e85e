#include "tools/demoservice/faults/fault.h"

#include "tools/demoservice/base/number.h"

#include <algorithm>
#include <array>

namespace demo {

namespace {

constexpr std::int64_t longestWait = 24LL * 3600 * 1000;        // ms
constexpr std::int64_t largestReply = 4LL * 1024 * 1024 * 1024; // bytes
constexpr std::int64_t deepest = 10LL * 1000 * 1000;            // levels
constexpr std::int64_t defaultHuge = 50LL * 1024 * 1024;        // bytes
constexpr std::int64_t defaultDeep = 10000;                     // levels
constexpr std::int64_t defaultDelay = 1000;                     // ms
constexpr std::int64_t defaultTrickle = 20;                     // ms a byte
constexpr int lowestStatus = 200;
constexpr int highestStatus = 599;
constexpr int defaultStatus = 500;

enum class ArgumentKind { None, Number, Text };

struct KindFacts
{
    FaultKind kind;
    const char *name;
    ArgumentKind argument;
    std::int64_t lowest;
    std::int64_t highest;
    std::int64_t preset;
};

constexpr std::array<KindFacts, 16> kinds = {{
    {FaultKind::None, "none", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Delay, "delay", ArgumentKind::Number, 0, longestWait, defaultDelay},
    {FaultKind::Error, "error", ArgumentKind::Text, 0, 0, 0},
    {FaultKind::Http, "http", ArgumentKind::Number, lowestStatus, highestStatus, defaultStatus},
    {FaultKind::Empty, "empty", ArgumentKind::None, 0, 0, 0},
    {FaultKind::EmptyReply, "empty-reply", ArgumentKind::None, 0, 0, 0},
    {FaultKind::BrokenJson, "broken-json", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Truncate, "truncate", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Drop, "drop", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Huge, "huge", ArgumentKind::Number, 1, largestReply, defaultHuge},
    {FaultKind::HugeJunk, "huge-junk", ArgumentKind::Number, 1, largestReply, defaultHuge},
    {FaultKind::NotUtf8, "not-utf8", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Nul, "nul", ArgumentKind::Text, 0, 0, 0},
    {FaultKind::Deep, "deep", ArgumentKind::Number, 1, deepest, defaultDeep},
    {FaultKind::NoAnswer, "no-answer", ArgumentKind::None, 0, 0, 0},
    {FaultKind::Trickle, "trickle", ArgumentKind::Number, 1, longestWait, defaultTrickle},
}};

const KindFacts &factsOf(FaultKind kind)
{
    return kinds.at(static_cast<std::size_t>(kind));
}

bool readText(Fault &fault, const std::string &argument)
{
    if (fault.kind == FaultKind::Nul) {
        fault.text = argument.empty() ? "inside" : argument;
        return fault.text == "inside" || fault.text == "end";
    }
    fault.text = argument.empty() ? "50000" : argument;
    return true;
}

bool readNumber(Fault &fault, const KindFacts &facts, const std::string &argument)
{
    fault.number = facts.preset;
    if (argument.empty()) {
        return true;
    }
    const auto value = parseNumber(argument, facts.lowest, facts.highest);
    fault.number = value.value_or(0);
    return value.has_value();
}

bool readArgument(Fault &fault, const KindFacts &facts, const std::string &argument)
{
    switch (facts.argument) {
    case ArgumentKind::Number:
        return readNumber(fault, facts, argument);
    case ArgumentKind::Text:
        return readText(fault, argument);
    case ArgumentKind::None:
        break;
    }
    return argument.empty();
}

} // namespace

const char *faultKindName(FaultKind kind)
{
    return factsOf(kind).name;
}

std::optional<Fault> parseFault(const std::string &kind, const std::string &argument,
                                std::string &error)
{
    const auto *const found = std::find_if(
        kinds.begin(), kinds.end(), [&kind](const KindFacts &facts) { return kind == facts.name; });
    if (found == kinds.end()) {
        error = "there is no fault \"" + kind + "\"";
        return std::nullopt;
    }
    Fault fault;
    fault.kind = found->kind;
    if (!readArgument(fault, *found, argument)) {
        error = "\"" + argument + "\" does not fit the fault \"" + kind + "\"";
        return std::nullopt;
    }
    return fault;
}

std::string faultText(const Fault &fault)
{
    if (fault.kind == FaultKind::None) {
        return "-";
    }
    const KindFacts &facts = factsOf(fault.kind);
    switch (facts.argument) {
    case ArgumentKind::Number:
        return std::string(facts.name) + ":" + std::to_string(fault.number);
    case ArgumentKind::Text:
        return std::string(facts.name) + ":" + fault.text;
    case ArgumentKind::None:
        break;
    }
    return facts.name;
}

} // namespace demo
