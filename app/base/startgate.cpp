#include "app/base/startgate.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace {

constexpr std::chrono::seconds patience(1);

struct Gate
{
    std::mutex mutex;
    std::condition_variable changed;
    bool open = true; // guarded by the mutex
};

Gate &gate()
{
    static auto &gate = *new Gate; // never destroyed: threads may outlive the static objects
    return gate;
}

void set(bool open)
{
    const std::lock_guard lock(gate().mutex);
    gate().open = open;
    gate().changed.notify_all();
}

} // namespace

void startgate::close()
{
    set(false);
}

void startgate::open()
{
    set(true);
}

void startgate::pass()
{
    std::unique_lock lock(gate().mutex);
    gate().changed.wait_for(lock, patience, [] { return gate().open; });
}
