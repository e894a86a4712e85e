#pragma once

#include "tools/demoservice/faults/controlendpoint.h"
#include "tools/demoservice/faults/faultplan.h"
#include "tools/demoservice/knowledge/knowledgestore.h"
#include "tools/demoservice/options.h"
#include "tools/demoservice/page/demopage.h"
#include "tools/demoservice/requests/requesthistory.h"
#include "tools/demoservice/requests/requestlog.h"
#include "tools/demoservice/requests/requestrecord.h"
#include "tools/demoservice/requests/requestverifier.h"

#include <httplib.h>

#include <atomic>
#include <string>

namespace demo {

/// The question service itself: checks each request, answers it and writes down what became of it.
/// Requests are served on many threads at once. What they share either never changes (options)
/// or guards itself (plan, verifier, log, history).
class Service
{
public:
    /// `options`, `knowledge` and `log` have to outlive the service.
    Service(const Options &options, KnowledgeStore &knowledge, RequestLog &log);

    /// Adds the routes of the service to `server`, whose URLs begin with `scheme`.
    void install(httplib::Server &server, const std::string &scheme);

    /// Ends every wait of a fault; answers from then on come at once. Any thread may call it.
    void stopWaiting();

private:
    void handleCall(Call call, const std::string &scheme, const httplib::Request &request,
                    httplib::Response &response);
    httplib::Server::HandlerResponse handleStray(const std::string &scheme,
                                                 const httplib::Request &request,
                                                 httplib::Response &response);
    void refuse(RequestRecord &record, httplib::Response &response);
    void writeDown(const RequestRecord &record);
    std::optional<Call> callAt(const std::string &path) const;

    const Options &m_options;
    KnowledgeStore &m_knowledge;
    RequestLog &m_log;
    RequestVerifier m_verifier;
    FaultPlan m_plan;
    RequestHistory m_history;
    ControlEndpoint m_control;
    DemoPage m_page;
    std::atomic<bool> m_stopping{false};
};

} // namespace demo
