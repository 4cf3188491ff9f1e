#include "decoder/PooledDecoder.h"
#include "decoder/WorkerMain.h"
#include "support/Children.h"
#include "support/ForkedRun.h"
#include "support/ImageWriters.h"
#include "support/Places.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <fstream>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <mutex>
#include <random>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <thread>

using namespace pixelhain;
using namespace std::chrono_literals;

namespace {

// Deaths are what is tested here; the pauses that follow too many have tests of their own.
WorkerPool::Options options()
{
    WorkerPool::Options options;
    options.program = buildFolder() + "/pixelhain-faulty-decoder";
    options.rate = RestartRate(1ms, 1ms);
    return options;
}

// One bounded time for all: a worker that is killed for it has done nothing for 0.9 s, or has used
// a processor for 0.3 s.
std::chrono::nanoseconds shortDeadline(DecoderRequest const&)
{
    return 300ms;
}

struct Desk {
    explicit Desk(WorkerPool::Options chosen = options(),
        PooledDecoder::Deadline const& deadline = PooledDecoder::usualDeadline)
        : decoder(std::move(chosen), deadline)
    {
        auto const bytes = writeJpeg(RgbaPixels::filled({ 60, 40 }, 0x00C000FF));
        for (int i = 0; i < 50; ++i)
            good.push_back(folder.file("good" + std::to_string(i),
                { reinterpret_cast<char const*>(bytes.data()), bytes.size() }));
    }

    FileUrl bad(std::string const& command) const
    {
        return folder.file(command, "X-TEST " + command);
    }
    bool shows(FileUrl const& url)
    {
        return decoder.decode({ url, 30, EmbeddedPreviews::prefer }).has_value();
    }

