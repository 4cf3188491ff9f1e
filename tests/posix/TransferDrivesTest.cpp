#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

CancelFlag const never;

// Three file systems; a machine may lack some of their kinds.
struct Drives {
    TemporaryFolder folder;
    FileUrl home = makeFolder(folder.url().child("home"));
    FileUrl memory = folder.url().child("memory");
    FileUrl ext4 = folder.url().child("ext4");
    FileUrl btrfs = folder.url().child("btrfs");
    PosixFileOperations files { folder.url().child("Trash") };
    std::vector<FileUrl> all { home };

    Drives()
    {
        REQUIRE(mountMemory(memory, "size=4m"));
        all.push_back(memory);
        if (mountImage(ext4, folder.url().child("ext4.img"), "mkfs.ext4 -q -m 0", "6m"))
            all.push_back(ext4);
        else
            MESSAGE("no ext4 here");
        if (mountImage(btrfs, folder.url().child("btrfs.img"), "mkfs.btrfs -q", "128m"))
            all.push_back(btrfs);
        else
            MESSAGE("no btrfs here");
    }
    ~Drives()
    {
        for (auto const& drive : all)
            ::umount2(drive.cString(), MNT_DETACH);
    }

    FileUrl photo(FileUrl const& drive, std::string_view bytes = "bytes") const
    {
        return folder.file(std::string(drive.name()) + "/a.jpg", bytes);
    }
};

template <typename Work> void onDrives(Work work)
{
    if (!withPrivateMounts([&] {
            Drives drives;
            work(drives);
        }))
        MESSAGE("skipped: this user may not mount file systems");
}

// What setfacl -m u:12345:r writes for a file of mode 0640, as in linux/posix_acl_xattr.h.
constexpr std::array<unsigned char, 44> accessList { 2, 0, 0, 0, //
    1, 0, 6, 0, 255, 255, 255, 255, // the owner: read and write
    2, 0, 4, 0, 0x39, 0x30, 0, 0, // user 12345: read
    4, 0, 4, 0, 255, 255, 255, 255, // the group: read
    16, 0, 4, 0, 255, 255, 255, 255, // at most: read
    32, 0, 0, 0, 255, 255, 255, 255 }; // others: nothing
char const* const accessListName = "system.posix_acl_access";

void setImmutable(FileUrl const& file, bool on)
{
    int const descriptor = ::open(file.cString(), O_RDONLY);
    int const flags = on ? FS_IMMUTABLE_FL : 0;
    REQUIRE(::ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0);
    ::close(descriptor);
}

} // namespace

TEST_CASE("between any two file systems a moved photo keeps bytes, dates, mode and attributes")
{
    onDrives([](Drives& drives) {
        for (auto const& from : drives.all)
            for (auto const& to : drives.all) {
                CAPTURE(from.name());
                CAPTURE(to.name());
                auto const bytes = std::string(300'001, 'p') + std::string(from.name());
                auto const photo = drives.photo(from, bytes);
                bool const hasAttributes
                    = ::setxattr(photo.cString(), "user.rating", "5", 1, 0) == 0;
                bool const hasList = ::setxattr(photo.cString(), accessListName, accessList.data(),
                                         accessList.size(), 0)
                    == 0;
                REQUIRE(::chown(photo.cString(), 1234, 2345) == 0);
                REQUIRE(::chmod(photo.cString(), 0640) == 0);
                timespec const times[] = { { 1'600'000'000, 1 }, { 1'500'000'000, 123'456'789 } };
                REQUIRE(::utimensat(AT_FDCWD, photo.cString(), times, 0) == 0);

                auto const moved = to.child("moved.jpg");
                REQUIRE(drives.files.move(photo, moved, never) == FileOutcome::done);
                CHECK_FALSE(isTaken(photo));
                CHECK(bytesOf(moved) == bytes);
                auto const status = statusOf(moved);
                CHECK(status.st_mtim.tv_sec == 1'500'000'000);
                CHECK(status.st_mtim.tv_nsec == 123'456'789);
                CHECK((status.st_mode & 07777) == 0640);
                CHECK(status.st_uid == 1234);
                CHECK(status.st_gid == 2345);
                char rating = 0;
                if (hasAttributes && ::setxattr(moved.cString(), "user.other", "1", 1, 0) == 0) {
                    CHECK(::getxattr(moved.cString(), "user.rating", &rating, 1) == 1);
                    CHECK(rating == '5');
                }
                std::array<unsigned char, 64> list {};
                if (hasList) {
                    CHECK(::getxattr(moved.cString(), accessListName, list.data(), list.size())
                        == static_cast<ssize_t>(accessList.size()));
                    CHECK(std::equal(accessList.begin(), accessList.end(), list.begin()));
                }
                REQUIRE(::unlink(moved.cString()) == 0);
            }
    });
}

TEST_CASE("a photo too large for the target stays, and nothing of it is on the target")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo(drives.home, std::string(9'000'000, 'p'));
        for (auto const& to : drives.all) {
            if (to == drives.home || to == drives.btrfs)
                continue;
            CAPTURE(to.name());
            auto const before = namesIn(to);
            CHECK(drives.files.move(photo, to.child("b.jpg"), never) == FileOutcome::failed);
            CHECK(drives.files.copy(photo, to.child("b.jpg"), never) == FileOutcome::failed);
            CHECK(namesIn(to) == before);
            CHECK(statusOf(photo).st_size == 9'000'000);
        }
    });
}

