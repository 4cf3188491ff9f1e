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
    ~FakeFileOperations() override;
    explicit FakeFileOperations(FakeFileSystem& files)
        : files_(files)
    {
    }

    std::set<FileUrl> failing; ///< files that cannot be changed
    std::set<FileUrl> takenLate; ///< destinations that another program takes in the last moment
    std::set<FileUrl> stuck; ///< files whose copying ends only when it is cancelled
    std::function<void()> during; ///< called in the middle of every call
    std::vector<std::string> calls; ///< "trash /b/1.jpg", "copy /b/1.jpg /z/1.jpg"

    std::optional<FileUrl> trash(FileUrl const& file) override;

    bool restore(FileUrl const& trashed, FileUrl const& original) override;

    FileOutcome move(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override;

    FileOutcome copy(
        FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel) override;

private:
    void record(char const* what, FileUrl const& file, FileUrl const& destination = {});

    FileOutcome refusal(FileUrl const& file, FileUrl const& destination, CancelFlag const& cancel);

    bool moved(FileUrl const& file, FileUrl const& destination);

    FakeFileSystem& files_;
    std::size_t trashed_ = 0;
};

} // namespace pixelhain
