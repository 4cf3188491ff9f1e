#pragma once
#include "ports/ByteSource.h"
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace pixelhain {

using ByteSpan = std::span<std::uint8_t const>;

[[nodiscard]] constexpr std::uint16_t bigEndian16(std::uint8_t const* at)
{
    return static_cast<std::uint16_t>(at[0] << 8 | at[1]);
}

[[nodiscard]] constexpr std::uint32_t bigEndian32(std::uint8_t const* at)
{
    return std::uint32_t { bigEndian16(at) } << 16 | bigEndian16(at + 2);
}

[[nodiscard]] constexpr std::uint16_t littleEndian16(std::uint8_t const* at)
{
    return static_cast<std::uint16_t>(at[1] << 8 | at[0]);
}

[[nodiscard]] constexpr std::uint32_t littleEndian32(std::uint8_t const* at)
{
    return std::uint32_t { littleEndian16(at + 2) } << 16 | littleEndian16(at);
}

/// Whether `bytes` begin with `text`, its terminating NUL not counted.
template <std::size_t N> [[nodiscard]] bool startsWith(ByteSpan bytes, char const (&text)[N])
{
    return bytes.size() >= N - 1 && std::memcmp(bytes.data(), text, N - 1) == 0;
}

/// Bytes already in memory. They must outlive it.
class SpanBytes final : public ByteSource {
public:
    explicit SpanBytes(ByteSpan bytes)
        : bytes_(bytes)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return bytes_.size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        if (offset >= bytes_.size() || into.empty())
            return 0;
        auto const there = bytes_.subspan(static_cast<std::size_t>(offset));
        auto const count = std::min(there.size(), into.size());
        std::memcpy(into.data(), there.data(), count);
        return count;
    }

private:
    ByteSpan bytes_;
};

/// A stretch of another source, which must outlive it; cut where that one ends.
class SliceBytes final : public ByteSource {
public:
    SliceBytes(ByteSource const& whole, std::uint64_t offset, std::uint64_t length)
        : whole_(whole)
        , offset_(std::min(offset, whole.size()))
        , length_(std::min(length, whole.size() - offset_))
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return length_; }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        if (offset >= length_)
            return 0;
        auto const count = std::min<std::uint64_t>(length_ - offset, into.size());
        return whole_.readAt(offset_ + offset, into.first(static_cast<std::size_t>(count)));
    }

private:
    ByteSource const& whole_;
    std::uint64_t offset_;
    std::uint64_t length_;
};

/// Up to `length` bytes from `offset`; fewer at the end of the file.
[[nodiscard]] inline std::vector<std::uint8_t> bytesAt(
    ByteSource const& source, std::uint64_t offset, std::size_t length)
{
    auto const size = source.size();
    if (offset >= size)
        return {};
    std::vector<std::uint8_t> bytes(
        static_cast<std::size_t>(std::min<std::uint64_t>(length, size - offset)));
    bytes.resize(source.readAt(offset, bytes));
    return bytes;
}

} // namespace pixelhain
