#include "posix/PosixFileSystem.h"
#include "SystemCallFaults.h"
#include "support/DeepFolder.h"
#include "support/OtherUser.h"
#include "support/TemporaryFolder.h"
#include <algorithm>
#include <chrono>
#include <climits>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

PosixFileSystem const files;

std::map<std::string, EntryKind> listed(FileUrl const& folder)
{
    std::map<std::string, EntryKind> entries;
    CHECK(files.list(
        folder, [&](std::string_view name, EntryKind kind) { entries.emplace(name, kind); }));
    return entries;
}

bool canList(FileUrl const& folder)
{
    return files.list(folder, [](std::string_view, EntryKind) {});
}

std::optional<FileDetails> detailsOf(FileUrl const& file)
{
    return files.details({ &file, 1 }).front();
}

void setModified(FileUrl const& file, timespec const& time)
{
    timespec const times[] = { time, time };
    REQUIRE(::utimensat(AT_FDCWD, file.cString(), times, 0) == 0);
}

} // namespace

TEST_CASE("a listing tells files, folders, links and the rest apart and leaves out . and ..")
{
    TemporaryFolder const folder;
    folder.file("a.jpg");
    folder.file(".hidden");
    std::filesystem::create_directory(folder.url().child("sub").cString());
    REQUIRE(::symlink("a.jpg", folder.url().child("link.jpg").cString()) == 0);
    REQUIRE(::mkfifo(folder.url().child("pipe.jpg").cString(), 0600) == 0);
    auto const entries = listed(folder.url());
    CHECK(entries.size() == 5);
    CHECK(entries.at("a.jpg") == EntryKind::file);
    CHECK(entries.at(".hidden") == EntryKind::file);
    CHECK(entries.at("sub") == EntryKind::folder);
    CHECK(entries.at("link.jpg") == EntryKind::link);
    CHECK(entries.at("pipe.jpg") == EntryKind::other);
}

TEST_CASE("a name that is not UTF-8 comes back byte for byte")
{
    TemporaryFolder const folder;
    auto const file = folder.file("caf\xE9\xFF.jpg", "abc");
    CHECK(listed(folder.url()).contains("caf\xE9\xFF.jpg"));
    REQUIRE(detailsOf(file));
    CHECK(detailsOf(file)->size == 3);
}

TEST_CASE("a folder with many entries is listed whole")
{
    TemporaryFolder const folder;
    std::string const filler(200, 'x');
    for (int i = 0; i < 6000; ++i)
        folder.file(std::to_string(i) + filler);
    CHECK(listed(folder.url()).size() == 6000);
}

TEST_CASE("what is no folder cannot be listed")
{
    TemporaryFolder const folder;
    CHECK_FALSE(canList(folder.url().child("missing")));
    CHECK_FALSE(canList(folder.file("a.jpg")));
    CHECK_FALSE(canList(FileUrl()));
    REQUIRE(::mkfifo(folder.url().child("pipe").cString(), 0600) == 0);
    CHECK_FALSE(canList(folder.url().child("pipe")));
}

TEST_CASE("a link to a folder can be listed")
{
    TemporaryFolder const folder;
    std::filesystem::create_directory(folder.url().child("sub").cString());
    folder.file("sub/a.jpg");
    REQUIRE(::symlink("sub", folder.url().child("link").cString()) == 0);
    CHECK(listed(folder.url().child("link")).contains("a.jpg"));
}

TEST_CASE("a folder without read permission cannot be listed")
{
    TemporaryFolder const folder;
    auto const locked = folder.url().child("locked");
    std::filesystem::create_directory(locked.cString());
    REQUIRE(::chmod(folder.url().cString(), 0755) == 0);
    REQUIRE(::chmod(locked.cString(), 0000) == 0);
    bool canListTop = false;
    bool canListLocked = true;
    withoutRights([&] {
        canListTop = canList(folder.url());
        canListLocked = canList(locked);
    });
    CHECK(canListTop);
    CHECK_FALSE(canListLocked);
    ::chmod(locked.cString(), 0700);
}

TEST_CASE("files of a folder that may be listed but not entered have no details")
{
    TemporaryFolder const folder;
    auto const file = folder.file("a.jpg");
    REQUIRE(::chmod(folder.url().cString(), 0444) == 0);
    std::optional<FileDetails> details = FileDetails();
    withoutRights([&] { details = detailsOf(file); });
    CHECK_FALSE(details);
    ::chmod(folder.url().cString(), 0700);
}

