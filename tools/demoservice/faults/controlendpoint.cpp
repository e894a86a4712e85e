#include "tools/demoservice/faults/controlendpoint.h"

#include "tools/demoservice/faults/misbehaviour.h"

#include <limits>
#include <optional>
#include <string>

namespace demo {

namespace {

using httplib::Request;
using httplib::Response;
using nlohmann::json;

constexpr int statusBadRequest = 400;
constexpr const char *faultsPath = "/demo/faults";
constexpr const char *requestsPath = "/demo/requests";

void sendJson(Response &response, const json &value)
{
    response.set_content(value.dump(-1, ' ', false, json::error_handler_t::replace), jsonType);
}

void sendMistake(Response &response, const std::string &sentence)
{
    response.status = statusBadRequest;
    sendJson(response, {{"error", sentence}});
}

std::string textOf(const json &object, const char *member)
{
    const auto found = object.find(member);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

/// Reads the argument, which may be a text or a number.
std::string argumentOf(const json &object)
{
    const auto found = object.find("arg");
    if (found == object.end() || found->is_null()) {
        return {};
    }
    return found->is_string() ? found->get<std::string>() : found->dump();
}

/// Reads how many times; false if the member is there but no whole number above 0.
bool readTimes(const json &object, std::optional<int> &times)
{
    const auto found = object.find("times");
    if (found == object.end() || found->is_null()) {
        return true;
    }
    if (!found->is_number_unsigned() || found->get<std::uint64_t>() == 0
        || found->get<std::uint64_t>() > std::numeric_limits<int>::max()) {
        return false;
    }
    times = found->get<int>();
    return true;
}

} // namespace

ControlEndpoint::ControlEndpoint(FaultPlan &plan, RequestHistory &history)
    : m_plan(plan)
    , m_history(history)
{
}

void ControlEndpoint::install(httplib::Server &server)
{
    server.Put(faultsPath,
               [this](const Request &request, Response &response) { putFault(request, response); });
    server.Get(faultsPath, [this](const Request &, Response &response) {
        sendJson(response, m_plan.toJson());
    });
    server.Get(requestsPath, [this](const Request &, Response &response) {
        sendJson(response, m_history.toJson());
    });
    server.Delete(requestsPath, [this](const Request &, Response &response) {
        m_history.clear();
        sendJson(response, m_history.toJson());
    });
}

bool ControlEndpoint::owns(const std::string &path)
{
    return path == faultsPath || path == requestsPath;
}

void ControlEndpoint::putFault(const Request &request, Response &response)
{
    const json object = json::parse(request.body, nullptr, false);
    if (!object.is_object()) {
        return sendMistake(response, "the body is not a JSON object");
    }
    const std::string name = textOf(object, "call");
    const auto call = callByName(name);
    if (!call && name != "any") {
        return sendMistake(response, "\"call\" is not ask, association, hot or any");
    }
    std::optional<int> times;
    if (!readTimes(object, times)) {
        return sendMistake(response, "\"times\" is not a whole number above 0");
    }
    std::string error;
    const auto fault = parseFault(textOf(object, "kind"), argumentOf(object), error);
    if (!fault) {
        return sendMistake(response, error);
    }
    m_plan.set(call, *fault, times);
    sendJson(response, m_plan.toJson());
}

} // namespace demo
