#include "decoder/DeathRecords.h"
#include "posix/OpenedFile.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/stat.h>

using namespace pixelhain;

namespace {

// What the records say of a file as it is now.
bool isGivenUp(DeathRecords const& records, FileUrl const& url)
{
    return records.isGivenUp(OpenedFile::open(url)->descriptor());
}

void record(DeathRecords& records, FileUrl const& url)
{
    records.record(OpenedFile::open(url)->descriptor());
}

} // namespace

TEST_CASE("a file is given up at its second death, and no other file with it")
{
    TemporaryFolder const folder;
    DeathRecords records;
    auto const bad = folder.file("bad.jpg", "x");
    auto const good = folder.file("good.jpg", "x");
    CHECK_FALSE(isGivenUp(records, bad));
    record(records, bad);
    CHECK_FALSE(isGivenUp(records, bad));
    record(records, bad);
    CHECK(isGivenUp(records, bad));
    CHECK_FALSE(isGivenUp(records, good));
}

TEST_CASE("a file that was given up stays so under another name")
{
    TemporaryFolder const folder;
    DeathRecords records;
    auto const bad = folder.file("bad.jpg", "x");
    record(records, bad);
    record(records, bad);
    auto const renamed = folder.url().child("innocent.jpg");
    REQUIRE(::rename(bad.cString(), renamed.cString()) == 0);
    CHECK(isGivenUp(records, renamed));
}

TEST_CASE("a file that was written to since is tried again")
{
    TemporaryFolder const folder;
    DeathRecords records;
    auto const bad = folder.file("bad.jpg", "x");
    record(records, bad);
    record(records, bad);
    timespec const later[2] { { 2'000'000'000, 0 }, { 2'000'000'000, 1 } };
    REQUIRE(::utimensat(AT_FDCWD, bad.cString(), later, 0) == 0);
    CHECK_FALSE(isGivenUp(records, bad));
}

TEST_CASE("a file that a worker lived through has not cost any")
{
    TemporaryFolder const folder;
    DeathRecords records;
    auto const url = folder.file("a.jpg", "x");
    record(records, url);
    records.forgive(OpenedFile::open(url)->descriptor());
    record(records, url);
    CHECK_FALSE(isGivenUp(records, url));
}
