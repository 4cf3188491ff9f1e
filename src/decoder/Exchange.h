#pragma once
#include "decoder/WorkerProcess.h"
#include <chrono>
#include <functional>
#include <optional>

namespace pixelhain {

/// How a request to a worker ended.
struct Exchange {
    enum class End : std::uint8_t {
        answered, ///< with `response`, which has been checked
        gone, ///< it had ended before it was asked
        neverReady, ///< it ended before it said that it can take requests
        died,
        late, ///< it used up its time; it may be stopped, or hang in the kernel
        wrong, ///< it said what no honest worker says
    };
    End end = End::died;
    DecoderResponse response;

    /// What a request may take of the processors, and on the clock.
    struct Time {
        std::chrono::nanoseconds processor {};
        std::chrono::nanoseconds clock {};
    };

    /// Sends `request` and waits for the answer. After every end but the first the worker is of no
    /// use any more.
    [[nodiscard]] static Exchange with(WorkerProcess& worker, DecoderRequest const& request,
        std::span<int const> descriptors, Time const& time);

    /// Has `send` put a request of whatever kind on its way and waits for the message that follows,
    /// which only `answered` brings and nobody has checked.
    using Send = std::function<bool(RecordSocket const& socket)>;
    [[nodiscard]] static End await(WorkerProcess& worker, Time const& time, Send const& send,
        std::optional<ReceivedRecord>& answer);
};

} // namespace pixelhain
