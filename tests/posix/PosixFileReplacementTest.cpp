#include "posix/PosixFileReplacement.h"
#include "SystemCallFaults.h"
#include "support/FileBytes.h"
#include "support/OtherUser.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryFolder.h"
#include <climits>
#include <doctest/doctest.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace pixelhain;

namespace {

using Names = std::set<std::string>;

std::span<std::uint8_t const> bytesIn(std::string_view text)
{
    return { reinterpret_cast<std::uint8_t const*>(text.data()), text.size() };
}

std::unique_ptr<FileReplacement> begun(
    FileUrl const& target, std::optional<ReplacedFile> const& agreed = std::nullopt)
{
    auto result = PosixFileReplacements().begin(target, agreed);
    REQUIRE(std::holds_alternative<std::unique_ptr<FileReplacement>>(result));
    return std::move(std::get<std::unique_ptr<FileReplacement>>(result));
}

WriteProblem problemOf(
    FileUrl const& target, std::optional<ReplacedFile> const& agreed = std::nullopt)
{
    auto const result = PosixFileReplacements().begin(target, agreed);
    REQUIRE(std::holds_alternative<WriteProblem>(result));
    return std::get<WriteProblem>(result);
}

void replace(FileUrl const& target, std::string_view text)
{
    auto const file = begun(target);
    CHECK(file->write(bytesIn(text)));
    CHECK_FALSE(file->finish().has_value());
}

} // namespace

TEST_CASE("a new file appears under its name only when it is complete")
{
    TemporaryFolder const folder;
    auto const target = folder.url().child("a.pdf");
    auto const file = begun(target);
    CHECK(file->write(bytesIn("one ")));
    CHECK(namesIn(folder.url()) == Names { "a.pdf.part" });
    CHECK(file->write(bytesIn("two")));
    CHECK_FALSE(file->finish().has_value());
    CHECK(namesIn(folder.url()) == Names { "a.pdf" });
    CHECK(bytesOf(target) == "one two");
}

TEST_CASE("a file is there as before until its new content is complete")
{
    TemporaryFolder const folder;
    auto const target = folder.file("a.pdf", "old");
    auto const file = begun(target);
    CHECK(file->write(std::vector<std::uint8_t>(1 << 20, 'n')));
    CHECK(bytesOf(target) == "old");
    CHECK_FALSE(file->finish().has_value());
    CHECK(bytesOf(target) == std::string(1 << 20, 'n'));
    CHECK(namesIn(folder.url()) == Names { "a.pdf" });
}

TEST_CASE("a file that is dropped leaves nothing behind and what was there alone")
{
    TemporaryFolder const folder;
    auto const target = folder.file("a.pdf", "old");
    {
        auto const file = begun(target);
        CHECK(file->write(std::vector<std::uint8_t>(1 << 20, 'n')));
    }
    CHECK(bytesOf(target) == "old");
    CHECK(namesIn(folder.url()) == Names { "a.pdf" });
}

TEST_CASE("the name beside the target is nobody else's")
{
    TemporaryFolder const folder;
    folder.file("a.pdf.part", "of somebody else");
    auto const first = begun(folder.url().child("a.pdf"));
    auto const second = begun(folder.url().child("a.pdf"));
    CHECK(namesIn(folder.url()) == Names { "a.pdf.part", "a.pdf.2.part", "a.pdf.3.part" });
    CHECK(bytesOf(folder.url().child("a.pdf.part")) == "of somebody else");
}

TEST_CASE("a name as long as the system allows is shortened only beside the target")
{
    TemporaryFolder const folder;
    std::string name;
    while (name.size() + 2 + 4 <= NAME_MAX)
        name += "ü";
    name += ".pdf";
    auto const file = begun(folder.url().child(name));
    auto const beside = *namesIn(folder.url()).begin();
    CHECK(beside.size() <= NAME_MAX);
    CHECK(beside.ends_with("ü.part"));
    CHECK_FALSE(file->finish().has_value());
    CHECK(namesIn(folder.url()) == Names { name });
}

TEST_CASE("a replaced file hands on its mode, a new one gets the usual one")
{
    TemporaryFolder const folder;
    auto const mask = ::umask(022);
    auto const old = folder.file("old.pdf");
    REQUIRE(::chmod(old.cString(), 0660) == 0);
    replace(old, "x");
    CHECK((statusOf(old).st_mode & 07777U) == 0660);
    auto const fresh = folder.url().child("new.pdf");
    replace(fresh, "x");
    CHECK((statusOf(fresh).st_mode & 07777U) == 0644);
    ::umask(mask);
}

