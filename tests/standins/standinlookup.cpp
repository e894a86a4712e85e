// Loaded before the system's own library, its look-up never answers for the hosts whose name begins
// with "hangs."; every other name goes on to the system.

#include <dlfcn.h>
#include <netdb.h>
#include <unistd.h>

#include <cstring>

namespace {

constexpr unsigned int longerThanAnyTestS = 60;

using Lookup = int (*)(const char *, const char *, const addrinfo *, addrinfo **);

} // namespace

extern "C" int getaddrinfo(const char *node, const char *service, const addrinfo *hints,
                           addrinfo **result)
{
    if (node != nullptr && std::strncmp(node, "hangs.", 6) == 0) {
        sleep(longerThanAnyTestS);
        return EAI_AGAIN;
    }
    static const auto next = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(node, service, hints, result);
}
