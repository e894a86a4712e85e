#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace demo {

/// The line, counted from 1, on which each element of the list "entries" begins in `text`, a JSON
/// object that has been parsed already.
std::vector<std::size_t> entryLines(const std::string &text);

} // namespace demo
