#include "model/FileJobs.h"
#include "support/FakeFileOperations.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Calls = std::vector<std::string>;

struct Drive {
    FakeFileSystem files;
    FakeFileOperations operations { files };
    FileRun run;
    FileUrl const target { "/z" };

    Drive() { files.addFolder("/z"); }

    std::vector<FileUrl> photos(std::vector<std::string> const& paths)
    {
        std::vector<FileUrl> urls;
        for (auto const& path : paths) {
            urls.emplace_back(path);
            files.addFile(urls.back());
        }
        return urls;
    }

    TransferResult transfer(Transfer transfer, std::vector<FileUrl> const& photos)
    {
        return transferFiles(operations, files, transfer, photos, target, run);
    }

    /// Cancels in the middle of the call with this number, counted from 1.
    void cancelDuring(std::size_t call)
    {
        operations.during = [this, call] {
            if (operations.calls.size() == call)
                run.cancel.set();
        };
    }
};

} // namespace

TEST_CASE("files go to the trash in order; one that fails is counted, the next one is tried")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/b/2.jpg", "/b/3.jpg" });
    drive.operations.failing = { photos[1] };
    auto const result = trashFiles(drive.operations, photos, drive.run);
    CHECK(drive.operations.calls == Calls { "trash /b/1.jpg", "trash /b/2.jpg", "trash /b/3.jpg" });
    CHECK(result.failed == 1);
    REQUIRE(result.trashed.size() == 2);
    CHECK(result.trashed[0].original == photos[0]);
    CHECK(drive.files.exists(result.trashed[0].trashed));
    CHECK(result.trashed[1].original == photos[2]);
    CHECK(drive.run.handled == 3);
}

TEST_CASE("cancelled, the file under way goes to the trash, no further one does, none failed")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/b/2.jpg", "/b/3.jpg" });
    drive.cancelDuring(2);
    auto const result = trashFiles(drive.operations, photos, drive.run);
    CHECK(result.trashed.size() == 2);
    CHECK(result.failed == 0);
    CHECK(drive.files.exists(photos[2]));
    CHECK(drive.run.handled == 2);
}

TEST_CASE("what a cancelled undo did not begin is left to be undone")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/b/2.jpg", "/b/3.jpg" });
    auto const trashed = trashFiles(drive.operations, photos, drive.run).trashed;
    drive.operations.calls.clear();
    drive.files.addFile(photos[0]); // somebody took its place
    drive.cancelDuring(2);
    auto const result = restoreFiles(drive.operations, trashed, drive.run);
    CHECK(result.restored == 1);
    CHECK(result.left == std::vector { trashed[2] });
    CHECK(drive.files.exists(trashed[0].trashed));
    CHECK(drive.files.exists(photos[1]));
}

TEST_CASE("files are moved or copied under the first free name")
{
    for (auto const transfer : { Transfer::move, Transfer::copy }) {
        Drive drive;
        auto const photos = drive.photos({ "/b/IMG_0001.jpg", "/c/README", "/b/3.jpg" });
        drive.photos({ "/z/IMG_0001.jpg", "/z/IMG_0001 2.jpg", "/z/README" });
        auto const result = drive.transfer(transfer, photos);
        CHECK(result.done == photos);
        CHECK(result.failed == 0);
        for (char const* const path : { "/z/IMG_0001 3.jpg", "/z/README 2", "/z/3.jpg" })
            CHECK(drive.files.exists(FileUrl(path)));
        for (auto const& photo : photos)
            CHECK(drive.files.exists(photo) == (transfer == Transfer::copy));
    }
}

TEST_CASE("two photos of one name get two names")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/c/1.jpg" });
    CHECK(drive.transfer(Transfer::move, photos).done == photos);
    CHECK(drive.operations.calls == Calls { "move /b/1.jpg /z/1.jpg", "move /c/1.jpg /z/1 2.jpg" });
}

TEST_CASE("a name taken between the look and the move leads to the next number")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg" });
    drive.operations.takenLate = { FileUrl("/z/1.jpg"), FileUrl("/z/1 2.jpg") };
    CHECK(drive.transfer(Transfer::move, photos).done == photos);
    CHECK(drive.operations.calls
        == Calls {
            "move /b/1.jpg /z/1.jpg", "move /b/1.jpg /z/1 2.jpg", "move /b/1.jpg /z/1 3.jpg" });
}

TEST_CASE("a photo moved into its own folder gets a number")
{
    Drive drive;
    auto const photos = drive.photos({ "/z/1.jpg" });
    CHECK(drive.transfer(Transfer::move, photos).done == photos);
    CHECK(drive.files.exists(FileUrl("/z/1 2.jpg")));
    CHECK_FALSE(drive.files.exists(photos[0]));
}

TEST_CASE("moving and copying go on after a file that fails")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/b/2.jpg", "/b/3.jpg" });
    drive.operations.failing = { photos[0] };
    drive.files.remove(photos[2]);
    auto const result = drive.transfer(Transfer::copy, photos);
    CHECK(result.done == std::vector { photos[1] });
    CHECK(result.failed == 2);
}

TEST_CASE("a copy cancelled in its middle is neither done nor failed, and nothing follows")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg", "/b/2.jpg", "/b/3.jpg" });
    drive.operations.stuck = { photos[1] };
    drive.cancelDuring(2);
    auto const result = drive.transfer(Transfer::copy, photos);
    CHECK(result.done == std::vector { photos[0] });
    CHECK(result.failed == 0);
    CHECK_FALSE(drive.files.exists(FileUrl("/z/2.jpg")));
    CHECK_FALSE(drive.files.exists(FileUrl("/z/3.jpg")));
}

TEST_CASE("cancelled while names are taken one after the other, no further one is tried")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg" });
    drive.operations.takenLate = { FileUrl("/z/1.jpg") };
    drive.cancelDuring(1);
    auto const result = drive.transfer(Transfer::move, photos);
    CHECK(result.done.empty());
    CHECK(result.failed == 0);
    CHECK(drive.operations.calls.size() == 1);
    CHECK(drive.files.exists(photos[0]));
}

TEST_CASE("what is cancelled before it began does nothing")
{
    Drive drive;
    auto const photos = drive.photos({ "/b/1.jpg" });
    drive.run.cancel.set();
    CHECK(trashFiles(drive.operations, photos, drive.run).trashed.empty());
    CHECK(drive.transfer(Transfer::copy, photos).done.empty());
    CHECK(restoreFiles(drive.operations, { { photos[0], photos[0] } }, drive.run).left.size() == 1);
    CHECK(drive.operations.calls.empty());
}
