#pragma once

#include "tools/demoservice/requests/requestrecord.h"

#include <fstream>
#include <mutex>
#include <string>

namespace demo {

/// Writes one line a request and flushes it. Any thread may write: one mutex guards the stream.
class RequestLog
{
public:
    /// Appends to `path`; an empty path means standard output.
    explicit RequestLog(const std::string &path);

    /// False if the file could not be opened.
    bool isOpen() const;

    /// Writes the line of `record`.
    void write(const RequestRecord &record);

private:
    const bool m_toFile;
    std::ofstream m_file;
    std::mutex m_mutex;
};

} // namespace demo
