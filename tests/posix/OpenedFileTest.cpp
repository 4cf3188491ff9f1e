#include "posix/OpenedFile.h"
#include "support/DeepFolder.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <climits>
#include <doctest/doctest.h>
#include <fcntl.h>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

std::string readAt(ByteSource const& bytes, std::uint64_t offset, std::size_t count)
{
    std::string text(count, '\0');
    auto* start = reinterpret_cast<std::uint8_t*>(text.data());
    text.resize(bytes.readAt(offset, { start, count }));
    return text;
}

} // namespace

TEST_CASE("a file is read from any place, in any order")
{
    TemporaryFolder const folder;
    auto const file = OpenedFile::open(folder.file("a.jpg", "0123456789"));
    REQUIRE(file);
    CHECK(file->size() == 10);
    CHECK(readAt(*file, 7, 3) == "789");
    CHECK(readAt(*file, 0, 4) == "0123");
    CHECK(readAt(*file, 0, 0).empty());
}

TEST_CASE("reading past the end yields what is there")
{
    TemporaryFolder const folder;
    auto const file = OpenedFile::open(folder.file("a.jpg", "0123456789"));
    REQUIRE(file);
    CHECK(readAt(*file, 8, 100) == "89");
    CHECK(readAt(*file, 10, 1).empty());
    CHECK(readAt(*file, std::uint64_t { 1 } << 63U, 1).empty());
}

TEST_CASE("a file that is cut after it was opened ends early")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.jpg", std::string(100'000, 'x'));
    auto const file = OpenedFile::open(url);
    REQUIRE(file);
    REQUIRE(::truncate(url.cString(), 3) == 0);
    CHECK(readAt(*file, 0, 100'000) == "xxx");
    CHECK(readAt(*file, 50'000, 10).empty());
}

TEST_CASE("what grew after it was opened has the size of that moment")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.jpg", "abc");
    auto const file = OpenedFile::open(url);
    REQUIRE(file);
    REQUIRE(::truncate(url.cString(), 10) == 0);
    CHECK(readAt(*file, 0, 10) == "abc");
}

TEST_CASE("links are followed, and names need not be UTF-8")
{
    TemporaryFolder const folder;
    auto const target = folder.file("gr\xFC\xDF.jpg", "abc");
    auto const link = folder.url().child("link.jpg");
    REQUIRE(::symlink(target.cString(), link.cString()) == 0);
    auto const file = OpenedFile::open(link);
    REQUIRE(file);
    CHECK(file->size() == 3);
}

TEST_CASE("a file is opened however long its path is")
{
    for (std::size_t const length :
        { PATH_MAX - 300U, PATH_MAX - 6U, PATH_MAX + 1U, 3U * PATH_MAX }) {
        CAPTURE(length);
        TemporaryFolder const folder;
        auto const url = makeDeepFile(folder.url(), length, "a.jpg");
        CHECK(OpenedFile::open(url));
        CHECK_FALSE(OpenedFile::open(url.parent()));
        CHECK_FALSE(OpenedFile::open(url.parent().child("gone.jpg")));
    }
}

TEST_CASE("nothing is opened where there is no regular file")
{
    TemporaryFolder const folder;
    CHECK_FALSE(OpenedFile::open({}));
    CHECK_FALSE(OpenedFile::open(folder.url()));
    CHECK_FALSE(OpenedFile::open(folder.url().child("gone.jpg")));
    CHECK_FALSE(OpenedFile::open(folder.file("a.jpg").child("b.jpg")));
    CHECK_FALSE(OpenedFile::open(FileUrl("/dev/zero")));
    auto const deviceLink = folder.url().child("null.jpg");
    REQUIRE(::symlink("/dev/null", deviceLink.cString()) == 0);
    CHECK_FALSE(OpenedFile::open(deviceLink));
}

TEST_CASE("a pipe named like a photo is not even opened")
{
    TemporaryFolder const folder;
    auto const pipe = folder.url().child("x.jpg");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    int const events = ::inotify_init1(IN_NONBLOCK);
    REQUIRE(::inotify_add_watch(events, pipe.cString(), IN_OPEN) >= 0);
    CHECK_FALSE(OpenedFile::open(pipe));
    std::array<char, 256> seen {};
    CHECK(::read(events, seen.data(), seen.size()) == -1);
    ::close(events);
}

TEST_CASE("a file that may not be read is not opened")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.jpg", "abc");
    REQUIRE(::chmod(folder.url().cString(), 0755) == 0);
    REQUIRE(::chmod(url.cString(), 0) == 0);
    // The superuser may read everything: the test asks as somebody else then.
    auto const user = ::geteuid();
    constexpr uid_t nobody = 65534;
    if (user == 0)
        REQUIRE(::seteuid(nobody) == 0);
    auto const file = OpenedFile::open(url);
    REQUIRE(::seteuid(user) == 0);
    CHECK_FALSE(file);
}

TEST_CASE("a file beyond 4 GiB is not opened, one of 4 GiB is")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.tif");
    REQUIRE(::truncate(url.cString(), static_cast<off_t>(OpenedFile::maxSize)) == 0);
    CHECK(OpenedFile::open(url));
    REQUIRE(::truncate(url.cString(), static_cast<off_t>(OpenedFile::maxSize) + 1) == 0);
    CHECK_FALSE(OpenedFile::open(url));
}

TEST_CASE("an opened file is closed again, and no child process inherits it")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.jpg", "abc");
    int descriptor = -1;
    {
        auto const file = OpenedFile::open(url);
        REQUIRE(file);
        descriptor = file->descriptor();
        CHECK((::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) != 0);
    }
    CHECK(::fcntl(descriptor, F_GETFD) == -1);
}
