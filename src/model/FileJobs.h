#pragma once
#include "base/FileUrl.h"
#include "model/BrowserOptions.h"
#include "model/FileWork.h"
#include "model/TrashedPhoto.h"
#include <vector>

namespace pixelhain {

class FileOperations;
class FileSystem;

/// The work on many files, off the main thread. A file that fails is counted and the next one is
/// tried; once cancelled, no further file is begun.

struct TrashResult {
    std::vector<TrashedPhoto> trashed;
    std::size_t failed = 0;
};
[[nodiscard]] TrashResult trashFiles(
    FileOperations& operations, std::vector<FileUrl> const& files, FileRun& run);

struct RestoreResult {
    std::size_t restored = 0;
    std::vector<TrashedPhoto> left; ///< not begun
};
[[nodiscard]] RestoreResult restoreFiles(
    FileOperations& operations, std::vector<TrashedPhoto> const& trashed, FileRun& run);

struct TransferResult {
    std::vector<FileUrl> done;
    std::size_t failed = 0;
};

/// Moves or copies files into `folder`, each under the first name that is free there and stays
/// free until it is taken.
[[nodiscard]] TransferResult transferFiles(FileOperations& operations, FileSystem const& fileSystem,
    Transfer transfer, std::vector<FileUrl> const& files, FileUrl const& folder, FileRun& run);

} // namespace pixelhain
