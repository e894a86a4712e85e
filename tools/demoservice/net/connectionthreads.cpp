#include "tools/demoservice/net/connectionthreads.h"

#include <system_error>

namespace demo {

namespace {
constexpr std::size_t mostThreads = 256;
}

void ConnectionThreads::enqueue(std::function<void()> task)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    joinFinished();
    while (m_workers.size() >= mostThreads) {
        m_someoneDone.wait(lock);
        joinFinished();
    }
    Worker &worker = m_workers.emplace_back();
    try {
        worker.thread = std::thread([this, &worker, task] { run(worker, task); });
    } catch (const std::system_error &) {
        m_workers.pop_back(); // the system gives no thread, so this one has to do it
        lock.unlock();
        task();
    }
}

void ConnectionThreads::run(Worker &worker, const std::function<void()> &task)
{
    task();
    const std::lock_guard<std::mutex> lock(m_mutex);
    worker.done = true;
    m_someoneDone.notify_one();
}

// A finished worker only has to leave run(), so joining it under the lock it just gave back is
// short.
void ConnectionThreads::joinFinished()
{
    for (auto worker = m_workers.begin(); worker != m_workers.end();) {
        if (!worker->done) {
            ++worker;
            continue;
        }
        worker->thread.join();
        worker = m_workers.erase(worker);
    }
}

void ConnectionThreads::shutdown()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    joinFinished();
    while (!m_workers.empty()) {
        m_someoneDone.wait(lock);
        joinFinished();
    }
}

} // namespace demo
