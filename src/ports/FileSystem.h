#pragma once
#include "base/FileUrl.h"
#include "base/Timestamp.h"
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace pixelhain {

/// What a name in a folder stands for, links not followed. `unknown`: the file system does not tell
/// in its listing; ask for the details.
enum class EntryKind : std::uint8_t { unknown, file, folder, link, other };

struct FileDetails {
    EntryKind kind = EntryKind::unknown;
    Timestamp modified = distantPast;
    std::int64_t size = 0;
    bool operator==(FileDetails const&) const = default;
};

/// What the program asks of the file system when it looks around. Thread-safe; every call may wait
/// for a disk.
class FileSystem {
public:
    using EntryVisitor = std::function<void(std::string_view name, EntryKind kind)>;
    virtual ~FileSystem() = default;

    /// Calls `visit` for each entry of `folder` but "." and "..", hidden ones included, in the
    /// order in which the file system yields them. False if the folder cannot be opened; an error
    /// in the middle ends the listing with what was seen.
    [[nodiscard]] virtual bool list(FileUrl const& folder, EntryVisitor const& visit) const = 0;

    /// Kind, modification date and size of each file, links not followed, on as many threads as
    /// pay, which give way to others where there are many files; nothing where a file vanished or
    /// cannot be looked at. Same order as `files`.
    [[nodiscard]] virtual std::vector<std::optional<FileDetails>> details(
        std::span<FileUrl const> files) const = 0;

    /// Whether there is a folder at this place; links are followed.
    [[nodiscard]] virtual bool isFolder(FileUrl const& url) const = 0;

    /// Whether there is anything at this place; links are followed.
    [[nodiscard]] virtual bool exists(FileUrl const& url) const = 0;
};

} // namespace pixelhain
