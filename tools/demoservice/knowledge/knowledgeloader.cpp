#include "tools/demoservice/knowledge/knowledgeloader.h"

#include "tools/demoservice/base/files.h"
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

/// What does not fit between the entries; empty when all does.
std::string mistakeAmong(const std::vector<KnowledgeEntry> &entries)
{
    std::set<std::int64_t> ids;
    std::set<std::int64_t> answered;
    for (const KnowledgeEntry &entry : entries) {
        if (!ids.insert(entry.id).second) {
            return "the id " + std::to_string(entry.id) + " is there twice";
        }
        if (!entry.noHit) {
            answered.insert(entry.id);
        }
    }
    for (const KnowledgeEntry &entry : entries) {
        for (const std::int64_t id : entry.recommends) {
            if (answered.count(id) == 0) {
                return "entry " + std::to_string(entry.id) + " recommends " + std::to_string(id)
                     + ", which has no answer";
            }
        }
    }
    return {};
}

bool readEntries(const json &document, const std::string &folder,
                 std::vector<KnowledgeEntry> &entries, std::string &error)
{
    Pictures pictures(folder);
    std::size_t number = 0;
    for (const json &object : document.at("entries")) {
        ++number;
        try {
            KnowledgeEntry entry = readEntry(object);
            error = mistakeIn(entry);
            if (error.empty()) {
                entry.reply = pictures.inlined(entry.reply, error);
            }
            entries.push_back(std::move(entry));
        } catch (const std::exception &problem) {
            error = problem.what();
        }
        if (!error.empty()) {
            error.insert(0, "entry number " + std::to_string(number) + ": ");
            return false;
        }
    }
    error = mistakeAmong(entries);
    return error.empty();
}

} // namespace

std::unique_ptr<Knowledge> loadKnowledge(const std::string &path, std::string &error)
{
    const auto bytes = readFile(path);
    if (!bytes) {
        error = path + " cannot be read";
        return nullptr;
    }
    const json document = json::parse(*bytes, nullptr, false);
    if (!document.is_object() || !document.contains("entries")
        || !document.at("entries").is_array()) {
        error = path + " is not a JSON object with an array \"entries\"";
        return nullptr;
    }
    const auto folder = std::filesystem::path(path).parent_path() / "pictures";
    std::vector<KnowledgeEntry> entries;
    if (!readEntries(document, folder.string(), entries, error)) {
        error = path + ": " + error;
        return nullptr;
    }
    return std::make_unique<Knowledge>(std::move(entries));
}

} // namespace demo
