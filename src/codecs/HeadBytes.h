#pragma once
#include "codecs/ByteView.h"
#include <memory>

namespace pixelhain {

/// A source whose first bytes were read at once, because a header is read in small pieces.
class HeadBytes final : public ByteSource {
public:
    /// `whole` must outlive it.
    HeadBytes(ByteSource const& whole, std::size_t headBytes)
        : whole_(whole)
        , head_(bytesAt(whole, 0, headBytes))
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return whole_.size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        auto const known = SpanBytes(head_).readAt(offset, into);
        if (known == into.size())
            return known;
        return known + whole_.readAt(offset + known, into.subspan(known));
    }
    [[nodiscard]] ByteSpan head() const { return head_; }

private:
    ByteSource const& whole_;
    std::vector<std::uint8_t> head_;
};

} // namespace pixelhain
