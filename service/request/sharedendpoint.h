#pragma once

#include "service/request/serviceendpoint.h"

#include <mutex>

/// An endpoint that threads share: both halves are read and written at once, so that nobody sees
/// the address of one with the port of another. Any thread may use any operation.
class SharedEndpoint
{
public:
    [[nodiscard]] ServiceEndpoint get() const;
    void set(ServiceEndpoint endpoint);

private:
    mutable std::mutex m_mutex;
    ServiceEndpoint m_endpoint; // guarded by the mutex
};
