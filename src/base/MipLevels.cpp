#include "base/MipLevels.h"
#include "base/Resample.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace pixelhain {

namespace {

// As many pixels as this are enough for the filter: finer ones would be averaged anyway.
constexpr double enoughForFilter = 2;

// From so many on a second thread is worth its start.
constexpr long long pixelsForTwo = 400'000;

// Pixels of a level along one side that a part of the drawing is made of.
struct Span {
    int first = 0;
    int end = 0;
    RowResampler::Axis axis; ///< counted from `first`
};

Span spanFor(double extent, int pixels, int whole, int partFirst, int partCount)
{
    constexpr double reach = 4; // the filter's lobes, and one for rounding
    auto const step = extent / whole;
    auto const box = averagedPixels(step);
    auto const margin = reach * std::max(step, 1.0);
    auto const place = [&](double exact) { return std::clamp(exact, 0.0, double(pixels)); };
    // What is averaged together must not depend on where the part begins.
    auto const first = static_cast<int>(place(std::floor(partFirst * step - margin))) / box * box;
    auto const wanted = static_cast<int>(place(std::ceil((partFirst + partCount) * step + margin)));
    auto const end = std::min((wanted + box - 1) / box * box, pixels);
    return { first, end, { step, partFirst * step - first } };
}

Bitmap copied(Bitmap const& from, PixelRect const& part)
{
    auto target = Bitmap::allocate(part.size(), from.isOpaque);
    if (target.isEmpty())
        return {};
    for (int y = 0; y < part.height; ++y)
        std::memcpy(target.row(y), from.row(part.y + y) + std::ptrdiff_t(part.x) * 4,
            static_cast<std::size_t>(part.width) * 4);
    return target;
}

// Rows `first` to `end` of the part.
void drawRows(MipLevels::Level const& level, MipLevels::Drawing const& drawing, int first, int end,
    Bitmap const& target)
{
    auto const& [whole, part] = drawing;
    auto const& from = level.bitmap;
    auto rows = target;
    rows.size.height = end - first;
    rows.pixels = std::shared_ptr<std::byte>(
        target.pixels, target.pixels.get() + target.bytesPerRow * static_cast<std::size_t>(first));
    auto const across = spanFor(level.width, from.size.width, whole.width, part.x, part.width);
    auto const down
        = spanFor(level.height, from.size.height, whole.height, part.y + first, rows.size.height);
    PixelSize const used { across.end - across.first, down.end - down.first };
    RowResampler resampler(used, across.axis, down.axis, rows);
    for (int y = down.first; y < down.end && resampler.rowsWritten() < rows.size.height; ++y) {
        std::memcpy(resampler.nextRow(), from.row(y) + std::ptrdiff_t(across.first) * 4,
            static_cast<std::size_t>(used.width) * 4);
        resampler.commitRow();
    }
}

// None if the system has no thread to give.
template <typename Work> std::optional<std::jthread> startedThread(Work work)
{
    try {
        return std::jthread(std::move(work));
    } catch (std::system_error const&) {
        return std::nullopt;
    }
}

void halveRows(std::uint8_t const* upper, std::uint8_t const* lower, std::uint8_t* out, int pairs)
{
    for (int x = 0; x < pairs; ++x, upper += 8, lower += 8, out += 4)
        for (int c = 0; c < 4; ++c)
            out[c] = static_cast<std::uint8_t>(
                (upper[c] + upper[c + 4] + lower[c] + lower[c + 4] + 2) >> 2);
}

} // namespace

Bitmap halved(Bitmap const& bitmap)
{
    auto const& size = bitmap.size;
    auto half = Bitmap::allocate({ (size.width + 1) / 2, (size.height + 1) / 2 }, bitmap.isOpaque);
    if (half.isEmpty())
        return {};
    auto const pairs = size.width / 2;
    for (int y = 0; y < half.size.height; ++y) {
        auto const* const upper = bitmap.row(2 * y);
        auto const* const lower = bitmap.row(std::min(2 * y + 1, size.height - 1));
        halveRows(upper, lower, half.row(y), pairs);
        if (size.width % 2 == 0)
            continue;
        auto const last = std::ptrdiff_t(size.width - 1) * 4;
        auto* const out = half.row(y) + std::ptrdiff_t(pairs) * 4;
        for (int c = 0; c < 4; ++c)
            out[c] = static_cast<std::uint8_t>((upper[last + c] + lower[last + c] + 1) >> 1);
    }
    return half;
}

MipLevels::MipLevels(Bitmap const& picture, int smallest)
{
    if (picture.isEmpty())
        return;
    Level level { picture, double(picture.size.width), double(picture.size.height) };
    while (!level.bitmap.isEmpty()) {
        auto const& size = level.bitmap.size;
        bool const isLast = std::min(size.width, size.height) <= smallest;
        levels_.push_back(level);
        if (isLast)
            return;
        level = { halved(levels_.back().bitmap), level.width / 2, level.height / 2 };
    }
}

MipLevels::Level const& MipLevels::levelFor(PixelSize whole, double least) const
{
    auto const isEnough = [&](Level const& level) {
        return level.width >= least * whole.width && level.height >= least * whole.height;
    };
    auto const* best = &levels_.front();
    for (auto const& level : levels_)
        if (isEnough(level))
            best = &level;
    return *best;
}

Bitmap MipLevels::sharp(Drawing const& drawing) const
{
    auto const& [whole, part] = drawing;
    if (isEmpty() || part.isEmpty()
        || !PixelRect { 0, 0, whole.width, whole.height }.contains(part))
        return {};
    if (whole == size())
        return copied(levels_.front().bitmap, part);
    auto target = Bitmap::allocate(part.size(), levels_.front().bitmap.isOpaque);
    if (target.isEmpty())
        return {};
    auto const& level = levelFor(whole, enoughForFilter);
    auto const upper = part.height / 2;
    auto const isLarge = static_cast<long long>(part.width) * part.height >= pixelsForTwo;
    auto helper = isLarge ? startedThread([&] { drawRows(level, drawing, 0, upper, target); })
                          : std::nullopt;
    drawRows(level, drawing, helper ? upper : 0, part.height, target);
    helper.reset(); // waits until it, too, is through with the target
    return target;
}

} // namespace pixelhain
