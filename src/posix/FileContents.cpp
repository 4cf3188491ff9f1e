#include "posix/FileContents.h"
#include "posix/FolderHandle.h"
#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <linux/fs.h>
#include <memory>
#include <sys/ioctl.h>
#include <sys/types.h>

namespace pixelhain {

namespace {

// Between two looks at the cancel flag: a second on a slow stick, few calls on a fast disk.
constexpr std::uint64_t chunk = std::uint64_t { 8 } << 20U;

constexpr std::size_t bufferSize = std::size_t { 1 } << 20U;

bool meansNoRoom(int error)
{
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

// Reserving the room first makes a full disk known before anything is written.
bool reserve(int to, std::uint64_t size)
{
    return size == 0 || uninterrupted([&] {
        return ::fallocate(to, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size));
    }) == 0
        || !meansNoRoom(errno);
}

class ContentsCopy {
public:
    ContentsCopy(int from, int to, std::uint64_t size)
        : from_(from)
        , to_(to)
        , size_(size)
    {
    }

    ContentsResult run(CancelFlag const& cancel)
    {
        for (std::uint64_t written = 0; done_ < size_; written = done_) {
            if (cancel.isSet())
                return ContentsResult::cancelled;
            auto const end = std::min(size_, done_ + chunk);
            while (done_ < end)
                if (!step(end - done_))
                    return ContentsResult::failed;
            if (!writeBehind(written))
                return ContentsResult::failed;
        }
        return ContentsResult::done;
    }

private:
    bool step(std::uint64_t wanted) { return buffer_ ? readAndWrite(wanted) : inKernel(wanted); }

    bool inKernel(std::uint64_t wanted)
    {
        auto in = static_cast<off_t>(done_);
        auto out = in;
        auto const count = uninterrupted([&] {
            return ::copy_file_range(from_, &in, to_, &out, static_cast<std::size_t>(wanted), 0);
        });
        if (count > 0) {
            done_ += static_cast<std::uint64_t>(count);
            return true;
        }
        if (count < 0 && (meansNoRoom(errno) || errno == EIO))
            return false;
        // Some file systems cannot do it, and some claim that the file ends here.
        buffer_ = std::make_unique_for_overwrite<std::byte[]>(bufferSize);
        return true;
    }

    bool readAndWrite(std::uint64_t wanted)
    {
        auto const most = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, bufferSize));
        auto const got = uninterrupted(
            [&] { return ::pread(from_, buffer_.get(), most, static_cast<off_t>(done_)); });
        return got > 0 && write(static_cast<std::size_t>(got));
    }

    bool write(std::size_t count)
    {
        for (std::size_t at = 0; at < count;) {
            auto const put = uninterrupted([&] {
                return ::pwrite(to_, buffer_.get() + at, count - at, static_cast<off_t>(done_));
            });
            if (put <= 0)
                return false;
            at += static_cast<std::size_t>(put);
            done_ += static_cast<std::uint64_t>(put);
        }
        return true;
    }

    // Otherwise all of a large file piles up in memory, and the sync at the end is a long wait that
    // nothing can cancel. What fails here would not be told again by the sync.
    bool writeBehind(std::uint64_t chunkStart) const
    {
        auto const sync = [&](std::uint64_t from, std::uint64_t to, unsigned flags) {
            return uninterrupted([&] {
                return ::sync_file_range(
                    to_, static_cast<off_t>(from), static_cast<off_t>(to - from), flags);
            }) == 0
                || (errno != EIO && !meansNoRoom(errno));
        };
        if (size_ <= chunk)
            return true;
        auto const before = chunkStart < chunk ? 0 : chunkStart - chunk;
        return sync(chunkStart, done_, SYNC_FILE_RANGE_WRITE)
            && (before == chunkStart
                || sync(before, chunkStart,
                    SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE
                        | SYNC_FILE_RANGE_WAIT_AFTER));
    }

    int from_;
    int to_;
    std::uint64_t size_;
    std::uint64_t done_ = 0;
    std::unique_ptr<std::byte[]> buffer_;
};

} // namespace

ContentsResult copyContents(int from, int to, std::uint64_t size, CancelFlag const& cancel)
{
    if (cancel.isSet())
        return ContentsResult::cancelled;
    if (uninterrupted([&] { return ::ioctl(to, FICLONE, from); }) == 0)
        return ContentsResult::done;
    if (meansNoRoom(errno) || !reserve(to, size))
        return ContentsResult::failed;
    return ContentsCopy(from, to, size).run(cancel);
}

} // namespace pixelhain
