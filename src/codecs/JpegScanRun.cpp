#include "codecs/JpegScanRun.h"
#include <algorithm>
#include <optional>

namespace pixelhain {

namespace {

constexpr std::size_t byteBits = 8;

} // namespace

JpegScanRun::JpegScanRun(ByteSource const& bytes, JpegMarkers const& markers,
    std::vector<JpegPlane>& planes, std::size_t piece)
    : scan_(markers.scan())
    , bytes_(bytes, scan_.coded, piece,
          markers.restartInterval() > 0 ? JpegRestarts::expected : JpegRestarts::none)
    , whole_(bytes)
    , interval_(markers.restartInterval())
{
    auto const& components = markers.frame().components;
    auto const isAlone = scan_.parts.size() == 1;
    for (std::size_t i = 0; i < scan_.parts.size(); ++i) {
        auto const& component = components[scan_.parts[i].component];
        auto& plane = planes[scan_.parts[i].component];
        auto const across = isAlone ? 1 : component.across;
        auto const down = isAlone ? 1 : component.down;
        for (int y = 0; y < down; ++y)
            for (int x = 0; x < across; ++x)
                places_.push_back({ &plane, i, across, down, x, y });
        unitsAcross_ = (isAlone ? plane.blocksAcross : plane.paddedAcross) / across;
        unitsDown_ = (isAlone ? plane.blocksDown : plane.paddedDown) / down;
    }
    unitsLeft_ = static_cast<std::uint32_t>(unitsAcross_) * static_cast<std::uint32_t>(unitsDown_);
    intervalLeft_ = interval_;
}

JpegScanRun::Outcome JpegScanRun::run()
{
    while (unitsLeft_ > 0) {
        if (interval_ > 0 && intervalLeft_ == 0 && !passRestart())
            return Outcome::foreign;
        auto const* const restart = bytes_.restart();
        auto const isEndKnown = restart != nullptr || bytes_.isComplete();
        auto const end = restart != nullptr ? restart->offset : bytes_.size();
        auto const safe = isEndKnown ? end : end - std::min(end, JpegScanBytes::margin);
        auto const limit = static_cast<std::uint32_t>(safe * byteBits);
        if (position_ >= limit && !isEndKnown) {
            advance();
            continue;
        }
        if (position_ >= limit && restart != nullptr)
            return Outcome::foreign;
        // Where nothing is left the library reads one more unit, all zeros.
        auto const most = interval_ > 0 ? std::min(intervalLeft_, unitsLeft_) : unitsLeft_;
        auto const taken = take(bytes_.data(), position_, std::max(limit, position_ + 1), most);
        if (taken.isLost)
            return Outcome::foreign;
        position_ = taken.position;
        unitsLeft_ -= taken.units;
        intervalLeft_ -= interval_ > 0 ? taken.units : 0;
        if (isEndKnown && position_ > limit)
            return restart == nullptr && (interval_ == 0 || bytes_.isEndSound()) ? Outcome::cut
                                                                                 : Outcome::foreign;
    }
    return Outcome::whole;
}

// The bits in front of a restart fill up its last byte and no more. Where all bytes end instead,
// what is missing is zeros.
bool JpegScanRun::passRestart()
{
    if (bytes_.restart() == nullptr && !bytes_.isComplete()
        && bytes_.size() * byteBits < position_ + 2 * byteBits)
        advance();
    auto const* const restart = bytes_.restart();
    if (restart == nullptr && !bytes_.isComplete())
        return false;
    auto const behind = (restart != nullptr ? restart->offset : bytes_.size()) * byteBits;
    if ((restart != nullptr && restart->number != nextRestart_) || behind < position_
        || behind - position_ >= byteBits)
        return false;
    position_ = static_cast<std::uint32_t>(behind);
    if (restart != nullptr)
        bytes_.passRestart();
    nextRestart_ = (nextRestart_ + 1) % 8;
    intervalLeft_ = interval_;
    this->restart();
    return true;
}

void JpegScanRun::advance()
{
    auto const used = std::min(position_ / byteBits, bytes_.size());
    bytes_.advance(used);
    position_ -= static_cast<std::uint32_t>(used * byteBits);
}

std::uint64_t JpegScanRun::end() const
{
    return bytes_.isComplete() ? bytes_.end() : endOfScan(whole_, bytes_.readSoFar());
}

} // namespace pixelhain
