#include "tools/demoservice/knowledge/knowledgeloader.h"

#include "tools/demoservice/base/files.h"
#include "tools/demoservice/knowledge/entrylines.h"
#include "tools/demoservice/knowledge/markup.h"
#include "tools/demoservice/knowledge/pictures.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <utility>
#include <vector>

namespace demo {

namespace {

using nlohmann::json;

/// The blocks of a reply: a text, or a list of texts; an empty text has none.
std::vector<std::string> blocks(const json &value)
{
    if (value.is_array()) {
        return value.get<std::vector<std::string>>();
    }
    auto text = value.get<std::string>();
    return text.empty() ? std::vector<std::string>() : std::vector<std::string>{std::move(text)};
}

/// Throws what the JSON library throws when a member is missing or of the wrong type.
KnowledgeEntry readEntry(const json &object)
{
    static const std::set<std::string> known
        = {"id", "question", "aliases", "reply", "recommends", "hot", "noHit"};
    for (const auto &member : object.items()) {
        if (known.count(member.key()) == 0) {
            throw std::invalid_argument("unknown member \"" + member.key() + "\"");
        }
    }
    KnowledgeEntry entry;
    entry.id = object.at("id").get<std::int64_t>();
    entry.question = object.at("question").get<std::string>();
    entry.aliases = object.value("aliases", std::vector<std::string>());
    entry.reply = markup(blocks(object.at("reply")));
    entry.recommends = object.value("recommends", std::vector<std::int64_t>());
    entry.hot = object.value("hot", false);
    entry.noHit = object.value("noHit", false);
    return entry;
}

/// What is wrong with the entry by itself; empty when nothing is.
std::string mistakeIn(const KnowledgeEntry &entry)
{
    if (entry.id <= 0) {
        return "the id is not above 0";
    }
    if (entry.question.empty()) {
        return "the question is empty";
    }
    if (entry.reply.empty() && !entry.noHit) {
        return "the reply is empty";
    }
    if (entry.hot && entry.noHit) {
        return "a question that is not understood cannot be hot";
    }
    return {};
}

/// A mistake, and which entry has it, counted from 0.
struct Mistake
{
    std::string sentence; ///< empty for none
    std::size_t entry = 0;
};

/// What does not fit between the entries.
Mistake mistakeAmong(const std::vector<KnowledgeEntry> &entries)
{
    std::set<std::int64_t> ids;
    std::set<std::int64_t> answered;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const KnowledgeEntry &entry = entries[i];
        if (!ids.insert(entry.id).second) {
            return {"the id " + std::to_string(entry.id) + " is there twice", i};
        }
        if (!entry.noHit) {
            answered.insert(entry.id);
        }
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (const std::int64_t id : entries[i].recommends) {
            if (answered.count(id) == 0) {
                return {"entry " + std::to_string(entries[i].id) + " recommends "
                            + std::to_string(id) + ", which has no answer",
                        i};
            }
        }
    }
    return {};
}

/// Reads the entry `object`, pictures and all; what is wrong with it comes back.
std::string takeEntry(const json &object, Pictures &pictures, std::vector<KnowledgeEntry> &entries)
{
    try {
        KnowledgeEntry entry = readEntry(object);
        std::string error = mistakeIn(entry);
        if (error.empty()) {
            entry.reply = pictures.inlined(entry.reply, error);
        }
        entries.push_back(std::move(entry));
        return error;
    } catch (const std::exception &problem) {
        return problem.what();
    }
}

Mistake readEntries(const json &document, const std::string &folder,
                    std::vector<KnowledgeEntry> &entries)
{
    Pictures pictures(folder);
    const json &objects = document.at("entries");
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string error = takeEntry(objects[i], pictures, entries);
        if (!error.empty()) {
            return {"entry number " + std::to_string(i + 1) + ": " + error, i};
        }
    }
    return mistakeAmong(entries);
}

/// The document of `text`; a value that is no object, and a sentence, when it cannot be read.
json parsed(const std::string &text, std::string &error)
{
    try {
        return json::parse(text);
    } catch (const json::parse_error &problem) { // which names line and column
        error = std::string(": ") + problem.what();
        return nullptr;
    }
}

} // namespace

std::unique_ptr<Knowledge> loadKnowledge(const std::string &path, std::string &error)
{
    const auto bytes = readFile(path);
    if (!bytes) {
        error = path + " cannot be read";
        return nullptr;
    }
    std::string reason;
    const json document = parsed(*bytes, reason);
    if (!document.is_object() || !document.contains("entries")
        || !document.at("entries").is_array()) {
        error = path + " is not a JSON object with an array \"entries\"" + reason;
        return nullptr;
    }
    const auto folder = std::filesystem::path(path).parent_path() / "pictures";
    std::vector<KnowledgeEntry> entries;
    const Mistake mistake = readEntries(document, folder.string(), entries);
    if (!mistake.sentence.empty()) {
        const std::vector<std::size_t> lines = entryLines(*bytes);
        const std::string line
            = mistake.entry < lines.size() ? std::to_string(lines[mistake.entry]) + ":" : "";
        error = path + ":" + line + " " + mistake.sentence;
        return nullptr;
    }
    return std::make_unique<Knowledge>(std::move(entries));
}

} // namespace demo
