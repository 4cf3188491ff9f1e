#include "base/Resample.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

namespace pixelhain {

namespace {

constexpr double lobes = 3;
constexpr int one = 1 << 14;
constexpr int largestBox = 256; // sums of a box across stay within 16 bits

double lanczos(double x)
{
    x = std::abs(x);
    if (x < 1e-9)
        return 1;
    if (x >= lobes)
        return 0;
    auto const angle = std::numbers::pi * x;
    return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

int boxFor(int from, int to)
{
    auto const ratio = from / to;
    return ratio < 6 ? 1 : std::min(ratio / 3, largestBox);
}

int ceilDivided(int value, int by)
{
    return (value + by - 1) / by;
}

// Rounds so that the weights add up to exactly one: a flat picture stays flat.
void roundWeights(std::vector<double> const& exact, std::int16_t* out)
{
    double sum = 0;
    for (auto const weight : exact)
        sum += weight;
    int rest = one;
    std::size_t largest = 0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
        auto const weight = static_cast<int>(std::lround(exact[i] / sum * one));
        out[i] = static_cast<std::int16_t>(weight);
        rest -= weight;
        if (out[i] > out[largest])
            largest = i;
    }
    out[largest] = static_cast<std::int16_t>(out[largest] + rest);
}

} // namespace

PixelSize fittedSize(PixelSize size, int maxPixel)
{
    auto const longest = std::max(size.longestSide(), 1);
    if (maxPixel <= 0 || maxPixel >= longest)
        return size;
    auto const fitted = [&](int side) {
        return std::max(1, static_cast<int>(std::lround(double(side) * maxPixel / longest)));
    };
    return { fitted(size.width), fitted(size.height) };
}

RowResampler::Filter RowResampler::makeFilter(int from, int box, int to)
{
    auto const count = ceilDivided(from, box);
    auto const extent = double(from) / box; // the last box may be cut
    auto const scale = extent / to;
    auto const stretch = std::max(scale, 1.0);
    auto const support = lobes * stretch;

    Filter filter;
    filter.stride = (static_cast<std::size_t>(std::ceil(support * 2)) + 2 + 3) & ~std::size_t { 3 };
    filter.windows.resize(static_cast<std::size_t>(to));
    filter.weights.resize(static_cast<std::size_t>(to) * filter.stride);
    std::vector<double> exact;
    for (int i = 0; i < to; ++i) {
        auto const centre = (i + 0.5) * scale;
        auto const first = std::max(0, static_cast<int>(std::floor(centre - support + 0.5)));
        auto const end = std::min(count, static_cast<int>(std::ceil(centre + support - 0.5)));
        exact.clear();
        for (int k = first; k < std::max(end, first + 1); ++k)
            exact.push_back(lanczos((k + 0.5 - centre) / stretch));
        auto const index = static_cast<std::size_t>(i);
        filter.windows[index] = { first, static_cast<int>(exact.size()) };
        filter.maxTaps = std::max(filter.maxTaps, filter.windows[index].taps);
        roundWeights(exact, filter.weights.data() + index * filter.stride);
    }
    return filter;
}

RowResampler::RowResampler(PixelSize from, Bitmap& target, ResampleKernels const& kernels)
    : from_(from)
    , target_(target)
    , kernels_(kernels)
    , boxX_(boxFor(from.width, target.size.width))
    , boxY_(boxFor(from.height, target.size.height))
    , reducedWidth_(ceilDivided(from.width, boxX_))
    , reducedHeight_(ceilDivided(from.height, boxY_))
    , across_(makeFilter(from.width, boxX_, target.size.width))
    , down_(makeFilter(from.height, boxY_, target.size.height))
    , ringRows_(static_cast<std::size_t>(down_.maxTaps) + 1)
    , ringStride_((static_cast<std::size_t>(reducedWidth_) * 4 + 31) & ~std::size_t { 31 })
    , ring_(ringRows_ * ringStride_)
    , between_(ringStride_ + across_.stride * 4)
    , rows_(down_.stride)
{
    if (boxX_ == 1 && boxY_ == 1)
        return;
    wide_.resize(static_cast<std::size_t>(from.width) * 4);
    sums_.resize(static_cast<std::size_t>(reducedWidth_) * 4);
}

std::uint8_t* RowResampler::nextRow()
{
    if (!wide_.empty())
        return wide_.data();
    return ring_.data() + static_cast<std::size_t>(reducedIn_) % ringRows_ * ringStride_;
}

void RowResampler::commitRow()
{
    if (rowsIn_ >= from_.height)
        return;
    ++rowsIn_;
    if (wide_.empty()) {
        takeReducedRow();
        return;
    }
    averageRow();
    if (++summed_ < boxY_ && rowsIn_ < from_.height)
        return;
    auto* out = ring_.data() + static_cast<std::size_t>(reducedIn_) % ringRows_ * ringStride_;
    auto const lastWidth = from_.width - (reducedWidth_ - 1) * boxX_;
    for (int x = 0; x < reducedWidth_; ++x) {
        auto const width = x + 1 < reducedWidth_ ? boxX_ : lastWidth;
        auto const area = static_cast<std::uint32_t>(width * summed_);
        auto const at = static_cast<std::size_t>(x) * 4;
        for (std::size_t c = at; c < at + 4; ++c)
            out[c] = static_cast<std::uint8_t>((sums_[c] + area / 2) / area);
    }
    std::fill(sums_.begin(), sums_.end(), 0U);
    summed_ = 0;
    takeReducedRow();
}

void RowResampler::averageRow()
{
    auto const* in = wide_.data();
    auto* sums = sums_.data();
    for (int x = 0; x < reducedWidth_; ++x, sums += 4) {
        auto const width = std::min(boxX_, from_.width - x * boxX_);
        std::uint32_t b = 0;
        std::uint32_t g = 0;
        std::uint32_t r = 0;
        std::uint32_t a = 0;
        for (auto const* end = in + std::ptrdiff_t(width) * 4; in != end; in += 4) {
            b += in[0];
            g += in[1];
            r += in[2];
            a += in[3];
        }
        sums[0] += b;
        sums[1] += g;
        sums[2] += r;
        sums[3] += a;
    }
}

void RowResampler::takeReducedRow()
{
    ++reducedIn_;
    while (rowsOut_ < target_.size.height) {
        auto const& window = down_.windows[static_cast<std::size_t>(rowsOut_)];
        if (window.first + window.taps > reducedIn_)
            return;
        writeRow();
        ++rowsOut_;
    }
}

void RowResampler::writeRow()
{
    auto const y = static_cast<std::size_t>(rowsOut_);
    auto const& window = down_.windows[y];
    auto const taps = (window.taps + 1) & ~1;
    for (int t = 0; t < taps; ++t) {
        auto const row = static_cast<std::size_t>(window.first + std::min(t, window.taps - 1));
        rows_[static_cast<std::size_t>(t)] = ring_.data() + row % ringRows_ * ringStride_;
    }
    kernels_.down(
        rows_.data(), down_.weights.data() + y * down_.stride, taps, between_.data(), ringStride_);

    auto* out = target_.row(rowsOut_);
    auto const* weights = across_.weights.data();
    for (auto const& column : across_.windows) {
        kernels_.across(between_.data() + std::ptrdiff_t(column.first) * 4, weights,
            (column.taps + 3) & ~3, out);
        if (!target_.isOpaque) {
            for (int c = 0; c < 3; ++c)
                out[c] = std::min(out[c], out[3]);
        }
        weights += across_.stride;
        out += 4;
    }
}

Bitmap resampled(Bitmap const& from, PixelSize to)
{
    auto target = Bitmap::allocate(to, from.isOpaque);
    if (target.isEmpty() || from.isEmpty())
        return {};
    RowResampler resampler(from.size, target);
    for (int y = 0; y < from.size.height; ++y) {
        std::memcpy(
            resampler.nextRow(), from.row(y), static_cast<std::size_t>(from.size.width) * 4);
        resampler.commitRow();
    }
    return target;
}

} // namespace pixelhain
