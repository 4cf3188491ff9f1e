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

// Weights of the values from `first` to `end` for a result centred at `centre`; neighbours are
// `step` apart on the filter's own scale. One turn by a fixed angle takes the place of two sines
// for each weight, and sin(πx) follows from sin(πx / 3).
void weigh(std::vector<double>& weights, int first, int end, double centre, double step)
{
    static_assert(lobes == 3);
    auto const angleStep = std::numbers::pi * step / lobes;
    auto angle = (first + 0.5 - centre) * angleStep;
    auto sine = std::sin(angle);
    auto cosine = std::cos(angle);
    auto const turnSine = std::sin(angleStep);
    auto const turnCosine = std::cos(angleStep);
    weights.clear();
    for (int k = first; k < end; ++k) {
        auto const inside = std::abs(angle) < std::numbers::pi;
        auto const triple = sine * (3 - 4 * sine * sine);
        weights.push_back(std::abs(angle) < 1e-6 ? 1
                : inside                         ? triple * sine / (3 * angle * angle)
                                                 : 0);
        auto const turned = sine * turnCosine + cosine * turnSine;
        cosine = cosine * turnCosine - sine * turnSine;
        sine = turned;
        angle += angleStep;
    }
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

int averagedPixels(double step)
{
    auto const ratio = static_cast<int>(step);
    return ratio < 6 ? 1 : std::min(ratio / 3, largestBox);
}

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

RowResampler::Filter RowResampler::makeFilter(int count, Axis axis, int to)
{
    auto const stretch = std::max(axis.step, 1.0);
    auto const support = lobes * stretch;
    auto const centreOf = [&](double i) { return (i + 0.5) * axis.step + axis.origin; };
    Filter filter;
    for (int i = 0; i < to; ++i) {
        auto const centre = centreOf(i);
        auto const first
            = std::clamp(static_cast<int>(std::floor(centre - support + 0.5)), 0, count - 1);
        auto const end
            = std::clamp(static_cast<int>(std::ceil(centre + support - 0.5)), first + 1, count);
        filter.firsts.push_back(first);
        filter.ends.push_back(end);
        filter.longest = std::max(filter.longest, end - first);
    }
    filter.taps = (filter.longest + 3) & ~3;
    filter.weights.resize(static_cast<std::size_t>(to) * static_cast<std::size_t>(filter.taps));
    std::vector<double> exact;
    auto* weights = filter.weights.data();
    for (std::size_t i = 0; i < filter.firsts.size(); ++i, weights += filter.taps) {
        weigh(exact, filter.firsts[i], filter.ends[i], centreOf(double(i)), 1 / stretch);
        roundWeights(exact, weights);
    }
    return filter;
}

RowResampler::RowResampler(PixelSize from, Bitmap& target, ResampleKernels const& kernels)
    : RowResampler(from, { double(from.width) / target.size.width, 0 },
        { double(from.height) / target.size.height, 0 }, target, kernels)
{
}

RowResampler::RowResampler(
    PixelSize from, Axis across, Axis down, Bitmap& target, ResampleKernels const& kernels)
    : from_(from)
    , target_(target)
    , kernels_(kernels)
    , boxX_(averagedPixels(across.step))
    , boxY_(averagedPixels(down.step))
    , reducedWidth_(ceilDivided(from.width, boxX_))
    , reducedHeight_(ceilDivided(from.height, boxY_))
    , across_(makeFilter(
          reducedWidth_, { across.step / boxX_, across.origin / boxX_ }, target.size.width))
    , down_(makeFilter(
          reducedHeight_, { down.step / boxY_, down.origin / boxY_ }, target.size.height))
    , ringRows_(static_cast<std::size_t>(down_.longest) + 1)
    , ringStride_((static_cast<std::size_t>(reducedWidth_) * 4 + 31) & ~std::size_t { 31 })
    , ring_(ringRows_ * ringStride_)
    , between_(ringStride_ + static_cast<std::size_t>(across_.taps) * 4)
    , rows_(static_cast<std::size_t>(down_.taps))
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
    auto const lastWidth = from_.width - (reducedWidth_ - 1) * boxX_;
    auto const last = static_cast<std::size_t>(reducedWidth_ - 1);
    kernels_.gather(wide_.data(), boxX_, sums_.data(), reducedWidth_ - 1);
    kernels_.gather(wide_.data() + last * static_cast<std::size_t>(boxX_) * 4, lastWidth,
        sums_.data() + last * 4, 1);
}

void RowResampler::takeReducedRow()
{
    ++reducedIn_;
    while (rowsOut_ < target_.size.height
        && down_.ends[static_cast<std::size_t>(rowsOut_)] <= reducedIn_) {
        writeRow();
        ++rowsOut_;
    }
}

void RowResampler::writeRow()
{
    auto const y = static_cast<std::size_t>(rowsOut_);
    auto const first = down_.firsts[y];
    auto const count = down_.ends[y] - first;
    auto const taps = (count + 1) & ~1;
    for (int t = 0; t < taps; ++t) {
        auto const row = static_cast<std::size_t>(first + std::min(t, count - 1));
        rows_[static_cast<std::size_t>(t)] = ring_.data() + row % ringRows_ * ringStride_;
    }
    kernels_.down(rows_.data(), down_.weights.data() + y * static_cast<std::size_t>(down_.taps),
        taps, between_.data(), ringStride_);
    auto* out = target_.row(rowsOut_);
    kernels_.across(between_.data(), across_.firsts.data(), across_.weights.data(), across_.taps,
        out, target_.size.width);
    if (target_.isOpaque)
        return;
    for (auto* const end = out + std::ptrdiff_t(target_.size.width) * 4; out != end; out += 4) {
        for (int c = 0; c < 3; ++c)
            out[c] = std::min(out[c], out[3]);
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
