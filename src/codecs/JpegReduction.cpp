#include "codecs/JpegReduction.h"
#include "codecs/DecodeLimits.h"
#include "codecs/JpegMeansScan.h"
#include "codecs/JpegQuarters.h"
#include "codecs/JpegSequentialScan.h"
#include <algorithm>
#include <utility>

namespace pixelhain {

JpegReduction::JpegReduction(ByteSource const& bytes, std::size_t piece)
    : bytes_(bytes)
    , piece_(piece)
    , markers_(bytes_)
{
}

std::optional<PixelSize> JpegReduction::readFrame()
{
    if (!markers_.readFrame() || !isWithinLimits(markers_.frame().size))
        return {};
    return markers_.frame().size;
}

bool JpegReduction::readMeans()
{
    auto const isProgressive = markers_.frame().isProgressive;
    auto planes = makePlanes(markers_.frame());
    if (!planes)
        return false;
    planes_ = std::move(*planes);
    offset_ = markers_.behindFrame();
    for (;;) {
        auto const stop = markers_.next(offset_);
        if (stop == JpegMarkers::Stop::foreign || (stop == JpegMarkers::Stop::end && scans_ == 0))
            return false;
        if (stop == JpegMarkers::Stop::end)
            break;
        if (scans_++ == 0)
            colors_ = markers_.colors();
        if (!colors_ || !latchTables())
            return false;
        auto const next = isProgressive ? takeProgressive() : takeSequential();
        if (next == Next::foreign)
            return false;
        if (next == Next::finished)
            break;
    }
    if (isProgressive)
        fillSamples();
    return true;
}

// A component keeps the steps that stood there when its first scan came.
bool JpegReduction::latchTables()
{
    for (auto const& part : markers_.scan().parts) {
        auto& plane = planes_[part.component];
        auto const& component = markers_.frame().components[part.component];
        if (!plane.quantization)
            plane.quantization = markers_.quantization(component.quantization);
        if (!plane.quantization)
            return false;
    }
    return true;
}

JpegReduction::Next JpegReduction::takeSequential()
{
    for (auto const& part : markers_.scan().parts) {
        // A second look at a component is not for us.
        if (planes_[part.component].missingBits >= 0)
            return Next::foreign;
        planes_[part.component].missingBits = 0;
    }
    auto const scan = JpegSequentialScan::make(bytes_, markers_, planes_, piece_);
    auto const outcome = scan ? scan->run() : JpegScanRun::Outcome::foreign;
    if (outcome == JpegScanRun::Outcome::foreign)
        return Next::foreign;
    if (std::ranges::all_of(planes_, [](auto const& plane) { return plane.missingBits >= 0; }))
        return Next::finished;
    offset_ = scan->end();
    // The next component's scan begins there.
    if (auto const rest = scan->rest(); !rest.bytes.empty())
        bytes_.keep(rest.offset, rest.bytes);
    return Next::more;
}

JpegReduction::Next JpegReduction::takeProgressive()
{
    auto const& scan = markers_.scan();
    if (isBeyondLimits())
        return Next::finished;
    if (scan.first > 0) {
        // The others of a component come after its means.
        if (planes_[scan.parts[0].component].missingBits < 0)
            return Next::foreign;
        offset_ = endOfScan(bytes_, scan.coded);
        return Next::more;
    }
    return takeMeans();
}

JpegReduction::Next JpegReduction::takeMeans()
{
    auto const& scan = markers_.scan();
    auto const wanted = scan.lowBitBefore > 0 ? scan.lowBitBefore : -1;
    for (auto const& part : scan.parts)
        if (planes_[part.component].missingBits != wanted)
            return Next::foreign;
    auto const run = JpegMeansScan::make(bytes_, markers_, planes_);
    if (!run || run->run() == JpegScanRun::Outcome::foreign)
        return Next::foreign;
    for (auto const& part : scan.parts)
        planes_[part.component].missingBits = scan.lowBit;
    if (isEnough())
        return Next::finished;
    offset_ = run->end();
    return Next::more;
}

bool JpegReduction::isEnough() const
{
    return std::ranges::all_of(planes_, [](JpegPlane const& plane) {
        return plane.missingBits >= 0 && areMeansExact(plane.missingBits, (*plane.quantization)[0]);
    });
}

// As with the library, whatever follows is treated as the end of the file.
bool JpegReduction::isBeyondLimits() const
{
    auto const size = markers_.frame().size;
    return scans_ > DecodeLimits::scans
        || std::int64_t { scans_ } * size.width * size.height > DecodeLimits::scannedPixels;
}

// What is missing of a mean is taken to be half of the most that it can be.
void JpegReduction::fillSamples()
{
    for (auto& plane : planes_) {
        if (!plane.quantization || plane.missingBits < 0)
            continue;
        auto const step = static_cast<std::int16_t>((*plane.quantization)[0]);
        auto const missing = ((1 << plane.missingBits) - 1) * step / 2;
        for (int y = 0; y < plane.paddedDown * plane.side; ++y) {
            auto const* means = plane.meanRow(y / plane.side);
            auto* samples = plane.sampleRow(y);
            for (int x = 0; x < plane.samplesAcross(); ++x)
                samples[x] = meanSample(means[x / plane.side] * step + missing);
        }
    }
}

bool areMeansExact(int missingBits, int step)
{
    constexpr int tolerable = 12; // in eighths of a grey level
    return ((1 << missingBits) - 1) * step <= tolerable;
}

} // namespace pixelhain
