#include "decoder/Lockdown.h"
#include "decoder/Landlock.h"
#include "posix/Descriptor.h"
#include "support/Attacks.h"
#include "support/ForkedRun.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <atomic>
#include <cstring>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <memory>
#include <new>
#include <poll.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <vector>

using namespace pixelhain;

namespace {

// Ends that say that the test went wrong, not what it tests.
constexpr int notLocked = 200;

/// A socket with this process at its other end, and a photo.
struct Scene {
    Scene()
    {
        std::array<int, 2> ends {};
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
            throw std::runtime_error("no sockets");
        here = Descriptor(ends[0]);
        there = Descriptor(ends[1]);
        photo = Descriptor(
            ::open(folder.file("a.jpg", "bytes of a photo").cString(), O_RDONLY | O_CLOEXEC));
    }

    TemporaryFolder folder;
    Descriptor here;
    Descriptor there;
    Descriptor photo;
};

template <typename Work> pid_t startLocked(Work work)
{
    return startForked([&] {
        auto const lockdown = lockDown({});
        return lockdown.has(Lockdown::systemCalls) ? work() : notLocked;
    });
}

template <typename Work> Ending runLocked(Work work)
{
    return endingOf(startLocked(work));
}

bool send(int socket, std::string_view text, int descriptor = -1)
{
    iovec part { const_cast<char*>(text.data()), text.size() };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control {};
    if (descriptor >= 0) {
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        auto* const head = CMSG_FIRSTHDR(&message);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(head), &descriptor, sizeof descriptor);
    }
    return ::sendmsg(socket, &message, MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
}

/// The descriptor that comes with the next message; -1 if none does.
int receive(int socket)
{
    std::array<char, 64> text {};
    iovec part { text.data(), text.size() };
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control {};
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    if (::recvmsg(socket, &message, MSG_CMSG_CLOEXEC) <= 0)
        return -1;
    auto* const head = CMSG_FIRSTHDR(&message);
    int descriptor = -1;
    if (head != nullptr && head->cmsg_type == SCM_RIGHTS)
        std::memcpy(&descriptor, CMSG_DATA(head), sizeof descriptor);
    return descriptor;
}

} // namespace

// These fork hundreds of processes of one thread each, where nothing can race.
TEST_SUITE_BEGIN("locked processes" * doctest::skip(isThreadSanitized));

TEST_CASE("everything that the kernel can do holds a locked process, and what it cannot is told")
{
    auto const version = ::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t { 0 }, 1U);
    auto const ending = runForked([&] {
        auto const lockdown = lockDown({});
        if (version >= 1)
            return lockdown.isComplete() && lockdown.landlock == version ? 0 : 1;
        return missingHolds(lockdown) == "Landlock" && lockdown.landlock == 0 ? 0 : 2;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 0);
}

TEST_CASE("what is missing is told by its names")
{
    Lockdown lockdown;
    lockdown.holds = Lockdown::everything;
    CHECK(lockdown.isComplete());
    CHECK(missingHolds(lockdown).empty());
    lockdown.holds &= ~std::uint32_t { Lockdown::paths };
    CHECK_FALSE(lockdown.isComplete());
    CHECK(missingHolds(lockdown) == "Landlock");
    lockdown.holds &= ~std::uint32_t { Lockdown::systemCalls };
    CHECK(missingHolds(lockdown) == "Landlock, seccomp");
}

TEST_CASE("no attack from inside a locked process succeeds")
{
    Scene const scene;
    Loot const loot { scene.photo.get(), scene.there.get(), ::getpid() };
    for (auto const& attack : attacks()) {
        CAPTURE(attack.name);
        auto const ending = runLocked([&] { return attack.attempt(loot); });
        if (attack.expected == Attack::deadly) {
            CHECK(ending.signal == SIGSYS);
        } else {
            CHECK(ending.signal == 0);
            CHECK(ending.code == attack.expected);
        }
    }
}

TEST_CASE("the attacks succeed where nothing holds them")
{
    Scene const scene;
    Loot const loot { scene.photo.get(), scene.there.get(), ::getpid() };
    for (auto const& attack : attacks()) {
        if (!attack.worksOutside)
            continue;
        CAPTURE(attack.name);
        auto const ending = runForked([&] { return attack.attempt(loot); });
        CHECK(ending.signal == 0);
        CHECK(ending.code == 0);
    }
}

TEST_CASE("paths stay closed even without the filter of system calls")
{
    if (::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t { 0 }, 1U) < 1) {
        MESSAGE("skipped: the kernel has no Landlock");
        return;
    }
    auto const ending = runForked([] {
        if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || forbidPaths() == 0)
            return notLocked;
        return ::open("/etc/passwd", O_RDONLY) < 0 ? errno : 0;
    });
    CHECK(ending.code == EACCES);
}

TEST_CASE("a locked process starts threads and gives them memory")
{
    auto const ending = runLocked([] {
        std::atomic<std::size_t> filled { 0 };
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&filled] {
                ::prctl(PR_SET_NAME, "decoder", 0, 0, 0);
                std::vector<char> const small(1000, 'a');
                std::vector<char> const large(std::size_t { 8 } << 20U, 'b');
                filled += small.size() + large.size();
            });
        }
        for (auto& thread : threads)
            thread.join();
        return filled == 8 * (1000 + (std::size_t { 8 } << 20U)) ? 0 : 1;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 0);
}

