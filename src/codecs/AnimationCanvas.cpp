#include "codecs/AnimationCanvas.h"
#include "base/Resample.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <cstring>

namespace pixelhain {

namespace {

constexpr std::size_t pixelBytes = 4;

// `over` and what shines through; both premultiplied.
void blendOver(std::uint8_t* under, std::uint8_t const* over)
{
    auto const rest = 255U - over[3];
    for (int i = 0; i < 4; ++i) {
        auto const scaled = under[i] * rest + 128;
        under[i] = static_cast<std::uint8_t>(over[i] + ((scaled + (scaled >> 8)) >> 8));
    }
}

bool isOpaque(Bitmap const& bitmap)
{
    for (int y = 0; y < bitmap.size.height; ++y) {
        auto const* at = bitmap.row(y);
        unsigned all = 255;
        for (auto const* const end = at + std::ptrdiff_t(bitmap.size.width) * 4; at != end; at += 4)
            all &= at[3];
        if (all != 255)
            return false;
    }
    return true;
}

} // namespace

bool AnimationCanvas::create(PixelSize size)
{
    if (!isWithinLimits(size)
        || std::int64_t { size.width } * size.height > DecodeLimits::canvasPixels)
        return false;
    size_ = size;
    rowBytes_ = static_cast<std::size_t>(size.width) * pixelBytes;
    pixels_.reset(
        static_cast<std::uint8_t*>(std::calloc(static_cast<std::size_t>(size.height), rowBytes_)));
    return pixels_ != nullptr;
}

std::uint8_t* AnimationCanvas::row(int y)
{
    return pixels_.get() + rowBytes_ * static_cast<std::size_t>(y);
}

FramePlace AnimationCanvas::clipped(FramePlace const& place) const
{
    auto const left = std::clamp(place.x, 0, size_.width);
    auto const top = std::clamp(place.y, 0, size_.height);
    auto const right = std::clamp(place.x + place.size.width, left, size_.width);
    auto const bottom = std::clamp(place.y + place.size.height, top, size_.height);
    return { left, top, { right - left, bottom - top } };
}

void AnimationCanvas::beginFrame(FramePlace const& place, Disposal disposal)
{
    dispose();
    frame_ = place;
    onCanvas_ = clipped(place);
    disposal_ = disposal;
    if (disposal == Disposal::restore)
        save();
}

void AnimationCanvas::dispose()
{
    if (disposal_ == Disposal::keep)
        return;
    auto const bytes = static_cast<std::size_t>(onCanvas_.size.width) * pixelBytes;
    auto const* from = saved_.data();
    for (int y = onCanvas_.y; bytes > 0 && y < onCanvas_.y + onCanvas_.size.height; ++y) {
        auto* const to = row(y) + static_cast<std::size_t>(onCanvas_.x) * pixelBytes;
        if (disposal_ == Disposal::clear) {
            std::memset(to, 0, bytes);
            continue;
        }
        std::memcpy(to, from, bytes);
        from += bytes;
    }
    disposal_ = Disposal::keep;
}

void AnimationCanvas::save()
{
    auto const bytes = static_cast<std::size_t>(onCanvas_.size.width) * pixelBytes;
    saved_.resize(bytes * static_cast<std::size_t>(onCanvas_.size.height));
    auto* to = saved_.data();
    for (int y = onCanvas_.y; bytes > 0 && y < onCanvas_.y + onCanvas_.size.height; ++y) {
        std::memcpy(to, row(y) + static_cast<std::size_t>(onCanvas_.x) * pixelBytes, bytes);
        to += bytes;
    }
}

AnimationCanvas::Span AnimationCanvas::visible(int y)
{
    auto const line = frame_.y + y;
    if (line < onCanvas_.y || line >= onCanvas_.y + onCanvas_.size.height
        || onCanvas_.size.width == 0)
        return {};
    return { row(line) + static_cast<std::size_t>(onCanvas_.x) * pixelBytes, onCanvas_.x - frame_.x,
        onCanvas_.size.width };
}

void AnimationCanvas::drawRow(int y, std::uint8_t const* pixels, Blend blend)
{
    auto const [to, first, count] = visible(y);
    if (to == nullptr)
        return;
    auto const* from = pixels + static_cast<std::size_t>(first) * pixelBytes;
    auto const bytes = static_cast<std::size_t>(count) * pixelBytes;
    if (blend == Blend::replace) {
        std::memcpy(to, from, bytes);
        return;
    }
    for (std::size_t i = 0; i < bytes; i += pixelBytes) {
        if (from[i + 3] == 255)
            std::memcpy(to + i, from + i, pixelBytes);
        else if (from[i + 3] != 0)
            blendOver(to + i, from + i);
    }
}

void AnimationCanvas::reset()
{
    std::memset(pixels_.get(), 0, rowBytes_ * static_cast<std::size_t>(size_.height));
    disposal_ = Disposal::keep;
    frame_ = {};
    onCanvas_ = {};
}

// The canvas as a bitmap that does not own it.
Bitmap AnimationCanvas::view() const
{
    Bitmap view;
    view.size = size_;
    view.bytesPerRow = rowBytes_;
    view.isOpaque = false;
    view.pixels = std::shared_ptr<std::byte>(
        std::shared_ptr<std::byte>(), reinterpret_cast<std::byte*>(pixels_.get()));
    return view;
}

Bitmap AnimationCanvas::picture(int maxPixel) const
{
    auto whole = view();
    whole.isOpaque = isOpaque(whole);
    auto const size = fittedSize(size_, maxPixel);
    if (size != size_)
        return resampled(whole, size);
    auto copy = Bitmap::allocate(size, whole.isOpaque);
    for (int y = 0; !copy.isEmpty() && y < size.height; ++y)
        std::memcpy(copy.row(y), whole.row(y), rowBytes_);
    return copy;
}

} // namespace pixelhain
