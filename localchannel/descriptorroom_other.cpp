#include "localchannel/descriptorroom.h"

#include <sys/resource.h>
#include <unistd.h>

bool hasDescriptorsToSpare(qintptr descriptor)
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return true;
    }
    // The system gives out the lowest number that is free.
    const int next = ::dup(static_cast<int>(descriptor));
    if (next < 0) {
        return false;
    }
    ::close(next);
    return static_cast<rlim_t>(next) < limit.rlim_cur / 2;
}
