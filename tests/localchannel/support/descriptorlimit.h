#pragma once

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <unistd.h>

/// Lets this process have only so many descriptors while it lives.
class DescriptorLimit final
{
    Q_DISABLE_COPY_MOVE(DescriptorLimit)

public:
    explicit DescriptorLimit(int most)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit fewer = {static_cast<rlim_t>(most), m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &fewer);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

    /// The number that the next descriptor gets.
    static int nextOne()
    {
        const int next = ::dup(STDERR_FILENO);
        ::close(next);
        return next;
    }

private:
    rlimit m_before = {};
};
#endif
