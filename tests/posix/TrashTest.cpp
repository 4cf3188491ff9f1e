#include "posix/PosixFileOperations.h"
#include "support/DeepFolder.h"
#include "support/FileBytes.h"
#include "support/OtherUser.h"
#include "support/TemporaryFolder.h"
#include <climits>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

// A home with its trash and a folder of photos on the same drive.
struct Home {
    TemporaryFolder folder;
    FileUrl trash = folder.url().child("data").child("Trash");
    FileUrl photos = makeFolder(folder.url().child("photos"));
    PosixFileOperations files { trash };

    FileUrl photo(std::string_view name, std::string_view bytes = "bytes") const
    {
        return folder.file("photos/" + std::string(name), bytes);
    }
    FileUrl trashed(std::string_view name) const { return trash.child("files").child(name); }
    FileUrl info(std::string_view name) const
    {
        return trash.child("info").child(std::string(name) + ".trashinfo");
    }
};

std::string pathLine(FileUrl const& info)
{
    auto const text = bytesOf(info);
    auto const from = text.find("\nPath=");
    REQUIRE(text.starts_with("[Trash Info]\n"));
    REQUIRE(from != std::string::npos);
    return text.substr(from + 6, text.find('\n', from + 6) - from - 6);
}

} // namespace

TEST_CASE("a trashed photo lies in the home trash, which is made for it, with its info file")
{
    Home home;
    auto const photo = home.photo("a b.jpg", "picture");
    auto const inode = statusOf(photo).st_ino;
    CHECK(home.files.trash(photo) == home.trashed("a b.jpg"));
    CHECK_FALSE(isTaken(photo));
    CHECK(bytesOf(home.trashed("a b.jpg")) == "picture");
    CHECK(statusOf(home.trashed("a b.jpg")).st_ino == inode);
    CHECK(pathLine(home.info("a b.jpg")) == std::string(home.photos.path()) + "/a%20b.jpg");
    CHECK((statusOf(home.trash).st_mode & 07777) == 0700);
    CHECK((statusOf(home.trash.child("files")).st_mode & 07777) == 0700);
    CHECK((statusOf(home.info("a b.jpg")).st_mode & 07777) == 0600);
}

TEST_CASE("restoring brings the photo back and makes the trash forget it")
{
    Home home;
    auto const photo = home.photo("a.jpg", "picture");
    auto const trashed = home.files.trash(photo);
    REQUIRE(trashed);
    CHECK(home.files.restore(*trashed, photo));
    CHECK(bytesOf(photo) == "picture");
    CHECK(namesIn(home.trash.child("files")).empty());
    CHECK(namesIn(home.trash.child("info")).empty());
}

TEST_CASE("photos of the same name get names in the trash that keep the extension")
{
    Home home;
    for (int i = 1; i <= 40; ++i) {
        auto const trashed = home.files.trash(home.photo("a.jpg", std::to_string(i)));
        REQUIRE(trashed);
        CHECK(bytesOf(*trashed) == std::to_string(i));
        CHECK(trashed->name().starts_with("a"));
        CHECK(trashed->extension() == "jpg");
    }
    CHECK(namesIn(home.trash.child("files")).size() == 40);
    CHECK(namesIn(home.trash.child("info")).size() == 40);
    CHECK(bytesOf(home.trashed("a 2.jpg")) == "2");
}

TEST_CASE("a name in the trash is free only if both file and info file are")
{
    Home home;
    makeFolder(home.trash.child("files"));
    makeFolder(home.trash.child("info"));
    home.folder.file("data/Trash/files/a.jpg", "orphan");
    home.folder.file("data/Trash/info/a 2.jpg.trashinfo", "orphan");
    CHECK(home.files.trash(home.photo("a.jpg")) == home.trashed("a 3.jpg"));
    CHECK(bytesOf(home.trashed("a.jpg")) == "orphan");
    CHECK(bytesOf(home.info("a 2.jpg")) == "orphan");
    CHECK(namesIn(home.trash.child("info")).size() == 2);
}

