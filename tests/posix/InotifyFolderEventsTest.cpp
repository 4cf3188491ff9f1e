#include "posix/InotifyFolderEvents.h"
#include "support/FakeLoop.h"
#include "support/TemporaryFolder.h"
#include <chrono>
#include <doctest/doctest.h>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <thread>
#include <unistd.h>

using namespace pixelhain;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// How many watches this process has, and in how many streams, as the kernel tells it.
struct Watches {
    int streams = 0;
    int folders = 0;

    static Watches now()
    {
        Watches found;
        std::error_code error;
        for (auto const& entry : fs::directory_iterator("/proc/self/fd", error)) {
            if (fs::read_symlink(entry, error) != "anon_inode:inotify")
                continue;
            ++found.streams;
            std::ifstream info("/proc/self/fdinfo" / entry.path().filename());
            for (std::string line; std::getline(info, line);)
                found.folders += line.starts_with("inotify wd:") ? 1 : 0;
        }
        return found;
    }
};

// Long enough that what one step causes falls into one batch, short enough to wait for.
constexpr auto gathering = 150ms;

FolderStreamOptions quickOptions()
{
    FolderStreamOptions options;
    options.gathering = gathering;
    return options;
}

struct Watching {
    TemporaryFolder folder;
    fs::path const root { std::string(folder.url().path()) + "/wurzel" };
    FakeLoop loop;
    InotifyFolderEvents events;
    Task stream;
    int reports = 0;

    explicit Watching(FolderStreamOptions options = quickOptions())
        : events(loop, std::move(options))
    {
        fs::create_directory(root);
    }

    // The clock by which files are dated goes in steps; what was made before must be older.
    void begin(int folders)
    {
        timespec began {};
        timespec dated {};
        clock_gettime(CLOCK_REALTIME, &began);
        do {
            std::this_thread::yield();
            clock_gettime(CLOCK_REALTIME_COARSE, &dated);
        } while (std::pair(dated.tv_sec, dated.tv_nsec) <= std::pair(began.tv_sec, began.tv_nsec));
        stream = events.watch(FileUrl(root.native()), [this] { ++reports; });
        CHECK(eventually([&] { return Watches::now().folders == folders; }));
        CHECK(reports == 0);
    }

    template <typename Condition> bool eventually(Condition condition)
    {
        auto const end = std::chrono::steady_clock::now() + 30s;
        for (;;) {
            loop.settle();
            if (condition())
                return true;
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::sleep_for(1ms);
        }
    }

    // How many reports there are when nothing more can be gathered.
    int settled()
    {
        auto const end = std::chrono::steady_clock::now() + 2 * gathering;
        (void)eventually([&] { return std::chrono::steady_clock::now() > end; });
        return reports;
    }

    bool reported(int count = 1)
    {
        return eventually([&] { return reports >= count; });
    }
};

void writeFile(fs::path const& path)
{
    std::ofstream(path) << "x";
}

} // namespace

TEST_CASE("a folder made anywhere below the root is reported once")
{
    Watching w;
    fs::create_directories(w.root / "a/b/c");
    w.begin(4);
    fs::create_directory(w.root / "a/b/c/neu");
    CHECK(w.reported());
    CHECK(w.settled() == 1);
    CHECK(Watches::now().folders == 5);
}

TEST_CASE("a folder that is removed or renamed is reported")
{
    Watching w;
    fs::create_directories(w.root / "a/b");
    fs::create_directory(w.root / "leer");
    w.begin(4);
    fs::remove(w.root / "leer");
    CHECK(w.reported());
    CHECK(w.settled() == 1);
    fs::rename(w.root / "a/b", w.root / "a/c");
    CHECK(w.reported(2));
}

TEST_CASE("five hundred photos copied in, changed and removed are not reported")
{
    Watching w;
    fs::create_directory(w.root / "a");
    w.begin(2);
    for (int i = 0; i < 500; ++i)
        writeFile(w.root / "a" / (std::to_string(i) + ".jpg"));
    for (int i = 0; i < 500; ++i)
        fs::rename(
            w.root / "a" / (std::to_string(i) + ".jpg"), w.root / (std::to_string(i) + ".jpeg"));
    for (int i = 0; i < 500; ++i)
        fs::remove(w.root / (std::to_string(i) + ".jpeg"));
    CHECK(w.settled() == 0);
    fs::create_directory(w.root / "neu");
    CHECK(w.reported());
}

TEST_CASE("a folder that is moved in is watched with all below it, one moved out no longer")
{
    Watching w;
    auto const outside = w.root.parent_path() / "draussen";
    fs::create_directories(outside / "x/y");
    fs::create_directories(w.root / "a/b");
    w.begin(3);
    fs::rename(outside / "x", w.root / "a/x");
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 5; }));
    auto const before = w.settled();
    fs::create_directory(w.root / "a/x/y/neu");
    CHECK(w.reported(before + 1));
    CHECK(w.eventually([] { return Watches::now().folders == 6; }));
    fs::rename(w.root / "a", outside / "a");
    CHECK(w.eventually([] { return Watches::now().folders == 1; }));
    auto const after = w.settled();
    fs::create_directory(outside / "a/b/neu");
    CHECK(w.settled() == after);
}

