#include "support/FakeFileOperations.h"

namespace pixelhain {

FakeFileOperations::~FakeFileOperations() = default;

std::optional<FileUrl> FakeFileOperations::trash(FileUrl const& file)
{
    record("trash", file);
    auto const place
        = FileUrl("/trash").child(std::to_string(++trashed_) + " " + std::string(file.name()));
    return moved(file, place) ? std::optional(place) : std::nullopt;
}

bool FakeFileOperations::restore(FileUrl const& trashed, FileUrl const& original)
{
    record("restore", trashed, original);
    return !files_.exists(original) && moved(trashed, original);
}

FileOutcome FakeFileOperations::move(
    FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
{
    record("move", file, destination);
    auto const refused = refusal(file, destination, cancel);
    if (refused != FileOutcome::done)
        return refused;
    return moved(file, destination) ? FileOutcome::done : FileOutcome::failed;
}

FileOutcome FakeFileOperations::copy(
    FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
{
    record("copy", file, destination);
    auto const refused = refusal(file, destination, cancel);
    if (refused != FileOutcome::done)
        return refused;
    return files_.duplicate(file, destination) ? FileOutcome::done : FileOutcome::failed;
}

void FakeFileOperations::record(char const* what, FileUrl const& file, FileUrl const& destination)
{
    auto call = what + (" " + std::string(file.path()));
    if (!destination.empty())
        call += " " + std::string(destination.path());
    calls.push_back(std::move(call));
    if (during)
        during();
}

FileOutcome FakeFileOperations::refusal(
    FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
{
    if (takenLate.erase(destination) > 0)
        files_.addFile(destination);
    if (files_.exists(destination))
        return FileOutcome::taken;
    if (stuck.contains(file) && cancel.isSet())
        return FileOutcome::cancelled;
    return failing.contains(file) ? FileOutcome::failed : FileOutcome::done;
}

bool FakeFileOperations::moved(FileUrl const& file, FileUrl const& destination)
{
    if (failing.contains(file) || !files_.duplicate(file, destination))
        return false;
    files_.remove(file);
    return true;
}

} // namespace pixelhain
