#include "service/request/serviceendpoint.h"

#include "service/request/sharedendpoint.h"

#include <utility>

namespace {

SharedEndpoint &processEndpoint()
{
    // Never destroyed: a worker may still use it while the statics of the process go.
    static auto *const endpoint = new SharedEndpoint;
    return *endpoint;
}

} // namespace

ServiceEndpoint resolvedEndpoint()
{
    return processEndpoint().get();
}

void setResolvedEndpoint(ServiceEndpoint endpoint)
{
    processEndpoint().set(std::move(endpoint));
}
