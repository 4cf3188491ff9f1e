#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

namespace pixelhain {

/// The bytes of one opened file. Reading never moves a shared position.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Bytes in the file when it was opened.
    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Fills `into` from `offset` on; returns how many bytes were there (fewer at the end of the
    /// file, 0 on an error).
    [[nodiscard]] virtual std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const = 0;
};

} // namespace pixelhain