TEST_CASE("below a folder that was renamed changes are reported as before")
{
    Watching w;
    fs::create_directories(w.root / "a/b/c");
    w.begin(4);
    fs::rename(w.root / "a", w.root / "z");
    CHECK(w.reported());
    auto const before = w.settled();
    fs::create_directory(w.root / "z/b/c/d");
    CHECK(w.reported(before + 1));
    CHECK(w.eventually([] { return Watches::now().folders == 5; }));
    auto const deeper = w.settled();
    fs::create_directory(w.root / "z/b/c/d/e");
    CHECK(w.reported(deeper + 1));
}

TEST_CASE("of a deep tree that appears at once every folder is watched")
{
    Watching w;
    w.begin(1);
    for (int i = 0; i < 20; ++i)
        fs::create_directories(w.root / std::to_string(i) / "1/2/3/4/5/6/7/8/9");
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 201; }));
    auto const before = w.settled();
    fs::create_directory(w.root / "19/1/2/3/4/5/6/7/8/9/10");
    CHECK(w.reported(before + 1));
}

TEST_CASE("a folder that is replaced by another of the same name is watched anew")
{
    Watching w;
    fs::create_directories(w.root / "a/alt");
    fs::create_directories(w.root.parent_path() / "anders/neu");
    w.begin(3);
    fs::remove_all(w.root / "a");
    fs::rename(w.root.parent_path() / "anders", w.root / "a");
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 3; }));
    auto const before = w.settled();
    fs::create_directory(w.root / "a/neu/innen");
    CHECK(w.reported(before + 1));
}

TEST_CASE("a folder made while watches are being added is not missed")
{
    Watching w;
    for (int i = 0; i < 60; ++i)
        for (int j = 0; j < 50; ++j)
            fs::create_directories(w.root / std::to_string(i) / std::to_string(j));
    w.stream = w.events.watch(FileUrl(w.root.native()), [&] { ++w.reports; });
    // Past the step of the clock in which the watch began.
    REQUIRE(w.eventually([] { return Watches::now().folders > 0; }));
    std::this_thread::sleep_for(10ms);
    fs::create_directory(w.root / "59/49/neu");
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 1 + 60 + 60 * 50 + 1; }));
}

TEST_CASE("links to folders are not followed")
{
    Watching w;
    auto const outside = w.root.parent_path() / "draussen";
    fs::create_directory(outside);
    fs::create_directory_symlink(outside, w.root / "verweis");
    fs::create_directory_symlink(w.root, w.root / "schleife");
    fs::create_directory(w.root / "a");
    w.begin(2);
    fs::create_directory(outside / "neu");
    CHECK(w.settled() == 0);
}

TEST_CASE("folders that are not shown are neither watched nor reported")
{
    auto options = quickOptions();
    options.isShownName
        = [](std::string_view name) { return !name.starts_with('.') && !name.ends_with(".app"); };
    Watching w(options);
    fs::create_directories(w.root / ".git/objects");
    fs::create_directories(w.root / "x.app/Contents");
    fs::create_directory(w.root / "a");
    w.begin(2);
    fs::create_directory(w.root / ".cache");
    fs::create_directory(w.root / "x.app/neu");
    CHECK(w.settled() == 0);
    fs::rename(w.root / ".cache", w.root / "sichtbar");
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 3; }));
}

TEST_CASE("at the limit what is watched stays watched and nothing is said")
{
    auto options = quickOptions();
    options.mostWatches = 3;
    Watching w(options);
    for (auto const* name : { "a/tief", "b/tief", "c/tief" })
        fs::create_directories(w.root / name);
    w.begin(3);
    CHECK(w.settled() == 0);
    CHECK(Watches::now().folders == 3);
    fs::create_directory(w.root / "neu");
    CHECK(w.reported());
    CHECK(w.settled() == 1);
    CHECK(Watches::now().folders == 3);
}

TEST_CASE("a root that is removed is reported, and watched again when it is back")
{
    Watching w;
    fs::create_directory(w.root / "a");
    w.begin(2);
    fs::remove_all(w.root);
    CHECK(w.reported());
    auto const gone = w.settled();
    CHECK(Watches::now().folders == 0);
    fs::create_directories(w.root / "b/c");
    CHECK(w.reported(gone + 1));
    CHECK(w.eventually([] { return Watches::now().folders == 3; }));
    auto const back = w.settled();
    fs::create_directory(w.root / "b/c/d");
    CHECK(w.reported(back + 1));
}

