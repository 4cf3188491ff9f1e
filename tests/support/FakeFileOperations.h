#pragma once
#include "ports/FileOperations.h"
#include "support/FakeFileSystem.h"
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace pixelhain {

/// Moves and copies files of a drive in memory, and has its trash there. Records every call.
/// Things go wrong as a test says.
class FakeFileOperations final : public FileOperations {
public:
    explicit FakeFileOperations(FakeFileSystem& files)
        : files_(files)
    {
    }

    std::set<FileUrl> failing; ///< files that cannot be changed
    std::set<FileUrl> takenLate; ///< destinations that another program takes in the last moment
    std::set<FileUrl> stuck; ///< files whose copying ends only when it is cancelled
    std::function<void()> during; ///< called in the middle of every call
    std::vector<std::string> calls; ///< "trash /b/1.jpg", "copy /b/1.jpg /z/1.jpg"

    std::optional<FileUrl> trash(FileUrl const& file) override
    {
        record("trash", file);
        auto const place
            = FileUrl("/trash").child(std::to_string(++trashed_) + " " + std::string(file.name()));
        return moved(file, place) ? std::optional(place) : std::nullopt;
    }

    bool restore(FileUrl const& trashed, FileUrl const& original) override
    {
        record("restore", trashed, original);
        return !files_.exists(original) && moved(trashed, original);
    }

    FileOutcome move(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override
    {
        record("move", file, destination);
        auto const refused = refusal(file, destination, cancel);
        if (refused != FileOutcome::done)
            return refused;
        return moved(file, destination) ? FileOutcome::done : FileOutcome::failed;
    }

    FileOutcome copy(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override
    {
        record("copy", file, destination);
        auto const refused = refusal(file, destination, cancel);
        if (refused != FileOutcome::done)
            return refused;
        return files_.duplicate(file, destination) ? FileOutcome::done : FileOutcome::failed;
    }

private:
    void record(char const* what, FileUrl const& file, FileUrl const& destination = {})
    {
        auto call = what + (" " + std::string(file.path()));
        if (!destination.empty())
            call += " " + std::string(destination.path());
        calls.push_back(std::move(call));
        if (during)
            during();
    }

    FileOutcome refusal(FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel)
    {
        if (takenLate.erase(destination) > 0)
            files_.addFile(destination);
        if (files_.exists(destination))
            return FileOutcome::taken;
        if (stuck.contains(file) && cancel.isSet())
            return FileOutcome::cancelled;
        return failing.contains(file) ? FileOutcome::failed : FileOutcome::done;
    }

    bool moved(FileUrl const& file, FileUrl const& destination)
    {
        if (failing.contains(file) || !files_.duplicate(file, destination))
            return false;
        files_.remove(file);
        return true;
    }

    FakeFileSystem& files_;
    std::size_t trashed_ = 0;
};

} // namespace pixelhain
