#pragma once
#include "decoder/RestartRate.h"
#include "decoder/WorkerLimits.h"
#include "decoder/WorkerStarter.h"
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace pixelhain {

/// The decoder processes of the program: started when they are needed, one more kept ready for the
/// next that dies. Thread-safe.
class WorkerPool {
public:
    struct Options {
        std::string program; ///< absolute path of the decoder program
        std::size_t width = 2; ///< workers that work side by side, at most
        int niceness = 0; ///< of new workers: the least that anybody asks with
        std::uint64_t addressSpace = WorkerLimits {}.addressSpace;
        RestartRate rate {};
        /// Hears once why workers cannot be started; any thread.
        std::function<void(std::string const& reason)> complain;
        /// Hears once what of its holds the kernel refuses to the workers, which decode all the
        /// same: "Landlock"; any thread.
        std::function<void(std::string const& missing)> warn;
    };

    explicit WorkerPool(Options options);
    WorkerPool(WorkerPool const&) = delete;
    WorkerPool& operator=(WorkerPool const&) = delete;
    /// Nobody may hold a worker any more.
    ~WorkerPool();

    /// Starts workers that will be wanted soon. Never waits.
    void prepare(std::size_t count);

    /// A worker for one request of a thread of this niceness, waited for while all are busy. Null
    /// if none can be started.
    [[nodiscard]] std::unique_ptr<WorkerProcess> take(int niceness);
    /// After a request that it has answered.
    void giveBack(std::unique_ptr<WorkerProcess> worker);
    /// A worker that died or has to: it is replaced, at a bounded rate.
    void bury(std::unique_ptr<WorkerProcess> worker);
    /// A worker that ended before it could take a request.
    void buryUnready(std::unique_ptr<WorkerProcess> worker);

    /// The worker for a picture too large for the others. There is one at a time, waited for, and
    /// it is for one picture. Null if it cannot be started.
    [[nodiscard]] std::unique_ptr<WorkerProcess> takeLarge();
    void buryLarge(std::unique_ptr<WorkerProcess> worker);

    /// A worker for one animation as long as it is played, beside the others. It is not waited for
    /// and takes nobody's turn; null if it cannot be started, nothing while as many are being
    /// played as there can be.
    [[nodiscard]] std::optional<std::unique_ptr<WorkerProcess>> takeForPlay();
    /// One is shown, one fades away, and others that nobody looks at any more come to their end.
    static constexpr int mostPlaying = 8;
    void buryPlaying(std::unique_ptr<WorkerProcess> worker);

private:
    using Clock = std::chrono::steady_clock;

    std::unique_ptr<WorkerProcess> pickIdle(int niceness);
    std::unique_ptr<WorkerProcess> pickFresh();
    [[nodiscard]] std::unique_ptr<WorkerProcess> startNow(std::uint64_t addressSpace);
    [[nodiscard]] std::size_t present() const;
    void startMissing();
    void keepSpare();
    void startOne();
    void started(WorkerProcess::Started started);
    void failedToStart(std::string const& reason);
    void warnOnce(WorkerProcess const& worker);
    [[nodiscard]] Clock::time_point nextStart() const;
    [[nodiscard]] bool isHopeless() const;

    Options const options_;
    std::mutex lock_;
    std::condition_variable changed_;
    RestartRate rate_;
    std::vector<std::unique_ptr<WorkerProcess>> idle_;
    std::size_t taken_ = 0;
    std::size_t waiting_ = 0;
    std::size_t starting_ = 0;
    bool isClosing_ = false;
    bool hasAnswered_ = false;
    bool hasComplained_ = false;
    bool hasWarned_ = false;
    int unready_ = 0; ///< that ended in a row before they were ready
    std::optional<Clock::time_point> hopelessUntil_;
    std::condition_variable largeFreed_;
    bool isLargeTaken_ = false;
    int playing_ = 0;
    std::unique_ptr<WorkerStarter> starter_; // its thread calls back; null if there is none
};

} // namespace pixelhain
