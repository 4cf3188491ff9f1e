#include "model/Scanning.h"
#include "model/PhotoTest.h"
#include "support/FakeFileSystem.h"
#include "support/FakeImageTypes.h"
#include "support/FakeTextOrder.h"
#include <chrono>
#include <doctest/doctest.h>
#include <future>
#include <string>
#include <vector>

using namespace pixelhain;

namespace {

using Paths = std::vector<std::string>;

Paths pathsOf(std::vector<PhotoItem> const& items)
{
    Paths paths;
    for (auto const& item : items)
        paths.emplace_back(item.url.path());
    return paths;
}

struct Drive {
    FakeFileSystem files;
    FakeImageTypes types;
    PhotoTest photoTest { types };
    FakeTextOrder order;
    ScanTools tools { files, photoTest, order };

    Drive& file(char const* path)
    {
        files.addFile(FileUrl(path));
        return *this;
    }
    Paths flat(char const* folder) { return pathsOf(scanFolder(tools, FileUrl(folder), false)); }
    Paths deep(char const* folder) { return pathsOf(scanFolder(tools, FileUrl(folder), true)); }
    ScanResult scan(std::vector<FileUrl> const& folders, bool recursive)
    {
        return scanFolders(tools, folders, recursive);
    }
};

// A folder that yields its many photos in no order at all.
class HugeFolder final : public FileSystem {
public:
    static constexpr std::size_t photos = 1'000'000;

    static std::string name(std::size_t number) { return "IMG_" + std::to_string(number) + ".jpg"; }

    bool list(FileUrl const&, EntryVisitor const& visit) const override
    {
        constexpr std::size_t step = 7919; // has no divisor in common with the number of photos
        for (std::size_t i = 0; i < photos; ++i)
            visit(name(i * step % photos), EntryKind::file);
        return true;
    }
    std::vector<std::optional<FileDetails>> details(std::span<FileUrl const> files) const override
    {
        return std::vector(files.size(), std::optional(FileDetails { EntryKind::file, {}, 1 }));
    }
    bool isFolder(FileUrl const&) const override { return true; }
    bool exists(FileUrl const&) const override { return true; }
};

} // namespace

TEST_CASE("a folder's photos are listed unsorted, with date and size")
{
    Drive drive;
    drive.files.addFile(FileUrl("/p/b.jpg"), 7, Timestamp(std::chrono::seconds(5)));
    drive.file("/p/a.png").file("/p/notes.txt").file("/p/drawing.svg").file("/p/sub/c.jpg");
    auto const items = scanFolder(drive.tools, FileUrl("/p"), false);
    REQUIRE(pathsOf(items) == Paths { "/p/b.jpg", "/p/a.png" });
    CHECK(items[0].name() == "b.jpg");
    CHECK(items[0].size == 7);
    CHECK(items[0].date == Timestamp(std::chrono::seconds(5)));
}

TEST_CASE("only what is a photo by its name is looked at")
{
    Drive drive;
    drive.file("/p/a.jpg").file("/p/b.txt").file("/p/.c.jpg").file("/p/d.pdf");
    drive.flat("/p");
    CHECK(drive.files.questions() == std::vector<FileUrl> { FileUrl("/p/a.jpg") });
}

TEST_CASE("a folder named holiday.jpg is not a photo")
{
    for (bool const tellsKinds : { true, false }) {
        CAPTURE(tellsKinds);
        Drive drive;
        drive.files.tellsKinds = tellsKinds;
        drive.file("/p/holiday.jpg/a.jpg").file("/p/b.jpg");
        CHECK(drive.flat("/p") == Paths { "/p/b.jpg" });
        CHECK(drive.deep("/p") == Paths { "/p/b.jpg", "/p/holiday.jpg/a.jpg" });
    }
}

TEST_CASE("a hidden file such as .hidden.jpg is never listed, hidden folders are never entered")
{
    Drive drive;
    drive.file("/p/.hidden.jpg").file("/p/.cache/a.jpg").file("/p/sub/.b.jpg").file("/p/c.jpg");
    CHECK(drive.flat("/p") == Paths { "/p/c.jpg" });
    CHECK(drive.deep("/p") == Paths { "/p/c.jpg" });
    CHECK(drive.files.listings().size() == 3);
}

