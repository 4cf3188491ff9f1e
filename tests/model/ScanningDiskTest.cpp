#include "codecs/CodecImageTypes.h"
#include "icu/IcuTextOrder.h"
#include "model/PhotoTest.h"
#include "model/Scanning.h"
#include "posix/PosixFileSystem.h"
#include "support/DeepFolder.h"
#include "support/OtherUser.h"
#include "support/TemporaryFolder.h"
#include <algorithm>
#include <array>
#include <climits>
#include <doctest/doctest.h>
#include <filesystem>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

struct Disk {
    TemporaryFolder folder;
    PosixFileSystem files;
    CodecImageTypes types;
    PhotoTest photoTest { types };
    IcuTextOrder order { "de_DE" };
    ScanTools tools { files, photoTest, order };

    void makeFolder(std::string_view name) const
    {
        std::filesystem::create_directories(folder.url().child(name).cString());
    }

    /// Paths below the folder.
    std::set<std::string> scan(bool recursive) const
    {
        std::set<std::string> found;
        for (auto const& item : scanFolder(tools, folder.url(), recursive))
            found.emplace(item.url.path().substr(folder.url().path().size() + 1));
        return found;
    }
};

using Found = std::set<std::string>;

// Removes a file between the listing and the look at it.
class VanishingFile final : public FileSystem {
public:
    VanishingFile(FileSystem const& files, FileUrl const& victim)
        : files_(files)
        , victim_(victim)
    {
    }
    bool list(FileUrl const& folder, EntryVisitor const& visit) const override
    {
        return files_.list(folder, visit);
    }
    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> urls) const override
    {
        std::filesystem::remove(victim_.cString());
        return files_.details(urls);
    }
    bool isFolder(FileUrl const& url) const override { return files_.isFolder(url); }
    bool exists(FileUrl const& url) const override { return files_.exists(url); }

private:
    FileSystem const& files_;
    FileUrl victim_;
};

} // namespace

TEST_CASE("a folder on the disk yields its photos with date and size")
{
    Disk const disk;
    disk.folder.file("b.JPG", "12345");
    disk.folder.file("notes.txt");
    disk.makeFolder("holiday.jpg");
    auto const items = scanFolder(disk.tools, disk.folder.url(), false);
    REQUIRE(items.size() == 1);
    CHECK(items[0].name() == "b.JPG");
    CHECK(items[0].size == 5);
    CHECK(items[0].date > Timestamp(std::chrono::seconds(1'600'000'000)));
}

TEST_CASE("a pipe, a device and links named like photos are left alone")
{
    Disk const disk;
    auto const& top = disk.folder.url();
    disk.folder.file("a.jpg");
    REQUIRE(::mkfifo(top.child("pipe.jpg").cString(), 0600) == 0);
    REQUIRE(::symlink("a.jpg", top.child("link.jpg").cString()) == 0);
    REQUIRE(::symlink("nowhere", top.child("broken.jpg").cString()) == 0);
    if (::mknod(top.child("device.jpg").cString(), S_IFCHR | 0600, makedev(1, 5)) != 0)
        MESSAGE("no right to make a device here; checked without one");
    CHECK(disk.scan(false) == Found { "a.jpg" });
    CHECK(disk.scan(true) == Found { "a.jpg" });
}

TEST_CASE("a link back to a folder above does not make a scan go round")
{
    Disk const disk;
    disk.makeFolder("sub/inner");
    disk.folder.file("sub/inner/a.jpg");
    REQUIRE(::symlink("../..", disk.folder.url().child("sub/inner/loop").cString()) == 0);
    CHECK(disk.scan(true) == Found { "sub/inner/a.jpg" });
}

TEST_CASE("a name that is not UTF-8 is a photo like any other")
{
    Disk const disk;
    disk.folder.file("caf\xE9.jpg");
    disk.folder.file("cafe.jpg");
    auto result = scanFolders(disk.tools, std::array { disk.folder.url() }, false);
    auto const visible
        = result.index.visible(result.items, disk.order, "CAF\xFF", SortKey::name, true);
    REQUIRE(visible.size() == 1);
    CHECK(visible[0].name() == "caf\xE9.jpg");
}

TEST_CASE("photos deeper than PATH_MAX are found")
{
    Disk const disk;
    auto const file = makeDeepFile(disk.folder.url(), PATH_MAX + 500, "photo.jpg");
    auto const items = scanFolder(disk.tools, disk.folder.url(), true);
    REQUIRE(items.size() == 1);
    CHECK(items[0].url == file);
}

TEST_CASE("an unreadable subfolder costs only its own photos")
{
    Disk const disk;
    disk.makeFolder("locked");
    disk.makeFolder("open");
    disk.folder.file("locked/a.jpg");
    disk.folder.file("open/b.jpg");
    ::chmod(disk.folder.url().cString(), 0755);
    ::chmod(disk.folder.url().child("locked").cString(), 0000);
    Found found;
    Found foundInLocked { "unset" };
    withoutRights([&] {
        found = disk.scan(true);
        auto const items = scanFolder(disk.tools, disk.folder.url().child("locked"), false);
        foundInLocked.clear();
        for (auto const& item : items)
            foundInLocked.emplace(item.name());
    });
    ::chmod(disk.folder.url().child("locked").cString(), 0700);
    CHECK(found == Found { "open/b.jpg" });
    CHECK(foundInLocked.empty());
}

TEST_CASE("a file that goes between listing and looking is left out")
{
    Disk const disk;
    disk.folder.file("a.jpg");
    disk.folder.file("c.jpg");
    VanishingFile const files(disk.files, disk.folder.file("b.jpg"));
    auto result = scanFolders(
        { files, disk.tools.photoTest, disk.order }, std::array { disk.folder.url() }, false);
    CHECK(result.items.size() == 2);
    CHECK(result.index.size() == 2);
    auto const visible = result.index.visible(result.items, disk.order, "", SortKey::name, true);
    CHECK(visible.front().name() == "a.jpg");
    CHECK(visible.back().name() == "c.jpg");
}

TEST_CASE("a folder with many photos comes back whole and in natural order")
{
    Disk const disk;
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i)
        disk.folder.file("IMG_" + std::to_string(i * 7919 % count) + ".jpg");
    auto result = scanFolders(disk.tools, std::array { disk.folder.url() }, false);
    auto const visible = result.index.visible(result.items, disk.order, "", SortKey::name, true);
    REQUIRE(visible.size() == count);
    int wrong = 0;
    for (int i = 0; i < count; ++i)
        wrong += visible[static_cast<std::size_t>(i)].name() != "IMG_" + std::to_string(i) + ".jpg";
    CHECK(wrong == 0);
}
