#include "service/serviceendpoint.h"

#include <mutex>

namespace {

struct GuardedEndpoint
{
    std::mutex mutex;
    ServiceEndpoint endpoint; // guarded by mutex
};

GuardedEndpoint &guardedEndpoint()
{
    // Never destroyed: a worker may still use it while the statics of the process go.
    static auto *const guarded = new GuardedEndpoint;
    return *guarded;
}

} // namespace

ServiceEndpoint resolvedEndpoint()
{
    GuardedEndpoint &guarded = guardedEndpoint();
    const std::lock_guard<std::mutex> lock(guarded.mutex);
    return guarded.endpoint;
}

void setResolvedEndpoint(const ServiceEndpoint &endpoint)
{
    GuardedEndpoint &guarded = guardedEndpoint();
    const std::lock_guard<std::mutex> lock(guarded.mutex);
    guarded.endpoint = endpoint;
}