TEST_CASE("a hidden folder that is asked for itself is listed")
{
    Drive drive;
    drive.file("/p/.cache/a.jpg");
    CHECK(drive.deep("/p/.cache") == Paths { "/p/.cache/a.jpg" });
}

TEST_CASE("photos inside a package are never listed in a recursive scan")
{
    for (bool const tellsKinds : { true, false }) {
        CAPTURE(tellsKinds);
        Drive drive;
        drive.files.tellsKinds = tellsKinds;
        drive.file("/p/Fotos.photoslibrary/originals/a.jpg").file("/p/x.LRDATA/b.jpg");
        drive.file("/p/sub/c.jpg");
        CHECK(drive.deep("/p") == Paths { "/p/sub/c.jpg" });
    }
}

TEST_CASE("a folder that does not exist or cannot be read yields an empty list")
{
    Drive drive;
    drive.file("/p/a.jpg").file("/p/locked/b.jpg");
    drive.files.unreadable.insert(FileUrl("/p/locked"));
    CHECK(drive.flat("/nowhere").empty());
    CHECK(drive.deep("/nowhere").empty());
    CHECK(drive.flat("/p/locked").empty());
    CHECK(drive.deep("/p/locked").empty());
    CHECK(drive.deep("/p") == Paths { "/p/a.jpg" });
    CHECK(drive.scan({}, true).items.empty());
}

TEST_CASE("links, pipes and devices with a photo's name are no photos and are not followed")
{
    for (bool const tellsKinds : { true, false }) {
        CAPTURE(tellsKinds);
        Drive drive;
        drive.files.tellsKinds = tellsKinds;
        drive.file("/p/a.jpg");
        drive.files.addOther(FileUrl("/p/link.jpg"), EntryKind::link);
        drive.files.addOther(FileUrl("/p/pipe.jpg"), EntryKind::other);
        drive.files.addOther(FileUrl("/p/loop"), EntryKind::link);
        CHECK(drive.flat("/p") == Paths { "/p/a.jpg" });
        CHECK(drive.deep("/p") == Paths { "/p/a.jpg" });
        CHECK(drive.files.listings().size() == 2);
    }
}

TEST_CASE("with a folder and its subfolder selected a photo is listed once, where it was first met")
{
    Drive drive;
    drive.file("/A/1.jpg").file("/A/B/2.jpg").file("/A/C/3.jpg");
    FileUrl const a("/A");
    FileUrl const b("/A/B");
    CHECK(pathsOf(drive.scan({ a, b }, true).items)
        == Paths { "/A/1.jpg", "/A/B/2.jpg", "/A/C/3.jpg" });
    CHECK(pathsOf(drive.scan({ b, a }, true).items)
        == Paths { "/A/B/2.jpg", "/A/1.jpg", "/A/C/3.jpg" });
    CHECK(pathsOf(drive.scan({ a, b }, false).items) == Paths { "/A/1.jpg", "/A/B/2.jpg" });
    CHECK(pathsOf(drive.scan({ a, a }, false).items) == Paths { "/A/1.jpg" });
}

TEST_CASE("folders whose paths only begin alike keep all their photos")
{
    Drive drive;
    drive.file("/A/1.jpg").file("/AB/1.jpg");
    auto const result = drive.scan({ FileUrl("/A"), FileUrl("/AB") }, true);
    CHECK(pathsOf(result.items) == Paths { "/A/1.jpg", "/AB/1.jpg" });
}

TEST_CASE("a file that vanishes during the scan is left out of the list and of its order")
{
    Drive drive;
    drive.file("/p/3.jpg").file("/p/1.jpg").file("/p/2.jpg").file("/p/10.jpg");
    drive.files.vanishing.insert(FileUrl("/p/2.jpg"));
    auto result = drive.scan({ FileUrl("/p") }, false);
    CHECK(pathsOf(result.items) == Paths { "/p/3.jpg", "/p/1.jpg", "/p/10.jpg" });
    REQUIRE(result.index.size() == 3);
    auto const visible = result.index.visible(result.items, drive.order, "", SortKey::name, true);
    CHECK(pathsOf(visible) == Paths { "/p/1.jpg", "/p/3.jpg", "/p/10.jpg" });
}

