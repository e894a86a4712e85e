#include "tools/demoservice/knowledge/knowledgestore.h"

#include "tools/demoservice/knowledge/knowledgeloader.h"
#include "tools/demoservice/knowledge/markup.h"

#include <algorithm>
#include <iostream>
#include <system_error>
#include <utility>
#include <vector>

namespace demo {

namespace {

/// The paragraphs of a text, which empty lines part.
std::vector<std::string> paragraphs(const std::string &text)
{
    std::vector<std::string> found;
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t end = std::min(text.find("\n\n", from), text.size());
        if (end > from) {
            found.push_back(text.substr(from, end - from));
        }
        from = end + 2;
    }
    return found;
}

} // namespace

KnowledgeStore::KnowledgeStore(std::string path, std::unique_ptr<Knowledge> knowledge)
    : m_path(std::move(path))
    , m_knowledge(std::move(knowledge))
    , m_stamp(stampOfFile())
{
}

std::shared_ptr<const Knowledge> KnowledgeStore::current()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    reloadIfChanged();
    return m_knowledge;
}

bool KnowledgeStore::edit(std::int64_t id, const std::string &question, const std::string &reply,
                          std::string &error)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    reloadIfChanged();
    std::vector<KnowledgeEntry> entries = m_knowledge->entries();
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [id](const KnowledgeEntry &one) { return one.id == id; });
    if (entry == entries.end()) {
        error = "there is no entry " + std::to_string(id);
        return false;
    }
    const std::string rich = markup(paragraphs(reply));
    if (question.empty() || rich.empty()) {
        error = "question and reply must not be empty";
        return false;
    }
    entry->question = question;
    entry->reply = rich;
    m_knowledge = std::make_shared<const Knowledge>(std::move(entries));
    return true;
}

KnowledgeStore::Stamp KnowledgeStore::stampOfFile() const
{
    std::error_code missing; // a file that is just being replaced
    Stamp stamp;
    stamp.changed = std::filesystem::last_write_time(m_path, missing);
    stamp.size = missing ? 0 : std::filesystem::file_size(m_path, missing);
    return stamp;
}

void KnowledgeStore::reloadIfChanged()
{
    const Stamp now = stampOfFile();
    if (!(now != m_stamp)) {
        return;
    }
    m_stamp = now;
    std::string error;
    if (auto knowledge = loadKnowledge(m_path, error)) {
        m_knowledge = std::move(knowledge);
        std::cerr << "demoservice: " << m_path << " read again" << std::endl;
    } else {
        std::cerr << "demoservice: the knowledge stays as it was: " << error << std::endl;
    }
}

} // namespace demo
