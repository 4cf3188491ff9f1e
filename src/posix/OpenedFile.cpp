#include "posix/OpenedFile.h"
#include "posix/FolderHandle.h"
#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pixelhain {

namespace {

// The kernel takes no path of PATH_MAX bytes or more: such a file is reached from its folder.
struct Place {
    explicit Place(FileUrl const& url)
    {
        if (url.path().size() < PATH_MAX) {
            name = url.cString();
            return;
        }
        folder = openFolder(url.parent().path(), O_PATH);
        base = folder.get();
        name = url.cString() + url.path().rfind('/') + 1;
    }

    Descriptor folder;
    int base = AT_FDCWD;
    char const* name = nullptr;
};

int openForReading(Place const& place)
{
    // Something else may take the file's place after it was looked at: nothing that is opened here
    // may block or become the terminal of this process.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    return uninterrupted([&] { return ::openat(place.base, place.name, flags); });
}

} // namespace

std::unique_ptr<OpenedFile> OpenedFile::open(FileUrl const& url)
{
    struct stat info { };
    if (url.empty())
        return nullptr;
    Place const place(url);
    // Merely opening a pipe wakes its writer, and opening a device may move it.
    if (::fstatat(place.base, place.name, &info, 0) != 0 || !S_ISREG(info.st_mode))
        return nullptr;
    Descriptor file(openForReading(place));
    if (!file || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size < 0
        || static_cast<std::uint64_t>(info.st_size) > maxSize)
        return nullptr;
    return adopt(std::move(file), static_cast<std::uint64_t>(info.st_size));
}

std::unique_ptr<OpenedFile> OpenedFile::adopt(Descriptor file, std::uint64_t size)
{
    return std::unique_ptr<OpenedFile>(new OpenedFile(std::move(file), size));
}

OpenedFile::OpenedFile(Descriptor file, std::uint64_t size)
    : file_(std::move(file))
    , size_(size)
{
}

std::size_t OpenedFile::readAt(std::uint64_t offset, std::span<std::uint8_t> into) const
{
    if (offset >= size_)
        return 0;
    auto const wanted
        = static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), size_ - offset));
    std::size_t done = 0;
    while (done < wanted) {
        auto const got = ::pread(
            file_.get(), into.data() + done, wanted - done, static_cast<off_t>(offset + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

} // namespace pixelhain
