#pragma once
#include "ports/FileReplacement.h"
#include "posix/Descriptor.h"
#include "posix/FilePlace.h"
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace pixelhain {

/// Writes to "NAME.part" beside the target, a name that nobody else has, and renames. A file that
/// is replaced hands on its mode; one that may not be written to is not replaced, and neither is
/// one that comes to the target, or changes there, while the new one is written.
class PosixFileReplacement final : public FileReplacement {
public:
    [[nodiscard]] static ReplacedFile look(FileUrl const& target);
    [[nodiscard]] static FileReplacements::Begun begin(
        FileUrl const& target, std::optional<ReplacedFile> const& agreed);
    ~PosixFileReplacement() override;

    [[nodiscard]] bool write(std::span<std::uint8_t const> bytes) override;
    [[nodiscard]] std::optional<WriteProblem> finish() override;

private:
    PosixFileReplacement(FilePlace target, std::optional<struct stat> replaced);

    [[nodiscard]] bool open(mode_t mode);
    [[nodiscard]] bool flush();
    [[nodiscard]] bool sync();
    [[nodiscard]] bool rename();
    [[nodiscard]] bool isStillNamed();
    void fail();

    FilePlace target_;
    std::optional<struct stat> const replaced_; ///< a file that is there already, as it was then
    FilePlace part_;
    Descriptor file_;
    std::vector<std::uint8_t> pending_;
    bool isWritten_ = false; ///< any byte of it
    int error_ = 0;
    bool isInPlace_ = false;
};

class PosixFileReplacements final : public FileReplacements {
public:
    [[nodiscard]] ReplacedFile look(FileUrl const& target) override
    {
        return PosixFileReplacement::look(target);
    }
    [[nodiscard]] Begun begin(
        FileUrl const& target, std::optional<ReplacedFile> const& agreed) override
    {
        return PosixFileReplacement::begin(target, agreed);
    }
};

} // namespace pixelhain
