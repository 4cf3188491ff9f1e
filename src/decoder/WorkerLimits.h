#pragma once
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace pixelhain {

/// What one worker process may use. DecodeLimits bound a picture; these bound the process, for the
/// codec that does not keep to them.
struct WorkerLimits {
    /// Bytes of address space, code and shared memory included. Enough for 100 megapixels of every
    /// format; nearly all pictures need less than a tenth of it, so several workers at once do not
    /// fill the memory.
    std::uint64_t addressSpace = std::uint64_t { 2 } << 30U;

    /// For the one worker at a time that takes pictures too large for the others: 400 megapixels
    /// of HEVC take 2.8 GB, but no more than a part of what the machine has to give.
    [[nodiscard]] static constexpr WorkerLimits forLargePictures(std::uint64_t availableMemory)
    {
        constexpr auto most = std::uint64_t { 6 } << 30U;
        return { std::max(WorkerLimits {}.addressSpace, std::min(most, availableMemory / 5 * 3)) };
    }

    /// Descriptors open at once: the socket, the shared memory, the file, the standard streams.
    static constexpr std::uint64_t openFiles = 16;
    /// Processor time of a worker's whole life; deadlines end a single request much earlier.
    static constexpr std::chrono::seconds processorTime { 3600 };
    /// Processor time after which a worker that is still busy with one request ends itself. Longer
    /// than any deadline: it is for those whose program can no longer end them.
    static constexpr std::chrono::seconds requestTime { 300 };
    /// A request may take this many times its processor time on the clock: the disk may be slow,
    /// and others want the processors too.
    static constexpr int clockFactor = 3;

    /// A worker that has answered so many requests, or keeps so much memory to itself while idle,
    /// is replaced when it is idle: what libraries leak or scatter does not add up.
    static constexpr int requests = 500;
    static constexpr std::size_t keptMemory = std::size_t { 256 } << 20U;

    /// Times that a file is tried in all, each in a worker of its own; a second death is no chance.
    static constexpr int attempts = 2;
    /// More deaths than this within the time, and new workers wait: a folder of hostile files costs
    /// no more than a few processes a second. The wait doubles up to its limit.
    static constexpr int deaths = 5;
    static constexpr std::chrono::seconds deathsWithin { 10 };
    static constexpr std::chrono::milliseconds firstWait { 250 };
    static constexpr std::chrono::seconds longestWait { 30 };
};

/// How long a request may take on the clock that may take `processorTime` of a processor.
[[nodiscard]] constexpr std::chrono::seconds clockTime(std::chrono::seconds processorTime)
{
    return processorTime * WorkerLimits::clockFactor;
}

} // namespace pixelhain
