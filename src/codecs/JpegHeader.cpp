#include "codecs/JpegHeader.h"
#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/JpegCode.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr int mostSegments = 4096;
// Bytes between segments that are skipped in all, each at the price of a read.
constexpr int mostStray = 4096;
// Blocks of metadata that are looked into; cameras write one of each kind.
constexpr std::size_t mostBlocks = 16;

struct Segment {
    std::uint8_t marker = 0;
    std::uint64_t offset = 0; ///< of its contents
    std::uint64_t length = 0;
};

struct ProfilePart {
    int number = 0;
    int total = 0;
    ByteRange range;
};

// The segment whose marker is the first at or after `offset`; bytes between segments are
// skipped as decoders do, and added to `stray`.
std::optional<Segment> nextSegment(ByteSource const& bytes, std::uint64_t offset, int& stray)
{
    for (; stray < mostStray; ++stray, ++offset) {
        std::array<std::uint8_t, 4> head {};
        auto const got = bytes.readAt(offset, head);
        if (got < 2)
            return {};
        if (head[0] != 0xFF || head[1] == 0xFF || head[1] == 0)
            continue;
        if (JpegCode::standsAlone(head[1])) {
            ++offset;
            continue;
        }
        auto const length = bigEndian16(head.data() + 2);
        if (got < 4 || head[1] == JpegCode::endOfImage || length < 2)
            return {};
        return Segment { head[1], offset + 4, std::uint64_t { length } - 2 };
    }
    return {};
}

void takeApplicationData(ByteSource const& bytes, Segment const& segment, JpegHeader& header,
    std::vector<ProfilePart>& parts, std::size_t& blocks)
{
    constexpr std::uint64_t profileHead = 14;
    constexpr std::uint64_t packetHead = 29;
    std::array<std::uint8_t, packetHead> start {};
    auto const got = bytes.readAt(segment.offset,
        std::span(start).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(segment.length, start.size()))));
    auto const known = ByteSpan(start).first(got);
    if (segment.marker == JpegCode::application1 && startsWith(known, "Exif\0")
        && known.size() > 6) {
        constexpr std::uint64_t skip = 6;
        ByteRange const block { segment.offset + skip, segment.length - skip };
        if (header.exifBlocks.size() < mostBlocks)
            header.exifBlocks.push_back(block);
        if (header.traits.exif == ExifSummary {} && ++blocks <= mostBlocks) {
            header.exif = block;
            header.traits.exif = readExif(bytes, header.exif->offset, header.exif->length);
        }
    } else if (segment.marker == JpegCode::application1
        && startsWith(known, "http://ns.adobe.com/xap/1.0/\0")) {
        if (header.packets.size() < mostBlocks)
            header.packets.push_back({ segment.offset + packetHead, segment.length - packetHead });
    } else if (segment.marker == JpegCode::application2 && startsWith(known, "MPF\0")) {
        if (++blocks <= mostBlocks)
            header.traits.pictures = readMultiPictureIndex(bytes, segment.offset + 4);
    } else if (segment.marker == JpegCode::application2 && startsWith(known, "ICC_PROFILE\0")
        && known.size() >= profileHead) {
        parts.push_back({ start[12], start[13],
            { segment.offset + profileHead, segment.length - profileHead } });
    }
}

std::vector<ByteRange> profileRanges(std::vector<ProfilePart> parts)
{
    std::ranges::stable_sort(parts, {}, &ProfilePart::number);
    std::vector<ByteRange> ranges;
    for (auto const& part : parts) {
        if (part.total != static_cast<int>(parts.size())
            || part.number != static_cast<int>(ranges.size()) + 1)
            return {};
        ranges.push_back(part.range);
    }
    return ranges;
}

} // namespace

std::optional<JpegHeader> readJpegHeader(ByteSource const& bytes)
{
    JpegHeader header;
    std::vector<ProfilePart> parts;
    std::uint64_t offset = 2;
    int stray = 0;
    std::size_t blocks = 0;
    for (int i = 0; i < mostSegments; ++i) {
        auto const segment = nextSegment(bytes, offset, stray);
        if (!segment || segment->marker == JpegCode::startOfScan)
            break;
        if (segment->marker == JpegCode::application1
            || segment->marker == JpegCode::application2) {
            takeApplicationData(bytes, *segment, header, parts, blocks);
        } else if (JpegCode::isFrame(segment->marker) && header.traits.size == PixelSize {}) {
            std::array<std::uint8_t, 5> frame {};
            if (bytes.readAt(segment->offset, frame) != frame.size())
                break;
            header.traits.size = { bigEndian16(frame.data() + 3), bigEndian16(frame.data() + 1) };
            header.frame = segment->marker;
            header.precision = frame[0];
        }
        offset = segment->offset + segment->length;
    }
    if (header.traits.size.width <= 0 || header.traits.size.height <= 0)
        return {};
    header.profileParts = profileRanges(std::move(parts));
    return header;
}

std::vector<std::uint8_t> readJpegProfile(ByteSource const& bytes, JpegHeader const& header)
{
    std::vector<std::uint8_t> profile;
    for (auto const& range : header.profileParts) {
        auto const part = bytesAt(bytes, range.offset, static_cast<std::size_t>(range.length));
        if (part.size() != range.length
            || profile.size() + part.size() > DecodeLimits::colorProfile)
            return {};
        profile.insert(profile.end(), part.begin(), part.end());
    }
    return profile;
}

} // namespace pixelhain
