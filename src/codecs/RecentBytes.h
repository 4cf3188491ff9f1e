#pragma once
#include "codecs/ByteView.h"

namespace pixelhain {

/// A source that is read forwards in pieces, of which the next may begin within the one before:
/// what was read last, or another kept for it, is not read again. For one thread.
class RecentBytes final : public ByteSource {
public:
    /// So much of what was read last is kept, from its end.
    static constexpr std::size_t mostKept = std::size_t { 64 } << 10;

    /// `whole` must outlive it.
    explicit RecentBytes(ByteSource const& whole)
        : whole_(whole)
    {
    }
    [[nodiscard]] std::uint64_t size() const override { return whole_.size(); }
    [[nodiscard]] std::size_t readAt(
        std::uint64_t offset, std::span<std::uint8_t> into) const override
    {
        auto const known = offset < begin_ ? 0 : SpanBytes(kept_).readAt(offset - begin_, into);
        if (known == into.size())
            return known;
        auto const got = known + whole_.readAt(offset + known, into.subspan(known));
        auto const end = into.first(got).last(std::min(got, mostKept));
        kept_.assign(end.begin(), end.end());
        begin_ = offset + got - end.size();
        return got;
    }

    /// Bytes of the whole that stand at `offset`, instead.
    void keep(std::uint64_t offset, ByteSpan bytes)
    {
        kept_.assign(bytes.begin(), bytes.end());
        begin_ = offset;
    }

private:
    ByteSource const& whole_;
    mutable std::vector<std::uint8_t> kept_;
    mutable std::uint64_t begin_ = 0; ///< where they stand in the whole
};

} // namespace pixelhain
