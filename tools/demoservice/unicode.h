#pragma once

#include <string>

namespace demo {

/// The code points of UTF-8 text. A byte that belongs to no character (RFC 3629) becomes U+FFFD.
std::u32string codePoints(const std::string &utf8);

/// The code points with ASCII letters made small; everything else as it is.
std::u32string folded(const std::string &utf8);

/// What two spellings of one question have in common: small ASCII letters, full-width ASCII made
/// half-width, and no blanks, punctuation or symbols.
std::u32string normalised(const std::string &utf8);

/// How alike two normalised texts are, from 0 to 1: twice the pairs of neighbouring characters that
/// both have, over all pairs of both. Chinese has no blanks between words, so pairs stand for
/// words.
double likeness(const std::u32string &one, const std::u32string &other);

/// The text in Latin-1; every UTF-16 unit above U+00FF becomes a question mark.
std::string latin1FromUtf8(const std::string &utf8);

} // namespace demo
