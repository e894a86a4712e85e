#pragma once

#include <httplib.h>

#include <memory>
#include <string>
#include <thread>

namespace demo {

/// Listens on one port of 127.0.0.1 for a server and serves it on threads of its own. Used from the
/// main thread only.
class Listener
{
public:
    explicit Listener(std::unique_ptr<httplib::Server> server);
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;
    Listener(Listener &&) = delete;
    Listener &operator=(Listener &&) = delete;

    /// The server, to add routes to before start().
    httplib::Server &server() { return *m_server; }

    /// Takes the port (0 = a free one). False if it is not to be had.
    bool bind(int port);

    /// The port taken by bind().
    int port() const { return m_port; }

    /// Begins to serve.
    void start();

    /// Ends all connections and waits for their threads. Nothing happens if start() was not called.
    void stop();

private:
    std::unique_ptr<httplib::Server> m_server;
    std::thread m_accepting;
    int m_port = 0;
    int m_socket = -1;
};

} // namespace demo
