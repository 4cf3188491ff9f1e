#include "codecs/JpegMarkers.h"
#include "codecs/JpegCode.h"
#include <algorithm>

namespace pixelhain {

namespace {

constexpr int mostSegments = 8192;
constexpr int mostFill = 1024; // bytes of 0xFF in front of markers, in the whole file
constexpr int mostBlocks = 10; // of a unit that holds several components

bool isFrame(std::uint8_t marker)
{
    return marker == JpegCode::baselineFrame || marker == JpegCode::extendedFrame
        || marker == JpegCode::progressiveFrame;
}

} // namespace

// An end, of the picture or of the file, is a segment without contents.
std::optional<JpegMarkers::Segment> JpegMarkers::segmentAt(std::uint64_t offset)
{
    if (++segments_ > mostSegments)
        return {};
    std::array<std::uint8_t, 4> head {};
    for (; fill_ < mostFill; ++fill_, ++offset) {
        auto const got = bytes_.readAt(offset, head);
        if (got < 2)
            return Segment { JpegCode::endOfImage, offset, 0 };
        if (head[0] != 0xFF)
            return {};
        if (head[1] == 0xFF)
            continue;
        if (head[1] == JpegCode::endOfImage)
            return Segment { JpegCode::endOfImage, offset + 2, 0 };
        auto const length = std::size_t { bigEndian16(head.data() + 2) };
        if (got < head.size() || length < 2)
            return {};
        return Segment { head[1], offset + head.size(), length - 2 };
    }
    return {};
}

bool JpegMarkers::readFrame()
{
    std::array<std::uint8_t, 2> head {};
    if (bytes_.readAt(0, head) != head.size() || head[0] != 0xFF
        || head[1] != JpegCode::startOfImage)
        return false;
    for (std::uint64_t offset = head.size();;) {
        auto const segment = segmentAt(offset);
        if (!segment || segment->marker == JpegCode::startOfScan || !take(*segment))
            return false;
        offset = segment->contents + segment->length;
        behindFrame_ = offset;
        if (isFrame(segment->marker))
            return true;
    }
}

JpegMarkers::Stop JpegMarkers::next(std::uint64_t offset)
{
    for (;;) {
        auto const segment = segmentAt(offset);
        if (!segment)
            return Stop::foreign;
        if (segment->marker == JpegCode::endOfImage)
            return Stop::end;
        if (!take(*segment))
            return Stop::foreign;
        if (segment->marker == JpegCode::startOfScan)
            return Stop::scan;
        offset = segment->contents + segment->length;
    }
}

bool JpegMarkers::take(Segment const& segment)
{
    auto const marker = segment.marker;
    if (JpegCode::isNote(marker)) {
        constexpr std::size_t telling = 14;
        takeApplicationData(
            marker, bytesAt(bytes_, segment.contents, std::min(segment.length, telling)));
        return true;
    }
    auto const contents = bytesAt(bytes_, segment.contents, segment.length);
    if (contents.size() != segment.length)
        return false;
    switch (marker) {
    case JpegCode::quantizationTables:
        return takeQuantizations(contents);
    case JpegCode::huffmanTables:
        return takeCodes(contents);
    case JpegCode::restartInterval:
        if (contents.size() != 2)
            return false;
        restartInterval_ = bigEndian16(contents.data());
        return true;
    case JpegCode::baselineFrame:
    case JpegCode::extendedFrame:
    case JpegCode::progressiveFrame:
        return takeFrame(marker == JpegCode::progressiveFrame, contents);
    case JpegCode::startOfScan:
        return takeScan(contents, segment.contents + segment.length);
    default:
        return false;
    }
}

bool JpegMarkers::takeQuantizations(ByteSpan tables)
{
    while (!tables.empty()) {
        auto const width = (tables[0] >> 4U) + std::size_t { 1 };
        auto const number = tables[0] & 15U;
        auto const bytes = 1 + 64 * width;
        if (width > 2 || number > 3 || tables.size() < bytes)
            return false;
        auto& table = quantizations_[number].emplace();
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = width == 1 ? tables[1 + i] : bigEndian16(tables.data() + 1 + 2 * i);
        tables = tables.subspan(bytes);
    }
    return true;
}

bool JpegMarkers::takeCodes(ByteSpan codes)
{
    constexpr std::size_t head = 17;
    while (!codes.empty()) {
        if (codes.size() < head || (codes[0] & 0xECU) != 0)
            return false;
        HuffmanCode code;
        std::size_t count = 0;
        for (std::size_t length = 1; length < head; ++length)
            count += code.counts[length] = codes[length];
        if (count > code.symbols.size() || codes.size() < head + count)
            return false;
        std::copy_n(codes.data() + head, count, code.symbols.data());
        codes_[(codes[0] & 3U) + (codes[0] & 0x10U) / 4] = code;
        codes = codes.subspan(head + count);
    }
    return true;
}

bool JpegMarkers::takeFrame(bool isProgressive, ByteSpan frame)
{
    constexpr std::size_t head = 6;
    constexpr std::size_t each = 3;
    if (!frame_.components.empty() || frame.size() < head || frame[0] != 8
        || frame.size() != head + each * frame[5] || frame[5] > 4)
        return false;
    frame_.isProgressive = isProgressive;
    frame_.size = { bigEndian16(frame.data() + 3), bigEndian16(frame.data() + 1) };
    for (std::size_t at = head; at < frame.size(); at += each) {
        JpegComponent const component { frame[at], frame[at + 1] >> 4, frame[at + 1] & 15,
            frame[at + 2] };
        auto const isDouble = std::ranges::any_of(frame_.components,
            [&](JpegComponent const& other) { return other.name == component.name; });
        if (isDouble || component.across < 1 || component.across > 4 || component.down < 1
            || component.down > 4 || component.quantization > 3)
            return false;
        frame_.mostAcross = std::max(frame_.mostAcross, component.across);
        frame_.mostDown = std::max(frame_.mostDown, component.down);
        frame_.components.push_back(component);
    }
    return !frame_.components.empty() && frame_.size.width > 0 && frame_.size.height > 0;
}

bool JpegMarkers::takeScan(ByteSpan head, std::uint64_t coded)
{
    std::size_t const count = head.empty() ? 0 : head[0];
    if (count < 1 || count > frame_.components.size() || head.size() != 4 + 2 * count)
        return false;
    scan_ = {};
    int blocks = 0;
    for (std::size_t i = 0; i < count; ++i) {
        auto const found
            = std::ranges::find(frame_.components, head[1 + 2 * i], &JpegComponent::name);
        auto const codes = head[2 + 2 * i];
        auto const index = static_cast<std::size_t>(found - frame_.components.begin());
        auto const isDouble = std::ranges::any_of(
            scan_.parts, [&](JpegScan::Part const& part) { return part.component == index; });
        if (found == frame_.components.end() || isDouble || (codes & 0xCCU) != 0)
            return false;
        blocks += found->across * found->down;
        scan_.parts.push_back({ index, std::size_t { codes } >> 4U, codes & 15U });
    }
    if (count > 1 && blocks > mostBlocks)
        return false;
    auto const band = head.last(3);
    scan_.first = band[0];
    scan_.last = band[1];
    scan_.lowBitBefore = band[2] >> 4;
    scan_.lowBit = band[2] & 15;
    scan_.coded = coded;
    return isBandSound();
}

bool JpegMarkers::isBandSound() const
{
    if (!frame_.isProgressive)
        return scan_.first == 0 && scan_.last == 63 && scan_.lowBitBefore == 0 && scan_.lowBit == 0;
    constexpr int highestBit = 13;
    auto const isRefined = scan_.lowBitBefore > 0;
    if (scan_.lowBit > highestBit || (isRefined && scan_.lowBit != scan_.lowBitBefore - 1))
        return false;
    return scan_.first == 0
        ? scan_.last == 0
        : scan_.parts.size() == 1 && scan_.first <= scan_.last && scan_.last < 64;
}

void JpegMarkers::takeApplicationData(std::uint8_t marker, ByteSpan contents)
{
    constexpr std::size_t jfifBytes = 14;
    constexpr std::size_t adobeBytes = 12;
    if (marker == JpegCode::application0 && contents.size() >= jfifBytes
        && startsWith(contents, "JFIF\0"))
        hasJfif_ = true;
    if (marker == JpegCode::application14 && contents.size() >= adobeBytes
        && startsWith(contents, "Adobe"))
        adobe_ = contents[adobeBytes - 1];
}

std::optional<JpegColors> JpegMarkers::colors() const
{
    auto const& components = frame_.components;
    auto const areNamed = [&](char const(&names)[4]) {
        return components[0].name == names[0] && components[1].name == names[1]
            && components[2].name == names[2];
    };
    switch (components.size()) {
    case 1:
        return JpegColors::grey;
    case 3:
        if (hasJfif_)
            return JpegColors::ycbcr;
        if (adobe_)
            return *adobe_ == 0 ? JpegColors::rgb : JpegColors::ycbcr;
        return areNamed("RGB") ? JpegColors::rgb : JpegColors::ycbcr;
    case 4:
        return adobe_ && *adobe_ != 0 ? JpegColors::ycck : JpegColors::cmyk;
    default:
        return {};
    }
}

} // namespace pixelhain
