#include "codecs/JpegMeansScan.h"
#include "codecs/CodedBits.h"
#include <algorithm>

namespace pixelhain {

namespace {

// The means of 24 megapixels take some 200 KB; of what is read beyond them the next scan's are
// used.
constexpr std::size_t pieceBytes = std::size_t { 32 } << 10;

} // namespace

std::unique_ptr<JpegMeansScan> JpegMeansScan::make(
    ByteSource const& bytes, JpegMarkers const& markers, std::vector<JpegPlane>& planes)
{
    constexpr std::uint8_t mostMeanBits = 15;
    std::unique_ptr<JpegMeansScan> scan(new JpegMeansScan(bytes, markers, planes));
    auto const& parts = markers.scan().parts;
    for (std::size_t i = 0; i < parts.size() && markers.scan().lowBitBefore == 0; ++i) {
        auto const& code = markers.meansCode(parts[i].meansCode);
        if (!code || std::ranges::any_of(code->symbols, [](auto symbol) {
                return symbol > mostMeanBits;
            }))
            return nullptr;
        auto const lookup = HuffmanLookup::of(*code);
        if (!lookup)
            return nullptr;
        scan->codes_[i] = *lookup;
    }
    return scan;
}

JpegMeansScan::JpegMeansScan(
    ByteSource const& bytes, JpegMarkers const& markers, std::vector<JpegPlane>& planes)
    : JpegScanRun(bytes, markers, planes, pieceBytes)
{
}

JpegScanRun::Taken JpegMeansScan::take(
    std::uint8_t const* data, std::uint32_t position, std::uint32_t limit, std::uint32_t most)
{
    Taken taken { position, 0, false };
    while (taken.units < most && taken.position < limit) {
        if (!takeUnit(data, taken.position)) {
            taken.isLost = true;
            break;
        }
        ++taken.units;
        if (++unitX_ == unitsAcross()) {
            unitX_ = 0;
            ++unitY_;
        }
    }
    return taken;
}

bool JpegMeansScan::takeUnit(std::uint8_t const* data, std::uint32_t& position)
{
    auto const low = scan().lowBit;
    for (auto const& place : places()) {
        auto& mean
            = place.plane->meanRow(unitY_ * place.down + place.y)[unitX_ * place.across + place.x];
        auto const bits = bitsAt(data, position);
        if (scan().lowBitBefore > 0) {
            auto const bit = static_cast<int>(bits >> 63);
            mean = static_cast<std::int16_t>(mean | bit << low);
            ++position;
            continue;
        }
        auto const found = codes_[place.part].find(bits);
        if (found.bits == 0)
            return false;
        auto const difference = codedNumber(bits << found.bits, found.symbol);
        auto& sum = means_[place.part];
        sum += static_cast<std::uint32_t>(difference);
        mean = static_cast<std::int16_t>(sum << static_cast<unsigned>(low));
        position += static_cast<std::uint32_t>(found.bits + found.symbol);
    }
    return true;
}

} // namespace pixelhain
