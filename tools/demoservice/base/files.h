#pragma once

#include <optional>
#include <string>

namespace demo {

/// The bytes of a file; nothing if it cannot be read.
std::optional<std::string> readFile(const std::string &path);

/// Writes a file so that nobody ever sees a part of it: under another name first, then renamed.
/// False if that fails.
bool writeFileAtomically(const std::string &path, const std::string &bytes);

} // namespace demo
