#include "qt/app/Services.h"
#include "decoder/ChosenDecoder.h"
#include "model/FolderNames.h"
#include <algorithm>
#include <cstdlib>
#include <thread>
#include <utility>

namespace pixelhain {

namespace {

bool isTreeName(std::string_view name)
{
    return !isHiddenName(name) && !isPackageName(name);
}

} // namespace

Services::Services(Decoding decoding)
    : decoder(std::move(decoding.decoder))
    , missingHolds(std::move(decoding.missingHolds))
    , textOrder(orderingLocale(::getenv))
    , folderEvents(loop, { isTreeName })
    , formats(formatLocales(::getenv))
{
}

std::size_t Services::thumbWidth()
{
    return std::max<std::size_t>(2, std::thread::hardware_concurrency());
}

// What people may look at next leaves a processor to what they look at now.
ImageLoader::Limits Services::loaderLimits()
{
    constexpr unsigned fewProcessors = 2;
    ImageLoader::Limits limits;
    limits.pictures.queue = displayWidth;
    if (std::thread::hardware_concurrency() <= fewProcessors)
        limits.pictures.prefetch = 1;
    return limits;
}

// The first screen keeps two processors busy while the rest of the program starts; what else the
// queues may want is started when they do.
Services::Decoding Services::startDecoder(bool isWantedSoon)
{
    std::size_t const first = isWantedSoon ? 2 : 0;
    constexpr std::size_t viewer = 3; // what is known of the photo, its preview, its animation
    auto const note = std::make_shared<MissingHoldsNote>();
    return { chosenDecoder({ .width = 2 * thumbWidth() + displayWidth + viewer,
                 .first = first,
                 .niceness = displayNiceness,
                 .warn = [note](std::string const& missing) { note->write(missing); } }),
        note };
}

} // namespace pixelhain