    TemporaryFolder folder;
    std::vector<FileUrl> good;
    PooledDecoder decoder;
};

int openDescriptors()
{
    int count = 0;
    for (int number = 0; number < 1024; ++number)
        count += ::fcntl(number, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

// So few that a file can be opened and a worker cannot be started; returns what was allowed before.
rlimit spareDescriptors(int count)
{
    rlimit usual {};
    REQUIRE(::getrlimit(RLIMIT_NOFILE, &usual) == 0);
    int const lowest = ::dup(0);
    REQUIRE(lowest >= 0);
    ::close(lowest);
    auto few = usual;
    few.rlim_cur = static_cast<rlim_t>(lowest + count);
    REQUIRE(::setrlimit(RLIMIT_NOFILE, &few) == 0);
    return usual;
}

// Mappings, which would add up as well.
std::size_t mappings()
{
    std::ifstream file("/proc/self/maps");
    std::string line;
    std::size_t count = 0;
    while (std::getline(file, line))
        ++count;
    return count;
}

// As on a kernel that lacks it.
bool forbidLandlock()
{
    std::array<sock_filter, 4> program { {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_landlock_create_ruleset, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    } };
    sock_fprog const filter { program.size(), program.data() };
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace

TEST_CASE("a picture that kills its worker in whatever way costs itself and no other")
{
    for (auto const* const command : { "segv", "kill", "abort", "exit", "throw" }) {
        CAPTURE(command);
        Desk desk;
        CHECK(desk.shows(desk.good[0]));
        CHECK_FALSE(desk.shows(desk.bad(command)));
        CHECK_FALSE(desk.decoder.readMeta(desk.bad(command)));
        CHECK(desk.shows(desk.good[1]));
    }
}

TEST_CASE("a picture that its worker never comes to an end with costs itself and no other")
{
    for (auto const* const command : { "spin", "silent", "stop" }) {
        CAPTURE(command);
        Desk desk(options(), shortDeadline);
        CHECK_FALSE(desk.shows(desk.bad(command)));
        CHECK(desk.shows(desk.good[0]));
    }
}

// Sanitizers need more addresses than any limit leaves: there is none under them.
TEST_CASE(
    "a picture that wants 8 GB of memory costs itself and no other" * doctest::skip(isSanitized))
{
    auto small = options();
    small.addressSpace = std::uint64_t { 512 } << 20;
    Desk desk(std::move(small));
    CHECK_FALSE(desk.shows(desk.bad("alloc")));
    CHECK(desk.shows(desk.good[0]));
}

TEST_CASE("a worker that has answered its share of requests is replaced")
{
    Desk desk;
    CHECK(desk.shows(desk.good[0]));
    auto const first = children();
    for (int i = 1; i < WorkerLimits::requests; ++i)
        CHECK(desk.decoder.readMeta(desk.good[0]));
    CHECK(desk.shows(desk.good[0]));
    CHECK(endedOf(first) == 1);
}

TEST_CASE("an answer that is none costs the picture and the worker that gave it")
{
    for (auto const* const command : { "garbage", "long", "huge", "descriptors", "flood" }) {
        CAPTURE(command);
        Desk desk;
        auto const before = openDescriptors();
        CHECK(desk.shows(desk.good[0]));
        auto const liar = children();
        CHECK_FALSE(desk.shows(desk.bad(command)));
        CHECK(desk.shows(desk.good[1]));
        for (auto const process : liar)
            if (std::ranges::count(children(), process) == 0)
                CHECK(hasEnded(process));
        CHECK(openDescriptors() - before < 20);
    }
}

TEST_CASE("a picture is given up after its second death, and costs no more workers")
{
    Desk desk;
    auto const bad = desk.bad("segv");
    CHECK_FALSE(desk.shows(bad));
    CHECK(desk.shows(desk.good[0]));
    auto const before = children();
    for (int i = 0; i < 20; ++i)
        CHECK_FALSE(desk.shows(bad));
    for (auto const process : before)
        CHECK_FALSE(hasEnded(process, 0));
}

TEST_CASE("others get their pictures while one hangs")
{
    auto wide = options();
    wide.width = 2;
    Desk desk(std::move(wide), [](auto const&) { return 60s; });
    std::atomic<bool> isOver = false;
    std::jthread const hanging([&] {
        CHECK_FALSE(desk.shows(desk.bad("silent")));
        isOver = true;
    });
    for (auto const& url : desk.good)
        CHECK(desk.shows(url));
    CHECK_FALSE(isOver);
    // Neither the first nor the second try is waited for.
    while (!isOver) {
        for (auto const process : children())
            ::kill(process, SIGKILL);
        std::this_thread::yield();
    }
}

TEST_CASE("a worker that is killed between two pictures is not missed")
{
    Desk desk;
    for (auto const& url : desk.good) {
        CHECK(desk.shows(url));
        for (auto const process : children()) {
            ::kill(process, SIGKILL);
            CHECK(hasEnded(process));
        }
    }
}

TEST_CASE("a thousand pictures with workers dying all the while leave nothing behind")
{
    Desk desk;
    for (auto const& url : desk.good)
        CHECK(desk.shows(url));
    auto const descriptors = openDescriptors();
    auto const mapped = mappings();
    std::minstd_rand random(20);
    std::atomic<std::size_t> next = 0;
    std::atomic<int> shown = 0;
    std::mutex lock;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 2; ++i)
            threads.emplace_back([&] {
                for (auto file = next++; file < 1000; file = next++) {
                    shown += desk.shows(desk.good[file % desk.good.size()]) ? 1 : 0;
                    std::scoped_lock const guard(lock);
                    if (file % 20 != 0)
                        continue;
                    auto const workers = children();
                    if (!workers.empty())
                        ::kill(workers[random() % workers.size()], SIGKILL);
                }
            });
    }
    // Of two that are killed in a row over one picture nobody can say that it was not its fault.
    CHECK(shown >= 900);
    CHECK(openDescriptors() <= descriptors + 20);
    CHECK(mappings() <= mapped + 60);
}

TEST_CASE("a decoder program that is missing is told of once, and costs nothing but the pictures")
{
    std::vector<std::string> complaints;
    auto missing = options();
    missing.program = "/nowhere/pixelhain-decoder";
    missing.complain = [&](std::string const& reason) { complaints.push_back(reason); };
    Desk desk(std::move(missing));
    for (auto const& url : desk.good)
        CHECK_FALSE(desk.shows(url));
    REQUIRE(complaints.size() == 1);
    CHECK(complaints[0] == "/nowhere/pixelhain-decoder: No such file or directory");
}

TEST_CASE("a decoder program that ends at once is told of once, and not waited for")
{
    std::vector<std::string> complaints;
    auto broken = options();
    broken.program = "/bin/false";
    broken.complain = [&](std::string const& reason) { complaints.push_back(reason); };
    Desk desk(std::move(broken));
    for (auto const& url : desk.good)
        CHECK_FALSE(desk.shows(url));
    REQUIRE(complaints.size() == 1);
    CHECK(complaints[0] == "/bin/false: it ends as soon as it begins");
}

TEST_CASE("a kernel that cannot hold the workers is told of once, and pictures come all the same")
{
    auto const ending = runForked([] {
        std::vector<std::string> warnings;
        auto chosen = options();
        chosen.warn = [&](std::string const& missing) { warnings.push_back(missing); };
        if (!forbidLandlock())
            return 1;
        Desk desk(std::move(chosen));
        bool const isShown = desk.shows(desk.good[0]) && desk.shows(desk.good[1]);
        return isShown && warnings == std::vector<std::string> { "Landlock" } ? 0 : 2;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 0);
}

TEST_CASE("without descriptors there are no pictures, and with them there are again")
{
    std::atomic<int> complaints = 0;
    auto chosen = options();
    chosen.complain = [&](std::string const&) { ++complaints; };
    Desk desk(std::move(chosen));
    auto const usual = spareDescriptors(2);
    bool const isShown = desk.shows(desk.good[0]);
    REQUIRE(::setrlimit(RLIMIT_NOFILE, &usual) == 0);
    CHECK_FALSE(isShown);
    CHECK(complaints == 1);
    bool isBack = false;
    for (auto const end = std::chrono::steady_clock::now() + 20s;
         !isBack && std::chrono::steady_clock::now() < end;)
        isBack = desk.shows(desk.good[0]);
    CHECK(isBack);
}

TEST_CASE("a decoder that begins without a descriptor is told of, and nobody waits for it")
{
    std::vector<std::string> complaints;
    auto chosen = options();
    chosen.complain = [&](std::string const& reason) { complaints.push_back(reason); };
    TemporaryFolder const folder;
    auto const file = folder.file("a.jpg", "X-TEST exit");
    auto const usual = spareDescriptors(0);
    PooledDecoder decoder(std::move(chosen));
    REQUIRE(::setrlimit(RLIMIT_NOFILE, &usual) == 0);
    decoder.prepare(2);
    CHECK_FALSE(decoder.readMeta(file));
    CHECK(complaints.size() == 1);
}

TEST_CASE("a worker that cannot be started now is started later, whatever the others do")
{
    rlimit usual {};
    std::atomic<bool> wasRefused = false;
    auto wide = options();
    wide.width = 2;
    wide.complain = [&](std::string const&) {
        wasRefused = true;
        ::setrlimit(RLIMIT_NOFILE, &usual);
    };
    Desk desk(std::move(wide), [](auto const&) { return 60s; });
    auto const before = openDescriptors();
    std::atomic<bool> isOver = false;
    std::jthread const hanging([&] {
        CHECK_FALSE(desk.shows(desk.bad("silent")));
        isOver = true;
    });
    // The file, and the socket, the memory and the handle of its worker: that one is at work.
    while (children().size() != 1 || openDescriptors() != before + 4)
        std::this_thread::yield();
    usual = spareDescriptors(2);
    CHECK(desk.shows(desk.good[0]));
    CHECK(wasRefused);
    CHECK_FALSE(isOver);
    ::setrlimit(RLIMIT_NOFILE, &usual);
    while (!isOver) {
        for (auto const process : children())
            ::kill(process, SIGKILL);
        std::this_thread::yield();
    }
}

TEST_CASE("workers end with the program, even if it is killed")
{
    int ends[2];
    REQUIRE(::pipe(ends) == 0);
    auto const program = startForked([&] {
        Desk desk;
        std::jthread const busy([&] { static_cast<void>(desk.shows(desk.bad("spin"))); });
        if (!desk.shows(desk.good[0]))
            return 1;
        auto const workers = children();
        if (::write(ends[1], workers.data(), workers.size() * sizeof workers[0]) <= 0)
            return 1;
        ::pause();
        return 0;
    });
    std::vector<pid_t> workers(16);
    auto const got = ::read(ends[0], workers.data(), workers.size() * sizeof workers[0]);
    REQUIRE(got >= static_cast<ssize_t>(2 * sizeof workers[0]));
    workers.resize(static_cast<std::size_t>(got) / sizeof workers[0]);
    REQUIRE(::kill(program, SIGKILL) == 0);
    CHECK(endingOf(program).signal == SIGKILL);
    for (auto const worker : workers)
        CHECK(hasEnded(worker));
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_CASE("a worker whose program ended before it began does nothing of what it was asked")
{
    auto ends = RecordSocket::pair();
    auto space = SharedSpace::create(ownSpaceBytes);
    REQUIRE(ends);
    REQUIRE(space);
    auto const program = options().program;
    auto const ending = runForked([&] {
        int const socket = ::fcntl(ends->second.get(), F_DUPFD, 100);
        int const memory = ::fcntl(space->descriptor(), F_DUPFD, 100);
        ::dup2(socket, WorkerDescriptors::socket);
        ::dup2(memory, WorkerDescriptors::space);
        // Its parent is this test, not the first process of all.
        ::execl(program.c_str(), program.c_str(), "--memory", "2147483648", "--parent", "1",
            static_cast<char*>(nullptr));
        return 2;
    });
    CHECK(ending.signal == 0);
    CHECK(ending.code == 1);
}

TEST_CASE("workers take the priority of those who ask, down only")
{
    int const own = ::getpriority(PRIO_PROCESS, 0);
    int const lower = own + 5;
    Desk desk;
    auto const nicenesses = [] {
        std::vector<int> found;
        for (auto const process : children())
            found.push_back(::getpriority(PRIO_PROCESS, static_cast<id_t>(process)));
        return found;
    };
    std::jthread([&] {
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), lower);
        CHECK(desk.shows(desk.good[0]));
    }).join();
    CHECK(std::ranges::count(nicenesses(), lower) == 1);
    CHECK(desk.shows(desk.good[1]));
    CHECK(std::ranges::count(nicenesses(), lower) == 1);
    CHECK(std::ranges::count(nicenesses(), own) >= 1);
}
