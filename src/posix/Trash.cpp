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

namespace pixelhain {

namespace {

enum class PutResult : std::uint8_t { done, nameTaken, nameTooLong, otherDevice, failed };

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
    switch (result) {
    case RenameResult::done:
        return PutResult::done;
    case RenameResult::taken:
        return PutResult::nameTaken;
    case RenameResult::otherDevice:
        return PutResult::otherDevice;
    case RenameResult::failed:
        break;
    }
    return failureOf(errno);
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

// Names that are tried one after the other, then in leaps: a trash may hold thousands of IMG_0001.
unsigned afterNumber(unsigned number)
{
    constexpr unsigned oneByOne = 16;
    return number < oneByOne ? number + 1 : number + number / 4;
}

struct Put {
    PutResult result = PutResult::failed;
    FileUrl place;
};

Put putInto(TrashFolder const& trash, FilePlace const& file, std::string_view path)
{
    auto const text = trashInfoText(path, std::time(nullptr));
    // Some file systems take less than most, those that encrypt names above all.
    constexpr std::array<std::size_t, 2> longestNames { NAME_MAX, 143 };
    constexpr unsigned lastNumber = 1'000'000'000;
    Put answer;
    for (auto const longest : longestNames) {
        for (unsigned number = 1; number < lastNumber; number = afterNumber(number)) {
            auto const name = trashName(file.name(), number, longest - trashInfoSuffix.size());
            answer.result = put(file, trash, name, text);
            if (answer.result == PutResult::done)
                answer.place = trash.url.child("files").child(name);
            if (answer.result != PutResult::nameTaken)
                break;
        }
        if (answer.result != PutResult::nameTooLong)
            break;
    }
    return answer;
}

std::string wayTo(DriveTop const& top, std::string_view name)
{
    return top.way.empty() ? std::string(name) : top.way + "/" + std::string(name);
}

void forget(FileUrl const& trashed)
{
    auto const files = trashed.parent();
    if (files.name() != "files")
        return;
    auto const name = std::string(trashed.name()) + std::string(trashInfoSuffix);
    FilePlace const info(files.parent().child("info").child(name));
    if (info)
        static_cast<void>(info.unlink());
}

} // namespace

std::optional<FileUrl> moveToTrash(FileUrl const& file, FileUrl const& home)
{
    FilePlace const place(file);
    struct stat status { };
    if (!place || !place.status(status) || S_ISDIR(status.st_mode))
        return std::nullopt;
    auto const folder = openFolder(file.parent().path(), O_PATH);
    auto const drive = driveOf(folder);
    if (!drive)
        return std::nullopt;
    if (auto const trash = openHomeTrash(home, *drive)) {
        auto const answer = putInto(*trash, place, file.path());
        if (answer.result != PutResult::otherDevice)
            return answer.result == PutResult::done ? std::optional(answer.place) : std::nullopt;
    }
    auto const top = topOf(folder, file.parent());
    auto const trash = top ? openDriveTrash(*top) : std::nullopt;
    if (!trash)
        return std::nullopt;
    auto const answer = putInto(*trash, place, wayTo(*top, file.name()));
    return answer.result == PutResult::done ? std::optional(answer.place) : std::nullopt;
}

bool moveFromTrash(FileUrl const& trashed, FileUrl const& original)
{
    FilePlace const from(trashed);
    FilePlace const to(original);
    if (!from || !to)
        return false;
    auto const renamed = renameExclusively(from, to);
    bool const moved = renamed == RenameResult::done
        || (renamed == RenameResult::otherDevice
            && moveByCopying(from, to, CancelFlag()) == FileOutcome::done);
    if (moved)
        forget(trashed);
    return moved;
}

} // namespace pixelhain
