#pragma once

#include <atomic>
#include <cstdint>

namespace demo {

/// The connection that a request came over. cpp-httplib keeps its socket to itself, so the socket
/// is looked up among the open descriptors by its two ports. Valid while the request is being
/// answered. A copy may be used on any thread.
class PeerSocket
{
public:
    /// `stopping` turns true when the service ends; it has to outlive this object.
    PeerSocket(int localPort, int remotePort, const std::atomic<bool> &stopping);

    /// Waits `ms` milliseconds. False if the client left or the service is ending before that.
    bool wait(std::int64_t ms) const;

    /// Waits until the client leaves or the service ends.
    void waitForEnd() const;

private:
    bool over(int ms) const;

    int m_socket;
    const std::atomic<bool> *m_stopping;
};

/// Shuts down every connection that came in over `localPort`, so that no thread waits on one.
void shutDownConnections(int localPort);

} // namespace demo
