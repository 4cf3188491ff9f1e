#pragma once
#include <cctype>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace pixelhain {

/// The processes that this one started and that still run.
inline std::vector<pid_t> children()
{
    std::vector<pid_t> found;
    std::error_code ignored;
    for (auto const& entry : std::filesystem::directory_iterator("/proc", ignored)) {
        auto const name = entry.path().filename().string();
        if (std::isdigit(static_cast<unsigned char>(name.front())) == 0)
            continue;
        std::ifstream file(entry.path() / "stat");
        std::string stat;
        std::getline(file, stat);
        // The name stands in parentheses and may hold any character.
        auto const end = stat.rfind(") ");
        if (end == std::string::npos || stat.size() < end + 4)
            continue;
        auto const parent = std::strtol(stat.c_str() + end + 4, nullptr, 10);
        if (parent == ::getpid() && stat[end + 2] != 'Z')
            found.push_back(std::stoi(name));
    }
    return found;
}

/// How many of the processes have ended; waited for until it is one, or for `seconds`.
inline int endedOf(std::vector<pid_t> const& processes, int seconds = 20)
{
    std::vector<pollfd> ends;
    int ended = 0;
    for (auto const process : processes) {
        auto const handle = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
        if (handle < 0)
            ++ended;
        else
            ends.push_back({ handle, POLLIN, 0 });
    }
    ended += ::poll(ends.data(), ends.size(), ended > 0 ? 0 : seconds * 1000);
    for (auto const& end : ends)
        ::close(end.fd);
    return ended;
}

/// Whether the process has ended, waited for `seconds` at most.
inline bool hasEnded(pid_t process, int seconds = 20)
{
    return endedOf({ process }, seconds) == 1;
}

} // namespace pixelhain
