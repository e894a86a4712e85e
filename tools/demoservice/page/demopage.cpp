#include "tools/demoservice/page/demopage.h"

#include "tools/demoservice/faults/misbehaviour.h"

#include <nlohmann/json.hpp>

#include <string>

namespace demo {

namespace {

using httplib::Request;
using httplib::Response;
using nlohmann::json;

constexpr int statusBadRequest = 400;
constexpr int statusForbidden = 403;
constexpr const char *pagePath = "/";
constexpr const char *entriesPath = "/demo/knowledge";

void sendJson(Response &response, const json &value)
{
    response.set_content(value.dump(-1, ' ', false, json::error_handler_t::replace), jsonType);
}

void sendMistake(Response &response, int status, const std::string &sentence)
{
    response.status = status;
    sendJson(response, {{"error", sentence}});
}

/// A page of another site may send a request here, but neither as JSON unasked nor under our name.
bool comesFromHere(const Request &request)
{
    const std::string host = request.get_header_value("Host");
    const std::string name = host.substr(0, host.rfind(':'));
    return (name == "127.0.0.1" || name == "localhost")
        && request.get_header_value("Content-Type").rfind("application/json", 0) == 0;
}

} // namespace

DemoPage::DemoPage(KnowledgeStore &knowledge)
    : m_knowledge(knowledge)
{
}

void DemoPage::install(httplib::Server &server)
{
    server.Get(pagePath, [](const Request &, Response &response) {
        // The texts of requests are put in as text; should that ever fail, nothing else may load.
        response.set_header("Content-Security-Policy",
                            "default-src 'none'; connect-src 'self'; script-src 'unsafe-inline'; "
                            "style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'; "
                            "frame-ancestors 'none'");
        response.set_content(pageText, "text/html;charset=UTF-8");
    });
    server.Get(entriesPath, [this](const Request &, Response &response) { sendEntries(response); });
    server.Put(entriesPath,
               [this](const Request &request, Response &response) { putEntry(request, response); });
}

bool DemoPage::owns(const std::string &path)
{
    return path == pagePath || path == entriesPath;
}

void DemoPage::sendEntries(Response &response)
{
    json list = json::array();
    const auto knowledge = m_knowledge.current();
    for (const KnowledgeEntry &entry : knowledge->entries()) {
        list.push_back({{"id", entry.id}, {"question", entry.question}, {"reply", entry.reply}});
    }
    sendJson(response, {{"entries", list}});
}

void DemoPage::putEntry(const Request &request, Response &response)
{
    if (!comesFromHere(request)) {
        return sendMistake(response, statusForbidden, "only this service's own page may edit");
    }
    const json object = json::parse(request.body, nullptr, false);
    std::string error = "an object with id, question and reply is wanted";
    try {
        if (object.is_object()
            && m_knowledge.edit(object.at("id").get<std::int64_t>(),
                                object.at("question").get<std::string>(),
                                object.at("reply").get<std::string>(), error)) {
            return sendJson(response, {{"edited", object.at("id")}});
        }
    } catch (const json::exception &) { // a member is missing or of the wrong type
        error = "an object with id, question and reply is wanted";
    }
    sendMistake(response, statusBadRequest, error);
}

} // namespace demo
