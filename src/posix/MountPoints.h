#pragma once
#include "base/FileUrl.h"
#include "posix/Descriptor.h"
#include <string>
#include <string_view>

namespace pixelhain {

/// What is mounted at a folder or anywhere below it, as the calling thread sees it. What drives
/// cover and uncover when they come and go, inotify does not tell.
class MountPoints {
public:
    explicit MountPoints(FileUrl top);

    /// Polls as POLLPRI when anything was mounted or unmounted anywhere; negative if the system
    /// does not tell.
    [[nodiscard]] int descriptor() const { return list_.get(); }

    /// Whether something else is mounted there than at the last call, or when this was made.
    [[nodiscard]] bool haveChanged();

private:
    std::string read() const;

    FileUrl top_;
    Descriptor list_;
    std::string seen_;
};

/// The mounts in the lines of a mountinfo file that lie at or below `top`: their numbers and
/// places.
[[nodiscard]] std::string mountsWithin(std::string_view mountinfo, FileUrl const& top);

} // namespace pixelhain
