#pragma once
#include "base/FileUrl.h"
#include "ports/ByteSource.h"
#include "posix/Descriptor.h"
#include <cstdint>
#include <memory>

namespace pixelhain {

/// An open regular file. Its pages are read, never mapped: a file that is cut while it is being
/// decoded ends early instead of killing the process.
class OpenedFile final : public ByteSource {
public:
    /// Files beyond this are no pictures that any codec here can hold.
    static constexpr std::uint64_t maxSize = std::uint64_t { 4 } << 30U;

    /// Follows links. Null if there is no file, it may not be read, it is larger than `maxSize`, or
    /// it is anything but a regular file; pipes and devices are not even opened.
    [[nodiscard]] static std::unique_ptr<OpenedFile> open(FileUrl const& url);

    /// A regular file that another process opened and handed over, with the size it had.
    [[nodiscard]] static std::unique_ptr<OpenedFile> adopt(Descriptor file, std::uint64_t size);

    ~OpenedFile() override = default;
    OpenedFile(OpenedFile const&) = delete;
    OpenedFile& operator=(OpenedFile const&) = delete;

    [[nodiscard]] std::uint64_t size() const override { return size_; }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override;

    /// For handing the file to another process; stays owned by this.
    [[nodiscard]] int descriptor() const { return file_.get(); }

private:
    OpenedFile(Descriptor file, std::uint64_t size);

    Descriptor file_;
    std::uint64_t size_;
};

} // namespace pixelhain
