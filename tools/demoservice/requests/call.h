#pragma once

#include <optional>
#include <string>

namespace demo {

/// The three calls of the question service.
enum class Call { Hot, Association, Ask };

/// Number of values of `Call`, for tables indexed by it.
constexpr int callCount = 3;

/// The name used in options, log lines and the control endpoint: "hot", "association" or "ask".
const char *callName(Call call);

/// The call of that name; nothing for any other text.
std::optional<Call> callByName(const std::string &name);

} // namespace demo
