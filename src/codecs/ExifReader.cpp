#include "codecs/ExifReader.h"
#include "codecs/ByteView.h"
#include "codecs/MakerNote.h"
#include "codecs/TiffReader.h"
#include <algorithm>

namespace pixelhain {

namespace {

namespace tag {
constexpr std::uint16_t compression = 0x0103;
constexpr std::uint16_t orientation = 0x0112;
constexpr std::uint16_t jpegOffset = 0x0201;
constexpr std::uint16_t jpegLength = 0x0202;
constexpr std::uint16_t exifDirectory = 0x8769;
constexpr std::uint16_t makerNote = 0x927C;
constexpr std::uint16_t multiPictureEntries = 0xB002;
} // namespace tag

constexpr std::uint32_t mostPictures = 64;

std::optional<ByteRange> rangeIn(TiffReader const& reader, TiffDirectory const& directory,
    std::uint16_t offsetTag, std::uint16_t lengthTag, std::uint64_t end)
{
    auto const offset = reader.number(directory, offsetTag);
    auto const length = reader.number(directory, lengthTag);
    if (!offset || !length || *length == 0)
        return {};
    ByteRange const range { reader.base() + *offset, *length };
    if (range.offset + range.length > end)
        return {};
    return range;
}

std::optional<ByteRange> makerPreview(ByteSource const& bytes, TiffReader const& reader,
    TiffDirectory const& first, std::uint64_t end)
{
    auto const exif = reader.number(first, tag::exifDirectory);
    auto const directory = exif ? reader.directory(*exif) : std::nullopt;
    auto const* note = directory ? directory->find(tag::makerNote) : nullptr;
    if (note == nullptr)
        return {};
    // The others keep previews behind the block, if at all.
    auto const start = reader.bytes(*note, 8);
    if (!startsWith(start, "Nikon\0\2") && !startsWith(start, "AOC\0"))
        return {};
    auto const previews = readMakerNote(bytes, reader, *note).previews;
    auto const inside = std::ranges::find_if(
        previews, [end](ByteRange const& range) { return range.offset + range.length <= end; });
    return inside != previews.end() ? std::optional(*inside) : std::nullopt;
}

MultiPicture::Kind kindOf(std::uint32_t attribute)
{
    switch (attribute & 0xFF0000) {
    case 0x030000:
        return MultiPicture::Kind::primary;
    case 0x010000:
        return MultiPicture::Kind::preview;
    case 0x020000:
        return MultiPicture::Kind::view;
    default:
        return MultiPicture::Kind::other;
    }
}

} // namespace

ExifSummary readExif(ByteSource const& bytes, std::uint64_t base, std::uint64_t length)
{
    ExifSummary summary;
    auto const end = base + length;
    auto const reader = TiffReader::open(bytes, base);
    auto const first = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
    if (!first)
        return summary;
    auto const orientation = reader->number(*first, tag::orientation);
    if (orientation && *orientation >= 1 && *orientation <= 8)
        summary.orientation = static_cast<int>(*orientation);
    summary.makerPreview = makerPreview(bytes, *reader, *first, end);
    auto const second = reader->directory(first->next);
    if (!second)
        return summary;
    constexpr std::uint32_t jpeg = 6;
    if (reader->number(*second, tag::compression).value_or(jpeg) == jpeg)
        summary.thumbnail = rangeIn(*reader, *second, tag::jpegOffset, tag::jpegLength, end);
    return summary;
}

std::vector<MultiPicture> readMultiPictureIndex(ByteSource const& bytes, std::uint64_t base)
{
    constexpr std::size_t entryBytes = 16;
    auto const reader = TiffReader::open(bytes, base);
    auto const directory = reader ? reader->directory(reader->firstDirectory()) : std::nullopt;
    auto const* field = directory ? directory->find(tag::multiPictureEntries) : nullptr;
    if (field == nullptr)
        return {};
    auto const raw = reader->bytes(*field, mostPictures * entryBytes);
    std::vector<MultiPicture> pictures;
    for (std::size_t at = 0; at + entryBytes <= raw.size(); at += entryBytes) {
        MultiPicture picture;
        picture.kind = kindOf(reader->number32(raw.data() + at));
        picture.range.length = reader->number32(raw.data() + at + 4);
        auto const offset = reader->number32(raw.data() + at + 8);
        picture.range.offset = at == 0 ? 0 : base + offset;
        pictures.push_back(picture);
    }
    return pictures;
}

} // namespace pixelhain
