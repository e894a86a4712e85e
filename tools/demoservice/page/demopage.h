#pragma once

#include "tools/demoservice/knowledge/knowledgestore.h"

#include <httplib.h>

namespace demo {

/// The page for people at "/": requests as they come, each check explained, and the entries of the
/// knowledge, which can be edited. The knowledge has to outlive it; any thread may use it.
class DemoPage
{
public:
    explicit DemoPage(KnowledgeStore &knowledge);

    /// Adds the routes to `server`.
    void install(httplib::Server &server);

    /// Whether `path` belongs here.
    static bool owns(const std::string &path);

private:
    void sendEntries(httplib::Response &response);
    void putEntry(const httplib::Request &request, httplib::Response &response);

    KnowledgeStore &m_knowledge;
};

/// The page itself: HTML, style and script.
extern const char *const pageText;

} // namespace demo
