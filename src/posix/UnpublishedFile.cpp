#include "posix/UnpublishedFile.h"
#include "posix/FolderHandle.h"
#include "posix/SystemRandom.h"
#include <cinttypes>
#include <cstdio>
#include <fcntl.h>
#include <utility>

namespace pixelhain {

namespace {

constexpr mode_t ownerOnly = 0600;

std::string hiddenName()
{
    char name[32];
    std::snprintf(name, sizeof name, ".~%016" PRIx64 ".part", SystemRandom().next());
    return name;
}

Descriptor duplicate(int folder)
{
    return Descriptor(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
}

} // namespace

UnpublishedFile::UnpublishedFile(Descriptor file, std::optional<FilePlace> hidden)
    : file_(std::move(file))
    , hidden_(std::move(hidden))
{
}

UnpublishedFile::~UnpublishedFile()
{
    struct stat own { };
    if (hidden_ && *hidden_ && statusOf(file_.get(), own))
        static_cast<void>(hidden_->unlinkIfStill(own));
}

std::optional<UnpublishedFile> UnpublishedFile::create(int folder, Kind kind)
{
    if (kind == Kind::nameless) {
        Descriptor file(uninterrupted(
            [&] { return ::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, ownerOnly); }));
        if (!file)
            return std::nullopt;
        return UnpublishedFile(std::move(file), std::nullopt);
    }
    FilePlace hidden(duplicate(folder), hiddenName());
    if (!hidden)
        return std::nullopt;
    constexpr int flags = O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW;
    Descriptor file(
        uninterrupted([&] { return ::openat(folder, hidden.name(), flags, ownerOnly); }));
    if (!file)
        return std::nullopt;
    return UnpublishedFile(std::move(file), std::move(hidden));
}

RenameResult UnpublishedFile::publish(FilePlace const& to)
{
    if (hidden_) {
        auto const result = renameExclusively(*hidden_, to);
        if (result == RenameResult::done)
            hidden_.reset();
        return result;
    }
    auto const self = "/proc/self/fd/" + std::to_string(file_.get());
    if (uninterrupted([&] {
            return ::linkat(AT_FDCWD, self.c_str(), to.folder(), to.name(), AT_SYMLINK_FOLLOW);
        })
        == 0)
        return RenameResult::done;
    return errno == EEXIST ? RenameResult::taken : RenameResult::failed;
}

} // namespace pixelhain
