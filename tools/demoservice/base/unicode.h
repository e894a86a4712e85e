#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace demo {

/// The code points of UTF-8 text. A byte that belongs to no character (RFC 3629) becomes U+FFFD.
std::u32string codePoints(const std::string &utf8);

/// The code points with ASCII letters made small; everything else as it is.
std::u32string folded(const std::string &utf8);

/// What two spellings of one question have in common: small ASCII letters, full-width ASCII made
/// half-width, and no blanks, punctuation or symbols.
std::u32string normalised(const std::string &utf8);

/// The pairs of neighbouring characters of a text, in the order of their values.
std::vector<std::uint64_t> sortedPairs(const std::u32string &text);

/// The text in Latin-1; every UTF-16 unit above U+00FF becomes a question mark.
std::string latin1FromUtf8(const std::string &utf8);

} // namespace demo
