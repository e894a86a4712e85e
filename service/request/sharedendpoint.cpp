#include "service/request/sharedendpoint.h"

#include <utility>

ServiceEndpoint SharedEndpoint::get() const
{
    const std::lock_guard lock(m_mutex);
    return m_endpoint;
}

void SharedEndpoint::set(ServiceEndpoint endpoint)
{
    const std::lock_guard lock(m_mutex);
    std::swap(m_endpoint, endpoint); // the old texts are freed outside of the lock
}
