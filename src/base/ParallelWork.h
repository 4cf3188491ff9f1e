#pragma once
#include <cstddef>
#include <functional>

namespace pixelhain {

/// How many threads pay for work that falls into `blocks` pieces: no more than there are
/// processors, nor than `most`; at least one.
std::size_t threadsFor(std::size_t blocks, std::size_t most);

/// Runs `work` on as many threads at once, the calling one among them, and returns when it has
/// ended on all of them. At the limit of threads those that did start share the work, so each call
/// of `work` takes pieces until none is left.
void runOnThreads(std::size_t threads, std::function<void()> const& work);

} // namespace pixelhain
