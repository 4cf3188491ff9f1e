#include "codecs/JpegPlanes.h"
#include "codecs/DecodeLimits.h"

namespace pixelhain {

namespace {

int ceilDivided(int value, int by)
{
    return (value + by - 1) / by;
}

template <typename Number> ZeroedNumbers<Number> zeroed(std::size_t count)
{
    return ZeroedNumbers<Number>(static_cast<Number*>(std::calloc(count, sizeof(Number))));
}

// The samples of a block along a side, as the library chooses them: as many as the picture has
// pixels there, as long as that goes up in doublings in both directions.
int sideOf(JpegFrame const& frame, JpegComponent const& component)
{
    int side = 1;
    while (side < 8 && frame.mostAcross % (component.across * side * 2) == 0
        && frame.mostDown % (component.down * side * 2) == 0)
        side *= 2;
    return side;
}

bool shapePlane(JpegFrame const& frame, JpegComponent const& component, JpegPlane& plane)
{
    constexpr int blockSide = 8;
    plane.side = sideOf(frame, component);
    auto const across = component.across * plane.side;
    auto const down = component.down * plane.side;
    if (plane.side > 2 || frame.mostAcross % across != 0 || frame.mostDown % down != 0)
        return false;
    plane.repeatsAcross = frame.mostAcross / across;
    plane.repeatsDown = frame.mostDown / down;
    auto const wholeAcross = blockSide * frame.mostAcross;
    auto const wholeDown = blockSide * frame.mostDown;
    plane.blocksAcross = ceilDivided(frame.size.width * component.across, wholeAcross);
    plane.blocksDown = ceilDivided(frame.size.height * component.down, wholeDown);
    plane.paddedAcross = ceilDivided(frame.size.width, wholeAcross) * component.across;
    plane.paddedDown = ceilDivided(frame.size.height, wholeDown) * component.down;
    return true;
}

} // namespace

std::optional<std::vector<JpegPlane>> makePlanes(JpegFrame const& frame)
{
    std::vector<JpegPlane> planes(frame.components.size());
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        auto& plane = planes[i];
        if (!shapePlane(frame, frame.components[i], plane))
            return {};
        auto const blocks = static_cast<std::size_t>(plane.paddedAcross)
            * static_cast<std::size_t>(plane.paddedDown);
        auto const samples = blocks * static_cast<std::size_t>(plane.side * plane.side);
        bytes += samples + (frame.isProgressive ? blocks * sizeof(std::int16_t) : 0);
        if (bytes > DecodeLimits::memory)
            return {};
        plane.samples = zeroed<std::int8_t>(samples);
        if (frame.isProgressive)
            plane.means = zeroed<std::int16_t>(blocks);
        if (!plane.samples || (frame.isProgressive && !plane.means))
            return {};
    }
    return planes;
}

} // namespace pixelhain
