#include "tools/demoservice/net/listener.h"

#include "tools/demoservice/net/connectionthreads.h"
#include "tools/demoservice/net/peersocket.h"

#include <sys/socket.h>

#include <chrono>
#include <utility>

namespace demo {

namespace {

constexpr const char *loopback = "127.0.0.1";
constexpr int backlog = 256; ///< the library's own five lose connections of a busy moment
constexpr std::size_t largestBody = 1024UL * 1024; ///< bytes
constexpr auto readTimeout = std::chrono::seconds(15);
constexpr auto writeTimeout = std::chrono::seconds(60); ///< a reader may be busy with a huge reply
constexpr auto pollPause = std::chrono::milliseconds(1);

/// Lets the port be taken again soon. SO_REUSEPORT, cpp-httplib's own choice, would let a second
/// service share the port.
void allowQuickRestart(int socket)
{
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

} // namespace

Listener::Listener(std::unique_ptr<httplib::Server> server)
    : m_server(std::move(server))
{
    // One request a connection: a service that ends never waits for idle ones.
    m_server->set_keep_alive_max_count(1);
    m_server->set_tcp_nodelay(true);
    m_server->set_payload_max_length(largestBody);
    m_server->set_read_timeout(readTimeout);
    m_server->set_write_timeout(writeTimeout);
    m_server->set_socket_options([this](socket_t socket) {
        m_socket = socket;
        allowQuickRestart(socket);
    });
    // cpp-httplib deletes the queue when it has shut it down.
    m_server->new_task_queue = [] {
        return new ConnectionThreads;
    };
}

Listener::~Listener()
{
    stop();
}

bool Listener::bind(int port)
{
    m_port = port;
    if (port == 0) {
        m_port = m_server->bind_to_any_port(loopback);
    } else if (!m_server->bind_to_port(loopback, port)) {
        m_port = -1;
    }
    return m_port > 0 && ::listen(m_socket, backlog) == 0;
}

void Listener::start()
{
    m_accepting = std::thread([this] { m_server->listen_after_bind(); });
    while (!m_server->is_running()) { // stop() before that would be lost
        std::this_thread::sleep_for(pollPause);
    }
}

void Listener::stop()
{
    if (!m_accepting.joinable()) {
        return;
    }
    m_server->stop();
    shutDownConnections(m_port);
    m_accepting.join();
}

} // namespace demo
