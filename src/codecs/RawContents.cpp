#include "codecs/RawContents.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/RawContainers.h"
#include <algorithm>

namespace pixelhain {

namespace {

enum class Container : std::uint8_t { none, tiff, cr3, ciff, raf, mrw, x3f };

constexpr std::size_t startBytes = 16;

Container containerOf(ByteSpan start)
{
    if (start.size() < startBytes)
        return Container::none;
    if (startsWith(start, "FUJIFILMCCD-RAW"))
        return Container::raf;
    if (startsWith(start.subspan(6), "HEAPCCDR"))
        return Container::ciff;
    if (startsWith(start.subspan(4), "ftypcrx "))
        return Container::cr3;
    if (startsWith(start, "\0MRM"))
        return Container::mrw;
    if (startsWith(start, "FOVb"))
        return Container::x3f;
    if (startsWith(start, "IIRO") || startsWith(start, "IIRS") || startsWith(start, "MMOR")
        || startsWith(start, "IIU\0"))
        return Container::tiff;
    return Container::none;
}

// Phase One keeps a directory of its own beside the TIFF's, for what concerns the sensor.
void takePhaseOne(ByteSource const& bytes, RawContents& contents)
{
    constexpr std::uint64_t base = 8;
    constexpr std::size_t entryBytes = 16;
    constexpr std::size_t mostEntries = 512;
    auto const head = bytesAt(bytes, base, 12);
    if (head.size() < 12 || !(startsWith(head, "IIIITwaR") || startsWith(head, "MMMMRawT")))
        return;
    auto const isBigEndian = head[0] == 'M';
    auto const number = [&](std::uint8_t const* at) {
        return isBigEndian ? bigEndian32(at) : littleEndian32(at);
    };
    auto const place = base + number(head.data() + 8);
    auto const count = bytesAt(bytes, place, 4);
    if (count.size() != 4)
        return;
    auto const entries = bytesAt(
        bytes, place + 8, std::min<std::size_t>(number(count.data()), mostEntries) * entryBytes);
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    for (std::size_t at = 0; at + entryBytes <= entries.size(); at += entryBytes) {
        constexpr std::uint32_t imageWidth = 0x10C;
        constexpr std::uint32_t imageHeight = 0x10D;
        auto const* entry = entries.data() + at;
        if (number(entry) == imageWidth)
            width = number(entry + 12);
        else if (number(entry) == imageHeight)
            height = number(entry + 12);
    }
    if (isWithinLimits(width, height))
        contents.size = { static_cast<int>(width), static_cast<int>(height) };
}

bool read(ByteSource const& bytes, Container container, RawContents& contents)
{
    switch (container) {
    case Container::tiff: {
        auto const isOpen = readTiffRaw(bytes, 0, contents);
        takePhaseOne(bytes, contents);
        return isOpen;
    }
    case Container::cr3:
        return readCr3(bytes, contents);
    case Container::ciff:
        return readCiff(bytes, contents);
    case Container::raf:
        return readRaf(bytes, contents);
    case Container::mrw:
        return readMrw(bytes, contents);
    case Container::x3f:
        return readX3f(bytes, contents);
    case Container::none:
        break;
    }
    return false;
}

} // namespace

int orientationOfTurn(std::uint32_t degrees)
{
    switch (degrees % 360) {
    case 90:
        return 6;
    case 180:
        return 3;
    case 270:
        return 8;
    default:
        return 1;
    }
}

bool isMakersRaw(ByteSpan start)
{
    return containerOf(start) != Container::none;
}

std::optional<RawContents> readRawContents(ByteSource const& bytes)
{
    auto const start = bytesAt(bytes, 0, startBytes);
    auto container = containerOf(start);
    if (startsWith(start, "II*\0") || startsWith(start, "MM\0*"))
        container = Container::tiff;
    RawContents contents;
    if (!read(bytes, container, contents))
        return {};
    return contents;
}

} // namespace pixelhain
