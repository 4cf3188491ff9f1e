#include "base/ParallelWork.h"
#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace pixelhain {

std::size_t threadsFor(std::size_t blocks, std::size_t most)
{
    std::size_t const processors = std::max(1U, std::thread::hardware_concurrency());
    return std::clamp(
        blocks, std::size_t { 1 }, std::max<std::size_t>(1, std::min(most, processors)));
}

void runOnThreads(std::size_t threads, std::function<void()> const& work)
{
    std::vector<std::jthread> others;
    try {
        while (others.size() + 1 < threads)
            others.emplace_back(work);
    } catch (std::system_error const&) {
        // No more threads are to be had.
    }
    work();
}

} // namespace pixelhain
