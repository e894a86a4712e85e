#include "tools/demoservice/knowledge/knowledge.h"

#include "tools/demoservice/base/unicode.h"

#include <algorithm>
#include <array>
#include <utility>

namespace demo {

namespace {

constexpr double hitScore = 0.5;      ///< from here on a question counts as understood
constexpr double relatedScore = 0.18; ///< from here on a question is worth recommending
constexpr double exactScore = 2.0;    ///< above every likeness
constexpr std::size_t shortestInside
    = 2; ///< an alias found inside a question has so many characters

std::u32string trimmed(const std::u32string &text)
{
    const std::u32string blanks = U" \t\r\n\u00A0\u3000";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::u32string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The text without the words that say only that something is asked; the whole text if nothing else
/// is in it.
std::u32string withoutAskingWords(const std::u32string &text)
{
    // A longer word goes before a part of it.
    static const std::array<std::u32string, 14> words
        = {U"为什么", U"怎么办", U"怎么样", U"怎么", U"怎样", U"如何", U"什么",
           U"请问",   U"可以",   U"是否",   U"一下", U"吗",   U"呢",   U"啊"};
    std::u32string content = text;
    for (const std::u32string &word : words) {
        for (auto at = content.find(word); at != std::u32string::npos; at = content.find(word)) {
            content.erase(at, word.size());
        }
    }
    return content.empty() ? text : content;
}

} // namespace

Knowledge::Knowledge(std::vector<KnowledgeEntry> entries)
    : m_entries(std::move(entries))
    , m_wordings(wordingsOf(m_entries))
    , m_weights(weightsOf(m_wordings))
{
    for (const KnowledgeEntry &entry : m_entries) {
        m_byId.emplace(entry.id, &entry);
    }
}

std::vector<Knowledge::Wordings> Knowledge::wordingsOf(const std::vector<KnowledgeEntry> &entries)
{
    std::vector<Wordings> all;
    for (const KnowledgeEntry &entry : entries) {
        Wordings wordings;
        wordings.folded = folded(entry.question);
        wordings.all.push_back(wordingOf(entry.question));
        for (const std::string &alias : entry.aliases) {
            wordings.all.push_back(wordingOf(alias));
        }
        all.push_back(std::move(wordings));
    }
    return all;
}

PairWeights Knowledge::weightsOf(const std::vector<Wordings> &all)
{
    std::vector<std::vector<std::u32string>> contents;
    for (const Wordings &wordings : all) {
        contents.emplace_back();
        for (const Wording &wording : wordings.all) {
            contents.back().push_back(wording.content);
        }
    }
    return PairWeights(contents);
}

/// How well a wording fits a question. A short wording inside a long question is a hit too, and the
/// more of the question it covers the better.
double Knowledge::contentScore(const std::u32string &wording, const std::u32string &query) const
{
    const double alike = m_weights.likeness(wording, query);
    if (wording.size() < shortestInside || query.find(wording) == std::u32string::npos) {
        return alike;
    }
    return std::max(alike, hitScore + (1 - hitScore) * m_weights.covered(query, wording));
}

const KnowledgeEntry *Knowledge::byId(std::int64_t id) const
{
    const auto found = m_byId.find(id);
    return found == m_byId.end() ? nullptr : found->second;
}

Knowledge::Wording Knowledge::wordingOf(const std::string &text)
{
    const std::u32string plain = normalised(text);
    return {plain, withoutAskingWords(plain)};
}

double Knowledge::score(const Wordings &wordings, const Wording &query) const
{
    double best = 0;
    for (const Wording &wording : wordings.all) {
        if (wording.normalised == query.normalised) {
            return exactScore;
        }
        best = std::max(best, contentScore(wording.content, query.content));
    }
    return best;
}

std::vector<Knowledge::Scored> Knowledge::scored(const std::string &query) const
{
    std::vector<Scored> all;
    const Wording wanted = wordingOf(query);
    if (wanted.normalised.empty()) {
        return all;
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        all.push_back({&m_entries[i], score(m_wordings[i], wanted)});
    }
    const auto better = [](const Scored &a, const Scored &b) {
        return a.score > b.score;
    };
    std::stable_sort(all.begin(), all.end(), better);
    return all;
}

const KnowledgeEntry *Knowledge::match(const std::string &query) const
{
    const auto all = scored(query);
    return all.empty() || all.front().score < hitScore ? nullptr : all.front().entry;
}

std::vector<const KnowledgeEntry *> Knowledge::related(const std::string &query,
                                                       std::size_t count) const
{
    std::vector<const KnowledgeEntry *> found;
    for (const Scored &one : scored(query)) {
        if (one.score < relatedScore || found.size() == count) {
            break;
        }
        if (!one.entry->noHit) {
            found.push_back(one.entry);
        }
    }
    return found;
}

std::vector<const KnowledgeEntry *> Knowledge::containing(const std::string &text,
                                                          std::size_t count) const
{
    std::vector<const KnowledgeEntry *> found;
    const std::u32string wanted = trimmed(folded(text));
    if (wanted.empty()) {
        return found;
    }
    for (std::size_t i = 0; i < m_entries.size() && found.size() < count; ++i) {
        const bool holds = m_wordings[i].folded.find(wanted) != std::u32string::npos;
        if (holds && !m_entries[i].noHit) {
            found.push_back(&m_entries[i]);
        }
    }
    return found;
}

} // namespace demo
