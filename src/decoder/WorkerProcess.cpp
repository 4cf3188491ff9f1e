#include "decoder/WorkerProcess.h"
#include "decoder/WorkerMain.h"
#include "posix/FolderHandle.h"
#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <utility>
#include <vector>

namespace pixelhain {

namespace {

/// What a new process finds open: nothing but the socket and the space.
class SpawnActions {
public:
    SpawnActions(int socket, int space)
    {
        ::posix_spawn_file_actions_init(&actions_);
        for (int const standard : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO })
            ::posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", O_RDWR, 0);
        ::posix_spawn_file_actions_adddup2(&actions_, socket, WorkerDescriptors::socket);
        ::posix_spawn_file_actions_adddup2(&actions_, space, WorkerDescriptors::space);
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, WorkerDescriptors::space + 1);
        ::posix_spawnattr_init(&attributes_);
        // Handlers and masks of the program's threads mean nothing to a worker.
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&attributes_, &none);
        ::posix_spawnattr_setsigdefault(&attributes_, &all);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnActions(SpawnActions const&) = delete;
    SpawnActions& operator=(SpawnActions const&) = delete;
    ~SpawnActions()
    {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }

    // The number of the error; 0 if all is well.
    [[nodiscard]] int spawn(WorkerCommand const& command, pid_t& id) const
    {
        auto program = command.program;
        auto memory = std::to_string(command.addressSpace);
        auto parent = std::to_string(::getpid());
        char memoryOption[] = "--memory";
        char parentOption[] = "--parent";
        std::array<char*, 6> words { program.data(), memoryOption, memory.data(), parentOption,
            parent.data(), nullptr };
        auto environment = command.environment;
        std::vector<char*> variables;
        for (auto& variable : environment)
            variables.push_back(variable.data());
        variables.push_back(nullptr);
        return ::posix_spawn(
            &id, program.c_str(), &actions_, &attributes_, words.data(), variables.data());
    }

private:
    posix_spawn_file_actions_t actions_ {};
    posix_spawnattr_t attributes_ {};
};

// Out of the way of the numbers that the worker finds its own under: what is put in its place there
// must not be one that is still to be copied.
Descriptor highDescriptor(int descriptor)
{
    return Descriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, WorkerDescriptors::space + 1));
}

Failure failureOf(int error)
{
    return { std::generic_category().message(error) };
}

} // namespace

std::vector<std::string> workerEnvironment()
{
    constexpr auto passed = std::to_array<std::string_view>({ "LD_LIBRARY_PATH=", "ASAN_OPTIONS=",
        "UBSAN_OPTIONS=", "LSAN_OPTIONS=", "TSAN_OPTIONS=" });
    std::vector<std::string> chosen;
    for (auto** variable = environ; *variable != nullptr; ++variable)
        for (auto const name : passed)
            if (std::string_view(*variable).starts_with(name))
                chosen.emplace_back(*variable);
    return chosen;
}

WorkerProcess::Started WorkerProcess::start(WorkerCommand const& command)
{
    auto ends = RecordSocket::pair();
    if (!ends)
        return failureOf(errno);
    auto space = SharedSpace::create(ownSpaceBytes);
    if (!space)
        return failureOf(errno);
    auto const socket = highDescriptor(ends->second.get());
    auto const memory = highDescriptor(space->descriptor());
    if (!socket || !memory)
        return failureOf(errno);
    std::unique_ptr<WorkerProcess> worker(
        new WorkerProcess(std::move(ends->first), std::move(*space)));
    SpawnActions const actions(socket.get(), memory.get());
    if (int const error = actions.spawn(command, worker->id_); error != 0) {
        worker->id_ = -1;
        return failureOf(error);
    }
    worker->niceness_ = ::getpriority(PRIO_PROCESS, static_cast<id_t>(worker->id_));
    worker->end_ = Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, worker->id_, 0)));
    return worker;
}

WorkerProcess::WorkerProcess(RecordSocket socket, SharedSpace space)
    : socket_(std::move(socket))
    , space_(std::move(space))
{
    static std::atomic<std::uint64_t> last = 0;
    serial_ = ++last;
}

WorkerProcess::~WorkerProcess()
{
    if (!isGone())
        kill();
}

bool WorkerProcess::isGone()
{
    if (id_ <= 0 || isGone_)
        return true;
    // An error means that somebody else has taken note of its end: the number may be another's.
    isGone_ = uninterrupted([&] { return ::waitpid(id_, nullptr, WNOHANG); }) != 0;
    return isGone_;
}

void WorkerProcess::kill() const
{
    if (id_ > 0 && !isGone_)
        ::kill(id_, SIGKILL);
}

std::optional<std::chrono::nanoseconds> WorkerProcess::processorTime() const
{
    clockid_t clock {};
    timespec time {};
    if (id_ <= 0 || ::clock_getcpuclockid(id_, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return std::nullopt;
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::size_t WorkerProcess::keptMemory() const
{
    std::array<char, 128> text {};
    auto const path = "/proc/" + std::to_string(id_) + "/statm";
    Descriptor const file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file || ::read(file.get(), text.data(), text.size() - 1) <= 0)
        return 0;
    unsigned long long size = 0, resident = 0, shared = 0;
    if (std::sscanf(text.data(), "%llu %llu %llu", &size, &resident, &shared) != 3)
        return 0;
    auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return resident > shared ? static_cast<std::size_t>(resident - shared) * page : 0;
}

void WorkerProcess::lowerPriority(int niceness)
{
    if (niceness <= niceness_ || id_ <= 0)
        return;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(id_), niceness);
    niceness_ = niceness;
}

} // namespace pixelhain
