#include "posix/PosixFileOperations.h"
#include "support/DeepFolder.h"
#include "support/FileBytes.h"
#include "support/OtherUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <climits>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

std::string const user = std::to_string(::geteuid());

// A home, and another drive with photos on it.
struct Drives {
    TemporaryFolder folder;
    FileUrl trash = folder.url().child("home").child("Trash");
    FileUrl drive = folder.url().child("drive");
    FileUrl photos = drive.child("my photos");
    FileUrl ownTrash = drive.child(".Trash-" + user);
    FileUrl sharedTrash = drive.child(".Trash");
    PosixFileOperations files { trash };

    explicit Drives(char const* options = "size=16m,mode=755")
    {
        REQUIRE(mountMemory(drive, options));
        makeFolder(photos);
    }
    // The mount must go before its folder can.
    ~Drives() { ::umount2(drive.cString(), MNT_DETACH); }

    FileUrl photo(std::string_view name, std::string_view bytes = "bytes") const
    {
        return folder.file("drive/my photos/" + std::string(name), bytes);
    }
};

bool mentions(FileUrl const& trash, std::string const& name, std::string const& path)
{
    auto const info = trash.child("info").child(name + ".trashinfo");
    return bytesOf(info).starts_with("[Trash Info]\nPath=" + path + "\nDeletionDate=");
}

template <typename Work> void onDrives(Work work)
{
    if (!withPrivateMounts([&] {
            Drives drives;
            work(drives);
        }))
        MESSAGE("skipped: this user may not mount file systems");
}

} // namespace

TEST_CASE("a photo on another drive goes to the trash at the drive's top, with a relative path")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo("a.jpg", "picture");
        auto const inode = statusOf(photo).st_ino;
        auto const trashed = drives.files.trash(photo);
        CHECK(trashed == drives.ownTrash.child("files").child("a.jpg"));
        CHECK(mentions(drives.ownTrash, "a.jpg", "my%20photos/a.jpg"));
        CHECK((statusOf(drives.ownTrash).st_mode & 07777) == 0700);
        CHECK_FALSE(isTaken(drives.trash));
        CHECK_FALSE(isTaken(photo));
        REQUIRE(trashed);
        CHECK(statusOf(*trashed).st_ino == inode);
        CHECK(drives.files.restore(*trashed, photo));
        CHECK(bytesOf(photo) == "picture");
        CHECK(namesIn(drives.ownTrash.child("info")).empty());
    });
}

TEST_CASE("a photo at the top of its drive is trashed there")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.folder.file("drive/top.jpg", "picture");
        CHECK(drives.files.trash(photo) == drives.ownTrash.child("files").child("top.jpg"));
        CHECK(mentions(drives.ownTrash, "top.jpg", "top.jpg"));
    });
}

TEST_CASE("a photo reached through a link is trashed on the drive where it lies")
{
    onDrives([](Drives& drives) {
        drives.photo("a.jpg");
        auto const link = drives.folder.url().child("link");
        REQUIRE(::symlink(drives.photos.cString(), link.cString()) == 0);
        auto const trashed = drives.files.trash(link.child("a.jpg"));
        CHECK(trashed == drives.ownTrash.child("files").child("a.jpg"));
        CHECK(mentions(drives.ownTrash, "a.jpg", "my%20photos/a.jpg"));
        CHECK(drives.files.restore(*trashed, link.child("a.jpg")));
    });
}

TEST_CASE("a photo of another drive that was reached through a link comes back through it")
{
    onDrives([](Drives& drives) {
        drives.photo("a.jpg", "picture");
        auto const link = drives.folder.url().child("link");
        REQUIRE(::symlink(drives.photos.cString(), link.cString()) == 0);
        auto const trashed = drives.files.trash(link.child("a.jpg"));
        REQUIRE(trashed);
        CHECK_FALSE(drives.files.restore(*trashed, drives.drive.child("a.jpg")));
        CHECK(drives.files.restore(*trashed, link.child("a.jpg")));
        CHECK(bytesOf(drives.photos.child("a.jpg")) == "picture");
    });
}

TEST_CASE("a photo on another drive may lie deeper than any system call reaches")
{
    onDrives([](Drives& drives) {
        auto const photo = makeDeepFile(drives.photos, PATH_MAX + 300, "deep.jpg");
        CHECK(drives.files.trash(photo) == drives.ownTrash.child("files").child("deep.jpg"));
        auto const way = photo.path().substr(drives.photos.path().size());
        CHECK(mentions(drives.ownTrash, "deep.jpg", "my%20photos" + std::string(way)));
    });
}

