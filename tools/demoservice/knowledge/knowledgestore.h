#pragma once

#include "tools/demoservice/knowledge/knowledge.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>

namespace demo {

/// The knowledge in force: that of the file as it is now, with what was edited since. Any thread
/// may use it: one mutex guards all of it.
class KnowledgeStore
{
public:
    /// Begins with `knowledge`, which `path` holds.
    KnowledgeStore(std::string path, std::unique_ptr<Knowledge> knowledge);

    /// What counts now. A file that has changed is read again first; one with a mistake changes
    /// nothing, and the mistake is written to standard error, once.
    std::shared_ptr<const Knowledge> current();

    /// Gives the entry `id` another question and reply, which is written as paragraphs parted by an
    /// empty line, until the file changes. On a mistake returns false and puts one sentence into
    /// `error`.
    bool edit(std::int64_t id, const std::string &question, const std::string &reply,
              std::string &error);

private:
    struct Stamp
    {
        std::filesystem::file_time_type changed;
        std::uintmax_t size = 0;

        bool operator!=(const Stamp &other) const
        {
            return changed != other.changed || size != other.size;
        }
    };

    Stamp stampOfFile() const;
    void reloadIfChanged();

    const std::string m_path;
    std::mutex m_mutex;
    std::shared_ptr<const Knowledge> m_knowledge;
    Stamp m_stamp;
};

} // namespace demo
