#include "decoder/DeathRecords.h"
#include "decoder/WorkerLimits.h"
#include <sys/stat.h>

namespace pixelhain {

std::optional<FileState> FileState::of(int descriptor)
{
    struct stat info { };
    if (::fstat(descriptor, &info) != 0)
        return std::nullopt;
    return FileState { info.st_dev, info.st_ino, info.st_mtim.tv_sec, info.st_mtim.tv_nsec,
        static_cast<std::uint64_t>(info.st_size) };
}

// Nearly always nothing is recorded, and then nobody need look at the file.
bool DeathRecords::isEmpty() const
{
    std::scoped_lock const guard(lock_);
    return deaths_.empty();
}

bool DeathRecords::isGivenUp(int descriptor) const
{
    auto const state = isEmpty() ? std::nullopt : FileState::of(descriptor);
    if (!state)
        return false;
    std::scoped_lock const guard(lock_);
    auto const known = deaths_.find(*state);
    return known != deaths_.end() && known->second >= WorkerLimits::attempts;
}

void DeathRecords::record(int descriptor)
{
    if (auto const state = FileState::of(descriptor)) {
        std::scoped_lock const guard(lock_);
        ++deaths_[*state];
    }
}

void DeathRecords::forgive(int descriptor)
{
    if (isEmpty())
        return;
    if (auto const state = FileState::of(descriptor)) {
        std::scoped_lock const guard(lock_);
        deaths_.erase(*state);
    }
}

} // namespace pixelhain
