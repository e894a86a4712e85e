#include "tools/demoservice/base/unicode.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace demo {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t highestPoint = 0x10FFFF;
constexpr char32_t firstBeyondUnit = 0x10000; // needs two UTF-16 units
constexpr char32_t highestLatin1 = 0xFF;

struct Lead
{
    std::size_t length; ///< bytes of the whole character; 0 = cannot begin one
    char32_t bits;      ///< the part of the code point that the first byte carries
    char32_t lowest;    ///< smallest code point that needs this length
};

Lead leadOf(unsigned char byte)
{
    if (byte < 0x80U) {
        return {1, byte, 0};
    }
    if ((byte & 0xE0U) == 0xC0U) {
        return {2, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0U) == 0xE0U) {
        return {3, byte & 0x0FU, 0x800};
    }
    if ((byte & 0xF8U) == 0xF0U) {
        return {4, byte & 0x07U, firstBeyondUnit};
    }
    return {0, 0, 0};
}

/// The character at `at`, which is moved behind it; U+FFFD and one byte further if there is none.
char32_t nextPoint(const std::string &utf8, std::size_t &at)
{
    const std::size_t begin = at++;
    const Lead lead = leadOf(static_cast<unsigned char>(utf8[begin]));
    if (lead.length == 0 || utf8.size() - begin < lead.length) {
        return replacement;
    }
    char32_t point = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(utf8[begin + i]);
        if ((byte & 0xC0U) != 0x80U) {
            return replacement;
        }
        point = (point << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    if (point < lead.lowest || point > highestPoint || surrogate) {
        return replacement;
    }
    at = begin + lead.length;
    return point;
}

char32_t smallAscii(char32_t point)
{
    return point >= U'A' && point <= U'Z' ? point - U'A' + U'a' : point;
}

char32_t halfWidth(char32_t point)
{
    constexpr char32_t first = 0xFF01;
    constexpr char32_t last = 0xFF5E;
    return point >= first && point <= last ? point - first + U'!' : point;
}

bool carriesMeaning(char32_t point)
{
    if (point < 0x80) {
        return (point >= U'a' && point <= U'z') || (point >= U'0' && point <= U'9');
    }
    const bool generalPunctuation = point >= 0x2000 && point <= 0x206F;
    const bool chinesePunctuation = point >= 0x3000 && point <= 0x303F;
    const bool latin1Symbol = point <= 0xBF;
    return !generalPunctuation && !chinesePunctuation && !latin1Symbol;
}

} // namespace

std::u32string codePoints(const std::string &utf8)
{
    std::u32string points;
    points.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        points.push_back(nextPoint(utf8, at));
    }
    return points;
}

std::u32string folded(const std::string &utf8)
{
    std::u32string points = codePoints(utf8);
    std::transform(points.begin(), points.end(), points.begin(), smallAscii);
    return points;
}

std::u32string normalised(const std::string &utf8)
{
    std::u32string kept;
    for (const char32_t point : codePoints(utf8)) {
        const char32_t plain = smallAscii(halfWidth(point));
        if (carriesMeaning(plain)) {
            kept.push_back(plain);
        }
    }
    return kept;
}

std::vector<std::uint64_t> sortedPairs(const std::u32string &text)
{
    std::vector<std::uint64_t> pairs;
    for (std::size_t i = 1; i < text.size(); ++i) {
        pairs.push_back((static_cast<std::uint64_t>(text[i - 1]) << 32U) | text[i]);
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

std::string latin1FromUtf8(const std::string &utf8)
{
    std::string latin1;
    for (const char32_t point : codePoints(utf8)) {
        if (point <= highestLatin1) {
            latin1.push_back(static_cast<char>(static_cast<unsigned char>(point)));
        } else {
            latin1.append(point < firstBeyondUnit ? "?" : "??");
        }
    }
    return latin1;
}

} // namespace demo