TEST_CASE("a link stays, and the file that it leads to is replaced")
{
    TemporaryFolder const folder;
    makeFolder(folder.url().child("sub"));
    auto const file = folder.file("sub/a.pdf", "old");
    auto const link = folder.url().child("link.pdf");
    REQUIRE(::symlink("sub/a.pdf", link.cString()) == 0);
    replace(link, "new");
    CHECK(S_ISLNK(statusOf(link).st_mode));
    CHECK(bytesOf(file) == "new");
    CHECK(namesIn(folder.url().child("sub")) == Names { "a.pdf" });
}

TEST_CASE("what is no file is not replaced")
{
    TemporaryFolder const folder;
    CHECK(problemOf(makeFolder(folder.url().child("a.pdf"))) == WriteProblem::notAFile);
    auto const pipe = folder.url().child("pipe.pdf");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    CHECK(problemOf(pipe) == WriteProblem::notAFile);
    CHECK(problemOf(FileUrl("/dev/null")) == WriteProblem::notAFile);
    CHECK(namesIn(folder.url()) == Names { "a.pdf", "pipe.pdf" });
}

TEST_CASE("a file that came in the meantime is not replaced")
{
    TemporaryFolder const folder;
    auto const target = folder.url().child("a.pdf");
    {
        auto const file = begun(target);
        CHECK(file->write(bytesIn("ours")));
        folder.file("a.pdf", "theirs");
        CHECK(file->finish() == WriteProblem::taken);
    }
    CHECK(bytesOf(target) == "theirs");
    CHECK(bytesOf(folder.url().child("a.pdf.part")) == "ours");
}

TEST_CASE("a file that changed in the meantime, or is another one, is not replaced")
{
    for (bool const isAnother : { false, true }) {
        TemporaryFolder const folder;
        auto const target = folder.file("a.pdf", "old");
        {
            auto const file = begun(target);
            CHECK(file->write(bytesIn("ours")));
            if (isAnother)
                REQUIRE(::rename(folder.file("b.pdf", "yet").cString(), target.cString()) == 0);
            else
                folder.file("a.pdf", "theirs");
            CHECK(file->finish() == WriteProblem::taken);
        }
        CHECK(bytesOf(target) == (isAnother ? "yet" : "theirs"));
        CHECK(bytesOf(folder.url().child("a.pdf.part")) == "ours");
    }
}

TEST_CASE("what nobody agreed to lose is not replaced, whenever the replacement begins")
{
    TemporaryFolder const folder;
    PosixFileReplacements files;
    auto const target = folder.url().child("a.pdf");
    auto const nothing = files.look(target);
    CHECK_FALSE(nothing.isThere);
    folder.file("a.pdf", "somebody's");
    CHECK(problemOf(target, nothing) == WriteProblem::taken);
    auto const theirs = files.look(target);
    CHECK(theirs.isThere);
    CHECK(begun(target, theirs));
    folder.file("a.pdf", "somebody's newer one");
    CHECK(problemOf(target, theirs) == WriteProblem::taken);
    CHECK(bytesOf(target) == "somebody's newer one");
    CHECK(::unlink(target.cString()) == 0);
    CHECK(begun(target, theirs)->finish() == std::nullopt);
}

