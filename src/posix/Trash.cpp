#include "posix/Trash.h"
#include "posix/ExclusiveRename.h"
#include "posix/FileTransfer.h"
#include "posix/FolderHandle.h"
#include "posix/TrashFolder.h"
#include "posix/TrashInfo.h"
#include <array>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <sys/random.h>

namespace pixelhain {

namespace {

enum class PutResult : std::uint8_t { done, nameTaken, nameTooLong, failed };

bool writeAll(Descriptor const& file, std::string_view text)
{
    while (!text.empty()) {
        auto const put
            = uninterrupted([&] { return ::write(file.get(), text.data(), text.size()); });
        if (put <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

PutResult failureOf(int error)
{
    if (error == EEXIST)
        return PutResult::nameTaken;
    return error == ENAMETOOLONG ? PutResult::nameTooLong : PutResult::failed;
}

PutResult resultOf(RenameResult result)
{
    if (result == RenameResult::done)
        return PutResult::done;
    return result == RenameResult::taken ? PutResult::nameTaken : failureOf(errno);
}

FilePlace placeIn(Descriptor const& folder, std::string name)
{
    return { Descriptor(::fcntl(folder.get(), F_DUPFD_CLOEXEC, 0)), std::move(name) };
}

// The complete info file comes first: it holds the name for the file, also against other programs.
PutResult put(FilePlace const& file, TrashFolder const& trash, std::string const& name,
    std::string_view infoText)
{
    auto const info = placeIn(trash.info, name + std::string(trashInfoSuffix));
    auto const place = placeIn(trash.files, name);
    if (!info || !place)
        return PutResult::failed;
    constexpr int flags = O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW;
    {
        Descriptor const written(
            uninterrupted([&] { return ::openat(info.folder(), info.name(), flags, 0600); }));
        if (!written)
            return failureOf(errno);
        if (!writeAll(written, infoText)) {
            static_cast<void>(info.unlink());
            return PutResult::failed;
        }
    }
    auto const result = resultOf(renameExclusively(file, place));
    if (result != PutResult::done)
        static_cast<void>(info.unlink());
    return result;
}

// Numbers are tried one after the other, then in random leaps: a trash may hold thousands of names
// like IMG_0001.
unsigned afterNumber(unsigned number)
{
    constexpr unsigned oneByOne = 16;
    unsigned leap = 0;
    if (number >= oneByOne && ::getrandom(&leap, sizeof leap, 0) == sizeof leap)
        leap %= number;
    return number + 1 + leap;
}

std::optional<FileUrl> putInto(
    TrashFolder const& trash, FilePlace const& file, std::string_view path)
{
    auto const text = trashInfoText(path, std::time(nullptr));
    // Some file systems take less than most, those that encrypt names above all.
    constexpr std::array<std::size_t, 2> longestNames { NAME_MAX, 143 };
    constexpr unsigned lastNumber = 1'000'000'000;
    for (auto const longest : longestNames) {
        auto result = PutResult::nameTaken;
        std::string name;
        for (unsigned number = 1; result == PutResult::nameTaken && number < lastNumber;
             number = afterNumber(number)) {
            name = trashName(file.name(), number, longest - trashInfoSuffix.size());
            result = put(file, trash, name, text);
        }
        if (result == PutResult::done)
            return trash.url.child("files").child(name);
        if (result != PutResult::nameTooLong)
            break;
    }
    return std::nullopt;
}

std::string wayTo(DriveTop const& top, std::string_view name)
{
    return top.way.empty() ? std::string(name) : top.way + "/" + std::string(name);
}

std::optional<FilePlace> infoOf(FileUrl const& trashed)
{
    auto const files = trashed.parent();
    if (files.name() != "files")
        return std::nullopt;
    auto const name = std::string(trashed.name()) + std::string(trashInfoSuffix);
    FilePlace info(files.parent().child("info").child(name));
    return info ? std::optional(std::move(info)) : std::nullopt;
}

std::string textOf(FilePlace const& info)
{
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    constexpr std::size_t longest = std::size_t { 1 } << 20U;
    Descriptor const file(
        uninterrupted([&] { return ::openat(info.folder(), info.name(), flags); }));
    struct stat status { };
    if (!file || !statusOf(file.get(), status) || !S_ISREG(status.st_mode))
        return {};
    std::string text;
    for (char part[4096]; text.size() < longest;) {
        auto const got = uninterrupted([&] { return ::read(file.get(), part, sizeof part); });
        if (got <= 0)
            break;
        text.append(part, static_cast<std::size_t>(got));
    }
    return text;
}

// A trash that was emptied meanwhile may hold somebody else's photo under the name. Where no info
// file tells, the name has to do.
bool cameFrom(FilePlace const& info, FilePlace const& original, FileUrl const& url)
{
    auto const path = pathIn(textOf(info));
    if (!path)
        return true;
    if (path->starts_with('/'))
        return *path == url.path();
    if (url.path().ends_with("/" + *path))
        return true;
    // Along links the path to a photo is another one than its way on the drive.
    auto const top = topOf(original.folder(), url.parent());
    return top && wayTo(*top, url.name()) == *path;
}

} // namespace

std::optional<FileUrl> moveToTrash(FileUrl const& file, FileUrl const& home)
{
    FilePlace const place(file);
    struct stat status { };
    if (!place || !place.status(status) || S_ISDIR(status.st_mode))
        return std::nullopt;
    auto const drive = driveOf(place.folder());
    if (!drive)
        return std::nullopt;
    auto const inHome = openHomeTrash(home, *drive);
    if (inHome.isOnDrive)
        return inHome.folder ? putInto(*inHome.folder, place, file.path()) : std::nullopt;
    auto const top = topOf(place.folder(), file.parent());
    auto const trash = top ? openDriveTrash(*top) : std::nullopt;
    return trash ? putInto(*trash, place, wayTo(*top, file.name())) : std::nullopt;
}

bool moveFromTrash(FileUrl const& trashed, FileUrl const& original)
{
    FilePlace const from(trashed);
    FilePlace const to(original);
    if (!from || !to)
        return false;
    auto const info = infoOf(trashed);
    if (info && !cameFrom(*info, to, original))
        return false;
    auto const renamed = renameExclusively(from, to);
    bool const moved = renamed == RenameResult::done
        || (renamed == RenameResult::otherDevice
            && moveByCopying(from, to, CancelFlag()) == FileOutcome::done);
    if (moved && info)
        static_cast<void>(info->unlink());
    return moved;
}

} // namespace pixelhain
