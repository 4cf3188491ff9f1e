#pragma once
#include "ports/ByteSource.h"
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace pixelhain {

/// A file that lies in memory and counts what is read of it.
class MemoryBytes final : public ByteSource {
public:
    struct Reads {
        std::size_t calls = 0;
        std::uint64_t bytes = 0;
    };

    explicit MemoryBytes(std::vector<std::uint8_t> bytes, Reads* reads = nullptr)
        : bytes_(std::move(bytes))
        , reads_(reads)
    {
    }

    [[nodiscard]] std::uint64_t size() const override { return bytes_.size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        if (offset >= bytes_.size() || into.empty())
            return 0;
        auto const count
            = std::min<std::size_t>(into.size(), bytes_.size() - static_cast<std::size_t>(offset));
        std::memcpy(into.data(), bytes_.data() + offset, count);
        if (reads_ != nullptr) {
            ++reads_->calls;
            reads_->bytes += count;
        }
        return count;
    }

private:
    std::vector<std::uint8_t> bytes_;
    Reads* reads_;
};

[[nodiscard]] inline std::unique_ptr<ByteSource> memoryBytes(
    std::vector<std::uint8_t> bytes, MemoryBytes::Reads* reads = nullptr)
{
    return std::make_unique<MemoryBytes>(std::move(bytes), reads);
}

} // namespace pixelhain
