#include "codecs/JpegScanBytes.h"
#include "codecs/JpegCode.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

bool isRestart(std::uint8_t marker)
{
    return marker >= JpegCode::firstRestart && marker <= JpegCode::lastRestart;
}

} // namespace

JpegScanBytes::JpegScanBytes(
    ByteSource const& bytes, std::uint64_t offset, std::size_t piece, JpegRestarts restarts)
    : bytes_(bytes)
    , offset_(offset)
    , piece_(std::clamp<std::size_t>(piece, 1, largestPiece))
    , expected_(restarts)
    , raw_(std::make_unique_for_overwrite<std::uint8_t[]>(piece_))
    , clean_(std::make_unique_for_overwrite<std::uint8_t[]>(piece_ + 3 * margin))
{
    advance(0);
}

void JpegScanBytes::advance(std::size_t used)
{
    used = std::min(used, size_);
    size_ -= used;
    std::memmove(clean_.get(), clean_.get() + used, size_);
    restarts_.erase(
        restarts_.begin(), restarts_.begin() + static_cast<std::ptrdiff_t>(nextRestart_));
    nextRestart_ = 0;
    std::erase_if(restarts_, [&](Restart const& restart) { return restart.offset < used; });
    for (auto& restart : restarts_)
        restart.offset -= used;
    auto const room = piece_ + 2 * margin - size_;
    if (!isComplete_ && room >= margin) {
        auto const got = bytes_.readAt(offset_, { raw_.get(), std::min(room, piece_) });
        if (got == 0) {
            isComplete_ = true;
            end_ = offset_;
        }
        rawSize_ = got;
        takeRaw({ raw_.get(), got });
        offset_ += got;
    }
    std::memset(clean_.get() + size_, 0, margin);
}

JpegScanBytes::Rest JpegScanBytes::rest() const
{
    auto const begin = offset_ - rawSize_;
    auto const from = std::clamp(end_, begin, offset_);
    return { from, ByteSpan(raw_.get(), rawSize_).subspan(static_cast<std::size_t>(from - begin)) };
}

void JpegScanBytes::takeRaw(ByteSpan raw)
{
    auto const* at = raw.data();
    auto const* const rawEnd = at + raw.size();
    auto* to = clean_.get() + size_;
    while (at != rawEnd) {
        if (isInMarker_) {
            auto const second = *at++;
            if (second == 0xFF)
                continue;
            isInMarker_ = false;
            size_ = static_cast<std::size_t>(to - clean_.get());
            if (second == 0)
                *to++ = 0xFF;
            else if (!takeMarker(second)) {
                end_ = offset_ + static_cast<std::uint64_t>(at - raw.data()) - 2;
                return;
            }
        }
        auto const left = static_cast<std::size_t>(rawEnd - at);
        auto const* const found = static_cast<std::uint8_t const*>(std::memchr(at, 0xFF, left));
        auto const plain = found != nullptr ? static_cast<std::size_t>(found - at) : left;
        std::memcpy(to, at, plain);
        to += plain;
        at += plain;
        if (found != nullptr) {
            ++at;
            isInMarker_ = true;
        }
    }
    size_ = static_cast<std::size_t>(to - clean_.get());
}

// Whether the coded bytes go on behind it.
bool JpegScanBytes::takeMarker(std::uint8_t second)
{
    if (expected_ == JpegRestarts::none || !isRestart(second)) {
        isComplete_ = true;
        endMarker_ = second;
        return false;
    }
    restarts_.push_back({ size_, second - JpegCode::firstRestart });
    return true;
}

std::uint64_t endOfScan(ByteSource const& bytes, std::uint64_t offset)
{
    constexpr std::size_t pieceBytes = std::size_t { 64 } << 10;
    std::vector<std::uint8_t> piece(pieceBytes);
    bool isInMarker = false;
    for (;;) {
        auto const got = bytes.readAt(offset, piece);
        if (got == 0)
            return offset;
        for (auto const* at = piece.data(); at != piece.data() + got;) {
            if (isInMarker) {
                auto const second = *at++;
                isInMarker = second == 0xFF;
                if (second != 0 && second != 0xFF && !isRestart(second))
                    return offset + static_cast<std::uint64_t>(at - piece.data()) - 2;
                continue;
            }
            auto const left = static_cast<std::size_t>(piece.data() + got - at);
            auto const* const found = static_cast<std::uint8_t const*>(std::memchr(at, 0xFF, left));
            at = found != nullptr ? found + 1 : at + left;
            isInMarker = found != nullptr;
        }
        offset += got;
    }
}

} // namespace pixelhain
