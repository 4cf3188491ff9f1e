// What other programs find in the trash, and whether each side brings back what the other trashed.
#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <cstdio>
#include <cstdlib>
#include <doctest/doctest.h>
#include <memory>
#include <sys/mount.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

struct Home {
    TemporaryFolder folder;
    FileUrl photos = makeFolder(folder.url().child("photos"));
    FileUrl trash = makeFolder(folder.url().child("data")).child("Trash");
    PosixFileOperations files { trash };

    Home()
    {
        makeFolder(folder.url().child("run"));
        ::chmod(folder.url().child("run").cString(), 0700);
    }

    FileUrl photo(std::string_view name) const
    {
        return folder.file("photos/" + std::string(name), "bytes of " + std::string(name));
    }

    // What a shell command prints, with this home and a message bus of its own.
    std::string output(std::string const& command) const
    {
        std::string const home(folder.url().path());
        auto const all = "env -i PATH=\"$PATH\" LC_ALL=C.UTF-8 GVFS_DISABLE_FUSE=1 HOME='" + home
            + "' XDG_DATA_HOME='" + home + "/data' XDG_RUNTIME_DIR='" + home
            + "/run' timeout 60 dbus-run-session -- sh -c '" + command + "' 2>/dev/null";
        std::unique_ptr<FILE, int (*)(FILE*)> const pipe(::popen(all.c_str(), "r"), ::pclose);
        REQUIRE(pipe);
        std::string text;
        char buffer[4096];
        for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe.get())) > 0;)
            text.append(buffer, got);
        return text;
    }
};

bool hasPrograms(char const* names)
{
    auto const command = "for name in dbus-run-session " + std::string(names)
        + "; do command -v \"$name\" >/dev/null || exit 1; done";
    if (std::system(command.c_str()) == 0)
        return true;
    MESSAGE("skipped: not all of these are installed: ", names);
    return false;
}

bool mentions(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

std::string const difficultName = "50% gr\xC3\xBC\xC3\x9F #1?.jpg";
char const* const difficultNameAsGioWrites = "/50% gr\\xc3\\xbc\\xc3\\x9f #1?.jpg";

} // namespace

TEST_CASE("gio lists what was trashed here, with the place it came from, until it is restored")
{
    if (!hasPrograms("gio"))
        return;
    Home home;
    auto const photo = home.photo(difficultName);
    auto const plain = home.photo("plain.jpg");
    auto const trashed = home.files.trash(photo);
    REQUIRE(trashed);
    REQUIRE(home.files.trash(plain));
    auto const listed = home.output("gio list trash://; gio trash --list");
    CHECK(mentions(listed, difficultName + "\n"));
    CHECK(mentions(listed, "plain.jpg\n"));
    auto const asGioWrites = std::string(home.photos.path()) + difficultNameAsGioWrites;
    CHECK(mentions(listed, "\t" + asGioWrites + "\n"));
    CHECK(mentions(listed, "\t" + std::string(plain.path()) + "\n"));
    CHECK(home.files.restore(*trashed, photo));
    auto const rest = home.output("gio trash --list");
    CHECK_FALSE(mentions(rest, asGioWrites));
    CHECK(mentions(rest, std::string(plain.path())));
}

TEST_CASE("gio brings back what was trashed here")
{
    if (!hasPrograms("gio"))
        return;
    Home home;
    auto const photo = home.photo("a b.jpg");
    REQUIRE(home.files.trash(photo));
    static_cast<void>(home.output("gio trash --restore trash:///a%20b.jpg"));
    CHECK(bytesOf(photo) == "bytes of a b.jpg");
    CHECK(namesIn(home.trash.child("info")).empty());
}

TEST_CASE("what gio trashed is brought back here, and gio forgets it")
{
    if (!hasPrograms("gio"))
        return;
    Home home;
    auto const photo = home.photo("a b.jpg");
    static_cast<void>(home.output("gio trash \"" + std::string(photo.path()) + "\""));
    REQUIRE_FALSE(isTaken(photo));
    CHECK(home.files.restore(home.trash.child("files").child("a b.jpg"), photo));
    CHECK(bytesOf(photo) == "bytes of a b.jpg");
    CHECK(home.output("gio trash --list") == "");
}

TEST_CASE("trash-list and trash-restore know what was trashed here")
{
    if (!hasPrograms("trash-list trash-restore"))
        return;
    Home home;
    auto const photo = home.photo(difficultName);
    auto const same = home.photo("same.jpg");
    REQUIRE(home.files.trash(photo));
    REQUIRE(home.files.trash(same));
    REQUIRE(home.files.trash(home.photo("same.jpg")));
    auto const listed = home.output("trash-list");
    CHECK(mentions(listed, " " + std::string(photo.path()) + "\n"));
    CHECK(listed.find(same.path()) != listed.rfind(same.path()));
    static_cast<void>(home.output("cd \"" + std::string(home.photos.path())
        + "\" && trash-restore \"" + std::string(photo.path()) + "\" <<END\n0\nEND\n"));
    CHECK(bytesOf(photo) == "bytes of " + difficultName);
    CHECK(namesIn(home.trash.child("files")).size() == 2);
    CHECK(namesIn(home.trash.child("info")).size() == 2);
}

TEST_CASE("trash-list finds the trash of another drive")
{
    if (!hasPrograms("trash-list"))
        return;
    bool hasDrive = false;
    static_cast<void>(withPrivateMounts([&] {
        Home home;
        auto const drive = home.folder.url().child("drive");
        hasDrive = mountImage(drive, home.folder.url().child("image"), "mkfs.ext4 -q -m 0", "6m");
        if (!hasDrive)
            return;
        auto const photos = makeFolder(drive.child("my photos"));
        auto const photo = home.folder.file("drive/my photos/" + difficultName, "bytes");
        auto const trashed = home.files.trash(photo);
        REQUIRE(trashed);
        CHECK(trashed->isWithin(drive));
        CHECK(mentions(home.output("trash-list"), " " + std::string(photo.path()) + "\n"));
        CHECK(home.files.restore(*trashed, photo));
        CHECK_FALSE(mentions(home.output("trash-list"), std::string(photo.path())));
        ::umount2(drive.cString(), MNT_DETACH);
    }));
    if (!hasDrive)
        MESSAGE("skipped: this user may not mount file systems, or there is no ext4");
}
