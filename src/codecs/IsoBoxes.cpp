#include "codecs/IsoBoxes.h"
#include "codecs/DecodeLimits.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

// The box at the start of `range`; how many bytes it takes is its header and its contents.
std::optional<IsoBox> boxAt(ByteSource const& bytes, ByteRange range)
{
    std::array<std::uint8_t, 16> head {};
    auto const wanted = std::min<std::uint64_t>(head.size(), range.length);
    auto const there
        = bytes.readAt(range.offset, std::span(head).first(static_cast<std::size_t>(wanted)));
    std::uint64_t headerLength = 8;
    if (there < headerLength)
        return {};
    auto length = std::uint64_t { bigEndian32(head.data()) };
    if (length == 1 && there == head.size()) {
        headerLength = head.size();
        length
            = std::uint64_t { bigEndian32(head.data() + 8) } << 32 | bigEndian32(head.data() + 12);
    } else if (length == 0) {
        length = range.length;
    }
    if (length < headerLength)
        return {};
    length = std::min(length, range.length);
    return IsoBox { bigEndian32(head.data() + 4),
        { range.offset + headerLength, length - headerLength } };
}

template <typename Take> void eachBox(ByteSource const& bytes, ByteRange range, Take take)
{
    if (range.offset >= bytes.size())
        return;
    range.length = std::min(range.length, bytes.size() - range.offset);
    for (std::size_t count = 0; count < DecodeLimits::boxes && range.length > 0; ++count) {
        auto const box = boxAt(bytes, range);
        if (!box || !take(*box))
            return;
        range = rangeAfter(range, box->contents.offset - range.offset + box->contents.length);
    }
}

} // namespace

std::vector<IsoBox> boxesIn(ByteSource const& bytes, ByteRange range)
{
    std::vector<IsoBox> boxes;
    eachBox(bytes, range, [&](IsoBox const& box) {
        boxes.push_back(box);
        return true;
    });
    return boxes;
}

std::optional<IsoBox> findBox(ByteSource const& bytes, ByteRange range, std::uint32_t type)
{
    std::optional<IsoBox> found;
    eachBox(bytes, range, [&](IsoBox const& box) {
        if (box.type == type)
            found = box;
        return !found;
    });
    return found;
}

std::vector<std::uint32_t> brandsOf(ByteSpan start)
{
    if (start.size() < 16 || bigEndian32(start.data() + 4) != fourCharacters("ftyp"))
        return {};
    auto const length = std::min<std::size_t>(start.size(), bigEndian32(start.data()));
    std::vector<std::uint32_t> brands { bigEndian32(start.data() + 8) };
    // Behind the major brand stands its version.
    for (std::size_t at = 16; at + 4 <= length; at += 4)
        brands.push_back(bigEndian32(start.data() + at));
    return brands;
}

} // namespace pixelhain
