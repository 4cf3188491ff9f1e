#pragma once
#include "SystemCallFaults.h"
#include "posix/PosixFileOperations.h"
#include "support/FileBytes.h"
#include "support/TemporaryFolder.h"
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace pixelhain {

/// One photo and one operation on it, to be tried under faults again and again.
class FileScene {
public:
    /// Whether it came to be, and under which name the photo should lie then.
    struct Result {
        bool done = false;
        FileUrl place;
    };
    using Operation = std::function<Result(FileScene&)>;

    FileUrl const& source() const { return source_; }
    FileUrl const& target() const { return target_; }
    PosixFileOperations& files() { return files_; }

    /// Puts everything back to the beginning: the photo at `source`, nothing at `target`.
    void reset(std::string_view bytes)
    {
        for (auto const& folder : { from_, to_, trash_ })
            std::filesystem::remove_all(folder.cString());
        bytes_ = bytes;
        for (auto const& folder : { from_, to_ })
            makeFolder(folder);
        top_.file("from/a.jpg", bytes_);
        timespec const times[] = { { 1'600'000'000, 1 }, { 1'500'000'000, 123'456'789 } };
        static_cast<void>(::setxattr(source_.cString(), "user.rating", "5", 1, 0));
        ::utimensat(AT_FDCWD, source_.cString(), times, 0);
    }

    /// What the next problem takes for granted: whether dates can be set, and whether calls that
    /// are needed for cleaning up work. If not, a photo or an empty file may be one too many.
    void expect(bool dates, bool mayLitter)
    {
        dates_ = dates;
        mayLitter_ = mayLitter;
    }

    /// What is wrong now that the operation has ended; empty if nothing is.
    std::string problem(Result const& result, bool copies) const
    {
        bool const atSource = isWhole(source_);
        if (result.done)
            return problemAfterSuccess(result.place, copies, atSource);
        if (!atSource)
            return "the source is not what it was";
        bool const isLitter = mayLitter_ && (isWhole(target_) || statusOf(target_).st_size == 0);
        return isTaken(target_) && !isLitter ? "something lies at the target" : litter();
    }

    /// What is wrong after the process was killed in the midst: the photo must be whole in one
    /// place, and half nowhere but in a `hidden` file if there is to be one.
    std::string problemAfterKill(bool claims, bool hidden) const
    {
        auto const trashed = trash_.child("files").child("a.jpg");
        if (!isWhole(source_) && !isWhole(target_) && !isWhole(trashed))
            return "the photo is lost";
        if (isTaken(source_) && !isWhole(source_))
            return "half a photo at the source";
        if (isTaken(target_) && !isWhole(target_) && !(claims && statusOf(target_).st_size == 0))
            return "half a photo at the target";
        if (namesIn(to_).size() > (isTaken(target_) ? 1 : 0) && !hidden)
            return "litter in the target folder";
        if (isTaken(trashed) && !isTaken(trash_.child("info").child("a.jpg.trashinfo")))
            return "a photo in the trash without its info file";
        return {};
    }

private:
    bool isWhole(FileUrl const& file) const
    {
        auto const status = statusOf(file);
        return S_ISREG(status.st_mode) && bytesOf(file) == bytes_;
    }

    std::string problemAfterSuccess(FileUrl const& place, bool copies, bool atSource) const
    {
        if (!isWhole(place))
            return "the photo is not where it should be";
        if (dates_ && statusOf(place).st_mtim.tv_sec != 1'500'000'000)
            return "the photo has lost its date";
        if (copies && !atSource)
            return "the source of a copy is not what it was";
        if (!copies && isTaken(source_) && !mayLitter_)
            return "the source of a move is still there";
        return litter();
    }

    std::string litter() const
    {
        if (mayLitter_)
            return {};
        for (auto const& name : namesIn(to_))
            if (name != target_.name())
                return "litter in the target folder: " + name;
        if (namesIn(trash_.child("files")).size() != namesIn(trash_.child("info")).size())
            return "files and info files in the trash are not the same";
        return {};
    }

    TemporaryFolder top_ { inMemory() };
    FileUrl from_ = top_.url().child("from");
    FileUrl to_ = top_.url().child("to");
    FileUrl trash_ = top_.url().child("Trash");
    FileUrl source_ = from_.child("a.jpg");
    FileUrl target_ = to_.child("b.jpg");
    PosixFileOperations files_ { trash_ };
    std::string bytes_;
    bool dates_ = true;
    bool mayLitter_ = false;
};

/// An operation, and what is always wrong while it runs: that is how file systems without nameless
/// files, hard links or exclusive renames look.
struct FileScenario {
    char const* name;
    std::vector<Fault> world;
    FileScene::Operation run;
    bool copies = false;
    bool claims = false; ///< an empty file may hold the name for a moment
    bool hides = false; ///< a copy is written under a hidden name
    bool otherDrive = false;
};

inline FileScene::Result copyInScene(FileScene& scene)
{
    CancelFlag const never;
    auto const outcome = scene.files().copy(scene.source(), scene.target(), never);
    return { outcome == FileOutcome::done, scene.target() };
}

inline FileScene::Result moveInScene(FileScene& scene)
{
    CancelFlag const never;
    auto const outcome = scene.files().move(scene.source(), scene.target(), never);
    return { outcome == FileOutcome::done, scene.target() };
}

inline FileScene::Result trashInScene(FileScene& scene)
{
    auto const trashed = scene.files().trash(scene.source());
    return { trashed.has_value(), trashed.value_or(FileUrl()) };
}

inline FileScene::Result trashAndRestoreInScene(FileScene& scene)
{
    auto const trashed = scene.files().trash(scene.source());
    if (!trashed)
        return {};
    if (scene.files().restore(*trashed, scene.target()))
        return { true, scene.target() };
    return { true, *trashed };
}

inline std::vector<FileScenario> const& fileScenarios()
{
    constexpr int always = Fault::always;
    // Syncing is slow, and what it is for no test can see.
    Fault const quickSync { "fsync", Fault::pretendSuccess, 1, always, nullptr };
    Fault const otherDrive { "renameat2", EXDEV, 1, always, nullptr };
    Fault const noExclusive { "renameat2", EINVAL, 1, always, nullptr };
    Fault const noLinks { "linkat", EPERM, 1, always, nullptr };
    Fault const noNameless { "O_TMPFILE", EOPNOTSUPP, 1, always, nullptr };
    Fault const noKernelCopy { "copy_file_range", EXDEV, 1, always, nullptr };
    static std::vector<FileScenario> const all {
        { "copy", { quickSync }, copyInScene, true },
        { "copy by reading", { quickSync, noKernelCopy }, copyInScene, true },
        { "copy to a stick", { quickSync, noKernelCopy, noNameless, noLinks }, copyInScene, true,
            false, true },
        { "copy to an old stick", { quickSync, noNameless, noLinks, noExclusive }, copyInScene,
            true, true, true },
        { "move", { quickSync }, moveInScene },
        { "move by links", { quickSync, noExclusive }, moveInScene },
        { "move by claim", { quickSync, noExclusive, noLinks }, moveInScene, false, true },
        { "move to another drive", { quickSync, otherDrive }, moveInScene, false, false, false,
            true },
        { "trash", { quickSync }, trashInScene },
        { "trash by links", { quickSync, noExclusive }, trashInScene },
        { "trash by claim", { quickSync, noExclusive, noLinks }, trashInScene, false, true },
        { "trash and restore", { quickSync }, trashAndRestoreInScene },
    };
    return all;
}

} // namespace pixelhain
