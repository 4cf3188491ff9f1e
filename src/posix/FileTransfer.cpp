#include "posix/FileTransfer.h"
#include "posix/FileAttributes.h"
#include "posix/FileContents.h"
#include "posix/FolderHandle.h"
#include "posix/UnpublishedFile.h"
#include <climits>
#include <fcntl.h>
#include <utility>

namespace pixelhain {

namespace {

// Some file systems cannot sync.
bool syncs(int descriptor)
{
    return uninterrupted([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL
        || errno == ENOSYS || errno == EOPNOTSUPP;
}

// Makes a new name in a folder last. A folder that may be written to but not read cannot be synced;
// most file systems write a file's name with it.
bool syncName(int folder, int file)
{
    Descriptor const readable(
        uninterrupted([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return syncs(readable ? readable.get() : file);
}

FileOutcome outcomeOf(RenameResult result)
{
    switch (result) {
    case RenameResult::done:
        return FileOutcome::done;
    case RenameResult::taken:
        return FileOutcome::taken;
    default:
        return FileOutcome::failed;
    }
}

class Transfer {
public:
    Transfer(FilePlace const& from, FilePlace const& to, CancelFlag const& cancel)
        : from_(from)
        , to_(to)
        , cancel_(cancel)
    {
    }

    FileOutcome copy()
    {
        struct stat there { };
        if (!from_.status(source_))
            return FileOutcome::failed;
        if (to_.status(there))
            return FileOutcome::taken;
        if (S_ISLNK(source_.st_mode))
            return copyLink();
        return S_ISREG(source_.st_mode) && openSource() ? copyRegular() : FileOutcome::failed;
    }

    FileOutcome removeSource()
    {
        struct stat now { };
        if (!from_.status(now) || !isSameFile(now, source_)) {
            // Somebody else took the source away. What was copied may be all that is left of it.
            return FileOutcome::done;
        }
        if (isUnchanged(now, source_) && from_.unlink())
            return FileOutcome::done;
        // With the source in its place the copy is one too many.
        if (from_.status(now) && isSameFile(now, source_))
            static_cast<void>(to_.unlinkIfStill(copy_));
        return FileOutcome::failed;
    }

private:
    bool openSource()
    {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
        file_ = Descriptor(
            uninterrupted([&] { return ::openat(from_.folder(), from_.name(), flags); }));
        return file_ && statusOf(file_.get(), source_) && S_ISREG(source_.st_mode);
    }

    bool sourceIsUnchanged() const
    {
        struct stat now { };
        return statusOf(file_.get(), now) && isUnchanged(source_, now);
    }

    FileOutcome copyRegular()
    {
        auto outcome = FileOutcome::failed;
        if (copyInto(UnpublishedFile::Kind::nameless, outcome))
            return outcome;
        copyInto(UnpublishedFile::Kind::hidden, outcome);
        return outcome;
    }

    // False if another kind of file may do what this one cannot.
    bool copyInto(UnpublishedFile::Kind kind, FileOutcome& outcome)
    {
        auto file = UnpublishedFile::create(to_.folder(), kind);
        if (!file)
            return false;
        outcome = fill(*file);
        if (outcome != FileOutcome::done)
            return true;
        outcome = outcomeOf(file->publish(to_));
        if (outcome != FileOutcome::done)
            return outcome == FileOutcome::taken;
        if (!syncName(to_.folder(), file->descriptor())) {
            static_cast<void>(to_.unlinkIfStill(copy_));
            outcome = FileOutcome::failed;
        }
        return true;
    }

    FileOutcome fill(UnpublishedFile const& copy)
    {
        auto const size = static_cast<std::uint64_t>(source_.st_size);
        auto const result = copyContents(file_.get(), copy.descriptor(), size, cancel_);
        if (result == ContentsResult::cancelled)
            return FileOutcome::cancelled;
        if (result == ContentsResult::failed
            || !copyAttributes(file_.get(), source_, copy.descriptor()) || !syncs(copy.descriptor())
            || !statusOf(copy.descriptor(), copy_) || copy_.st_size != source_.st_size
            || !sourceIsUnchanged())
            return FileOutcome::failed;
        return cancel_.isSet() ? FileOutcome::cancelled : FileOutcome::done;
    }

    FileOutcome copyLink()
    {
        char target[PATH_MAX];
        auto const length = uninterrupted(
            [&] { return ::readlinkat(from_.folder(), from_.name(), target, sizeof target); });
        if (length <= 0 || static_cast<std::size_t>(length) >= sizeof target)
            return FileOutcome::failed;
        target[length] = '\0';
        if (uninterrupted([&] { return ::symlinkat(target, to_.folder(), to_.name()); }) != 0)
            return errno == EEXIST ? FileOutcome::taken : FileOutcome::failed;
        if (!to_.status(copy_) || !S_ISLNK(copy_.st_mode))
            return FileOutcome::failed;
        timespec const times[] = { source_.st_atim, source_.st_mtim };
        // A link means the same without its owner and dates.
        [[maybe_unused]] auto const owned = ::fchownat(
            to_.folder(), to_.name(), source_.st_uid, source_.st_gid, AT_SYMLINK_NOFOLLOW);
        static_cast<void>(::utimensat(to_.folder(), to_.name(), times, AT_SYMLINK_NOFOLLOW));
        // There is no opening a link to sync it.
        if (Descriptor const folder(uninterrupted(
                [&] { return ::openat(to_.folder(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
            !folder || syncs(folder.get()))
            return FileOutcome::done;
        static_cast<void>(to_.unlinkIfStill(copy_));
        return FileOutcome::failed;
    }

    FilePlace const& from_;
    FilePlace const& to_;
    CancelFlag const& cancel_;
    Descriptor file_;
    struct stat source_ { };
    struct stat copy_ { };
};

} // namespace

FileOutcome copyFile(FilePlace const& from, FilePlace const& to, CancelFlag const& cancel)
{
    return Transfer(from, to, cancel).copy();
}

FileOutcome moveByCopying(FilePlace const& from, FilePlace const& to, CancelFlag const& cancel)
{
    Transfer transfer(from, to, cancel);
    auto const outcome = transfer.copy();
    return outcome == FileOutcome::done ? transfer.removeSource() : outcome;
}

} // namespace pixelhain
