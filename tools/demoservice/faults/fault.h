#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace demo {

/// The ways in which an answer can be made to go wrong. docs/protocol.md describes each.
enum class FaultKind {
    None,
    Delay,
    Error,
    Http,
    Empty,
    EmptyReply,
    BrokenJson,
    Truncate,
    Drop,
    Huge,
    HugeJunk,
    NotUtf8,
    Nul,
    Deep,
    NoAnswer,
    Trickle
};

/// One misbehaviour with its argument.
struct Fault
{
    FaultKind kind = FaultKind::None;
    std::int64_t number = 0; ///< ms, bytes, status or levels, by kind
    std::string text;        ///< the error code of Error, "inside" or "end" of Nul
};

/// The name of a kind as written on the command line, e.g. "broken-json".
const char *faultKindName(FaultKind kind);

/// Reads a kind and its argument (empty = the default of the kind). On a kind that does not exist
/// or an argument that does not fit, returns nothing and puts a sentence into `error`.
std::optional<Fault> parseFault(const std::string &kind, const std::string &argument,
                                std::string &error);

/// "kind" or "kind:argument", for the log line; "-" for no fault.
std::string faultText(const Fault &fault);

} // namespace demo
