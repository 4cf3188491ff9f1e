#pragma once
#include "base/FileUrl.h"
#include "ports/WriteProblem.h"
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <variant>

namespace pixelhain {

/// The new content of a file, written beside it under a name that ends in ".part". Only when it is
/// whole and on the disk does it take the file's place; until then whoever looks finds what was
/// there before. Dropped before that it goes away, but what was written before the drive refused
/// more is left under its ".part" name. Not thread-safe, but bound to no thread.
class FileReplacement {
public:
    virtual ~FileReplacement() = default;

    /// False once anything could not be written; `finish` tells why.
    [[nodiscard]] virtual bool write(std::span<std::uint8_t const> bytes) = 0;

    /// Puts the new content in place. Nothing has changed there if that fails.
    [[nodiscard]] virtual std::optional<WriteProblem> finish() = 0;
};

/// What was at a place when somebody agreed to lose it: a file in one state, or none.
struct ReplacedFile {
    bool isThere = false;
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    std::int64_t seconds = 0; ///< of its last change
    std::int64_t nanoseconds = 0;
    bool operator==(ReplacedFile const&) const = default;
};

/// Begins to write files. Thread-safe; waits for the disk.
class FileReplacements {
public:
    using Begun = std::variant<std::unique_ptr<FileReplacement>, WriteProblem>;
    virtual ~FileReplacements() = default;

    /// What is at `target` now, for a replacement that begins later.
    [[nodiscard]] virtual ReplacedFile look(FileUrl const& target) = 0;

    /// Of the file at `target`, or of the one it links to; there need not be one yet. Without
    /// `agreed`, what is there now may go.
    [[nodiscard]] virtual Begun begin(
        FileUrl const& target, std::optional<ReplacedFile> const& agreed)
        = 0;
};

} // namespace pixelhain