TEST_CASE("a root that is renamed is reported and its watches are given back")
{
    Watching w;
    fs::create_directory(w.root / "a");
    w.begin(2);
    auto const elsewhere = w.root.parent_path() / "anders";
    fs::rename(w.root, elsewhere);
    CHECK(w.reported());
    CHECK(w.eventually([] { return Watches::now().folders == 0; }));
    auto const before = w.settled();
    fs::create_directory(elsewhere / "a/neu");
    CHECK(w.settled() == before);
}

TEST_CASE("a drive that is unmounted is reported, whether it is the root or lies below it")
{
    // The mounts of a thread may differ from those of the others.
    std::thread([] {
        Watching w;
        auto const drive = w.root / "stick";
        fs::create_directory(drive);
        bool const mayMount = ::unshare(CLONE_NEWNS) == 0
            && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
            && ::mount("none", w.root.c_str(), "tmpfs", 0, nullptr) == 0;
        if (!mayMount) {
            MESSAGE("not tried: mounting takes rights that this user lacks");
            return;
        }
        fs::create_directory(drive);
        CHECK(::mount("none", drive.c_str(), "tmpfs", 0, nullptr) == 0);
        fs::create_directory(drive / "a");
        w.begin(3);
        auto const card = drive / "a/karte";
        fs::create_directory(card);
        CHECK(w.eventually([] { return Watches::now().folders == 4; }));
        auto const mounted = w.settled();
        CHECK(::mount("none", card.c_str(), "tmpfs", 0, nullptr) == 0);
        CHECK(w.reported(mounted + 1));
        (void)w.settled();
        auto const inside = w.reports;
        fs::create_directory(card / "DCIM");
        CHECK(w.reported(inside + 1));
        CHECK(w.eventually([&] { return ::umount(card.c_str()) == 0; }));
        fs::remove(card);
        (void)w.settled();
        w.reports = 0;
        CHECK(w.eventually([&] { return ::umount(drive.c_str()) == 0; }));
        CHECK(w.reported());
        // The folder that the drive had covered is watched now.
        CHECK(w.eventually([] { return Watches::now().folders == 2; }));
        auto const before = w.settled();
        CHECK(w.eventually([&] { return ::umount(w.root.c_str()) == 0; }));
        CHECK(w.reported(before + 1));
        // What the drive had covered is there again.
        CHECK(w.eventually([] { return Watches::now().folders == 2; }));
        auto const after = w.settled();
        fs::create_directory(w.root / "neu");
        CHECK(w.reported(after + 1));
    }).join();
}

TEST_CASE("after the task was dropped nothing is reported and all watches are given back")
{
    Watching w;
    for (int i = 0; i < 2000; ++i)
        fs::create_directory(w.root / std::to_string(i));
    w.stream = w.events.watch(FileUrl(w.root.native()), [&] { ++w.reports; });
    fs::create_directory(w.root / "neu");
    w.stream = Task();
    CHECK(w.settled() == 0);
    w.stream = w.events.watch(FileUrl("/nicht/da"), [&] { ++w.reports; });
    CHECK(w.eventually([] { return Watches::now().folders == 0; }));
}

TEST_CASE("a report that is on its way when the task is dropped does not arrive")
{
    Watching w;
    w.begin(1);
    fs::create_directory(w.root / "neu");
    REQUIRE(w.eventually([] { return Watches::now().folders == 2; }));
    std::this_thread::sleep_for(20ms);
    w.stream = Task();
    w.loop.settle();
    auto const before = w.reports;
    CHECK(w.settled() == before);
}

TEST_CASE("a callback may drop its own task")
{
    Watching w;
    w.stream = w.events.watch(FileUrl(w.root.native()), [&] {
        ++w.reports;
        w.stream = Task();
    });
    REQUIRE(w.eventually([] { return Watches::now().folders == 1; }));
    fs::create_directory(w.root / "neu");
    CHECK(w.reported());
    fs::create_directory(w.root / "noch eins");
    CHECK(w.settled() == 1);
}

TEST_CASE("names that are not UTF-8 and paths beyond what the kernel takes are watched")
{
    Watching w;
    fs::create_directory(w.root / "\xff\xfe");
    auto at = w.root / "\xff\xfe";
    auto const longName = std::string(240, 'l');
    auto const here = fs::current_path();
    for (int i = 0; i < 20; ++i) {
        fs::create_directory(at / longName);
        fs::current_path(at / longName);
        at = ".";
    }
    fs::current_path(here);
    w.begin(22);
    fs::create_directory(w.root / "\xff\xfe/neu");
    CHECK(w.reported());
}

TEST_CASE("local folders are told to be reported, and so is what is not there")
{
    Watching w;
    CHECK(w.events.areReported(FileUrl(w.root.native())));
    CHECK(w.events.areReported(FileUrl("/nicht/da")));
}
