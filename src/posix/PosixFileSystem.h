#pragma once
#include "ports/FileSystem.h"

namespace pixelhain {

/// The kernel's answers about folders and files. Nothing is ever opened but folders, so a pipe or a
/// device with a photo's name is harmless. Paths may be longer than PATH_MAX.
class PosixFileSystem final : public FileSystem {
public:
    [[nodiscard]] bool list(FileUrl const& folder, EntryVisitor const& visit) const override;
    [[nodiscard]] std::vector<std::optional<FileDetails>> details(
        std::span<FileUrl const> files) const override;
    [[nodiscard]] bool isFolder(FileUrl const& url) const override;
    [[nodiscard]] bool exists(FileUrl const& url) const override;
};

} // namespace pixelhain
