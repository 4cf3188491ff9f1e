#pragma once
#include "cli/Command.h"
#include "posix/PosixFileSystem.h"
#include <atomic>

namespace pixelhain {

/// The file system for a scan, which passes over folders that cannot be listed in silence: names
/// each of them, subfolders too, on the error stream.
class NamingFailures final : public FileSystem {
public:
    explicit NamingFailures(CommandContext const& context)
        : context_(context)
    {
    }

    [[nodiscard]] bool list(FileUrl const& folder, EntryVisitor const& visit) const override;
    [[nodiscard]] std::vector<std::optional<FileDetails>> details(
        std::span<FileUrl const> files) const override
    {
        return files_.details(files);
    }
    [[nodiscard]] bool isFolder(FileUrl const& url) const override { return files_.isFolder(url); }
    [[nodiscard]] bool exists(FileUrl const& url) const override { return files_.exists(url); }

    bool hasFailed() const { return hasFailed_; }

private:
    PosixFileSystem files_;
    CommandContext const& context_;
    mutable std::atomic<bool> hasFailed_ = false;
};

} // namespace pixelhain