TEST_CASE("a target that cannot be written to gets nothing and takes nothing away")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo(drives.home);
        REQUIRE(mountReadOnly(drives.memory));
        CHECK(drives.files.move(photo, drives.memory.child("b"), never) == FileOutcome::failed);
        CHECK(drives.files.copy(photo, drives.memory.child("b"), never) == FileOutcome::failed);
        CHECK(bytesOf(photo) == "bytes");
    });
}

TEST_CASE("a photo that cannot be removed is not moved, and its copy goes again")
{
    onDrives([](Drives& drives) {
        auto const onMemory = drives.photo(drives.memory);
        REQUIRE(mountReadOnly(drives.memory));
        auto const target = drives.home.child("b.jpg");
        CHECK(drives.files.move(onMemory, target, never) == FileOutcome::failed);
        CHECK_FALSE(isTaken(target));
        CHECK(drives.files.copy(onMemory, target, never) == FileOutcome::done);
        CHECK(bytesOf(target) == "bytes");
        if (drives.all.size() < 3 || drives.all[2] != drives.ext4)
            return;
        auto const photo = drives.photo(drives.ext4);
        setImmutable(photo, true);
        auto const other = drives.home.child("c.jpg");
        CHECK(drives.files.move(photo, other, never) == FileOutcome::failed);
        CHECK_FALSE(isTaken(other));
        setImmutable(photo, false);
        CHECK(drives.files.move(photo, other, never) == FileOutcome::done);
        CHECK(bytesOf(other) == "bytes");
    });
}

TEST_CASE("between file systems nothing is replaced either")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo(drives.home, "source");
        auto const there = drives.photo(drives.memory, "there");
        auto const link = drives.memory.child("link.jpg");
        REQUIRE(::symlink("nowhere", link.cString()) == 0);
        for (auto const& destination : { there, link })
            CHECK(drives.files.move(photo, destination, never) == FileOutcome::taken);
        CHECK(bytesOf(photo) == "source");
        CHECK(bytesOf(there) == "there");
        CHECK(namesIn(drives.memory).size() == 2);
    });
}

TEST_CASE("a link is moved to another file system as a link")
{
    onDrives([](Drives& drives) {
        auto const link = drives.home.child("link.jpg");
        REQUIRE(::symlink("target.jpg", link.cString()) == 0);
        auto const moved = drives.memory.child("link.jpg");
        CHECK(drives.files.move(link, moved, never) == FileOutcome::done);
        CHECK_FALSE(isTaken(link));
        char target[32] = "";
        CHECK(::readlink(moved.cString(), target, sizeof target - 1) == 10);
    });
}

TEST_CASE("a move to another file system that is no longer wanted changes nothing")
{
    onDrives([](Drives& drives) {
        CancelFlag cancel;
        cancel.set();
        auto const photo = drives.photo(drives.home);
        auto const moved = drives.memory.child("a.jpg");
        CHECK(drives.files.move(photo, moved, cancel) == FileOutcome::cancelled);
        CHECK(bytesOf(photo) == "bytes");
        CHECK(namesIn(drives.memory).empty());
    });
}