TEST_CASE("details are size and date to the nanosecond")
{
    TemporaryFolder const folder;
    auto const file = folder.file("a.jpg", std::string(12345, 'x'));
    setModified(file, { 1'700'000'000, 123'456'789 });
    auto const details = detailsOf(file);
    REQUIRE(details);
    CHECK(details->kind == EntryKind::file);
    CHECK(details->size == 12345);
    CHECK(details->modified.time_since_epoch().count() == 1'700'000'000'123'456'789);
}

TEST_CASE("dates before 1970 and beyond what nanoseconds can hold keep their order")
{
    TemporaryFolder const folder;
    auto const old = folder.file("old.jpg");
    auto const late = folder.file("late.jpg");
    setModified(old, { -1'000'000, 0 });
    setModified(late, { 12'000'000'000, 0 });
    REQUIRE(detailsOf(old));
    REQUIRE(detailsOf(late));
    CHECK(detailsOf(old)->modified == Timestamp(std::chrono::seconds(-1'000'000)));
    // A file system may cut the date itself.
    CHECK(detailsOf(late)->modified > Timestamp(std::chrono::seconds(2'000'000'000)));
}

TEST_CASE(
    "a pipe, a socket, a link and a folder have details of their own kind, and none is opened")
{
    TemporaryFolder const folder;
    auto const pipe = folder.url().child("pipe.jpg");
    auto const socket = folder.url().child("socket.jpg");
    auto const link = folder.url().child("link.jpg");
    auto const inner = folder.url().child("folder.jpg");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    REQUIRE(::mknod(socket.cString(), S_IFSOCK | 0600, 0) == 0);
    REQUIRE(::symlink("nowhere", link.cString()) == 0);
    REQUIRE(::mkdir(inner.cString(), 0700) == 0);
    std::vector<FileUrl> const all { pipe, socket, link, inner };
    auto const details = files.details(all);
    REQUIRE(details.size() == 4);
    CHECK(details[0]->kind == EntryKind::other);
    CHECK(details[1]->kind == EntryKind::other);
    CHECK(details[2]->kind == EntryKind::link);
    CHECK(details[3]->kind == EntryKind::folder);
}

TEST_CASE("a device is neither file nor folder")
{
    auto const details = detailsOf(FileUrl("/dev/null"));
    REQUIRE(details);
    CHECK(details->kind == EntryKind::other);
}

TEST_CASE("a file that has vanished has no details, the others have")
{
    TemporaryFolder const folder;
    std::vector<FileUrl> const all { folder.file("a", "1"), folder.file("b", "22"),
        folder.file("c", "333"), folder.url().child("gone/d"), FileUrl(), FileUrl("relative") };
    std::filesystem::remove(all[1].cString());
    auto const details = files.details(all);
    REQUIRE(details.size() == 6);
    CHECK(details[0]->size == 1);
    CHECK_FALSE(details[1]);
    CHECK(details[2]->size == 3);
    CHECK_FALSE(details[3]);
    CHECK_FALSE(details[4]);
    CHECK_FALSE(details[5]);
}

TEST_CASE("the answers for many files come in the order of the question")
{
    TemporaryFolder const folder;
    for (char const* const sub : { "x", "y", "z" })
        std::filesystem::create_directory(folder.url().child(sub).cString());
    std::vector<FileUrl> all;
    for (std::size_t i = 0; i < 3000; ++i) {
        auto const sub = std::string(1, static_cast<char>('x' + i % 3)) + "/";
        all.push_back(folder.file(sub + std::to_string(i), std::string(i % 97, '.')));
    }
    auto const details = files.details(all);
    REQUIRE(details.size() == all.size());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < details.size(); ++i)
        wrong += !details[i] || details[i]->size != static_cast<std::int64_t>(i % 97);
    CHECK(wrong == 0);
}

TEST_CASE("paths near PATH_MAX and beyond it work")
{
    for (std::size_t const length :
        { PATH_MAX - 220U, PATH_MAX - 20U, PATH_MAX + 700U, 3U * PATH_MAX }) {
        CAPTURE(length);
        TemporaryFolder const top;
        auto const file = makeDeepFile(top.url(), length, "photo.jpg");
        CHECK(listed(file.parent()).contains("photo.jpg"));
        REQUIRE(detailsOf(file));
        CHECK(detailsOf(file)->kind == EntryKind::file);
        CHECK(files.exists(file));
        CHECK_FALSE(files.isFolder(file));
        CHECK(files.isFolder(file.parent()));
        CHECK_FALSE(files.exists(file.parent().child("other.jpg")));
    }
}

TEST_CASE("a path with a name longer than any file's leads nowhere")
{
    FileUrl const endless("/" + std::string(2 * PATH_MAX, 'n'));
    CHECK_FALSE(canList(endless));
    CHECK_FALSE(files.exists(endless));
    CHECK_FALSE(files.isFolder(endless.child("x")));
    CHECK_FALSE(detailsOf(endless.child("x")));
}

TEST_CASE("links are followed to tell whether something is there")
{
    TemporaryFolder const folder;
    auto const link = folder.url().child("link");
    auto const broken = folder.url().child("broken");
    REQUIRE(::symlink(".", link.cString()) == 0);
    REQUIRE(::symlink("nowhere", broken.cString()) == 0);
    CHECK(files.isFolder(link));
    CHECK(files.exists(link));
    CHECK_FALSE(files.exists(broken));
    CHECK_FALSE(files.exists(FileUrl()));
}

namespace {

// How many of 300 files the calling thread looks at when it has to wait for the first `slow`.
int looksOfItsOwn(std::vector<FileUrl> const& photos, int slow)
{
    auto const wait = [] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); };
    SystemCallFaults const disk({ { "statx", Fault::none, 1, slow, wait } });
    auto const found = files.details(photos);
    CHECK(std::ranges::all_of(found, [](auto const& each) { return each.has_value(); }));
    return disk.calls("statx");
}

} // namespace

TEST_CASE("files that have to be waited for are looked at by other threads, many at once")
{
    TemporaryFolder const folder;
    std::vector<FileUrl> photos;
    for (int i = 0; i < 300; ++i)
        photos.push_back(folder.file(std::to_string(i) + ".jpg"));
    CHECK(looksOfItsOwn(photos, 8) == 8);
    CHECK(looksOfItsOwn(photos, 4) == 8);
    // These are in memory. Looks may still take long when others want the processors.
    int most = 0;
    for (int turn = 0; turn < 20 && most < 300; ++turn)
        most = std::max(most, looksOfItsOwn(photos, 3));
    CHECK(most == 300);
}
