#include "posix/FolderStream.h"
#include "support/TemporaryFolder.h"
#include <atomic>
#include <chrono>
#include <doctest/doctest.h>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <semaphore>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace pixelhain;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

template <typename Condition> bool eventually(Condition condition)
{
    auto const end = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

int watchCount()
{
    int count = 0;
    std::error_code error;
    for (auto const& entry : fs::directory_iterator("/proc/self/fd", error)) {
        if (fs::read_symlink(entry, error) != "anon_inode:inotify")
            continue;
        std::ifstream info("/proc/self/fdinfo" / entry.path().filename());
        for (std::string line; std::getline(info, line);)
            count += line.starts_with("inotify wd:") ? 1 : 0;
    }
    return count;
}

int queueLength()
{
    int length = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> length;
    return length;
}

// A stream on a thread of its own.
struct Streaming {
    FolderStream stream;
    std::thread thread;

    Streaming(fs::path const& root, std::function<void()> tell)
        : stream(FileUrl(root.native()), {}, std::move(tell))
        , thread([this] { stream.run(); })
    {
    }
    ~Streaming()
    {
        stream.stop();
        thread.join();
    }
};

} // namespace

TEST_CASE("events that the kernel had to drop are a change, and what they told is found again")
{
    int const most = queueLength();
    if (most <= 0 || most > 100'000) {
        MESSAGE("not tried: the kernel keeps ", most, " events");
        return;
    }
    TemporaryFolder const folder;
    fs::path const root(folder.url().path());
    std::atomic<int> told = 0;
    std::counting_semaphore<> go(0);
    {
        Streaming const streaming(root, [&] {
            // As long as the first report takes, nobody reads what happens.
            if (told++ == 0)
                go.acquire();
        });
        REQUIRE(eventually([] { return watchCount() == 1; }));
        fs::create_directory(root / "anlass");
        REQUIRE(eventually([&] { return told == 1; }));
        for (int i = 0; i <= most / 2; ++i) {
            fs::create_directory(root / "kurz");
            fs::remove(root / "kurz");
        }
        fs::create_directories(root / "neu/tief");
        go.release();
        CHECK(eventually([] { return watchCount() == 4; }));
        CHECK(eventually([&] { return told >= 2; }));
    }
    CHECK(watchCount() == 0);
}

TEST_CASE("what a new folder held before it was watched is told besides the folder itself")
{
    TemporaryFolder const folder;
    TemporaryFolder const elsewhere;
    fs::path const root(folder.url().path());
    fs::path const other(elsewhere.url().path());
    fs::create_directories(other / "mit/inhalt");
    std::atomic<int> told = 0;
    Streaming const streaming(root, [&] { ++told; });
    REQUIRE(eventually([] { return watchCount() == 1; }));
    fs::rename(other / "mit", root / "mit");
    CHECK(eventually([&] { return told == 2; }));
    CHECK(watchCount() == 3);
}

TEST_CASE("at the system's own limit what is watched stays watched")
{
    TemporaryFolder const folder;
    fs::path const root(folder.url().path());
    for (int i = 0; i < 50; ++i)
        fs::create_directories(root / std::to_string(i) / "tief");
    constexpr int limit = 10;
    constexpr int cannotTry = 77;
    // The limit belongs to a user of a namespace, so a process with one of its own can lower it.
    auto const child = ::fork();
    if (child == 0) {
        if (::unshare(CLONE_NEWUSER) != 0)
            ::_exit(cannotTry);
        std::ofstream setting("/proc/sys/user/max_inotify_watches");
        if (!(setting << limit << std::flush))
            ::_exit(cannotTry);
        std::atomic<int> told = 0;
        Streaming const streaming(root, [&] { ++told; });
        bool const full = eventually([] { return watchCount() == limit; });
        bool const quiet = told == 0;
        fs::create_directory(root / "neu");
        bool const heard = eventually([&] { return told > 0; });
        ::_exit(full && quiet && heard && watchCount() == limit ? 0 : 1);
    }
    REQUIRE(child > 0);
    int status = 0;
    REQUIRE(::waitpid(child, &status, 0) == child);
    REQUIRE(WIFEXITED(status));
    if (WEXITSTATUS(status) == cannotTry)
        MESSAGE("not tried: the limit cannot be lowered here");
    else
        CHECK(WEXITSTATUS(status) == 0);
}
