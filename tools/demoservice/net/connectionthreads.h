#pragma once

#include <httplib.h>

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace demo {

/// Serves each connection on a thread of its own, so that requests which are left without an answer
/// never keep others waiting. The accepting thread calls enqueue() and shutdown(); the mutex guards
/// what the serving threads share with it.
class ConnectionThreads : public httplib::TaskQueue
{
public:
    ConnectionThreads() = default;
    ~ConnectionThreads() override = default;
    ConnectionThreads(const ConnectionThreads &) = delete;
    ConnectionThreads &operator=(const ConnectionThreads &) = delete;
    ConnectionThreads(ConnectionThreads &&) = delete;
    ConnectionThreads &operator=(ConnectionThreads &&) = delete;

    /// Runs `task` at once; waits first while very many run already.
    void enqueue(std::function<void()> task) override;

    /// Waits for every task to end.
    void shutdown() override;

private:
    struct Worker
    {
        std::thread thread;
        bool done = false;
    };

    void run(Worker &worker, const std::function<void()> &task);
    void joinFinished();

    std::mutex m_mutex;
    std::condition_variable m_someoneDone;
    std::list<Worker> m_workers; ///< a list: workers keep their place in memory
};

} // namespace demo