TEST_CASE("the root folder's photos have paths with one slash")
{
    Drive drive;
    drive.file("/a.jpg").file("/p/b.jpg");
    CHECK(drive.deep("/") == Paths { "/a.jpg", "/p/b.jpg" });
}

TEST_CASE("paths of any length fit into the shared storage and end in a NUL byte")
{
    Drive drive;
    std::string folder = "/p";
    for (int i = 0; i < 60; ++i)
        folder += "/" + std::string(200, static_cast<char>('a' + i % 26));
    for (int i = 0; i < 300; ++i)
        drive.file((folder + "/" + std::to_string(i) + ".jpg").c_str());
    auto const items = scanFolder(drive.tools, FileUrl("/p"), true);
    REQUIRE(items.size() == 300);
    for (std::size_t i = 0; i < items.size(); ++i)
        CHECK(items[i].url.cString() == folder + "/" + std::to_string(i) + ".jpg");
}

TEST_CASE("a folder of a million photos comes back whole and in natural order")
{
    HugeFolder const files;
    FakeImageTypes types;
    PhotoTest photoTest(types);
    FakeTextOrder const order;
    std::vector const folders { FileUrl("/viele") };
    auto result = scanFolders({ files, photoTest, order }, folders, true);
    REQUIRE(result.items.size() == HugeFolder::photos);
    auto const visible = result.index.visible(result.items, order, "", SortKey::name, true);
    REQUIRE(visible.size() == HugeFolder::photos);
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < visible.size(); ++i)
        wrong += visible[i].name() != HugeFolder::name(i);
    CHECK(wrong == 0);
    auto const found = result.index.visible(result.items, order, "G_99999", SortKey::name, false);
    REQUIRE(found.size() == 11);
    CHECK(found.front().name() == "IMG_999999.jpg");
    CHECK(found.back().name() == "IMG_99999.jpg");
}

TEST_CASE("where the disk is slow, photos are told by name before it has told of each")
{
    Drive drive;
    drive.files.addFile(FileUrl("/p/b.jpg"), 7, Timestamp(std::chrono::seconds(5)));
    drive.file("/p/gone.jpg").file("/p/a.jpg");
    drive.files.vanishing.insert(FileUrl("/p/gone.jpg"));
    std::promise<void> told;
    drive.files.afterDetails = [&] { told.get_future().wait(); };
    ScanResult names;
    auto const result
        = scanFolders(drive.tools, std::vector { FileUrl("/p") }, false, [&](ScanResult found) {
              names = std::move(found);
              told.set_value();
          });
    CHECK(pathsOf(names.items) == Paths { "/p/b.jpg", "/p/gone.jpg", "/p/a.jpg" });
    CHECK(names.items[0].isKnownByName());
    CHECK(names.items[0].date == distantPast);
    CHECK(pathsOf(names.index.visible(names.items, drive.order, "", SortKey::name, true))
        == Paths { "/p/a.jpg", "/p/b.jpg", "/p/gone.jpg" });
    CHECK(pathsOf(result.items) == Paths { "/p/b.jpg", "/p/a.jpg" });
    CHECK(result.items[0].size == 7);
    CHECK_FALSE(result.items[0].isKnownByName());
    CHECK(result.gone == std::vector { FileUrl("/p/gone.jpg") });
}

TEST_CASE("what may be no file is not told before it was looked at")
{
    Drive drive;
    drive.file("/p/a.jpg");
    drive.files.tellsKinds = false;
    bool areNamesTold = false;
    auto const result = scanFolders(drive.tools, std::vector { FileUrl("/p") }, false,
        [&](ScanResult const&) { areNamesTold = true; });
    CHECK_FALSE(areNamesTold);
    CHECK(pathsOf(result.items) == Paths { "/p/a.jpg" });
}

TEST_CASE("who has patience hears of names and all that is known at once")
{
    Drive drive;
    drive.file("/p/a.jpg");
    drive.tools.patience = std::chrono::hours(24);
    bool areNamesTold = false;
    auto const result = scanFolders(drive.tools, std::vector { FileUrl("/p") }, false,
        [&](ScanResult const&) { areNamesTold = true; });
    CHECK_FALSE(areNamesTold);
    CHECK(pathsOf(result.items) == Paths { "/p/a.jpg" });
}
