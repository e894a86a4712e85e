#pragma once

#include "tools/demoservice/faults/faultplan.h"
#include "tools/demoservice/requests/requesthistory.h"

#include <httplib.h>

namespace demo {

/// The unsigned side door under /demo/ by which tests and people set faults and see the requests
/// that came. docs/protocol.md describes it. Plan and history have to outlive it; any thread may
/// use it.
class ControlEndpoint
{
public:
    ControlEndpoint(FaultPlan &plan, RequestHistory &history);

    /// Adds the routes to `server`.
    void install(httplib::Server &server);

    /// Whether `path` belongs here.
    static bool owns(const std::string &path);

private:
    void putFault(const httplib::Request &request, httplib::Response &response);

    FaultPlan &m_plan;
    RequestHistory &m_history;
};

} // namespace demo