TEST_CASE("a file whose folder is gone is not written on")
{
    TemporaryFolder const folder;
    auto const place = folder.url().child("sub");
    REQUIRE(::mkdir(place.cString(), 0700) == 0);
    auto const file = begun(place.child("a.pdf"));
    std::string const block(300'000, 'x');
    CHECK(file->write(bytesIn(block)));
    CHECK(::unlink(place.child("a.pdf.part").cString()) == 0);
    SUBCASE("only its name is")
    {
        CHECK_FALSE(file->write(bytesIn(block)));
        CHECK(file->finish() == WriteProblem::other);
    }
    SUBCASE("the folder is")
    {
        CHECK(::rmdir(place.cString()) == 0);
        CHECK_FALSE(file->write(bytesIn(block)));
        CHECK(file->finish() == WriteProblem::noFolder);
    }
}

TEST_CASE("a file that loses its name at the last moment is missed, not its folder")
{
    TemporaryFolder const folder;
    auto const file = begun(folder.url().child("a.pdf"));
    CHECK(file->write(bytesIn("x")));
    auto const part = folder.url().child("a.pdf.part");
    SystemCallFaults const faults(
        { { "renameat2", Fault::none, 1, 1, [&] { CHECK(::unlink(part.cString()) == 0); } } });
    CHECK(file->finish() == WriteProblem::other);
}

TEST_CASE("a drive that does not count the names of its files takes new ones")
{
    TemporaryFolder const folder;
    auto const target = folder.file("a.pdf", "old");
    SystemCallFaults const faults({ { "fstat", Fault::uncounted, 1, Fault::always } });
    {
        auto const file = begun(target);
        CHECK(file->write(std::vector<std::uint8_t>(1 << 20, 'n')));
        CHECK_FALSE(file->finish().has_value());
        CHECK(bytesOf(target) == std::string(1 << 20, 'n'));
    }
    auto const file = begun(target);
    CHECK(::unlink(folder.url().child("a.pdf.part").cString()) == 0);
    CHECK_FALSE(file->write(std::vector<std::uint8_t>(1 << 20, 'n')));
    CHECK(namesIn(folder.url()) == Names { "a.pdf" });
}

TEST_CASE("a file that went away in the meantime makes room for the new one")
{
    TemporaryFolder const folder;
    auto const target = folder.file("a.pdf", "old");
    auto const file = begun(target);
    CHECK(file->write(bytesIn("new")));
    REQUIRE(::unlink(target.cString()) == 0);
    CHECK_FALSE(file->finish().has_value());
    CHECK(bytesOf(target) == "new");
    CHECK(namesIn(folder.url()) == Names { "a.pdf" });
}

TEST_CASE("a file with a second name is replaced under the one that was given")
{
    TemporaryFolder const folder;
    auto const target = folder.file("a.pdf", "old");
    auto const second = folder.url().child("b.pdf");
    REQUIRE(::link(target.cString(), second.cString()) == 0);
    replace(target, "new");
    CHECK(bytesOf(target) == "new");
    CHECK(bytesOf(second) == "old");
}

TEST_CASE("a folder that is missing and a name that is too long are told apart")
{
    TemporaryFolder const folder;
    CHECK(problemOf(folder.url().child("gone/a.pdf")) == WriteProblem::noFolder);
    CHECK(problemOf(FileUrl(std::string(folder.url().path()) + "/" + std::string(256, 'a')))
        == WriteProblem::nameTooLong);
}

TEST_CASE("a folder and a file that may not be written to are left alone")
{
    withoutRights([] {
        TemporaryFolder const folder;
        auto const target = folder.file("a.pdf", "old");
        REQUIRE(::chmod(target.cString(), 0444) == 0);
        CHECK(problemOf(target) == WriteProblem::notAllowed);
        REQUIRE(::chmod(folder.url().cString(), 0555) == 0);
        CHECK(problemOf(folder.url().child("b.pdf")) == WriteProblem::notAllowed);
        CHECK(namesIn(folder.url()) == Names { "a.pdf" });
        REQUIRE(::chmod(folder.url().cString(), 0755) == 0);
    });
}

TEST_CASE("a full drive keeps the old file and names the part that was written")
{
    TemporaryFolder const folder;
    auto const drive = folder.url().child("drive");
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(drive, "size=1m"));
        auto const target = folder.file("drive/a.pdf", "old");
        {
            auto const file = begun(target);
            bool isOpen = true;
            std::vector<std::uint8_t> const bytes(100'000, 'n');
            for (int i = 0; i < 30 && isOpen; ++i)
                isOpen = file->write(bytes);
            CHECK_FALSE(isOpen);
            CHECK(file->finish() == WriteProblem::noSpace);
        }
        CHECK(bytesOf(target) == "old");
        CHECK(namesIn(drive) == Names { "a.pdf", "a.pdf.part" });
        ::umount2(drive.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}

TEST_CASE("a drive that is full at once is left as it was")
{
    TemporaryFolder const folder;
    auto const drive = folder.url().child("drive");
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(drive, "size=16k"));
        folder.file("drive/photos", std::string(16 * 1024, 'p'));
        {
            auto const file = begun(drive.child("a.pdf"));
            CHECK(file->write(bytesIn("some")));
            CHECK(file->finish() == WriteProblem::noSpace);
        }
        CHECK(namesIn(drive) == Names { "photos" });
        ::umount2(drive.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}

TEST_CASE("a drive that is read-only says so")
{
    TemporaryFolder const folder;
    auto const drive = folder.url().child("drive");
    bool const mayMount = withPrivateMounts([&] {
        REQUIRE(mountMemory(drive));
        REQUIRE(mountReadOnly(drive));
        CHECK(problemOf(drive.child("a.pdf")) == WriteProblem::readOnly);
        ::umount2(drive.cString(), MNT_DETACH);
    });
    if (!mayMount)
        MESSAGE("skipped: this user may not mount file systems");
}
