#include "codecs/ByteView.h"
#include "codecs/DecodeLimits.h"
#include "codecs/RawContainers.h"
#include <algorithm>
#include <array>

namespace pixelhain {

namespace {

constexpr std::size_t entryBytes = 10;
constexpr std::size_t mostEntries = 512;
constexpr int mostHeaps = 64;
constexpr int deepest = 8;

namespace tag {
constexpr unsigned typeMask = 0x3FFF;
constexpr unsigned isInEntry = 0x4000;
constexpr unsigned camera = 0x080A;
constexpr unsigned imageSpec = 0x1810;
constexpr unsigned jpegFromRaw = 0x2007;
constexpr unsigned thumbnail = 0x2008;
} // namespace tag

/// A file of nested heaps, each with its directory at its end.
class HeapScan {
public:
    HeapScan(ByteSource const& bytes, bool isBigEndian, RawContents& contents)
        : bytes_(bytes)
        , isBigEndian_(isBigEndian)
        , contents_(contents)
    {
    }

    bool scan(std::uint64_t start, std::uint64_t end, int depth)
    {
        std::array<std::uint8_t, 4> last {};
        if (depth >= deepest || ++heaps_ > mostHeaps || start > end || end - start < 6
            || bytes_.readAt(end - last.size(), last) != last.size())
            return false;
        auto const table = start + number32(last.data());
        if (table > end - 6)
            return false;
        std::array<std::uint8_t, 2> head {};
        if (bytes_.readAt(table, head) != head.size())
            return false;
        auto const count = std::min<std::size_t>(number16(head.data()), mostEntries);
        auto const entries = bytesAt(bytes_, table + 2, count * entryBytes);
        for (std::size_t at = 0; at + entryBytes <= entries.size(); at += entryBytes)
            takeEntry(entries.data() + at, start, end, depth);
        return true;
    }

private:
    [[nodiscard]] std::uint32_t number32(std::uint8_t const* at) const
    {
        return isBigEndian_ ? bigEndian32(at) : littleEndian32(at);
    }
    [[nodiscard]] std::uint16_t number16(std::uint8_t const* at) const
    {
        return isBigEndian_ ? bigEndian16(at) : littleEndian16(at);
    }

    void takeEntry(std::uint8_t const* entry, std::uint64_t start, std::uint64_t end, int depth)
    {
        auto const id = number16(entry);
        std::uint64_t const length = number32(entry + 2);
        auto const offset = start + number32(entry + 6);
        if ((id & tag::isInEntry) != 0 || offset > end || length > end - offset)
            return;
        auto const type = id & tag::typeMask;
        auto const isHeap = (type & 0x3800) == 0x2800 || (type & 0x3800) == 0x3000;
        if (type == tag::jpegFromRaw || type == tag::thumbnail)
            contents_.jpegs.push_back({ offset, length });
        else if (type == tag::camera)
            contents_.camera = { offset, length };
        else if (type == tag::imageSpec)
            takeImageSpec(offset, length);
        else if (isHeap)
            static_cast<void>(scan(offset, offset + length, depth + 1));
    }

    void takeImageSpec(std::uint64_t offset, std::uint64_t length)
    {
        std::array<std::uint8_t, 16> spec {};
        if (length < spec.size() || bytes_.readAt(offset, spec) != spec.size())
            return;
        auto const width = number32(spec.data());
        auto const height = number32(spec.data() + 4);
        if (isWithinLimits(width, height))
            contents_.size = { static_cast<int>(width), static_cast<int>(height) };
        contents_.orientation = orientationOfTurn(number32(spec.data() + 12));
    }

    ByteSource const& bytes_;
    bool isBigEndian_;
    RawContents& contents_;
    int heaps_ = 0;
};

} // namespace

bool readCiff(ByteSource const& bytes, RawContents& contents)
{
    std::array<std::uint8_t, 6> head {};
    if (bytes.readAt(0, head) != head.size())
        return false;
    auto const isBigEndian = head[0] == 'M';
    auto const start = isBigEndian ? bigEndian32(head.data() + 2) : littleEndian32(head.data() + 2);
    return HeapScan(bytes, isBigEndian, contents).scan(start, bytes.size(), 0);
}

} // namespace pixelhain
