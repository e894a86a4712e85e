#pragma once

#include "tools/demoservice/knowledge/pairweights.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace demo {

/// One prepared question with its answer.
struct KnowledgeEntry
{
    std::int64_t id = 0; ///< > 0
    std::string question;
    std::vector<std::string> aliases;     ///< other ways to ask the same
    std::string reply;                    ///< rich text, pictures already inside
    std::vector<std::int64_t> recommends; ///< ids of related entries
    bool hot = false;
    bool noHit = false; ///< a question that counts as not understood
};

/// The questions and answers of the service. Nothing changes after construction, so any thread may
/// read it.
class Knowledge
{
public:
    explicit Knowledge(std::vector<KnowledgeEntry> entries);

    // Neither copied nor moved: the index points into the entries.
    Knowledge(const Knowledge &) = delete;
    Knowledge &operator=(const Knowledge &) = delete;
    Knowledge(Knowledge &&) = delete;
    Knowledge &operator=(Knowledge &&) = delete;
    ~Knowledge() = default;

    /// All entries in the order of the file.
    const std::vector<KnowledgeEntry> &entries() const { return m_entries; }

    /// The entry of that id, or null.
    const KnowledgeEntry *byId(std::int64_t id) const;

    /// The entry that `query` asks for: one whose question or alias reads the same, else the one
    /// most like it if it is alike enough, else null.
    const KnowledgeEntry *match(const std::string &query) const;

    /// At most `count` entries that have something in common with `query`, the most alike first.
    std::vector<const KnowledgeEntry *> related(const std::string &query, std::size_t count) const;

    /// At most `count` entries whose question holds `text`; ASCII letters match in either case,
    /// blanks around the text do not count, and an empty text is held by none.
    std::vector<const KnowledgeEntry *> containing(const std::string &text,
                                                   std::size_t count) const;

private:
    struct Wording
    {
        std::u32string normalised;
        std::u32string content; ///< without the words that every question has
    };
    struct Wordings
    {
        std::u32string folded;    ///< of the question, to look for a part of it
        std::vector<Wording> all; ///< of question and aliases
    };
    struct Scored
    {
        const KnowledgeEntry *entry;
        double score;
    };

    static Wording wordingOf(const std::string &text);
    static std::vector<Wordings> wordingsOf(const std::vector<KnowledgeEntry> &entries);
    static PairWeights weightsOf(const std::vector<Wordings> &all);
    double contentScore(const std::u32string &wording, const std::u32string &query) const;
    double score(const Wordings &wordings, const Wording &query) const;
    std::vector<Scored> scored(const std::string &query) const;

    const std::vector<KnowledgeEntry> m_entries;
    const std::vector<Wordings> m_wordings; ///< as many as entries
    const PairWeights m_weights;
    std::unordered_map<std::int64_t, const KnowledgeEntry *> m_byId;
};

} // namespace demo
