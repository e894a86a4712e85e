#include "tools/demoservice/requests/requestlog.h"

#include <iostream>

namespace demo {

RequestLog::RequestLog(const std::string &path)
    : m_toFile(!path.empty())
{
    if (m_toFile) {
        m_file.open(path, std::ios::binary | std::ios::app);
    }
}

bool RequestLog::isOpen() const
{
    return !m_toFile || m_file.is_open();
}

void RequestLog::write(const RequestRecord &record)
{
    const std::string line = logLine(record) + "\n";
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::ostream &stream = m_toFile ? m_file : std::cout;
    stream << line << std::flush;
}

} // namespace demo
