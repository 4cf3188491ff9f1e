#include "codecs/BmpDecoder.h"
#include <algorithm>
#include <cstdlib>

namespace pixelhain {

namespace {

constexpr std::uint64_t fileHeader = 14;
constexpr std::size_t os2Header = 12;
constexpr std::size_t plainHeader = 40;
constexpr std::size_t headerWithMasks = 52;
constexpr std::size_t headerWithAlpha = 56;
constexpr std::size_t headerWithProfile = 124;

enum Compression : std::uint32_t { none = 0, runs8 = 1, runs4 = 2, fields = 3, alphaFields = 6 };

void readSize(ByteSpan info, BmpHeader& header)
{
    if (info.size() == os2Header) {
        header.size = { littleEndian16(info.data() + 4), littleEndian16(info.data() + 6) };
        header.bits = littleEndian16(info.data() + 10);
        return;
    }
    auto const width = static_cast<std::int32_t>(littleEndian32(info.data() + 4));
    auto const height = static_cast<std::int32_t>(littleEndian32(info.data() + 8));
    header.isTopDown = height < 0;
    // The most negative height has no positive counterpart.
    header.size = { width, height == INT32_MIN ? 0 : std::abs(height) };
    header.bits = littleEndian16(info.data() + 14);
}

void readMasks(ByteSource const& bytes, ByteSpan info, std::uint32_t compression, BmpHeader& header)
{
    header.masks = header.bits == 16 ? std::array<std::uint32_t, 4> { 0x7C00, 0x3E0, 0x1F, 0 }
                                     : std::array<std::uint32_t, 4> { 0xFF0000, 0xFF00, 0xFF, 0 };
    if (compression != fields && compression != alphaFields)
        return;
    // The masks follow the header or are its part: the same place either way.
    std::array<std::uint8_t, 16> raw {};
    auto const hasAlpha = compression == alphaFields || info.size() >= headerWithAlpha;
    auto const length = hasAlpha ? 16U : 12U;
    if (bytes.readAt(fileHeader + plainHeader, std::span(raw).first(length)) != length)
        return;
    for (std::size_t i = 0; i < 4; ++i)
        header.masks[i] = littleEndian32(raw.data() + i * 4);
}

void readColors(
    ByteSource const& bytes, ByteSpan info, std::uint32_t compression, BmpHeader& header)
{
    for (auto& color : header.colors)
        color = { 0, 0, 0, 255 };
    if (header.bits > 8)
        return;
    auto const unit = info.size() == os2Header ? 3U : 4U;
    auto offset = fileHeader + info.size();
    if (info.size() == plainHeader && compression == fields)
        offset += 12;
    auto count = std::size_t { 1 } << header.bits;
    if (info.size() >= plainHeader) {
        auto const used = littleEndian32(info.data() + 32);
        if (used > 0 && used < count)
            count = used;
    }
    if (header.pixelOffset > offset)
        count = std::min<std::size_t>(count, (header.pixelOffset - offset) / unit);
    auto const raw = bytesAt(bytes, offset, count * unit);
    for (std::size_t i = 0; (i + 1) * unit <= raw.size(); ++i)
        header.colors[i] = { raw[i * unit], raw[i * unit + 1], raw[i * unit + 2], 255 };
}

void readProfilePlace(ByteSpan info, BmpHeader& header)
{
    constexpr std::uint32_t embedded = 0x4D424544;
    if (info.size() < headerWithProfile || littleEndian32(info.data() + 56) != embedded)
        return;
    header.profile
        = { fileHeader + littleEndian32(info.data() + 112), littleEndian32(info.data() + 116) };
}

bool isKnownHeader(std::size_t length)
{
    return length == os2Header || length == 16 || length == plainHeader || length == headerWithMasks
        || length == headerWithAlpha || length == 64 || length == 108
        || length == headerWithProfile;
}

// Bits and packing must suit each other.
bool setPacking(std::uint32_t compression, std::size_t infoBytes, BmpHeader& header)
{
    switch (compression) {
    case none:
        break;
    case runs8:
        header.packing = BmpHeader::Packing::runs8;
        return header.bits == 8;
    case runs4:
        header.packing = BmpHeader::Packing::runs4;
        return header.bits == 4;
    case fields:
    case alphaFields:
        return infoBytes != 64 && (header.bits == 16 || header.bits == 32);
    default:
        return false;
    }
    constexpr std::array known { 1, 2, 4, 8, 16, 24, 32 };
    return std::ranges::find(known, header.bits) != known.end();
}

} // namespace

std::optional<BmpHeader> readBmpHeader(ByteSource const& bytes)
{
    std::array<std::uint8_t, fileHeader + headerWithProfile> raw {};
    auto const got = bytes.readAt(0, raw);
    if (got < fileHeader + 4)
        return {};
    auto const length = littleEndian32(raw.data() + fileHeader);
    if (!isKnownHeader(length) || got < fileHeader + length)
        return {};
    auto info = ByteSpan(raw).subspan(fileHeader, length);
    BmpHeader header;
    header.pixelOffset = littleEndian32(raw.data() + 10);
    readSize(info, header);
    auto const compression
        = info.size() >= plainHeader ? littleEndian32(info.data() + 16) : std::uint32_t { none };
    if (header.size.width <= 0 || header.size.height <= 0
        || !setPacking(compression, info.size(), header))
        return {};
    readMasks(bytes, info, compression, header);
    readColors(bytes, info, compression, header);
    readProfilePlace(info, header);
    return header;
}

} // namespace pixelhain
