#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/HeadBytes.h"
#include "codecs/JpegHeader.h"
#include "codecs/PreviewShape.h"
#include "codecs/RawContainers.h"
#include <array>
#include <cmath>
#include <numbers>

namespace pixelhain {

namespace {

constexpr std::size_t headerBytes = 108;
constexpr std::uint64_t jpegPlace = 84;
constexpr std::uint64_t directoryPlace = 92;
constexpr std::size_t directoryBytes = 4096;
constexpr std::uint32_t mostEntries = 256;

namespace tag {
constexpr unsigned fullSize = 0x0100;
constexpr unsigned croppedSize = 0x0111;
constexpr unsigned aspect = 0x0115;
constexpr unsigned layout = 0x0130;
} // namespace tag

PixelSize heightAndWidth(std::uint8_t const* at)
{
    auto const height = bigEndian16(at);
    auto const width = bigEndian16(at + 2);
    if (!isWithinLimits(width, height))
        return {};
    return { width, height };
}

// Some sensors stand on a corner; the picture has as many pixels, but other sides.
PixelSize turnedSensor(PixelSize size, bool isDoubled)
{
    auto const wider = isDoubled ? std::numbers::sqrt2 : 1 / std::numbers::sqrt2;
    return { static_cast<int>(std::lround(size.width * wider)),
        static_cast<int>(std::lround(size.height / wider)) };
}

void takeSizes(ByteSpan directory, RawContents& contents)
{
    PixelSize full;
    PixelSize cropped;
    PixelSize aspect;
    bool isTurned = false;
    bool isDoubled = false;
    if (directory.size() < 4)
        return;
    auto const count = std::min(bigEndian32(directory.data()), mostEntries);
    std::size_t at = 4;
    for (std::uint32_t i = 0; i < count && at + 4 <= directory.size(); ++i) {
        auto const id = bigEndian16(directory.data() + at);
        std::size_t const length = bigEndian16(directory.data() + at + 2);
        auto const* value = directory.data() + at + 4;
        at += 4 + length;
        if (at > directory.size())
            break;
        if (id == tag::fullSize && length >= 4)
            full = heightAndWidth(value);
        else if (id == tag::croppedSize && length >= 4)
            cropped = heightAndWidth(value);
        else if (id == tag::aspect && length >= 4)
            aspect = heightAndWidth(value);
        else if (id == tag::layout && length >= 2) {
            isDoubled = (value[0] & 0x80) != 0;
            isTurned = (value[1] & 8) == 0;
        }
    }
    auto const size = cropped.width > 0 ? cropped : full;
    contents.size = isTurned && size.width > 0 ? turnedSensor(size, isDoubled) : size;
    if (!hasSameShape(aspect, contents.size))
        contents.crop = largestOfShape(aspect, contents.size);
}

} // namespace

bool readRaf(ByteSource const& bytes, RawContents& contents)
{
    auto const head = bytesAt(bytes, 0, headerBytes);
    if (head.size() != headerBytes)
        return false;
    auto const numberAt = [&](std::uint64_t place) { return bigEndian32(head.data() + place); };
    ByteRange const jpeg { numberAt(jpegPlace), numberAt(jpegPlace + 4) };
    takeSizes(bytesAt(bytes, numberAt(directoryPlace), directoryBytes), contents);
    contents.jpegs.push_back(jpeg);
    // Only the JPEG says how the camera was held.
    constexpr std::size_t jpegHead = 4096;
    SliceBytes const slice(bytes, jpeg.offset, jpeg.length);
    HeadBytes const start(slice, jpegHead);
    if (auto const header = readJpegHeader(start))
        contents.orientation = header->traits.exif.orientation;
    return true;
}

} // namespace pixelhain
