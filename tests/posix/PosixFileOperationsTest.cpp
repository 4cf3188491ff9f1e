#include "posix/PosixFileOperations.h"
#include "support/DeepFolder.h"
#include "support/FileBytes.h"
#include "support/OtherUser.h"
#include "support/TemporaryFolder.h"
#include <climits>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

CancelFlag const never;

struct Folders {
    TemporaryFolder top;
    FileUrl from = makeFolder(top.url().child("from"));
    FileUrl to = makeFolder(top.url().child("to"));
    PosixFileOperations files { top.url().child("Trash") };

    FileUrl photo(std::string_view name, std::string_view bytes = "bytes") const
    {
        return top.file("from/" + std::string(name), bytes);
    }
};

// More than one chunk, and no two parts alike.
std::string manyBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    unsigned state = 1;
    for (auto& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

} // namespace

TEST_CASE("moving within a file system keeps the very file")
{
    Folders folders;
    auto const photo = folders.photo("a.jpg");
    auto const inode = statusOf(photo).st_ino;
    CHECK(folders.files.move(photo, folders.to.child("b.jpg"), never) == FileOutcome::done);
    CHECK_FALSE(isTaken(photo));
    CHECK(statusOf(folders.to.child("b.jpg")).st_ino == inode);
}

TEST_CASE("neither moving nor copying replaces what lies at the destination")
{
    Folders folders;
    auto const photo = folders.photo("a.jpg", "source");
    auto const file = folders.top.file("to/file.jpg", "there");
    auto const folder = makeFolder(folders.to.child("folder.jpg"));
    auto const link = folders.to.child("link.jpg");
    REQUIRE(::symlink("nowhere", link.cString()) == 0);
    for (auto const& destination : { file, folder, link, photo }) {
        CAPTURE(destination.path());
        auto const before = statusOf(destination);
        CHECK(folders.files.move(photo, destination, never) == FileOutcome::taken);
        CHECK(folders.files.copy(photo, destination, never) == FileOutcome::taken);
        CHECK(statusOf(destination).st_ino == before.st_ino);
    }
    CHECK(bytesOf(photo) == "source");
    CHECK(bytesOf(file) == "there");
    CHECK(namesIn(folders.to).size() == 3);
}

