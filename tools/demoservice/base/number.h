#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace demo {

/// Reads a decimal number without sign or blanks that lies in [lowest, highest]; nothing otherwise.
std::optional<std::int64_t> parseNumber(const std::string &text, std::int64_t lowest,
                                        std::int64_t highest);

} // namespace demo
