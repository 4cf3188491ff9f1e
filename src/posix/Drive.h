#pragma once
#include "base/FileUrl.h"
#include "posix/Descriptor.h"
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pixelhain {

/// Which mount of which file system something lies on. Between two equal ones files can be renamed.
struct Drive {
    std::uint64_t device = 0;
    std::uint64_t mount = 0;

    friend bool operator==(Drive const&, Drive const&) = default;
};

/// The drive that an open folder lies on.
[[nodiscard]] std::optional<Drive> driveOf(int folder);

/// The top folder of a drive, and the way from there to some folder on it.
struct DriveTop {
    Descriptor folder;
    FileUrl url;
    std::string way; ///< relative; empty for the top folder itself
};

/// The top of the drive that the folder at `url`, opened as `folder`, lies on.
[[nodiscard]] std::optional<DriveTop> topOf(int folder, FileUrl const& url);

} // namespace pixelhain
