#pragma once

#include "tools/demoservice/requests/call.h"
#include "tools/demoservice/requests/refusal.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace demo {

/// One request and what became of it.
struct RequestRecord
{
    std::string time;   ///< UTC, ISO 8601 with milliseconds
    std::string scheme; ///< "http" or "https"
    std::string method;
    std::string path;
    std::vector<std::pair<std::string, std::string>> headers; ///< name, value
    std::string body;
    std::optional<Call> call; ///< no value: the path is that of no call
    Verdict verdict;
    int httpStatus = 0; ///< of the reply, whatever else a fault does to it
    std::string fault = "-";
};

/// The time of now as `RequestRecord::time` has it.
std::string isoTimeNow();

/// The record as one line of key=value pairs without a line end; texts are JSON strings. No header
/// value is in it, hence no signature.
std::string logLine(const RequestRecord &record);

/// The record as the control endpoint shows it, the signature hidden.
nlohmann::json toJson(const RequestRecord &record);

} // namespace demo
