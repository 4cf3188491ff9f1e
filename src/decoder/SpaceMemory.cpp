#include "decoder/SpaceMemory.h"
#include <sys/mman.h>

namespace pixelhain {

namespace {

#ifdef MADV_POPULATE_WRITE
constexpr int populateWrite = MADV_POPULATE_WRITE;
#else
constexpr int populateWrite = 23; // since Linux 5.14
#endif

// Below this the pages are there already, because the space is used over and over.
constexpr std::size_t manyBytes = std::size_t { 4 } << 20U;

} // namespace

SpaceMemory::SpaceMemory(WritableSpace const& space, int longestSide)
    : space_(space)
    , longestSide_(longestSide)
{
}

std::shared_ptr<std::byte> SpaceMemory::take(PixelSize size, std::size_t bytes)
{
    if (!lent_.expired() || size.longestSide() > longestSide_ || bytes > space_.size())
        return nullptr;
    // All pages at once take half the time that they take one by one. Where the kernel cannot do
    // that they come one by one.
    if (bytes > manyBytes)
        ::madvise(space_.data(), bytes, populateWrite);
    std::shared_ptr<std::byte> pixels(space_.data(), [](std::byte*) {});
    lent_ = pixels;
    return pixels;
}

} // namespace pixelhain
