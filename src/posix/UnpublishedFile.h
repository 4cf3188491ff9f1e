#pragma once
#include "posix/ExclusiveRename.h"
#include <cstdint>
#include <optional>

namespace pixelhain {

/// A new file that nobody sees until it is complete. It goes away with this unless published.
class UnpublishedFile {
public:
    enum class Kind : std::uint8_t {
        nameless, ///< gone even if this process is killed; not every file system has such files
        hidden, ///< under a hidden name of its own in the folder
    };

    /// Empty, with errno set, if the folder takes no such file.
    [[nodiscard]] static std::optional<UnpublishedFile> create(int folder, Kind kind);

    UnpublishedFile(UnpublishedFile&& other) = default;
    UnpublishedFile& operator=(UnpublishedFile&&) = delete;
    ~UnpublishedFile();

    int descriptor() const { return file_.get(); }

    /// Gives the file its name, in the folder where it was made. Never replaces anything.
    [[nodiscard]] RenameResult publish(FilePlace const& to);

private:
    UnpublishedFile(Descriptor file, std::optional<FilePlace> hidden);

    Descriptor file_;
    std::optional<FilePlace> hidden_;
};

} // namespace pixelhain
