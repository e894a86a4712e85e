#include "tools/demoservice/requests/requesthistory.h"

#include <utility>

namespace demo {

namespace {
constexpr std::size_t mostRecords = 2000;
constexpr std::size_t longestBody = 65536; ///< bytes
}

void RequestHistory::add(RequestRecord record)
{
    if (record.body.size() > longestBody) {
        record.body.resize(longestBody);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_records.push_back(std::move(record));
    if (m_records.size() > mostRecords) {
        m_records.pop_front();
    }
}

void RequestHistory::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_records.clear();
}

nlohmann::json RequestHistory::toJson() const
{
    nlohmann::json list = nlohmann::json::array();
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const RequestRecord &record : m_records) {
        list.push_back(demo::toJson(record));
    }
    return {{"requests", list}};
}

} // namespace demo