TEST_CASE("the administrator's trash is used if it is a folder with the sticky bit")
{
    onDrives([](Drives& drives) {
        makeFolder(drives.sharedTrash);
        REQUIRE(::chmod(drives.sharedTrash.cString(), 01777) == 0);
        auto const trash = drives.sharedTrash.child(user);
        CHECK(drives.files.trash(drives.photo("a.jpg")) == trash.child("files").child("a.jpg"));
        CHECK(mentions(trash, "a.jpg", "my%20photos/a.jpg"));
        CHECK((statusOf(trash).st_mode & 07777) == 0700);
        CHECK_FALSE(isTaken(drives.ownTrash));
    });
}

TEST_CASE("an administrator's trash without the sticky bit, or that is a link, is left alone")
{
    for (bool const isLink : { false, true })
        onDrives([isLink](Drives& drives) {
            auto const real = isLink ? drives.drive.child("real") : drives.sharedTrash;
            makeFolder(real);
            REQUIRE(::chmod(real.cString(), isLink ? 01777 : 0777) == 0);
            if (isLink)
                REQUIRE(::symlink("real", drives.sharedTrash.cString()) == 0);
            CHECK(drives.files.trash(drives.photo("a.jpg"))
                == drives.ownTrash.child("files").child("a.jpg"));
            CHECK(namesIn(real).empty());
        });
}

TEST_CASE("in the administrator's trash nothing goes to somebody else's folder or a link")
{
    for (bool const isLink : { false, true })
        onDrives([isLink](Drives& drives) {
            makeFolder(drives.sharedTrash);
            REQUIRE(::chmod(drives.sharedTrash.cString(), 01777) == 0);
            auto const own = drives.sharedTrash.child(user);
            auto const elsewhere = makeFolder(drives.drive.child("elsewhere"));
            if (isLink)
                REQUIRE(::symlink("../elsewhere", own.cString()) == 0);
            else
                REQUIRE(::chown(makeFolder(own).cString(), 12345, 12345) == 0);
            CHECK(drives.files.trash(drives.photo("a.jpg"))
                == drives.ownTrash.child("files").child("a.jpg"));
            CHECK(namesIn(elsewhere).empty());
        });
}

TEST_CASE("where the own trash is a link, a file or somebody else's, the photo stays")
{
    for (int const kind : { 0, 1, 2 })
        onDrives([kind](Drives& drives) {
            CAPTURE(kind);
            auto const elsewhere = makeFolder(drives.drive.child("elsewhere"));
            if (kind == 0)
                REQUIRE(::symlink("elsewhere", drives.ownTrash.cString()) == 0);
            else if (kind == 1)
                drives.folder.file("drive/.Trash-" + user, "a file");
            else
                REQUIRE(::chown(makeFolder(drives.ownTrash).cString(), 12345, 12345) == 0);
            auto const photo = drives.photo("a.jpg");
            CHECK_FALSE(drives.files.trash(photo));
            CHECK(bytesOf(photo) == "bytes");
            CHECK(namesIn(elsewhere).empty());
        });
}

TEST_CASE("a link in place of the folders in the trash leads no photo elsewhere")
{
    for (char const* const part : { "files", "info" })
        onDrives([part](Drives& drives) {
            auto const elsewhere = makeFolder(drives.drive.child("elsewhere"));
            makeFolder(drives.ownTrash);
            REQUIRE(::symlink("../elsewhere", drives.ownTrash.child(part).cString()) == 0);
            auto const photo = drives.photo("a.jpg");
            CHECK_FALSE(drives.files.trash(photo));
            CHECK(bytesOf(photo) == "bytes");
            CHECK(namesIn(elsewhere).empty());
        });
}

TEST_CASE("a user who may not make a trash at the drive's top keeps the photo")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo("a.jpg");
        REQUIRE(::chmod(drives.folder.url().cString(), 0755) == 0);
        REQUIRE(::chmod(drives.photos.cString(), 0777) == 0);
        bool trashed = true;
        withoutRights([&] { trashed = drives.files.trash(photo).has_value(); });
        CHECK_FALSE(trashed);
        CHECK(bytesOf(photo) == "bytes");
    });
}

