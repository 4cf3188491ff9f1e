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

bool DeathRecords::isGivenUp(int descriptor) const
{
    {
        std::scoped_lock const guard(lock_);
        if (deaths_.empty())
            return false;
    }
    auto const state = FileState::of(descriptor);
    std::scoped_lock const guard(lock_);
    auto const known = state ? deaths_.find(*state) : deaths_.end();
    return known != deaths_.end() && known->second >= WorkerLimits::attempts;
}

void DeathRecords::record(int descriptor)
{
    if (auto const state = FileState::of(descriptor)) {
        std::scoped_lock const guard(lock_);
        ++deaths_[*state];
    }
}

} // namespace pixelhain
