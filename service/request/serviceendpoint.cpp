#include "service/request/serviceendpoint.h"

#include <mutex>
#include <utility>

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

void setResolvedEndpoint(ServiceEndpoint endpoint)
{
    GuardedEndpoint &guarded = guardedEndpoint();
    const std::lock_guard<std::mutex> lock(guarded.mutex);
    std::swap(guarded.endpoint, endpoint); // the old texts are freed outside of the lock
}
