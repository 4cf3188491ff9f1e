// What others do to the files while one is being copied or moved, at the very moments that matter.
#include "SystemCallFaults.h"
#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include <cerrno>
#include <doctest/doctest.h>
#include <functional>
#include <string>
#include <unistd.h>

using namespace pixelhain;

namespace {

// Read in pieces, so that there is a midst.
struct Transfer {
    TemporaryFolder top { inMemory() };
    FileUrl from = makeFolder(top.url().child("from")).child("a.jpg");
    FileUrl to = makeFolder(top.url().child("to")).child("b.jpg");
    std::string bytes = std::string(20'000'000, 'p');
    CancelFlag cancel;
    PosixFileOperations files { top.url().child("Trash") };

    Transfer() { top.file("from/a.jpg", bytes); }

    FileOutcome move(std::string_view call, int number, std::function<void()> before)
    {
        SystemCallFaults const active({ { "renameat2", EXDEV, 1, Fault::always, nullptr },
            { "copy_file_range", EXDEV, 1, Fault::always, nullptr },
            { call, Fault::none, number, 1, std::move(before) } });
        return files.move(from, to, cancel);
    }

    void append(FileUrl const& file) const
    {
        std::ofstream(file.cString(), std::ios::app) << "more";
    }
};

constexpr int inTheMidst = 10;

} // namespace

TEST_CASE("a copy that is cancelled in its midst leaves nothing, and the source is as it was")
{
    Transfer transfer;
    auto const outcome = transfer.move("pread", inTheMidst, [&] { transfer.cancel.set(); });
    CHECK(outcome == FileOutcome::cancelled);
    CHECK(bytesOf(transfer.from) == transfer.bytes);
    CHECK(namesIn(transfer.to.parent()).empty());
}

TEST_CASE("a photo that changes while it is moved stays, with the change")
{
    for (char const* const call : { "pread", "fsync", "linkat" }) {
        CAPTURE(call);
        Transfer transfer;
        auto const outcome = transfer.move(call, 1, [&] { transfer.append(transfer.from); });
        CHECK(outcome == FileOutcome::failed);
        CHECK(bytesOf(transfer.from) == transfer.bytes + "more");
        CHECK(namesIn(transfer.to.parent()).empty());
    }
}

TEST_CASE("of a photo that is removed or replaced while it is moved the copy stays")
{
    Transfer removed;
    CHECK(removed.move("fsync", 1, [&] { ::unlink(removed.from.cString()); }) == FileOutcome::done);
    CHECK(bytesOf(removed.to) == removed.bytes);

    Transfer replaced;
    auto const replace = [&] {
        auto const other = replaced.top.file("from/new.jpg", "new");
        ::rename(other.cString(), replaced.from.cString());
    };
    CHECK(replaced.move("fsync", 1, replace) == FileOutcome::done);
    CHECK(bytesOf(replaced.to) == replaced.bytes);
    CHECK(bytesOf(replaced.from) == "new");
}

TEST_CASE("a photo that is cut while it is moved stays")
{
    Transfer transfer;
    auto const outcome = transfer.move(
        "pread", inTheMidst, [&] { CHECK(::truncate(transfer.from.cString(), 1000) == 0); });
    CHECK(outcome == FileOutcome::failed);
    CHECK(statusOf(transfer.from).st_size == 1000);
    CHECK(namesIn(transfer.to.parent()).empty());
}

TEST_CASE("a name that is taken while bytes are copied is not taken over")
{
    Transfer transfer;
    auto const outcome
        = transfer.move("linkat", 1, [&] { transfer.top.file("to/b.jpg", "theirs"); });
    CHECK(outcome == FileOutcome::taken);
    CHECK(bytesOf(transfer.to) == "theirs");
    CHECK(bytesOf(transfer.from) == transfer.bytes);
    CHECK(namesIn(transfer.to.parent()).size() == 1);
}

TEST_CASE("a name in the trash that is taken at the last moment is not taken over")
{
    TemporaryFolder const top(inMemory());
    auto const trash = top.url().child("Trash");
    PosixFileOperations files(trash);
    auto const photo = top.file("a.jpg", "ours");
    std::optional<FileUrl> trashed;
    {
        SystemCallFaults const active({ { "renameat2", Fault::none, 1, 1,
            [&] { top.file("Trash/files/a.jpg", "theirs"); } } });
        trashed = files.trash(photo);
    }
    CHECK(trashed == trash.child("files").child("a 2.jpg"));
    CHECK(bytesOf(trash.child("files").child("a.jpg")) == "theirs");
    CHECK(bytesOf(trash.child("files").child("a 2.jpg")) == "ours");
    CHECK(namesIn(trash.child("info")).size() == 1);
}

TEST_CASE("a photo that vanishes at the last moment leaves nothing in the trash")
{
    TemporaryFolder const top(inMemory());
    PosixFileOperations files(top.url().child("Trash"));
    auto const photo = top.file("a.jpg", "bytes");
    {
        SystemCallFaults const active(
            { { "renameat2", Fault::none, 1, 1, [&] { ::unlink(photo.cString()); } } });
        CHECK_FALSE(files.trash(photo));
    }
    CHECK(namesIn(top.url().child("Trash").child("info")).empty());
}
