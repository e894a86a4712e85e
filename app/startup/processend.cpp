#include "app/startup/processend.h"

#include <chrono>
#include <thread>

void endWithin(int limitMs)
{
    // Detached: the end of the process in good time is the end of this thread too.
    std::thread([limitMs] {
        std::this_thread::sleep_for(std::chrono::milliseconds(limitMs));
        endNow(0);
    }).detach();
}
