#include "cli/CommandLoader.h"
#include "decoder/InProcessDecoder.h"
#include <algorithm>
#include <thread>

namespace pixelhain {

namespace {

ImageLoader::Limits smallLimits(int displayPixelSize)
{
    constexpr std::size_t cacheBytes = std::size_t { 32 } << 20U;
    ImageLoader::Limits limits;
    limits.thumbs.cost = cacheBytes;
    limits.displays.cost = cacheBytes;
    limits.displayPixelSize = displayPixelSize;
    return limits;
}

} // namespace

CommandLoader::CommandLoader(std::size_t jobs, int displayPixelSize)
    : decoder(chosenDecoder(
        { .width = 2 * jobs, .first = std::min(jobs, usualJobs()), .inProcess = inProcessDecoder }))
    , thumbQueue(jobs)
    , displayQueue(jobs)
    , loader(
          { loop, background, *decoder, thumbQueue, displayQueue }, smallLimits(displayPixelSize))
{
}

std::size_t usualJobs()
{
    return std::max(2U, std::thread::hardware_concurrency());
}

} // namespace pixelhain
