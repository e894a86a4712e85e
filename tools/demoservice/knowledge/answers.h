#pragma once

#include "tools/demoservice/knowledge/knowledge.h"
#include "tools/demoservice/requests/call.h"
#include "tools/demoservice/requests/requestbody.h"

#include <nlohmann/json.hpp>

#include <string>

namespace demo {

/// The member "result" of a good answer to `call`.
nlohmann::json resultOf(Call call, const RequestBody &body, const Knowledge &knowledge);

/// A whole good reply around `result`: compact JSON that holds the text "errorCode":"0".
std::string goodReply(const nlohmann::json &result);

/// A whole reply that refuses: the error code, the reason in words and no result.
std::string refusingReply(const std::string &errorCode, const std::string &message);

} // namespace demo
