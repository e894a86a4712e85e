#pragma once

#include "tools/demoservice/requests/requestrecord.h"

#include <nlohmann/json.hpp>

namespace demo {

/// The checks of a request one after the other, for people: a list of objects with "what" was
/// looked at, the "outcome" ("passed", "failed" or "not reached") and what was "shown": the values
/// that were looked at, the secret and the signature left out. Empty when the request got to no
/// check.
nlohmann::json stepsOf(const RequestRecord &record);

} // namespace demo
