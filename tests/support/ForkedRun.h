#pragma once
#include <csignal>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace pixelhain {

/// How a process ended.
struct Ending {
    int signal = 0; ///< that killed it, or 0
    int code = 0; ///< that it ended with, 0 to 255
    bool hasDumpedCore = false;
};

/// Waits for the end of a child.
inline Ending endingOf(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            throw std::runtime_error("no such child");
    }
    if (WIFSIGNALED(status))
        return { WTERMSIG(status), 0, WCOREDUMP(status) != 0 };
    return { 0, WEXITSTATUS(status), false };
}

/// Starts `work` in a copy of this process, which ends with what it returns.
template <typename Work> pid_t startForked(Work work)
{
    auto const process = ::fork();
    if (process < 0)
        throw std::runtime_error("no new process");
    if (process == 0) {
        int code = 255;
        try {
            code = work();
        } catch (...) {
        }
        ::_exit(code);
    }
    return process;
}

/// Runs `work` in a copy of this process and says how that ended.
template <typename Work> Ending runForked(Work work)
{
    return endingOf(startForked(work));
}

} // namespace pixelhain
