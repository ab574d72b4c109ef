#include "model/FreeMemory.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <vector>

void runAside(std::function<void()> work)
{
    static std::vector<std::future<void>> running;
    const auto isOver = [](const std::future<void> &one) {
        return one.wait_for(std::chrono::seconds(0)) != std::future_status::timeout;
    };
    running.erase(std::remove_if(running.begin(), running.end(), isOver), running.end());
    // Deferred when the system has no room for a thread: it is then dropped with the next call.
    running.push_back(std::async(std::launch::async | std::launch::deferred, std::move(work)));
}
