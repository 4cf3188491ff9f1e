#include "codecs/FileProperties.h"
#include "codecs/HeadBytes.h"
#include "codecs/HeifSource.h"
#include "codecs/Jp2Source.h"
#include "codecs/JxlSource.h"
#include "codecs/PropertyContainers.h"
#include "codecs/RawContents.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

// Holds the directories of most cameras; a thumbnail behind them is not needed.
constexpr std::size_t headBytes = std::size_t { 8 } << 10;

struct Container {
    bool (*knows)(ByteSpan start);
    void (*gather)(ByteSource const& bytes, PropertyGatherer& gatherer);
};

bool isJpeg(ByteSpan start)
{
    return startsWith(start, "\xFF\xD8\xFF");
}

bool isPng(ByteSpan start)
{
    return startsWith(start, "\x89PNG\r\n\x1A\n");
}

bool isWebp(ByteSpan start)
{
    return startsWith(start, "RIFF") && start.size() >= 12 && startsWith(start.subspan(8), "WEBP");
}

bool isCr3(ByteSpan start)
{
    return start.size() >= 12 && startsWith(start.subspan(4), "ftypcrx ");
}

// Some makers put numbers of their own behind the byte order.
bool isTiff(ByteSpan start)
{
    return startsWith(start, "II*\0") || startsWith(start, "MM\0*") || startsWith(start, "IIRO")
        || startsWith(start, "IIRS") || startsWith(start, "MMOR") || startsWith(start, "IIU\0");
}

constexpr Container containers[] = {
    { isJpeg, gatherFromJpeg },
    { isPng, gatherFromPng },
    { isWebp, gatherFromWebp },
    { isTiff, gatherFromTiff },
    { isCr3, gatherFromCr3 },
    { isMakersRaw, gatherFromRaw },
    { isHeif, gatherFromHeif },
    { isJxl, gatherFromBoxes },
    { isJp2, gatherFromBoxes },
};

} // namespace

PhotoProperties gatherProperties(ByteSource const& bytes)
{
    HeadBytes const head(bytes, headBytes);
    auto const start = head.head().first(std::min<std::size_t>(head.head().size(), 64));
    PropertyGatherer gatherer;
    auto const known = std::ranges::find_if(
        containers, [&](Container const& each) { return each.knows(start); });
    if (known != std::end(containers))
        known->gather(head, gatherer);
    return std::move(gatherer).finish();
}

std::optional<PhotoProperties> readFileProperties(std::unique_ptr<ByteSource> bytes,
    std::function<std::unique_ptr<ImageSource>(std::unique_ptr<ByteSource>)> const& open)
{
    auto properties = gatherProperties(*bytes);
    if (properties.pixelSize)
        return properties;
    auto const image = open(std::move(bytes));
    if (!image)
        return {};
    properties.pixelSize = image->pixelSize();
    return properties;
}

} // namespace pixelhain
