#include "SystemCallFaults.h"
#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/PrivateMounts.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <cerrno>
#include <doctest/doctest.h>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace pixelhain;

namespace {

CancelFlag const never;

// Real folders on two drives, what must lie in them, and a user and other programs who change them
// at random. A step is right if afterwards exactly what must be there is there, byte for byte.
class Disorder {
public:
    Disorder(FileUrl const& home, FileUrl const& drive, unsigned seed)
        : random_(seed)
        , folders_ { makeFolder(home.child("A")), makeFolder(home.child("B")),
            makeFolder(drive.child("C")), makeFolder(drive.child("D")) }
        , homeTrash_(home.child("Trash"))
        , driveTrash_(drive.child(".Trash-" + std::to_string(::geteuid())))
        , files_(homeTrash_)
    {
    }

    // What was done; for the message if it went wrong.
    std::string step()
    {
        switch (pick(12)) {
        case 0:
        case 1:
        case 2:
            return create();
        case 3:
            return disturb();
        case 4:
            return pick(4) == 0 ? disturbTrash() : disturb();
        case 5:
        case 6:
            return trash();
        case 7:
        case 8:
            return restore();
        case 9:
            return transfer(true);
        default:
            return transfer(false);
        }
    }

    std::map<std::string, std::string> const& expected() const { return expected_; }

    std::map<std::string, std::string> found() const
    {
        std::map<std::string, std::string> all;
        auto folders = folders_;
        folders.push_back(homeTrash_.child("files"));
        folders.push_back(driveTrash_.child("files"));
        for (auto const& folder : folders)
            for (auto const& name : namesIn(folder)) {
                auto const file = folder.child(name);
                all.emplace(file.path(), contentOf(file));
            }
        return all;
    }

    // Every photo that this program trashed can still be found by others.
    bool trashKnowsItsPhotos() const
    {
        for (auto const& [original, trashed] : trashed_) {
            auto const info = trashed.parent().parent().child("info").child(
                std::string(trashed.name()) + ".trashinfo");
            if (isTaken(trashed) && bytesOf(info).find("\nDeletionDate=") == std::string::npos)
                return false;
        }
        return true;
    }

private:
    using Entry = std::pair<std::string, std::string>;

    std::size_t pick(std::size_t below)
    {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random_);
    }

    static std::string contentOf(FileUrl const& file)
    {
        auto const status = statusOf(file);
        if (S_ISLNK(status.st_mode))
            return "-> " + std::filesystem::read_symlink(file.cString()).string();
        return S_ISDIR(status.st_mode) ? "a folder" : bytesOf(file);
    }

    FileUrl anyName()
    {
        static auto const longest = std::string(255, 'n').replace(251, 4, ".jpg");
        static std::vector<std::string> const names { "a.jpg", "b.jpg", "a 2.jpg", "README",
            "caf\xE9.jpg", "50%.jpg", "line\nbreak.jpg", longest };
        return folders_[pick(folders_.size())].child(names[pick(names.size())]);
    }

    // Most of the time one that is there.
    FileUrl anyFile()
    {
        if (expected_.empty() || pick(10) == 0)
            return anyName();
        auto entry = expected_.begin();
        std::advance(entry, static_cast<std::ptrdiff_t>(pick(expected_.size())));
        FileUrl const file(entry->first);
        return isInTrash(file) ? anyName() : file;
    }

    bool isInTrash(FileUrl const& file) const
    {
        return file.isWithin(homeTrash_) || file.isWithin(driveTrash_);
    }
    bool isExpected(FileUrl const& file) const
    {
        return expected_.contains(std::string(file.path()));
    }

    std::string newBytes()
    {
        return "photo " + std::to_string(++photos_) + std::string(pick(3) * 7000, '.');
    }

    void write(FileUrl const& file, std::string const& bytes)
    {
        std::ofstream(file.cString(), std::ios::binary) << bytes;
        expected_[std::string(file.path())] = bytes;
    }

    void forget(FileUrl const& file) { expected_.erase(std::string(file.path())); }

    void relocate(FileUrl const& from, FileUrl const& to)
    {
        auto node = expected_.extract(std::string(from.path()));
        REQUIRE(node);
        node.key() = std::string(to.path());
        CHECK(expected_.insert(std::move(node)).inserted);
    }

    std::string create()
    {
        auto const file = anyName();
        if (!isExpected(file))
            write(file, newBytes());
        return "somebody created " + std::string(file.path());
    }

    std::string disturb()
    {
        auto const file = anyFile();
        auto const other = anyName();
        if (!isExpected(file) || contentOf(file) == "a folder")
            return disturbName(other);
        if (isExpected(other)) {
            if (pick(2) == 0 || contentOf(file).starts_with("-> ")) {
                REQUIRE(::unlink(file.cString()) == 0);
                forget(file);
                return "somebody removed " + std::string(file.path());
            }
            write(file, newBytes());
            return "somebody changed " + std::string(file.path());
        }
        std::filesystem::path const from(file.path());
        std::error_code error;
        std::filesystem::rename(from, other.cString(), error);
        if (!error)
            relocate(file, other);
        return "somebody renamed " + std::string(file.path());
    }

    std::string disturbName(FileUrl const& file)
    {
        if (isExpected(file))
            return "nothing";
        if (pick(2) == 0)
            REQUIRE(::symlink("a.jpg", file.cString()) == 0);
        else
            REQUIRE(::mkdir(file.cString(), 0700) == 0);
        expected_[std::string(file.path())] = contentOf(file);
        return "somebody made a link or folder at " + std::string(file.path());
    }

