#pragma once
#include <mutex>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace pixelhain {

/// Whether a program of this name can be started: an executable file in one of the PATH's folders.
/// Waits for the disk.
[[nodiscard]] bool isInstalled(std::string const& program);

/// Starts other programs and leaves them alone: they live on when this one ends, write nowhere and
/// are waited for by nobody. Thread-safe; waits for the disk.
class DetachedPrograms {
public:
    /// Starts `arguments.front()`, looked for in the PATH. `variables` ("NAME=value") are added to
    /// the environment. False if there is no such program.
    [[nodiscard]] bool start(
        std::vector<std::string> const& arguments, std::vector<std::string> const& variables = {});

private:
    void forgetEnded();

    std::mutex lock_;
    std::vector<pid_t> started_;
};

} // namespace pixelhain
