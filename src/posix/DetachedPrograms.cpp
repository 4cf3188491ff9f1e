#include "posix/DetachedPrograms.h"
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pixelhain {

namespace {

// A session of its own, so that no signal of our terminal ends it, and the usual answers to
// signals whatever ours are.
class DetachedAttributes {
public:
    DetachedAttributes()
    {
        ::posix_spawnattr_init(&value);
        sigset_t none;
        ::sigemptyset(&none);
        sigset_t all;
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&value, &none);
        ::posix_spawnattr_setsigdefault(&value, &all);
        ::posix_spawnattr_setflags(
            &value, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    DetachedAttributes(DetachedAttributes const&) = delete;
    ~DetachedAttributes() { ::posix_spawnattr_destroy(&value); }

    posix_spawnattr_t value {};
};

class SilentStreams {
public:
    SilentStreams()
    {
        ::posix_spawn_file_actions_init(&value);
        for (int const stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
            ::posix_spawn_file_actions_addopen(
                &value, stream, "/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0);
    }
    SilentStreams(SilentStreams const&) = delete;
    ~SilentStreams() { ::posix_spawn_file_actions_destroy(&value); }

    posix_spawn_file_actions_t value {};
};

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> all;
    for (auto& text : texts)
        all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

std::string_view nameOf(std::string_view variable)
{
    return variable.substr(0, variable.find('='));
}

std::vector<std::string> environmentWith(std::vector<std::string> variables)
{
    for (auto const* const* entry = environ; *entry != nullptr; ++entry) {
        auto const replaces
            = [&](std::string const& mine) { return nameOf(mine) == nameOf(*entry); };
        if (std::none_of(variables.begin(), variables.end(), replaces))
            variables.emplace_back(*entry);
    }
    return variables;
}

} // namespace

bool isInstalled(std::string const& program)
{
    auto const* const path = std::getenv("PATH");
    std::string_view folders = path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
    for (;;) {
        auto const end = std::min(folders.find(':'), folders.size());
        auto const file = std::string(folders.substr(0, end)) + "/" + program;
        struct stat info { };
        if (end > 0 && ::stat(file.c_str(), &info) == 0 && S_ISREG(info.st_mode)
            && ::access(file.c_str(), X_OK) == 0)
            return true;
        if (end == folders.size())
            return false;
        folders.remove_prefix(end + 1);
    }
}

bool DetachedPrograms::start(
    std::vector<std::string> const& arguments, std::vector<std::string> const& variables)
{
    if (arguments.empty())
        return false;
    std::scoped_lock const guard(lock_);
    forgetEnded();
    auto given = arguments;
    auto environment = environmentWith(variables);
    DetachedAttributes const attributes;
    SilentStreams const streams;
    pid_t child = 0;
    if (::posix_spawnp(&child, given.front().c_str(), &streams.value, &attributes.value,
            pointers(given).data(), pointers(environment).data())
        != 0)
        return false;
    started_.push_back(child);
    return true;
}

void DetachedPrograms::forgetEnded()
{
    std::erase_if(started_, [](pid_t child) { return ::waitpid(child, nullptr, WNOHANG) != 0; });
}

} // namespace pixelhain
