#pragma once
#include "ports/FileOperations.h"
#include "posix/TrashFolder.h"

namespace pixelhain {

/// The kernel's answers about changing files. Paths may be longer than PATH_MAX; links are moved,
/// copied and trashed as such. Folders are refused wherever a rename alone would not do.
class PosixFileOperations final : public FileOperations {
public:
    /// `homeTrash` is the trash of files on its drive; other drives have their own.
    explicit PosixFileOperations(FileUrl homeTrash = homeTrashUrl());

    [[nodiscard]] std::optional<FileUrl> trash(FileUrl const& file) override;
    [[nodiscard]] bool restore(FileUrl const& trashed, FileUrl const& original) override;
    [[nodiscard]] FileOutcome move(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override;
    [[nodiscard]] FileOutcome copy(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override;

private:
    FileUrl const homeTrash_;
};

} // namespace pixelhain