TEST_CASE("a locked process reads the file and fills the memory that it is handed")
{
    Scene const scene;
    Descriptor const memory(::memfd_create("arena", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    REQUIRE(::ftruncate(memory.get(), 4096) == 0);
    REQUIRE(::fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0);
    auto const process = startLocked([&] {
        auto const arena = receive(scene.there.get());
        auto const photo = receive(scene.there.get());
        auto* const at = static_cast<char*>(
            ::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, arena, 0));
        if (at == MAP_FAILED || ::pread(photo, at, 16, 0) != 16)
            return 1;
        return send(scene.there.get(), "done") ? 0 : 2;
    });
    REQUIRE(send(scene.here.get(), "arena", memory.get()));
    REQUIRE(send(scene.here.get(), "photo", scene.photo.get()));
    auto const ending = endingOf(process);
    CHECK(ending.signal == 0);
    CHECK(ending.code == 0);
    auto const* const at
        = static_cast<char const*>(::mmap(nullptr, 4096, PROT_READ, MAP_SHARED, memory.get(), 0));
    REQUIRE(at != MAP_FAILED);
    CHECK(std::string_view(at, 16) == "bytes of a photo");
    ::munmap(const_cast<char*>(at), 4096);
}

TEST_CASE("a locked process gets no more memory than its limit")
{
    if (isSanitized) {
        MESSAGE("skipped: the sanitizer's own memory is beyond every limit");
        return;
    }
    auto const ending = runForked([] {
        WorkerLimits limits;
        limits.addressSpace = std::size_t { 1 } << 30U;
        if (!lockDown(limits).has(Lockdown::resources))
            return notLocked;
        constexpr std::size_t step = std::size_t { 8 } << 20U;
        std::vector<std::unique_ptr<char[]>> blocks;
        try {
            for (int i = 0; i < 1000; ++i) {
                blocks.push_back(std::make_unique_for_overwrite<char[]>(step));
                std::memset(blocks.back().get(), i, step);
            }
        } catch (std::bad_alloc const&) {
            return static_cast<int>(blocks.size());
        }
        return notLocked;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code > 10); // there is memory,
    CHECK(ending.code <= 1024 / 8); // but no more than 1 GiB
}

TEST_CASE("the limits of a locked process are those that are stated")
{
    auto const ending = runLocked([] {
        auto const most = [](__rlimit_resource resource) {
            rlimit limit {};
            return ::getrlimit(resource, &limit) == 0 && limit.rlim_cur == limit.rlim_max
                ? limit.rlim_cur
                : 1;
        };
        bool const isHeld = most(RLIMIT_CORE) == 0 && most(RLIMIT_FSIZE) == 0
            && most(RLIMIT_MEMLOCK) == 0 && most(RLIMIT_MSGQUEUE) == 0
            && most(RLIMIT_NOFILE) == WorkerLimits::openFiles
            && most(RLIMIT_CPU) == static_cast<rlim_t>(WorkerLimits::processorTime.count())
            && (isSanitized || most(RLIMIT_AS) == WorkerLimits {}.addressSpace);
        return isHeld ? 0 : 1;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 0);
}

TEST_CASE("a locked process that crashes leaves no core dump behind")
{
    // Where dumps go to a program, only the flag of the process keeps it from being started.
    auto const crashing = runLocked([] { return ::raise(SIGQUIT); });
    CHECK(crashing.signal == SIGQUIT);
    CHECK_FALSE(crashing.hasDumpedCore);
    auto const aborting = runLocked([]() -> int { std::abort(); });
    CHECK(aborting.signal == SIGABRT);
    CHECK_FALSE(aborting.hasDumpedCore);
}

TEST_CASE("a locked process is the first that the kernel ends when memory runs out")
{
    Scene const scene;
    auto const process = startLocked([&] { return receive(scene.there.get()) < 0 ? 0 : 1; });
    // The file belongs to root once the process is not dumpable, but everybody may read it.
    std::string score;
    auto const path = "/proc/" + std::to_string(process) + "/oom_score_adj";
    while (score != "1000" && ::kill(process, 0) == 0) {
        std::ifstream file(path);
        std::getline(file, score);
    }
    CHECK(score == "1000");
    REQUIRE(send(scene.here.get(), "end"));
    CHECK(endingOf(process).code == 0);
}

TEST_CASE("a locked process dies with its parent")
{
    std::array<int, 2> pipe {};
    REQUIRE(::pipe2(pipe.data(), O_CLOEXEC) == 0);
    Descriptor const life(pipe[0]);
    Descriptor held(pipe[1]);
    Scene const scene;
    auto const parent = runForked([&] {
        // The grandchild holds the pipe and a socket that never ends, and would wait for ever.
        startLocked([&] {
            send(scene.there.get(), "locked");
            ::poll(nullptr, 0, -1);
            return 0;
        });
        receive(scene.here.get());
        return 0;
    });
    CHECK(parent.code == 0);
    held = Descriptor();
    pollfd end { life.get(), POLLIN, 0 };
    constexpr int patience = 30'000;
    CHECK(::poll(&end, 1, patience) == 1);
    CHECK((end.revents & POLLHUP) != 0);
}

TEST_CASE("a process that is bound to its parent is told whether that still lives")
{
    auto const here = ::getpid();
    CHECK(runForked([here] { return bindToParent(here) ? 0 : 1; }).code == 0);

    std::array<int, 2> pipe {};
    REQUIRE(::pipe2(pipe.data(), O_CLOEXEC) == 0);
    Descriptor const heard(pipe[0]);
    Descriptor const told(pipe[1]);
    auto const parent = runForked([&] {
        auto const own = ::getpid();
        startForked([&, own] {
            while (::getppid() == own)
                std::this_thread::yield();
            char const answer = bindToParent(own) ? 'y' : 'n';
            return ::write(told.get(), &answer, 1) == 1 ? 0 : 1;
        });
        return 0;
    });
    CHECK(parent.code == 0);
    char answer = 0;
    REQUIRE(::read(heard.get(), &answer, 1) == 1);
    CHECK(answer == 'n');
}

TEST_SUITE_END();
