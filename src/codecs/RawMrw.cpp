#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/RawContainers.h"
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t headBytes = 8;
constexpr int mostBlocks = 64;

void takeSizes(ByteSource const& bytes, std::uint64_t offset, RawContents& contents)
{
    std::array<std::uint8_t, 16> block {};
    if (bytes.readAt(offset, block) != block.size())
        return;
    auto const height = bigEndian16(block.data() + 12);
    auto const width = bigEndian16(block.data() + 14);
    if (isWithinLimits(width, height))
        contents.size = { width, height };
}

} // namespace

bool readMrw(ByteSource const& bytes, RawContents& contents)
{
    std::array<std::uint8_t, headBytes> head {};
    if (bytes.readAt(0, head) != head.size())
        return false;
    auto const end = headBytes + std::uint64_t { bigEndian32(head.data() + 4) };
    std::uint64_t at = headBytes;
    PixelSize size;
    for (int i = 0; i < mostBlocks && at < end; ++i) {
        if (bytes.readAt(at, head) != head.size())
            break;
        auto const length = bigEndian32(head.data() + 4);
        if (startsWith(head, "\0PRD")) {
            takeSizes(bytes, at + headBytes, contents);
            size = contents.size;
        } else if (startsWith(head, "\0TTW")) {
            contents.exif.push_back({ at + headBytes, length });
            static_cast<void>(readTiffRaw(bytes, at + headBytes, contents));
        }
        at += headBytes + length;
    }
    if (size.width > 0)
        contents.size = size;
    return true;
}

} // namespace pixelhain
