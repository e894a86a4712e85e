#pragma once

#include "tools/demoservice/requests/requestrecord.h"

#include <deque>
#include <mutex>

namespace demo {

/// The latest requests, for the control endpoint. Any thread may use it: one mutex guards all of
/// it.
class RequestHistory
{
public:
    /// Keeps `record`; the oldest goes when there are too many, and a very long body is cut.
    void add(RequestRecord record);

    /// Forgets all.
    void clear();

    /// {"requests":[...]}, the oldest first.
    nlohmann::json toJson() const;

private:
    mutable std::mutex m_mutex;
    std::deque<RequestRecord> m_records;
};

} // namespace demo
