#pragma once
#include "codecs/ByteView.h"
#include <algorithm>
#include <cstring>
#include <vector>

namespace pixelhain {

/// Reads a source from its beginning on, in pieces of any size that cost one large read each now
/// and then.
class ByteStream {
public:
    /// `bytes` must outlive it.
    explicit ByteStream(ByteSource const& bytes, std::uint64_t offset = 0)
        : bytes_(bytes)
        , buffer_(static_cast<std::size_t>(std::clamp<std::uint64_t>(bytes.size(), 16, chunk)))
        , offset_(offset)
    {
    }

    /// Fills `into`; returns how many bytes were there before the end.
    std::size_t read(std::uint8_t* into, std::size_t length)
    {
        std::size_t done = 0;
        while (done < length && (at_ < filled_ || fill())) {
            auto const count = std::min(length - done, filled_ - at_);
            std::memcpy(into + done, buffer_.data() + at_, count);
            at_ += count;
            done += count;
        }
        return done;
    }

    /// The next byte; -1 at the end.
    int next()
    {
        if (at_ == filled_ && !fill())
            return -1;
        return buffer_[at_++];
    }

    void skip(std::uint64_t length)
    {
        auto const there = std::min<std::uint64_t>(length, filled_ - at_);
        at_ += static_cast<std::size_t>(there);
        offset_ += length - there;
    }

private:
    static constexpr std::uint64_t chunk = std::uint64_t { 256 } << 10;

    bool fill()
    {
        filled_ = bytes_.readAt(offset_, buffer_);
        offset_ += filled_;
        at_ = 0;
        return filled_ > 0;
    }

    ByteSource const& bytes_;
    std::vector<std::uint8_t> buffer_;
    std::size_t at_ = 0;
    std::size_t filled_ = 0;
    std::uint64_t offset_ = 0;
};

} // namespace pixelhain
