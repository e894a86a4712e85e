#include "tools/demoservice/knowledge/pairweights.h"

#include "tools/demoservice/base/unicode.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>

namespace demo {

namespace {

constexpr double leastWeight = 0.05;
constexpr double strangeWeight = 0.3; ///< of a pair that is in no entry: it says little about them
constexpr double steepness = 2;

std::vector<std::uint64_t> shared(const std::vector<std::uint64_t> &one,
                                  const std::vector<std::uint64_t> &other)
{
    std::vector<std::uint64_t> both;
    std::set_intersection(one.begin(), one.end(), other.begin(), other.end(),
                          std::back_inserter(both));
    return both;
}

} // namespace

PairWeights::PairWeights(const std::vector<std::vector<std::u32string>> &entries)
{
    std::unordered_map<std::uint64_t, int> holders;
    for (const auto &wordings : entries) {
        std::set<std::uint64_t> pairs;
        for (const std::u32string &wording : wordings) {
            const auto more = sortedPairs(wording);
            pairs.insert(more.begin(), more.end());
        }
        for (const std::uint64_t pair : pairs) {
            ++holders[pair];
        }
    }
    const double all = std::log(static_cast<double>(entries.size()) + 1);
    for (const auto &[pair, count] : holders) {
        const double rarity = 1 - std::log(static_cast<double>(count)) / all;
        m_weights[pair] = std::max(leastWeight, std::pow(rarity, steepness));
    }
}

double PairWeights::weight(std::uint64_t pair) const
{
    const auto found = m_weights.find(pair);
    return found == m_weights.end() ? strangeWeight : found->second;
}

double PairWeights::weight(const std::vector<std::uint64_t> &pairs) const
{
    double sum = 0;
    for (const std::uint64_t pair : pairs) {
        sum += weight(pair);
    }
    return sum;
}

double PairWeights::likeness(const std::u32string &one, const std::u32string &other) const
{
    const auto left = sortedPairs(one);
    const auto right = sortedPairs(other);
    if (left.empty() || right.empty()) {
        return one == other && !one.empty() ? 1.0 : 0.0;
    }
    return 2 * weight(shared(left, right)) / (weight(left) + weight(right));
}

double PairWeights::covered(const std::u32string &text, const std::u32string &part) const
{
    const auto all = sortedPairs(text);
    return all.empty() ? 1.0 : weight(shared(all, sortedPairs(part))) / weight(all);
}

} // namespace demo
