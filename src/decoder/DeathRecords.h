#pragma once
#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <sys/types.h>

namespace pixelhain {

/// One state of one file: what is written to the file makes another of it.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t seconds = 0; ///< of the last change
    std::int64_t nanoseconds = 0;
    std::uint64_t size = 0;
    auto operator<=>(FileState const&) const = default;

    /// Of an open file.
    [[nodiscard]] static std::optional<FileState> of(int descriptor);
};

/// Remembers which files workers died of, as long as the program runs. Thread-safe.
class DeathRecords {
public:
    /// Whether the open file has cost as many workers as it may.
    [[nodiscard]] bool isGivenUp(int descriptor) const;
    void record(int descriptor);
    /// Takes back what is recorded: a worker has lived through the file.
    void forgive(int descriptor);

private:
    [[nodiscard]] bool isEmpty() const;

    mutable std::mutex lock_;
    std::map<FileState, int> deaths_;
};

} // namespace pixelhain
