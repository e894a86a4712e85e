#pragma once

#include "tools/demoservice/faults/fault.h"
#include "tools/demoservice/net/peersocket.h"
#include "tools/demoservice/requests/call.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

namespace demo {

/// The content type of every JSON reply. With the character set in it cpp-httplib does not
/// compress the reply, so that the bytes of a fault reach the client as they are.
extern const char *const jsonType;

/// Answers `call` with `result` in the way `fault` says; a fault of kind None gives the good reply.
/// Waits as long as the fault wants, but no longer than the client stays.
void answer(httplib::Response &response, Call call, const nlohmann::json &result,
            const Fault &fault, const PeerSocket &peer);

/// The HTTP status that answer() gives.
int statusWith(const Fault &fault);

} // namespace demo
