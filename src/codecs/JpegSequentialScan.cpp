#include "codecs/JpegSequentialScan.h"
#include "codecs/JpegQuarters.h"
#include <algorithm>

namespace pixelhain {

namespace {

constexpr std::uint32_t mostRoom = 8192; // units that a walk keeps before they are taken over
// A walk that begins anywhere is in step after some KB. Below this a stretch is not worth it.
constexpr std::uint32_t leastStretch = std::uint32_t { 32 } << 13; // in bits
constexpr std::uint32_t leastUnits = 128;
constexpr int mostMisses = 4;

} // namespace

std::unique_ptr<JpegSequentialScan> JpegSequentialScan::make(ByteSource const& bytes,
    JpegMarkers const& markers, std::vector<JpegPlane>& planes, std::size_t piece)
{
    std::unique_ptr<JpegSequentialScan> scan(new JpegSequentialScan(bytes, markers, planes, piece));
    if (!scan->prepare(markers))
        return nullptr;
    return scan;
}

JpegSequentialScan::JpegSequentialScan(ByteSource const& bytes, JpegMarkers const& markers,
    std::vector<JpegPlane>& planes, std::size_t piece)
    : JpegScanRun(bytes, markers, planes, piece)
{
}

bool JpegSequentialScan::prepare(JpegMarkers const& markers)
{
    std::array<bool, 4> isRead {};
    for (auto const& place : places()) {
        auto const& plane = *place.plane;
        auto& codes = codes_[place.part];
        if (!isRead[place.part] && !readCodes(markers, scan().parts[place.part], plane, codes))
            return false;
        isRead[place.part] = true;
        auto const isQuartered = plane.side == 2;
        unit_.blocks[unit_.count++] = { &codes.means, &codes.others, &*codes.meanNumbers,
            &*codes.skips, isQuartered ? &codes.steps : nullptr };
        unit_.quartered += isQuartered ? 1 : 0;
        Target target;
        target.advance = place.across * plane.side;
        target.stride = plane.samplesAcross();
        target.mean = &means_[place.part];
        target.step = codes.steps[0];
        target.isQuartered = isQuartered;
        targets_.push_back(target);
    }
    auto const units = std::int64_t { unitsAcross() } * unitsDown();
    room_ = static_cast<std::uint32_t>(std::min<std::int64_t>(units, mostRoom));
    walks_.emplace_back(unit_, room_);
    beginRow();
    return true;
}

bool JpegSequentialScan::readCodes(
    JpegMarkers const& markers, JpegScan::Part const& part, JpegPlane const& plane, Codes& into)
{
    constexpr std::uint8_t mostMeanBits = 15;
    auto const& means = markers.meansCode(part.meansCode);
    auto const& others = markers.othersCode(part.othersCode);
    if (!means || !others || !plane.quantization
        || std::ranges::any_of(means->symbols, [](auto symbol) { return symbol > mostMeanBits; }))
        return false;
    auto const meansLookup = HuffmanLookup::of(*means);
    auto const othersLookup = HuffmanLookup::of(*others);
    if (!meansLookup || !othersLookup)
        return false;
    into.means = *meansLookup;
    into.others = *othersLookup;
    into.meanNumbers.emplace(into.means);
    into.skips.emplace(into.others);
    std::ranges::transform(*plane.quantization, into.steps.begin(),
        [](std::uint16_t step) { return static_cast<std::int16_t>(step); });
    return true;
}

void JpegSequentialScan::beginRow()
{
    for (std::size_t i = 0; i < targets_.size(); ++i) {
        auto const& place = places()[i];
        auto const side = place.plane->side;
        targets_[i].at
            = place.plane->sampleRow((unitY_ * place.down + place.y) * side) + place.x * side;
    }
}

JpegScanRun::Taken JpegSequentialScan::take(
    std::uint8_t const* data, std::uint32_t position, std::uint32_t limit, std::uint32_t most)
{
    auto const bits = limit - position;
    bool const isWorthIt = bits >= leastStretch && most >= leastUnits && joined_ > -mostMisses;
    while (isWorthIt && walks_.size() < JpegWalk::mostTogether)
        walks_.emplace_back(unit_, room_);
    auto const count = static_cast<std::uint32_t>(isWorthIt ? walks_.size() : 1);
    std::array<std::uint32_t, JpegWalk::mostTogether + 1> starts {};
    for (std::uint32_t i = 0; i <= count; ++i)
        starts[i] = i < count ? position + bits / count * i : limit;
    for (std::uint32_t i = 0; i < count; ++i)
        walks_[i].begin(data, starts[i], starts[i + 1], i == 0 ? most : room_);
    walkAll(data, count);
    auto& first = walks_[0];
    Taken taken { first.position(), first.units(), first.isLost() && first.units() == 0 };
    taken.position = first.start(first.units());
    keep(first, 0, first.units());
    for (std::uint32_t i = 1; i < count && taken.position >= starts[i] && taken.units < most; ++i) {
        auto const isJoined = join(data, walks_[i], most, taken);
        joined_ = isJoined ? 0 : joined_ - 1;
    }
    return taken;
}

// Lets them go on until all have ended. One that began in the middle of things and is lost tries
// again a little further on.
void JpegSequentialScan::walkAll(std::uint8_t const* data, std::size_t count)
{
    constexpr std::uint32_t further = 8;
    auto const& kernels = JpegWalk::kernels();
    for (;;) {
        for (std::size_t i = 1; i < count; ++i) {
            auto& walk = walks_[i];
            while (walk.isLost() && walk.position() + further < walk.limit())
                walk.begin(data, walk.position() + further, walk.limit(), room_);
        }
        std::array<JpegWalk*, JpegWalk::mostTogether> going {};
        std::size_t left = 0;
        for (std::size_t i = 0; i < count; ++i) {
            if (!walks_[i].isDone())
                going[left++] = &walks_[i];
        }
        if (left == 0)
            return;
        kernels[left - 1](data, going.data());
    }
}

// Goes on, unit by unit, to where `guess` began one too, and takes over what it read from there.
bool JpegSequentialScan::join(
    std::uint8_t const* data, JpegWalk const& guess, std::uint32_t most, Taken& taken)
{
    std::uint32_t unit = 0;
    for (;;) {
        while (unit < guess.units() && guess.start(unit) < taken.position)
            ++unit;
        if (guess.start(unit) == taken.position)
            break;
        if (unit == guess.units() || taken.units == most)
            return false;
        auto& walk = walks_[0];
        walk.begin(data, taken.position, taken.position + 1, 1);
        walkAll(data, 1);
        if (walk.isLost())
            return false;
        keep(walk, 0, 1);
        taken.position = walk.position();
        ++taken.units;
    }
    auto const count = std::min(guess.units() - unit, most - taken.units);
    keep(guess, unit, count);
    taken.position = guess.start(unit + count);
    taken.units += count;
    return true;
}

void JpegSequentialScan::keep(JpegWalk const& walk, std::uint32_t from, std::uint32_t count)
{
    for (auto unit = from; unit < from + count; ++unit) {
        auto const* difference = walk.differences(unit);
        auto const* quarters = walk.quarters(unit);
        for (auto& target : targets_) {
            *target.mean += static_cast<std::uint32_t>(std::int32_t { *difference++ });
            auto const mean = static_cast<std::int16_t>(*target.mean) * target.step;
            if (target.isQuartered) {
                auto const& parts = *quarters++;
                target.at[0] = quarterSample(mean, parts[0]);
                target.at[1] = quarterSample(mean, parts[1]);
                target.at[target.stride] = quarterSample(mean, parts[2]);
                target.at[target.stride + 1] = quarterSample(mean, parts[3]);
            } else {
                *target.at = meanSample(mean);
            }
            target.at += target.advance;
        }
        if (++unitX_ < unitsAcross())
            continue;
        unitX_ = 0;
        if (++unitY_ < unitsDown())
            beginRow();
    }
}

} // namespace pixelhain