    std::string disturbTrash()
    {
        auto const& trash = pick(2) == 0 ? homeTrash_ : driveTrash_;
        if (!isTaken(trash))
            return "nothing";
        switch (pick(3)) {
        case 0:
            write(trash.child("files").child("a.jpg"), newBytes());
            return "somebody left a file in the trash";
        case 1:
            if (auto const info = trash.child("info").child("b.jpg.trashinfo"); !isTaken(info))
                std::ofstream(info.cString()) << "orphan";
            return "somebody left an info file in the trash";
        default:
            std::filesystem::remove_all(trash.cString());
            auto const wasIn
                = [&](auto const& entry) { return FileUrl(entry.first).isWithin(trash); };
            std::erase_if(expected_, wasIn);
            std::erase_if(origins_, wasIn);
            return "somebody emptied the trash";
        }
    }

    // Sometimes a call fails in the operation.
    std::vector<Fault> someFault()
    {
        constexpr std::array errors { EIO, ENOSPC, EINTR, EPERM, EXDEV, EINVAL, EMFILE };
        static std::array<std::string_view, 16> const calls { "openat", "O_TMPFILE", "mkdirat",
            "statx", "fallocate", "copy_file_range", "pread", "pwrite", "write", "fsync",
            "fsetxattr", "linkat", "renameat", "renameat2", "symlinkat", "readlinkat" };
        if (pick(3) != 0)
            return {};
        Fault fault;
        fault.call = calls[pick(calls.size())];
        fault.error = errors[pick(errors.size())];
        fault.from = static_cast<int>(pick(3)) + 1;
        // Interrupted calls are made again until they are not.
        if (fault.error != EINTR && pick(3) == 0)
            fault.count = Fault::always;
        return { fault };
    }

    std::string trash()
    {
        auto const file = anyFile();
        bool const can = isExpected(file) && contentOf(file) != "a folder";
        auto const faults = someFault();
        std::optional<FileUrl> place;
        {
            SystemCallFaults const active(faults);
            place = files_.trash(file);
        }
        if (faults.empty())
            CHECK(place.has_value() == can);
        if (place) {
            CHECK(isInTrash(*place));
            relocate(file, *place);
            trashed_.emplace_back(file, *place);
            origins_.insert_or_assign(std::string(place->path()), file);
        }
        return "trashed " + std::string(file.path());
    }

    // After the trash was emptied another photo may have the place.
    bool mayBeFrom(FileUrl const& original, FileUrl const& trashed) const
    {
        auto const origin = origins_.find(std::string(trashed.path()));
        return origin == origins_.end() || origin->second == original;
    }

    std::string restore()
    {
        if (trashed_.empty())
            return "nothing";
        auto const at = trashed_.begin() + static_cast<std::ptrdiff_t>(pick(trashed_.size()));
        auto const [original, trashed] = *at;
        bool const can
            = isExpected(trashed) && !isExpected(original) && mayBeFrom(original, trashed);
        auto const faults = someFault();
        bool restored = false;
        {
            SystemCallFaults const active(faults);
            restored = files_.restore(trashed, original);
        }
        if (faults.empty())
            CHECK(restored == can);
        if (restored) {
            trashed_.erase(at);
            relocate(trashed, original);
            origins_.erase(std::string(trashed.path()));
        }
        return "restored " + std::string(original.path());
    }

    std::string transfer(bool copies)
    {
        auto const from = anyFile();
        auto const to = anyName();
        bool const isThere = isExpected(from);
        bool const isFolder = isThere && contentOf(from) == "a folder";
        bool const isFree = !isExpected(to);
        auto const faults = someFault();
        auto outcome = FileOutcome::failed;
        {
            SystemCallFaults const active(faults);
            outcome = copies ? files_.copy(from, to, never) : files_.move(from, to, never);
        }
        if (faults.empty() && !isFolder) {
            CHECK((outcome == FileOutcome::done) == (isThere && isFree));
            CHECK((outcome == FileOutcome::taken) == (isThere && !isFree));
        }
        if (outcome == FileOutcome::done && copies)
            expected_[std::string(to.path())] = expected_.at(std::string(from.path()));
        else if (outcome == FileOutcome::done)
            relocate(from, to);
        return (copies ? "copied " : "moved ") + std::string(from.path()) + " to "
            + std::string(to.path());
    }

    std::mt19937 random_;
    std::vector<FileUrl> folders_;
    FileUrl homeTrash_;
    FileUrl driveTrash_;
    PosixFileOperations files_;
    std::map<std::string, std::string> expected_;
    std::vector<std::pair<FileUrl, FileUrl>> trashed_;
    std::map<std::string, FileUrl> origins_; ///< of what lies in the trash
    int photos_ = 0;
};

void runDisorder(unsigned seed, FileUrl const& home, FileUrl const& drive)
{
    Disorder disorder(home, drive, seed);
    for (int step = 0; step < 300; ++step) {
        auto const what = disorder.step();
        CAPTURE(seed);
        CAPTURE(step);
        CAPTURE(what);
        REQUIRE(disorder.found() == disorder.expected());
        REQUIRE(disorder.trashKnowsItsPhotos());
    }
    CHECK_FALSE(disorder.expected().empty());
}

} // namespace

TEST_CASE("whatever the user and others do in whatever order, no photo is lost or replaced")
{
    constexpr unsigned runs = isSanitized ? 2 : 8;
    for (unsigned seed = 1; seed <= runs; ++seed) {
        TemporaryFolder const top(inMemory());
        auto const drive = makeFolder(top.url().child("drive"));
        bool const onTwoDrives = withPrivateMounts([&] {
            REQUIRE(mountMemory(drive));
            runDisorder(seed, makeFolder(top.url().child("home")), drive);
        });
        if (!onTwoDrives) {
            MESSAGE("on one drive only: this user may not mount file systems");
            runDisorder(seed, makeFolder(top.url().child("home")), drive);
        }
    }
}
