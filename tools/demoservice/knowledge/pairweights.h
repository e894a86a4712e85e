#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace demo {

/// How much each pair of neighbouring characters tells. Chinese has no blanks between words, so
/// pairs stand for words; one that stands in most entries tells next to nothing. Texts are
/// normalised. Nothing changes after construction.
class PairWeights
{
public:
    /// Counts in how many of the entries each pair stands; each entry is a list of wordings.
    explicit PairWeights(const std::vector<std::vector<std::u32string>> &entries);

    /// How alike two texts are, from 0 to 1: twice the weight of the pairs that both have, over the
    /// weight of all pairs of both.
    double likeness(const std::u32string &one, const std::u32string &other) const;

    /// Which part of the weight of `text` lies in its pairs that `part` has too, from 0 to 1.
    double covered(const std::u32string &text, const std::u32string &part) const;

private:
    double weight(std::uint64_t pair) const;
    double weight(const std::vector<std::uint64_t> &pairs) const;

    std::unordered_map<std::uint64_t, double> m_weights;
};

} // namespace demo
