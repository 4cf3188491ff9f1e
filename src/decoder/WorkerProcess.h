#pragma once
#include "base/Failure.h"
#include "decoder/RecordSocket.h"
#include "decoder/SharedSpace.h"
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <variant>
#include <vector>

namespace pixelhain {

/// How a worker is started.
struct WorkerCommand {
    std::string program; ///< absolute path
    std::uint64_t addressSpace = 0;
    std::vector<std::string> environment {}; ///< "NAME=value"
};

/// What a worker is told of this program's environment: where libraries lie, and what sanitizers
/// have to do. Libraries take orders from much else in it. To be asked before there are threads
/// that may change it.
[[nodiscard]] std::vector<std::string> workerEnvironment();

/// A decoder process and what the program shares with it. It dies with this object, but only the
/// kernel knows when: whoever lets go of one hands it to its starter, which waits for the end.
class WorkerProcess {
public:
    using Started = std::variant<std::unique_ptr<WorkerProcess>, Failure>;

    /// Starts one; it says itself when it is ready. It ends with the calling thread, whatever ends
    /// that.
    [[nodiscard]] static Started start(WorkerCommand const& command);

    WorkerProcess(WorkerProcess const&) = delete;
    WorkerProcess& operator=(WorkerProcess const&) = delete;
    ~WorkerProcess();

    [[nodiscard]] RecordSocket const& socket() const { return socket_; }
    [[nodiscard]] SharedSpace const& space() const { return space_; }

    /// Readable once the process has ended; -1 on kernels that do not have such descriptors.
    [[nodiscard]] int endDescriptor() const { return end_.get(); }
    /// Whether it has ended and left nothing behind. Asked by one thread only.
    [[nodiscard]] bool isGone();
    void kill() const;

    /// What all its threads have used so far; nothing if it is gone.
    [[nodiscard]] std::optional<std::chrono::nanoseconds> processorTime() const;
    /// Memory that it shares with nobody; 0 if it is gone.
    [[nodiscard]] std::size_t keptMemory() const;

    [[nodiscard]] int niceness() const { return niceness_; }
    /// Takes its share of the processors down to that of `niceness`; it cannot go up again.
    void lowerPriority(int niceness);

    [[nodiscard]] pid_t id() const { return id_; }
    /// Unlike its id never another's.
    [[nodiscard]] std::uint64_t serial() const { return serial_; }
    /// For the one that works with it: requests answered, and what holds it, as Lockdown counts;
    /// nothing until it has said that it can take requests.
    std::uint64_t requests = 0;
    std::optional<std::uint32_t> holds;

private:
    WorkerProcess(RecordSocket socket, SharedSpace space);

    RecordSocket socket_;
    SharedSpace space_;
    Descriptor end_;
    pid_t id_ = -1;
    std::uint64_t serial_ = 0;
    int niceness_ = 0;
    bool isGone_ = false;
};

} // namespace pixelhain
