#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/RawContainers.h"
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t entryBytes = 12;
constexpr std::size_t mostEntries = 256;
constexpr std::size_t sectionHead = 28;

void takeImage(ByteSource const& bytes, ByteRange section, RawContents& contents)
{
    constexpr std::uint32_t jpeg = 18;
    constexpr std::uint32_t plainRgb = 3;
    auto const head = bytesAt(bytes, section.offset, sectionHead);
    if (head.size() != sectionHead || section.length <= sectionHead || !startsWith(head, "SECi"))
        return;
    auto const numberAt = [&](std::size_t place) { return littleEndian32(head.data() + place); };
    auto const format = numberAt(12);
    if (format == jpeg)
        contents.jpegs.push_back({ section.offset + sectionHead, section.length - sectionHead });
    std::int64_t const width = numberAt(16);
    std::int64_t const height = numberAt(20);
    if (format == plainRgb && isWithinLimits(width, height) && numberAt(24) == width * 3
        && static_cast<std::uint64_t>(width * height * 3) <= section.length - sectionHead)
        contents.plains.push_back({ section.offset + sectionHead,
            { static_cast<int>(width), static_cast<int>(height) } });
}

void takeDirectory(ByteSource const& bytes, RawContents& contents)
{
    std::array<std::uint8_t, 4> last {};
    if (bytes.size() < last.size() || bytes.readAt(bytes.size() - 4, last) != last.size())
        return;
    constexpr std::size_t headBytes = 12;
    auto const place = littleEndian32(last.data());
    auto const head = bytesAt(bytes, place, headBytes);
    if (head.size() != headBytes || !startsWith(head, "SECd"))
        return;
    auto const count = std::min<std::size_t>(littleEndian32(head.data() + 8), mostEntries);
    auto const entries = bytesAt(bytes, place + headBytes, count * entryBytes);
    for (std::size_t at = 0; at + entryBytes <= entries.size(); at += entryBytes) {
        auto const* entry = entries.data() + at;
        auto const type = ByteSpan(entries).subspan(at + 8, 4);
        if (startsWith(type, "IMAG") || startsWith(type, "IMA2"))
            takeImage(bytes, { littleEndian32(entry), littleEndian32(entry + 4) }, contents);
    }
}

} // namespace

bool readX3f(ByteSource const& bytes, RawContents& contents)
{
    std::array<std::uint8_t, 52> head {};
    if (bytes.readAt(0, head) != head.size())
        return false;
    // Files from version 4 on state the size further behind.
    auto const place = littleEndian16(head.data() + 6) >= 4 ? 40 : 28;
    auto const width = littleEndian32(head.data() + place);
    auto const height = littleEndian32(head.data() + place + 4);
    if (isWithinLimits(width, height))
        contents.size = { static_cast<int>(width), static_cast<int>(height) };
    contents.orientation = orientationOfTurn(littleEndian32(head.data() + place + 8));
    takeDirectory(bytes, contents);
    return true;
}

} // namespace pixelhain
