#include "decoder/Exchange.h"
#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace pixelhain {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

/// Watches one request of a worker.
class Watchdog {
public:
    Watchdog(WorkerProcess const& worker, Exchange::Time const& time)
        : worker_(worker)
        , processorEnd_(worker.processorTime().value_or(nanoseconds {}) + time.processor)
        , clockEnd_(Clock::now() + time.clock)
    {
    }

    // Whether something came, its end included, before the time was used up.
    [[nodiscard]] bool waitForMessage() const
    {
        for (;;) {
            pollfd waited { worker_.socket().descriptor(), POLLIN, 0 };
            auto const left = std::chrono::ceil<milliseconds>(timeLeft()).count();
            if (left <= 0)
                return false;
            int const found = ::poll(&waited, 1, static_cast<int>(left));
            if (found > 0)
                return true;
            if (found < 0 && errno != EINTR)
                return false;
        }
    }

private:
    // A worker cannot use up its processor time sooner than that on the clock, unless it has
    // several threads; then it is looked at again a little late.
    [[nodiscard]] nanoseconds timeLeft() const
    {
        nanoseconds const clock = clockEnd_ - Clock::now();
        auto const used = worker_.processorTime();
        return used ? std::min(processorEnd_ - *used, clock) : clock;
    }

    WorkerProcess const& worker_;
    nanoseconds processorEnd_;
    Clock::time_point clockEnd_;
};

} // namespace

Exchange Exchange::with(WorkerProcess& worker, DecoderRequest const& request,
    std::span<int const> descriptors, Time const& time)
{
    std::optional<ReceivedRecord> answer;
    auto const end = await(
        worker, time, [&](RecordSocket const& socket) { return socket.send(request, descriptors); },
        answer);
    if (end != End::answered)
        return { end, {} };
    auto const response = parseResponse(answer->message(), request);
    if (!response)
        return { End::wrong, {} };
    return { End::answered, *response };
}

Exchange::End Exchange::await(WorkerProcess& worker, Time const& time, Send const& send,
    std::optional<ReceivedRecord>& answer)
{
    Watchdog const watchdog(worker, time);
    auto const& socket = worker.socket();
    if (!send(socket))
        return worker.holds ? End::gone : End::neverReady;
    if (!worker.holds) {
        if (!watchdog.waitForMessage())
            return End::late;
        auto const sign = ReceivedRecord::bytesOnly(socket);
        if (sign.isEnd())
            return End::neverReady;
        worker.holds = parseReadySign(sign.message());
        if (!worker.holds)
            return End::wrong;
    }
    if (!watchdog.waitForMessage())
        return End::late;
    answer.emplace(ReceivedRecord::bytesOnly(socket));
    return answer->isEnd() ? End::died : End::answered;
}

} // namespace pixelhain
