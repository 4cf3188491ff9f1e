#include "model/FileJobs.h"
#include "model/FreeNames.h"
#include "ports/FileOperations.h"
#include <algorithm>

namespace pixelhain {

namespace {

// Calls `handle` with one file after the other until cancelled; returns how many it was.
template <typename Files, typename Handle>
std::size_t eachUntilCancelled(Files const& files, FileRun& run, Handle const& handle)
{
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (run.cancel.isSet())
            return i;
        handle(files[i]);
        run.handled = i + 1;
    }
    return files.size();
}

} // namespace

TrashResult trashFiles(FileOperations& operations, std::vector<FileUrl> const& files, FileRun& run)
{
    TrashResult result;
    eachUntilCancelled(files, run, [&](FileUrl const& file) {
        if (auto place = operations.trash(file))
            result.trashed.push_back({ file, std::move(*place) });
        else
            ++result.failed;
    });
    return result;
}

RestoreResult restoreFiles(
    FileOperations& operations, std::vector<TrashedPhoto> const& trashed, FileRun& run)
{
    RestoreResult result;
    auto const handled = eachUntilCancelled(trashed, run, [&](TrashedPhoto const& photo) {
        if (operations.restore(photo.trashed, photo.original))
            ++result.restored;
    });
    result.left.assign(trashed.begin() + static_cast<std::ptrdiff_t>(handled), trashed.end());
    return result;
}

TransferResult transferFiles(FileOperations& operations, FileSystem const& fileSystem,
    Transfer transfer, std::vector<FileUrl> const& files, FileUrl const& folder, FileRun& run)
{
    auto const attempt = [&](FileUrl const& file, FileUrl const& destination) {
        return transfer == Transfer::copy ? operations.copy(file, destination, run.cancel)
                                          : operations.move(file, destination, run.cancel);
    };
    TransferResult result;
    eachUntilCancelled(files, run, [&](FileUrl const& file) {
        FreeNames names(fileSystem, folder, file.name());
        auto outcome = FileOutcome::taken;
        while (outcome == FileOutcome::taken)
            outcome = run.cancel.isSet() ? FileOutcome::cancelled : attempt(file, names.next());
        if (outcome == FileOutcome::done)
            result.done.push_back(file);
        else if (outcome == FileOutcome::failed)
            ++result.failed;
    });
    return result;
}

} // namespace pixelhain
