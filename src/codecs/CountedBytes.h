#pragma once
#include "ports/ByteSource.h"
#include <cstdint>
#include <memory>
#include <utility>

namespace pixelhain {

/// The bytes of a file, and a count of those that are read, each as often as it is.
class CountedBytes final : public ByteSource {
public:
    /// `count` must outlive it.
    CountedBytes(std::unique_ptr<ByteSource> bytes, std::uint64_t& count)
        : bytes_(std::move(bytes))
        , count_(count)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return bytes_->size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        auto const got = bytes_->readAt(offset, into);
        count_ += got;
        return got;
    }

private:
    std::unique_ptr<ByteSource> bytes_;
    std::uint64_t& count_;
};

} // namespace pixelhain