TEST_CASE("names with line breaks, percent signs and bytes that are no text go there and back")
{
    for (std::string const name :
        { "a\nb.jpg", "50%.jpg", "caf\xE9\xFF.jpg", " ", "-rf", "%41.jpg" }) {
        CAPTURE(name);
        Home home;
        auto const photo = home.photo(name);
        auto const trashed = home.files.trash(photo);
        REQUIRE(trashed);
        CHECK(trashed->name() == name);
        CHECK(pathLine(home.info(name)).find_first_of(" \n\xE9\xFF") == std::string::npos);
        CHECK(home.files.restore(*trashed, photo));
        CHECK(bytesOf(photo) == "bytes");
    }
}

TEST_CASE("the longest names go there and back")
{
    Home home;
    for (std::size_t const length : { 244U, 245U, 246U, 255U }) {
        CAPTURE(length);
        auto const name = std::string(length - 4, 'n') + ".jpg";
        auto const photo = home.photo(name);
        auto const trashed = home.files.trash(photo);
        REQUIRE(trashed);
        CHECK(trashed->extension() == "jpg");
        auto const second = home.files.trash(home.photo(name, "second"));
        REQUIRE(second);
        CHECK(bytesOf(*second) == "second");
        CHECK(pathLine(home.info(trashed->name())).ends_with("/" + name));
        CHECK(home.files.restore(*trashed, photo));
        CHECK(bytesOf(photo) == "bytes");
    }
}

TEST_CASE("a link is trashed and restored as a link")
{
    Home home;
    auto const photo = home.photo("a.jpg");
    auto const link = home.photos.child("link.jpg");
    auto const broken = home.photos.child("broken.jpg");
    REQUIRE(::symlink("a.jpg", link.cString()) == 0);
    REQUIRE(::symlink("nowhere.jpg", broken.cString()) == 0);
    for (auto const& file : { link, broken }) {
        auto const trashed = home.files.trash(file);
        REQUIRE(trashed);
        CHECK(S_ISLNK(statusOf(*trashed).st_mode));
        CHECK_FALSE(isTaken(file));
        CHECK(home.files.restore(*trashed, file));
        CHECK(S_ISLNK(statusOf(file).st_mode));
    }
    CHECK(bytesOf(photo) == "bytes");
}

TEST_CASE("a photo that has vanished cannot be trashed and leaves nothing in the trash")
{
    Home home;
    REQUIRE(home.files.trash(home.photo("b.jpg")));
    CHECK_FALSE(home.files.trash(home.photos.child("a.jpg")));
    CHECK_FALSE(home.files.trash(home.photos.child("gone").child("a.jpg")));
    CHECK_FALSE(home.files.trash(FileUrl()));
    CHECK_FALSE(home.files.trash(FileUrl("/")));
    CHECK(namesIn(home.trash.child("info")).size() == 1);
}

TEST_CASE("a folder in a photo's place is not trashed")
{
    Home home;
    makeFolder(home.photos.child("a.jpg"));
    CHECK_FALSE(home.files.trash(home.photos.child("a.jpg")));
    CHECK(isTaken(home.photos.child("a.jpg")));
}

TEST_CASE("nothing is restored over what lies there by now")
{
    Home home;
    auto const photo = home.photo("a.jpg", "old");
    auto const trashed = home.files.trash(photo);
    REQUIRE(trashed);
    home.photo("a.jpg", "new");
    CHECK_FALSE(home.files.restore(*trashed, photo));
    CHECK(bytesOf(photo) == "new");
    CHECK(bytesOf(*trashed) == "old");
    CHECK(isTaken(home.info("a.jpg")));
}

TEST_CASE("nothing is restored into a folder that has gone, and no folder is made for it")
{
    Home home;
    auto const sub = makeFolder(home.photos.child("sub"));
    auto const trashed = home.files.trash(home.photo("sub/a.jpg"));
    REQUIRE(trashed);
    std::filesystem::remove(sub.cString());
    CHECK_FALSE(home.files.restore(*trashed, sub.child("a.jpg")));
    CHECK_FALSE(isTaken(sub));
    CHECK(bytesOf(*trashed) == "bytes");
    CHECK(isTaken(home.info("a.jpg")));
}

