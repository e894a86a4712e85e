#include "tools/demoservice/net/peersocket.h"

#include "tools/demoservice/base/number.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <limits>
#include <vector>

namespace demo {

namespace {

constexpr int sliceMs = 20; ///< how late the end of the service may be noticed
constexpr int noSocket = -1;

using AddressGetter = int (*)(int, sockaddr *, socklen_t *);

/// The port of one end of an IPv4 connection; 0 if `socket` is none.
int portOf(int socket, AddressGetter getter)
{
    sockaddr_in address{};
    socklen_t length = sizeof address;
    if (getter(socket, reinterpret_cast<sockaddr *>(&address), &length) != 0
        || address.sin_family != AF_INET) {
        return 0;
    }
    return ntohs(address.sin_port);
}

std::vector<int> openDescriptors()
{
    std::vector<int> descriptors;
    std::error_code problem;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", problem)) {
        const auto number
            = parseNumber(entry.path().filename().string(), 0, std::numeric_limits<int>::max());
        descriptors.push_back(static_cast<int>(number.value_or(0)));
    }
    return descriptors;
}

int findSocket(int localPort, int remotePort)
{
    for (const int descriptor : openDescriptors()) {
        if (portOf(descriptor, ::getpeername) == remotePort
            && portOf(descriptor, ::getsockname) == localPort) {
            return descriptor;
        }
    }
    return noSocket;
}

} // namespace

PeerSocket::PeerSocket(int localPort, int remotePort, const std::atomic<bool> &stopping)
    : m_socket(findSocket(localPort, remotePort))
    , m_stopping(&stopping)
{
}

bool PeerSocket::over(int ms) const
{
    pollfd watched = {m_socket, POLLRDHUP, 0};
    const int count = ::poll(&watched, 1, ms);
    return m_socket == noSocket || count > 0 || m_stopping->load();
}

bool PeerSocket::wait(std::int64_t ms) const
{
    using std::chrono::steady_clock;
    const auto end = steady_clock::now() + std::chrono::milliseconds(ms);
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                              end - steady_clock::now() + std::chrono::microseconds(999))
                              .count();
        if (left <= 0) {
            return true;
        }
        if (over(static_cast<int>(std::min<std::int64_t>(left, sliceMs)))) {
            return false;
        }
    }
}

void PeerSocket::waitForEnd() const
{
    while (!over(sliceMs)) { }
}

void shutDownConnections(int localPort)
{
    for (const int descriptor : openDescriptors()) {
        if (portOf(descriptor, ::getpeername) != 0
            && portOf(descriptor, ::getsockname) == localPort) {
            ::shutdown(descriptor, SHUT_RDWR);
        }
    }
}

} // namespace demo
