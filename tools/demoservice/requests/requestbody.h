#pragma once

#include "tools/demoservice/requests/call.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace demo {

/// What the body of a request says.
struct RequestBody
{
    std::int64_t recommendSize = 0; ///< at most so many questions are wanted
    std::string text;               ///< association: what was typed
    std::string rawQuery;           ///< ask: the question
    std::int64_t questionId = 0;    ///< ask: 0 = by text
};

/// Reads the body of `call`, which must be one JSON object with exactly the members of that call,
/// each of its type. On a mistake returns nothing and puts one sentence into `error`.
std::optional<RequestBody> parseRequestBody(Call call, const std::string &text, std::string &error);

} // namespace demo