TEST_CASE("a copy has the bytes, dates, mode and extended attributes of its source")
{
    Folders folders;
    auto const bytes = manyBytes(20'000'001);
    auto const photo = folders.photo("a.jpg", bytes);
    timespec const times[] = { { 1'600'000'000, 1 }, { 1'500'000'000, 123'456'789 } };
    REQUIRE(::setxattr(photo.cString(), "user.rating", "5\0x", 3, 0) == 0);
    REQUIRE(::setxattr(photo.cString(), "user.empty", "", 0, 0) == 0);
    REQUIRE(::chmod(photo.cString(), 0451) == 0);
    REQUIRE(::utimensat(AT_FDCWD, photo.cString(), times, 0) == 0);

    auto const copy = folders.to.child("copy.jpg");
    REQUIRE(folders.files.copy(photo, copy, never) == FileOutcome::done);
    CHECK(bytesOf(copy) == bytes);
    CHECK(bytesOf(photo) == bytes);
    auto const status = statusOf(copy);
    CHECK(status.st_mtim.tv_sec == 1'500'000'000);
    CHECK(status.st_mtim.tv_nsec == 123'456'789);
    CHECK((status.st_mode & 07777) == 0451);
    char value[8] = "";
    CHECK(::getxattr(copy.cString(), "user.rating", value, sizeof value) == 3);
    CHECK(std::string(value, 3) == std::string("5\0x", 3));
    CHECK(::getxattr(copy.cString(), "user.empty", value, sizeof value) == 0);
    CHECK(namesIn(folders.to).size() == 1);
}

TEST_CASE("an empty file and a copy beside the source are copied, too")
{
    Folders folders;
    auto const photo = folders.photo("a.jpg", "");
    auto const copy = folders.from.child("a 2.jpg");
    CHECK(folders.files.copy(photo, copy, never) == FileOutcome::done);
    CHECK(isTaken(copy));
    CHECK(statusOf(copy).st_ino != statusOf(photo).st_ino);
}

TEST_CASE("a link is moved and copied as a link")
{
    Folders folders;
    auto const link = folders.from.child("link.jpg");
    REQUIRE(::symlink("target.jpg", link.cString()) == 0);
    timespec const times[] = { { 5, 0 }, { 1'500'000'000, 7 } };
    REQUIRE(::utimensat(AT_FDCWD, link.cString(), times, AT_SYMLINK_NOFOLLOW) == 0);
    auto const copy = folders.to.child("copy.jpg");
    auto const moved = folders.to.child("moved.jpg");
    CHECK(folders.files.copy(link, copy, never) == FileOutcome::done);
    CHECK(folders.files.move(link, moved, never) == FileOutcome::done);
    for (auto const& file : { copy, moved }) {
        char target[32] = "";
        CHECK(::readlink(file.cString(), target, sizeof target - 1) == 10);
        CHECK(std::string(target) == "target.jpg");
        CHECK(statusOf(file).st_mtim.tv_sec == 1'500'000'000);
    }
    CHECK_FALSE(isTaken(link));
}

TEST_CASE("a file that vanished, a pipe, a folder or no file at all cannot be copied")
{
    Folders folders;
    auto const pipe = folders.from.child("pipe.jpg");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    for (auto const& file : { folders.from.child("gone.jpg"), pipe, folders.from, FileUrl(),
             FileUrl("/"), folders.from.child(".."), folders.from.child("gone").child("a") }) {
        CAPTURE(file.path());
        CHECK(folders.files.copy(file, folders.to.child("b"), never) == FileOutcome::failed);
    }
    CHECK(folders.files.move(folders.from.child("gone.jpg"), folders.to.child("b"), never)
        == FileOutcome::failed);
    CHECK(namesIn(folders.to).empty());
}

TEST_CASE("into a folder that is not there or may not be changed nothing goes")
{
    Folders folders;
    auto const photo = folders.photo("a.jpg");
    auto const nowhere = folders.top.url().child("gone").child("a.jpg");
    CHECK(folders.files.copy(photo, nowhere, never) == FileOutcome::failed);
    CHECK(folders.files.move(photo, nowhere, never) == FileOutcome::failed);
    auto const locked = folders.to.child("a.jpg");
    for (auto const& folder : { folders.top.url(), folders.from })
        REQUIRE(::chmod(folder.cString(), 0777) == 0);
    REQUIRE(::chmod(folders.to.cString(), 0555) == 0);
    auto copied = FileOutcome::done;
    auto moved = FileOutcome::done;
    withoutRights([&] {
        copied = folders.files.copy(photo, locked, never);
        moved = folders.files.move(photo, locked, never);
    });
    CHECK(copied == FileOutcome::failed);
    CHECK(moved == FileOutcome::failed);
    CHECK(bytesOf(photo) == "bytes");
    CHECK(namesIn(folders.to).empty());
}

TEST_CASE("a copy that is no longer wanted leaves nothing")
{
    Folders folders;
    CancelFlag cancel;
    cancel.set();
    auto const photo = folders.photo("a.jpg");
    auto const copy = folders.to.child("a.jpg");
    CHECK(folders.files.copy(photo, copy, cancel) == FileOutcome::cancelled);
    CHECK(namesIn(folders.to).empty());
    CHECK(bytesOf(photo) == "bytes");
}

TEST_CASE("paths longer than any system call takes are moved and copied")
{
    Folders folders;
    auto const deep = makeDeepFile(folders.from, PATH_MAX + 500, "deep.jpg");
    auto const copy = deep.parent().child("copy.jpg");
    CHECK(folders.files.copy(deep, copy, never) == FileOutcome::done);
    CHECK(folders.files.move(copy, folders.to.child("copy.jpg"), never) == FileOutcome::done);
    CHECK(folders.files.move(folders.to.child("copy.jpg"), copy, never) == FileOutcome::done);
    CHECK(folders.files.copy(deep, copy, never) == FileOutcome::taken);
}