TEST_CASE("nothing is restored from a trash that was emptied")
{
    Home home;
    auto const photo = home.photo("a.jpg");
    auto const trashed = home.files.trash(photo);
    REQUIRE(trashed);
    std::filesystem::remove_all(home.trash.cString());
    CHECK_FALSE(home.files.restore(*trashed, photo));
    CHECK_FALSE(isTaken(photo));
}

TEST_CASE("another photo that has the name in the trash by now is not brought here")
{
    Home home;
    auto const photo = home.photo("a.jpg", "mine");
    auto const trashed = home.files.trash(photo);
    REQUIRE(trashed);
    std::filesystem::remove_all(home.trash.cString());
    makeFolder(home.photos.child("other"));
    auto const other = home.photo("other/a.jpg", "another");
    REQUIRE(home.files.trash(other) == trashed);
    CHECK_FALSE(home.files.restore(*trashed, photo));
    CHECK_FALSE(isTaken(photo));
    CHECK(isTaken(home.info("a.jpg")));
    CHECK(home.files.restore(*trashed, other));
    CHECK(bytesOf(other) == "another");
}

TEST_CASE("a photo whose info file has gone, or tells nothing, is brought back all the same")
{
    Home home;
    auto const photo = home.photo("a.jpg");
    auto trashed = home.files.trash(photo);
    REQUIRE(trashed);
    std::filesystem::remove(home.info("a.jpg").cString());
    CHECK(home.files.restore(*trashed, photo));
    trashed = home.files.trash(photo);
    REQUIRE(trashed);
    std::filesystem::resize_file(home.info("a.jpg").cString(), 0);
    CHECK(home.files.restore(*trashed, photo));
    CHECK(bytesOf(photo) == "bytes");
    CHECK(namesIn(home.trash.child("info")).empty());
}

TEST_CASE("a trash that was removed between two photos is made again")
{
    Home home;
    REQUIRE(home.files.trash(home.photo("a.jpg")));
    std::filesystem::remove_all(home.trash.cString());
    CHECK(home.files.trash(home.photo("b.jpg")) == home.trashed("b.jpg"));
    CHECK(bytesOf(home.trashed("b.jpg")) == "bytes");
}

TEST_CASE("without a way to make the trash the photo stays")
{
    Home home;
    home.folder.file("data", "a file where the folder should be");
    auto const photo = home.photo("a.jpg");
    bool trashed = true;
    REQUIRE(::chmod(home.folder.url().cString(), 0755) == 0);
    withoutRights([&] { trashed = home.files.trash(photo).has_value(); });
    CHECK_FALSE(trashed);
    CHECK(bytesOf(photo) == "bytes");
}

TEST_CASE("from a folder that may not be changed nothing is trashed, and no info file stays")
{
    Home home;
    auto const photo = home.photo("a.jpg");
    for (auto const& folder : { home.trash.child("files"), home.trash.child("info") }) {
        makeFolder(folder);
        REQUIRE(::chmod(folder.cString(), 0777) == 0);
    }
    for (auto const& folder : { home.folder.url(), home.photos })
        REQUIRE(::chmod(folder.cString(), 0755) == 0);
    bool trashed = true;
    withoutRights([&] { trashed = home.files.trash(photo).has_value(); });
    CHECK_FALSE(trashed);
    CHECK(bytesOf(photo) == "bytes");
    CHECK(namesIn(home.trash.child("info")).empty());
}

TEST_CASE("photos whose path is longer than any system call takes go there and back")
{
    Home home;
    auto const photo = makeDeepFile(home.photos, PATH_MAX + 500, "deep.jpg");
    auto const trashed = home.files.trash(photo);
    CHECK(trashed == home.trashed("deep.jpg"));
    CHECK(pathLine(home.info("deep.jpg")) == photo.path());
    CHECK(home.files.restore(*trashed, photo));
    CHECK(namesIn(home.trash.child("info")).empty());
    CHECK(home.files.trash(photo) == home.trashed("deep.jpg"));
}
