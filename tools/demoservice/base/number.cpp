#include "tools/demoservice/base/number.h"

#include <charconv>

namespace demo {

std::optional<std::int64_t> parseNumber(const std::string &text, std::int64_t lowest,
                                        std::int64_t highest)
{
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const char *end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    if (problem != std::errc() || stop != end || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

} // namespace demo
