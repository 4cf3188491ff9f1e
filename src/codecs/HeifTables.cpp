#include "codecs/DecodeLimits.h"
#include "codecs/HeifIndex.h"
#include <algorithm>

namespace pixelhain {

namespace {

/// A table's first four bytes.
struct Kind {
    explicit Kind(NumberReader& numbers)
        : version(numbers.take32(1))
        , flags(numbers.take32(3))
    {
    }
    std::uint32_t version;
    std::uint32_t flags;
};

constexpr std::uint64_t kindLength = 4;

} // namespace

std::optional<HeifIndex> HeifIndex::read(ByteSource const& bytes)
{
    auto const meta = findBox(bytes, { 0, bytes.size() }, fourCharacters("meta"));
    HeifIndex index(bytes);
    if (!meta || !index.readMeta(rangeAfter(meta->contents, kindLength)))
        return {};
    return index;
}

bool HeifIndex::readMeta(ByteRange meta)
{
    std::optional<ByteRange> locations;
    std::optional<ByteRange> inner;
    for (auto const& [type, contents] : boxesIn(*bytes_, meta)) {
        if (type == fourCharacters("pitm")) {
            auto const table = tableAt(contents);
            NumberReader numbers(table);
            auto const length = Kind(numbers).version == 0 ? 2U : 4U;
            primary_ = numbers.take32(length);
            primaryPlace_ = { contents.offset + kindLength, length };
        } else if (type == fourCharacters("iinf")) {
            readItems(contents);
        } else if (type == fourCharacters("iref")) {
            readReferences(contents);
        } else if (type == fourCharacters("iprp")) {
            readProperties(contents);
        } else if (type == fourCharacters("iloc")) {
            locations = contents;
        } else if (type == fourCharacters("idat")) {
            inner = contents;
        }
    }
    if (locations)
        readLocations(*locations, inner);
    findParts();
    return find(primary_) != nullptr && uprightSizeOf(primary_) && decodedPixels(primary_);
}

std::vector<std::uint8_t> HeifIndex::tableAt(ByteRange range) const
{
    return bytesAt(*bytes_, range.offset,
        static_cast<std::size_t>(std::min<std::uint64_t>(range.length, DecodeLimits::boxTable)));
}

void HeifIndex::readItems(ByteRange table)
{
    auto const all = tableAt(table);
    NumberReader numbers(all);
    auto const countLength = Kind(numbers).version == 0 ? 2U : 4U;
    SpanBytes const bytes(all);
    for (auto const& [type, contents] :
        boxesIn(bytes, rangeAfter({ 0, all.size() }, kindLength + countLength))) {
        if (type != fourCharacters("infe"))
            continue;
        NumberReader entry(ByteSpan(all).subspan(
            static_cast<std::size_t>(contents.offset), static_cast<std::size_t>(contents.length)));
        Kind const kind(entry);
        auto const item = entry.take32(kind.version >= 3 ? 4 : 2);
        entry.take(2);
        auto const typeOffset = table.offset + contents.offset + (kind.version >= 3 ? 10 : 8);
        auto const itemType = entry.take32();
        if (kind.version < 2 || entry.hasFailed())
            continue;
        items_[item].type = itemType;
        items_[item].typeOffset = typeOffset;
        items_[item].isHidden = (kind.flags & 1) != 0;
    }
}

void HeifIndex::readLocations(ByteRange table, std::optional<ByteRange> inner)
{
    auto const all = tableAt(table);
    NumberReader numbers(all);
    auto const version = Kind(numbers).version;
    auto const sizes = numbers.take32(2);
    auto const offsetLength = sizes >> 12 & 15;
    auto const lengthLength = sizes >> 8 & 15;
    auto const baseLength = sizes >> 4 & 15;
    auto const indexLength = version == 0 ? 0 : sizes & 15;
    if (std::max({ offsetLength, lengthLength, baseLength, indexLength }) > 8)
        return;
    auto const count = numbers.take32(version < 2 ? 2 : 4);
    for (std::uint32_t i = 0; i < count && !numbers.hasFailed(); ++i) {
        auto const item = items_.find(numbers.take32(version < 2 ? 2 : 4));
        auto const method = version == 0 ? 0 : numbers.take32(2) & 15;
        numbers.take(2);
        auto const base = numbers.take(baseLength);
        auto const pieces = numbers.take32(2);
        ByteRange first;
        for (std::uint32_t piece = 0; piece < pieces && !numbers.hasFailed(); ++piece) {
            numbers.take(indexLength);
            auto const offset = base + numbers.take(offsetLength);
            if (item != items_.end() && lengthLength > 0)
                item->second.lengthPlaces.push_back(
                    { table.offset + numbers.position(), lengthLength });
            ByteRange const found { offset, numbers.take(lengthLength) };
            if (piece == 0)
                first = found;
            if (method == 0 && item != items_.end()
                && (found.offset > bytes_->size() || found.length > bytes_->size() - found.offset))
                item->second.isCut = true;
        }
        if (item == items_.end() || pieces != 1 || numbers.hasFailed())
            continue;
        if (method == 0)
            item->second.data = first;
        else if (method == 1 && inner && first.offset <= inner->length)
            item->second.data = { inner->offset + first.offset,
                std::min(first.length, inner->length - first.offset) };
    }
}

void HeifIndex::readReferences(ByteRange table)
{
    auto const all = tableAt(table);
    NumberReader start(all);
    auto const idLength = Kind(start).version == 0 ? 2U : 4U;
    SpanBytes const bytes(all);
    for (auto const& [type, contents] : boxesIn(bytes, rangeAfter({ 0, all.size() }, kindLength))) {
        NumberReader numbers(ByteSpan(all).subspan(
            static_cast<std::size_t>(contents.offset), static_cast<std::size_t>(contents.length)));
        Reference reference;
        reference.type = type;
        // Right in front of what the box holds, also where its length takes eight bytes more.
        reference.typeOffset = table.offset + contents.offset - 4;
        reference.from = numbers.take32(idLength);
        auto const count = numbers.take32(2);
        for (std::uint32_t i = 0; i < count && !numbers.isAtEnd(); ++i)
            reference.to.push_back(numbers.take32(idLength));
        references_.push_back(std::move(reference));
    }
}

void HeifIndex::readProperties(ByteRange table)
{
    for (auto const& [type, contents] : boxesIn(*bytes_, table)) {
        if (type == fourCharacters("ipco"))
            properties_ = boxesIn(*bytes_, contents);
        else if (type == fourCharacters("ipma"))
            readAssociations(contents);
    }
}

void HeifIndex::readAssociations(ByteRange table)
{
    auto const all = tableAt(table);
    NumberReader numbers(all);
    Kind const kind(numbers);
    auto const isWide = (kind.flags & 1) != 0;
    auto const count = numbers.take32();
    for (std::uint32_t i = 0; i < count && !numbers.hasFailed(); ++i) {
        auto const item = items_.find(numbers.take32(kind.version == 0 ? 2 : 4));
        auto const properties = numbers.take32(1);
        for (std::uint32_t p = 0; p < properties; ++p) {
            // The highest bit says that a reader must understand the property.
            auto const number = numbers.take32(isWide ? 2 : 1) & (isWide ? 0x7FFFU : 0x7FU);
            if (item != items_.end() && number > 0 && !numbers.hasFailed())
                item->second.properties.push_back(number - 1);
        }
    }
}

} // namespace pixelhain
