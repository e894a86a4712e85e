#include "tools/demoservice/service.h"

#include "tools/demoservice/faults/misbehaviour.h"
#include "tools/demoservice/knowledge/answers.h"
#include "tools/demoservice/net/peersocket.h"
#include "tools/demoservice/requests/requestbody.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>

namespace demo {

namespace {

using httplib::Request;
using httplib::Response;

constexpr int statusNotFound = 404;
constexpr int statusTooLarge = 413;
constexpr int statusInternal = 500;

std::int64_t nowMs()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

/// cpp-httplib adds the addresses of the connection to the headers of the client.
bool isOwnOfLibrary(const std::string &header)
{
    static const std::array<std::string, 4> own
        = {"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR", "LOCAL_PORT"};
    return std::find(own.begin(), own.end(), header) != own.end();
}

HeaderLines headerLines(const Request &request)
{
    HeaderLines lines;
    for (const auto &[name, value] : request.headers) {
        std::string small = name;
        std::transform(small.begin(), small.end(), small.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
        });
        lines[small].push_back(value);
    }
    return lines;
}

RequestRecord recordOf(const Request &request, const std::string &scheme)
{
    RequestRecord record;
    record.time = isoTimeNow();
    record.scheme = scheme;
    record.method = request.method;
    record.path = request.path;
    for (const auto &[name, value] : request.headers) {
        if (!isOwnOfLibrary(name)) {
            record.headers.emplace_back(name, value);
        }
    }
    record.body = request.body;
    return record;
}

/// Routes of cpp-httplib are regular expressions.
std::string literalPattern(const std::string &path)
{
    static const std::string special = R"(\^$.|?*+()[]{})";
    std::string pattern;
    for (const char c : path) {
        if (special.find(c) != std::string::npos) {
            pattern.push_back('\\');
        }
        pattern.push_back(c);
    }
    return pattern;
}

} // namespace

Service::Service(const Options &options, KnowledgeStore &knowledge, RequestLog &log)
    : m_options(options)
    , m_knowledge(knowledge)
    , m_log(log)
    , m_verifier(options.tenant, options.key, options.secret, options.maxSkewMs)
    , m_control(m_plan, m_history)
    , m_page(knowledge)
{
    for (const Options::PlannedFault &planned : options.faults) {
        m_plan.set(planned.call, planned.fault, std::nullopt);
    }
}

void Service::install(httplib::Server &server, const std::string &scheme)
{
    for (int i = 0; i < callCount; ++i) {
        const auto call = static_cast<Call>(i);
        server.Post(literalPattern(m_options.pathOf(call)),
                    [this, call, scheme](const Request &request, Response &response) {
                        handleCall(call, scheme, request, response);
                    });
    }
    m_control.install(server);
    m_page.install(server);
    // The handler is called for every error, also for a refusal that has its body already.
    server.set_error_handler(httplib::Server::HandlerWithResponse(
        [this, scheme](const Request &request, Response &response) {
            return handleStray(scheme, request, response);
        }));
    server.set_exception_handler(
        [](const Request &, Response &response, const std::exception_ptr &) {
            response.status = statusInternal; // the error handler gives it a body
        });
}

void Service::stopWaiting()
{
    m_stopping.store(true);
}

void Service::handleCall(Call call, const std::string &scheme, const Request &request,
                         Response &response)
{
    RequestRecord record = recordOf(request, scheme);
    record.call = call;
    record.verdict = m_verifier.verify(headerLines(request), nowMs());
    if (!record.verdict.accepted()) {
        return refuse(record, response);
    }
    const auto body = parseRequestBody(call, request.body, record.verdict.message);
    if (!body) {
        record.verdict.refusal = Refusal::BadBody;
        return refuse(record, response);
    }
    const Fault fault = m_plan.take(call);
    record.fault = faultText(fault);
    record.httpStatus = statusWith(fault);
    writeDown(record); // before the answer, which may take long or never come
    const PeerSocket peer(request.local_port, request.remote_port, m_stopping);
    const auto knowledge = m_knowledge.current();
    answer(response, call, resultOf(call, *body, *knowledge), fault, peer);
}

httplib::Server::HandlerResponse Service::handleStray(const std::string &scheme,
                                                      const Request &request, Response &response)
{
    if (!response.body.empty()) {
        return httplib::Server::HandlerResponse::Unhandled;
    }
    RequestRecord record = recordOf(request, scheme);
    record.call = callAt(request.path);
    Verdict &verdict = record.verdict;
    if (response.status >= statusInternal) {
        verdict.refusal = Refusal::Internal;
        verdict.message = "the service failed";
    } else if (response.status == statusTooLarge) {
        verdict.refusal = Refusal::TooLarge;
        verdict.message = "the body is too large";
    } else if (record.call || ControlEndpoint::owns(request.path) || DemoPage::owns(request.path)) {
        verdict.refusal
            = request.method == "POST" ? Refusal::MalformedRequest : Refusal::WrongMethod;
        verdict.message = "the request or its method does not fit this path";
    } else if (response.status == statusNotFound) {
        verdict.refusal = Refusal::UnknownPath;
        verdict.message = "there is no call at this path";
    } else {
        verdict.refusal = Refusal::MalformedRequest;
        verdict.message = "this is no HTTP request that can be understood";
    }
    refuse(record, response);
    return httplib::Server::HandlerResponse::Handled;
}

void Service::refuse(RequestRecord &record, Response &response)
{
    const RefusalFacts &facts = factsOf(record.verdict.refusal);
    record.httpStatus = facts.httpStatus;
    writeDown(record);
    response.status = facts.httpStatus;
    if (record.verdict.refusal == Refusal::WrongMethod) {
        response.set_header("Allow", "POST"); // RFC 9110 section 15.5.6
    }
    response.set_content(refusingReply(facts.code, record.verdict.message), jsonType);
}

void Service::writeDown(const RequestRecord &record)
{
    m_log.write(record);
    m_history.add(record);
}

std::optional<Call> Service::callAt(const std::string &path) const
{
    for (int i = 0; i < callCount; ++i) {
        const auto call = static_cast<Call>(i);
        if (path == m_options.pathOf(call)) {
            return call;
        }
    }
    return std::nullopt;
}

} // namespace demo
