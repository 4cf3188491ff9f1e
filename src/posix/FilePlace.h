#pragma once
#include "base/FileUrl.h"
#include "posix/Descriptor.h"
#include <string>
#include <sys/stat.h>

namespace pixelhain {

/// A name in an open folder: what system calls take in place of a path. The path may have any
/// length, and several calls about the file mean the same folder even if its name changes.
class FilePlace {
public:
    /// No place if the folder cannot be reached or the path names no entry of a folder.
    explicit FilePlace(FileUrl const& url);
    FilePlace(Descriptor folder, std::string name)
        : folder_(std::move(folder))
        , name_(std::move(name))
    {
    }

    explicit operator bool() const { return static_cast<bool>(folder_); }
    int folder() const { return folder_.get(); }
    char const* name() const { return name_.c_str(); }

    /// What lies there now; links are not followed.
    [[nodiscard]] bool status(struct stat& status) const;

    /// Removes the name. False, with errno set, if that is not possible.
    [[nodiscard]] bool unlink() const;

    /// Whether the name still is that of the file with this status.
    [[nodiscard]] bool isStill(struct stat const& file) const;

    /// Removes the name if it still is that of the file with this status.
    [[nodiscard]] bool unlinkIfStill(struct stat const& file) const;

private:
    Descriptor folder_;
    std::string name_;
};

/// What an open file is. False, with errno set, if that cannot be told.
[[nodiscard]] bool statusOf(int file, struct stat& status);

/// Whether both tell of the same file, under whatever name.
bool isSameFile(struct stat const& a, struct stat const& b);

/// Whether both tell of the same file with the same bytes, as far as size and date show.
bool isUnchanged(struct stat const& before, struct stat const& after);

} // namespace pixelhain