TEST_CASE("on a drive that cannot be written to, or is full, photos stay")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo("a.jpg");
        REQUIRE(mountReadOnly(drives.drive));
        CHECK_FALSE(drives.files.trash(photo));
        CHECK(bytesOf(photo) == "bytes");
    });
    static_cast<void>(withPrivateMounts([] {
        Drives drives("size=64k,nr_inodes=8");
        auto const photo = drives.photo("a.jpg");
        for (int i = 0; i < 5; ++i)
            drives.photo(std::to_string(i), "");
        CHECK_FALSE(drives.files.trash(photo));
        CHECK(bytesOf(photo) == "bytes");
    }));
    static_cast<void>(withPrivateMounts([] {
        Drives drives("size=16k");
        auto const photo = drives.photo("a.jpg", std::string(12000, 'x'));
        REQUIRE(drives.files.trash(drives.photo("b.jpg", "")));
        drives.photo("c.jpg", "");
        CHECK_FALSE(drives.files.trash(photo)); // its info file finds no room
        CHECK(bytesOf(photo) == std::string(12000, 'x'));
        CHECK(namesIn(drives.ownTrash.child("info")).size() == 1);
        CHECK(namesIn(drives.ownTrash.child("files")).size() == 1);
    }));
}

TEST_CASE("a folder mounted a second time is a drive of its own")
{
    onDrives([](Drives& drives) {
        auto const photo = drives.photo("a.jpg");
        auto const again = drives.folder.url().child("again");
        REQUIRE(mountAgain(drives.photos, again));
        // The home trash has the same device but cannot be reached by a rename.
        PosixFileOperations files(drives.drive.child("Trash"));
        CHECK(files.trash(again.child("a.jpg"))
            == again.child(".Trash-" + user).child("files").child("a.jpg"));
        CHECK(mentions(again.child(".Trash-" + user), "a.jpg", "a.jpg"));
        CHECK_FALSE(isTaken(drives.drive.child("Trash")));
        CHECK_FALSE(isTaken(photo));
        ::umount2(again.cString(), MNT_DETACH);
    });
}

TEST_CASE("a home trash that is a link to another drive serves that drive")
{
    onDrives([](Drives& drives) {
        auto const real = makeFolder(drives.drive.child("real"));
        makeFolder(drives.trash.parent());
        REQUIRE(::symlink(real.cString(), drives.trash.cString()) == 0);
        auto const photo = drives.photo("a.jpg");
        CHECK(drives.files.trash(photo) == drives.trash.child("files").child("a.jpg"));
        CHECK(mentions(
            real, "a.jpg", std::string(drives.photos.parent().path()) + "/my%20photos/a.jpg"));
    });
}

TEST_CASE("a photo comes back to a folder that has meanwhile become another drive")
{
    onDrives([](Drives& drives) {
        auto const home = makeFolder(drives.folder.url().child("home").child("photos"));
        auto const photo = drives.folder.file("home/photos/a.jpg", "picture");
        auto const trashed = drives.files.trash(photo);
        REQUIRE(trashed);
        REQUIRE(mountMemory(home));
        CHECK(drives.files.restore(*trashed, photo));
        CHECK(bytesOf(photo) == "picture");
        CHECK(namesIn(drives.trash.child("files")).empty());
        CHECK(namesIn(drives.trash.child("info")).empty());
        ::umount2(home.cString(), MNT_DETACH);
    });
}

TEST_CASE("a photo in a subvolume is trashed at the top of the subvolume")
{
    bool hasBtrfs = true;
    onDrives([&](Drives& drives) {
        auto const mounted = drives.folder.url().child("btrfs");
        hasBtrfs = mountImage(mounted, drives.folder.url().child("image"), "mkfs.btrfs -q", "128m")
            && std::system(
                   ("btrfs -q subvolume create '" + std::string(mounted.path()) + "/sub'").c_str())
                == 0;
        if (!hasBtrfs)
            return;
        auto const sub = mounted.child("sub");
        auto const photo = drives.folder.file("btrfs/sub/a.jpg", "picture");
        CHECK(
            drives.files.trash(photo) == sub.child(".Trash-" + user).child("files").child("a.jpg"));
        CHECK(mentions(sub.child(".Trash-" + user), "a.jpg", "a.jpg"));
        CHECK_FALSE(isTaken(mounted.child(".Trash-" + user)));
        ::umount2(mounted.cString(), MNT_DETACH);
    });
    if (!hasBtrfs)
        MESSAGE("skipped: no btrfs here");
}
