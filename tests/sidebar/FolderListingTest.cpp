#include "sidebar/FolderListing.h"
#include "model/PhotoTest.h"
#include "support/FakeFileSystem.h"
#include "support/FakeImageTypes.h"
#include "support/FakeTextOrder.h"
#include <doctest/doctest.h>
#include <string>

using namespace pixelhain;

namespace {

struct Drive {
    FakeFileSystem files;
    FakeTextOrder textOrder;
    FakeImageTypes imageTypes;
    PhotoTest photoTest { imageTypes };
    FolderTools tools { files, textOrder, photoTest };

    std::vector<std::string> subfolders(char const* path)
    {
        std::vector<std::string> names;
        for (auto const& url : subfolderURLs(tools, FileUrl(path)))
            names.emplace_back(url.name());
        return names;
    }
};

using Names = std::vector<std::string>;

} // namespace

TEST_CASE("subfolders come in the order in which people read names")
{
    Drive drive;
    for (auto const* name : { "c10", "B", "c9", "a" })
        drive.files.addFolder(std::string("/f/") + name);
    CHECK(drive.subfolders("/f") == Names { "a", "B", "c9", "c10" });
}

TEST_CASE("names that read the same keep one order whatever the file system yields")
{
    Drive drive;
    Drive other;
    for (auto const* name : { "/f/tag", "/f/TAG", "/f/Tag" })
        drive.files.addFolder(name);
    for (auto const* name : { "/f/Tag", "/f/tag", "/f/TAG" })
        other.files.addFolder(name);
    CHECK(drive.subfolders("/f") == Names { "TAG", "Tag", "tag" });
    CHECK(other.subfolders("/f") == drive.subfolders("/f"));
}

TEST_CASE("hidden folders, packages, links and files are no subfolders")
{
    Drive drive;
    for (auto const* name : { "/f/.git", "/f/Fotos.photoslibrary", "/f/x.app", "/f/echt" })
        drive.files.addFolder(name);
    drive.files.addOther(FileUrl("/f/verweis"), EntryKind::link);
    drive.files.addFile(FileUrl("/f/datei"));
    CHECK(drive.subfolders("/f") == Names { "echt" });
    drive.files.tellsKinds = false;
    CHECK(drive.subfolders("/f") == Names { "echt" });
}

TEST_CASE("an entry that cannot be looked at is left out")
{
    Drive drive;
    drive.files.tellsKinds = false;
    drive.files.addFolder("/f/a");
    drive.files.addFolder("/f/b");
    drive.files.vanishing.insert(FileUrl("/f/a"));
    CHECK(drive.subfolders("/f") == Names { "b" });
}

TEST_CASE("a folder that cannot be read has no subfolders and no photos")
{
    Drive drive;
    drive.files.addFolder("/f/a");
    drive.files.addFile(FileUrl("/f/b.jpg"));
    drive.files.unreadable.insert(FileUrl("/f"));
    CHECK(drive.subfolders("/f").empty());
    CHECK(directPhotoCount(drive.tools, FileUrl("/f")) == 0);
    CHECK(directPhotoCount(drive.tools, FileUrl("/nicht/da")) == 0);
}

TEST_CASE("counting looks at names only, so a folder named like a photo counts")
{
    Drive drive;
    drive.files.addFolder("/f/x.jpg");
    drive.files.addFile(FileUrl("/f/x.jpg/innen.jpg"));
    drive.files.addFile(FileUrl("/f/1.jpg"));
    drive.files.addFile(FileUrl("/f/2.JPG"));
    drive.files.addOther(FileUrl("/f/verweis.png"), EntryKind::link);
    drive.files.addFile(FileUrl("/f/.x.jpg"));
    drive.files.addFile(FileUrl("/f/text.txt"));
    CHECK(directPhotoCount(drive.tools, FileUrl("/f")) == 4);
    CHECK(drive.files.questions().empty());
}

TEST_CASE("other subfolders are another number")
{
    std::vector const one { FileUrl("/f/a"), FileUrl("/f/b") };
    std::vector const other { FileUrl("/f/a"), FileUrl("/f/c") };
    CHECK(hashOfNames(one) != hashOfNames(other));
    CHECK(hashOfNames(one) != hashOfNames({}));
}
