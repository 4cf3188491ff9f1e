#include "posix/PosixFileReplacement.h"
#include "posix/ExclusiveRename.h"
#include "posix/FolderHandle.h"
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <utility>

namespace pixelhain {

namespace {

constexpr std::size_t pendingLimit = 256 * 1024;
constexpr mode_t newFileMode = 0666; // less the user's mask
constexpr mode_t modeBits = 07777;

WriteProblem problemOf(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return WriteProblem::noSpace;
    case EACCES:
    case EPERM:
        return WriteProblem::notAllowed;
    case EROFS:
        return WriteProblem::readOnly;
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return WriteProblem::noFolder;
    case ENAMETOOLONG:
        return WriteProblem::nameTooLong;
    case EISDIR:
        return WriteProblem::notAFile;
    case EEXIST:
        return WriteProblem::taken;
    case EFBIG:
        return WriteProblem::tooLarge;
    default:
        return WriteProblem::other;
    }
}

// The file that a link stands for is the one that is meant.
FileUrl resolved(FileUrl const& target)
{
    struct stat status { };
    if (::lstat(target.cString(), &status) != 0 || !S_ISLNK(status.st_mode))
        return target;
    auto* const path = ::realpath(target.cString(), nullptr);
    if (path == nullptr)
        return target;
    FileUrl const file(path);
    std::free(path);
    return file;
}

ReplacedFile stateOf(struct stat const& status)
{
    return { true, status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
        status.st_mtim.tv_sec, status.st_mtim.tv_nsec };
}

// "NAME.part", "NAME.2.part", …: NAME shortened, between two characters, where the whole would be
// too long for a file.
std::string partName(std::string_view name, int attempt)
{
    auto const ending = (attempt == 1 ? "" : "." + std::to_string(attempt)) + ".part";
    auto const continuesCharacter
        = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    auto length = std::min(name.size(), NAME_MAX - ending.size());
    if (length < name.size())
        while (length > 0 && continuesCharacter(name[length]))
            --length;
    return std::string(name.substr(0, length)) + ending;
}

} // namespace

PosixFileReplacement::PosixFileReplacement(FilePlace target, std::optional<struct stat> replaced)
    : target_(std::move(target))
    , replaced_(replaced)
    , part_(Descriptor(), "")
{
}

ReplacedFile PosixFileReplacement::look(FileUrl const& target)
{
    struct stat there { };
    FilePlace const place(resolved(target));
    return place && place.status(there) ? stateOf(there) : ReplacedFile {};
}

FileReplacements::Begun PosixFileReplacement::begin(
    FileUrl const& target, std::optional<ReplacedFile> const& agreed)
{
    FilePlace place(resolved(target));
    if (!place)
        return problemOf(errno);
    struct stat there { };
    bool const exists = place.status(there);
    if (!exists && errno != ENOENT)
        return problemOf(errno);
    if (exists && !S_ISREG(there.st_mode))
        return WriteProblem::notAFile;
    if (exists && agreed && stateOf(there) != *agreed)
        return WriteProblem::taken;
    if (exists && ::faccessat(place.folder(), place.name(), W_OK, AT_EACCESS) != 0)
        return problemOf(errno);
    auto const mode = exists ? there.st_mode & modeBits : newFileMode;
    std::unique_ptr<PosixFileReplacement> file(
        new PosixFileReplacement(std::move(place), exists ? std::optional(there) : std::nullopt));
    if (!file->open(mode))
        return problemOf(errno);
    return file;
}

bool PosixFileReplacement::open(mode_t mode)
{
    constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW;
    constexpr int attempts = 1000;
    Descriptor folder(::fcntl(target_.folder(), F_DUPFD_CLOEXEC, 0));
    if (!folder)
        return false;
    for (int attempt = 1; attempt <= attempts && !file_; ++attempt) {
        auto const name = partName(target_.name(), attempt);
        file_ = Descriptor(
            uninterrupted([&] { return ::openat(target_.folder(), name.c_str(), flags, mode); }));
        if (file_)
            part_ = FilePlace(std::move(folder), name);
        else if (errno != EEXIST)
            return false;
    }
    if (!file_)
        return false;
    if (replaced_)
        static_cast<void>(::fchmod(file_.get(), mode)); // the mask does not count here
    return true;
}

PosixFileReplacement::~PosixFileReplacement()
{
    struct stat own { };
    bool const isLeft = isInPlace_ || (error_ != 0 && isWritten_);
    if (file_ && part_ && !isLeft && statusOf(file_.get(), own))
        static_cast<void>(part_.unlinkIfStill(own));
}

bool PosixFileReplacement::write(std::span<std::uint8_t const> bytes)
try {
    if (error_ != 0)
        return false;
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
    return pending_.size() < pendingLimit || flush();
} catch (std::exception const&) {
    // Those who write may be a library that knows no exceptions.
    errno = ENOMEM;
    fail();
    return false;
}

// What has no name any more nobody would ever see. Some drives do not count names: there it is
// looked for.
bool PosixFileReplacement::isStillNamed()
{
    struct stat own { };
    struct stat folder { };
    if (!statusOf(file_.get(), own) || own.st_nlink > 0 || part_.isStill(own))
        return true;
    bool const hasFolder = statusOf(target_.folder(), folder) && folder.st_nlink > 0;
    errno = hasFolder ? EIO : ENOENT;
    fail();
    return false;
}

bool PosixFileReplacement::flush()
{
    if (!isStillNamed())
        return false;
    std::span<std::uint8_t const> left(pending_);
    while (!left.empty() && error_ == 0) {
        auto const written
            = uninterrupted([&] { return ::write(file_.get(), left.data(), left.size()); });
        if (written <= 0) {
            fail();
            break;
        }
        isWritten_ = true;
        left = left.subspan(static_cast<std::size_t>(written));
    }
    pending_.clear();
    return error_ == 0;
}

// Some drives tell only now that there was no space.
bool PosixFileReplacement::sync()
{
    if (uninterrupted([&] { return ::fsync(file_.get()); }) == 0)
        return true;
    fail();
    return false;
}

// Whoever agreed to lose a file meant what it held then.
bool PosixFileReplacement::rename()
{
    struct stat there { };
    bool const isThere = replaced_ && target_.status(there);
    if (isThere && !isUnchanged(*replaced_, there))
        errno = EEXIST;
    else if (isThere ? uninterrupted([&] {
                 return ::renameat(part_.folder(), part_.name(), target_.folder(), target_.name());
             }) == 0
                     : renameExclusively(part_, target_) == RenameResult::done)
        return true;
    auto const error = errno;
    if (error == ENOENT && !isStillNamed())
        return false;
    errno = error;
    fail();
    return false;
}

std::optional<WriteProblem> PosixFileReplacement::finish()
{
    if (error_ != 0 || !flush() || !sync() || !rename())
        return problemOf(error_);
    isInPlace_ = true;
    // The name, too, shall outlive a loss of power; the file is there in any case.
    Descriptor const folder(::openat(target_.folder(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        static_cast<void>(::fsync(folder.get()));
    return std::nullopt;
}

void PosixFileReplacement::fail()
{
    error_ = errno == 0 ? EIO : errno;
}

} // namespace pixelhain
