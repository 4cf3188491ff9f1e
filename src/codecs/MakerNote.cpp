#include "codecs/MakerNote.h"
#include "codecs/ByteView.h"
#include <array>

namespace pixelhain {

namespace {

enum class Maker : std::uint8_t { nikon, pentax, olympus, other };

/// A note's directory, with a reader that knows what its offsets count from.
struct OpenNote {
    Maker maker = Maker::other;
    TiffReader reader;
    std::uint32_t directory = 0;
};

namespace tag {
constexpr std::uint16_t jpegOffset = 0x0201;
constexpr std::uint16_t jpegLength = 0x0202;
constexpr std::uint16_t colorSpace = 0xA001;
constexpr std::uint16_t interoperability = 0xA005;
} // namespace tag

struct OffsetAndLength {
    std::uint16_t offset;
    std::uint16_t length;
};

std::optional<OpenNote> openNote(
    ByteSource const& bytes, TiffReader const& reader, TiffField const& note)
{
    auto const start = reader.bytes(note, 16);
    if (start.size() < 16)
        return {};
    auto const at = reader.base() + note.valueOffset;
    auto const isBigEndianAt = [&](std::size_t place) {
        if (start[place] == start[place + 1] && (start[place] == 'M' || start[place] == 'I'))
            return start[place] == 'M';
        return reader.isBigEndian();
    };
    auto const inside = [&](Maker maker, std::size_t order, std::uint32_t directory) {
        return OpenNote { maker, TiffReader(bytes, at, isBigEndianAt(order)), directory };
    };
    auto const outside = [&](Maker maker, bool isBigEndian, std::uint32_t directory) {
        return OpenNote { maker, TiffReader(bytes, reader.base(), isBigEndian),
            note.valueOffset + directory };
    };
    if (startsWith(start, "Nikon\0\2")) {
        auto const own = TiffReader::open(bytes, at + 10);
        if (!own)
            return {};
        return OpenNote { Maker::nikon, *own, own->firstDirectory() };
    }
    if (startsWith(start, "AOC\0"))
        return outside(Maker::pentax, isBigEndianAt(4), 6);
    if (startsWith(start, "PENTAX \0"))
        return inside(Maker::pentax, 8, 10);
    if (startsWith(start, "OLYMPUS\0"))
        return inside(Maker::olympus, 8, 12);
    if (startsWith(start, "OM SYSTEM\0"))
        return inside(Maker::olympus, 12, 16);
    auto const order = reader.isBigEndian();
    if (startsWith(start, "OLYMP\0") || startsWith(start, "EPSON\0"))
        return outside(Maker::olympus, order, 8);
    if (startsWith(start, "SONY DSC \0") || startsWith(start, "SONY CAM \0")
        || startsWith(start, "Panasonic\0"))
        return outside(Maker::other, order, 12);
    return outside(Maker::other, order, 0);
}

class NoteScan {
public:
    NoteScan(TiffReader const& file, OpenNote const& note, TiffDirectory const& directory)
        : file_(file)
        , note_(note)
        , directory_(directory)
    {
    }

    MakerNote scan()
    {
        if (note_.maker == Maker::nikon)
            addFrom(subDirectory(0x0011), { tag::jpegOffset, tag::jpegLength });
        if (note_.maker == Maker::pentax)
            addFrom(directory_, { 0x0004, 0x0003 });
        if (note_.maker == Maker::olympus)
            addFrom(subDirectory(0x2020), { 0x0101, 0x0102 });
        if (note_.maker == Maker::olympus || note_.maker == Maker::other)
            addMinolta();
        if (note_.maker == Maker::other) {
            addFrom(subDirectory(0x0035), { tag::jpegOffset, tag::jpegLength }); // Samsung
            addStored(0x2001); // Sony
        }
        found_.colors = colors();
        return std::move(found_);
    }

private:
    // The style of Minolta, taken over by Olympus, Epson and Sony.
    void addMinolta()
    {
        addFrom(directory_, { 0x0088, 0x0089 });
        constexpr std::array<std::uint16_t, 3> stored { 0x0081, 0x0100, 0x0280 };
        for (auto const tag : stored)
            addStored(tag);
    }

    [[nodiscard]] std::optional<TiffDirectory> subDirectory(std::uint16_t tag) const
    {
        auto const* field = directory_.find(tag);
        if (field == nullptr)
            return {};
        constexpr std::uint16_t undefined = 7;
        // Kept in the field itself or pointed at.
        if (field->type == undefined && field->count > 4)
            return note_.reader.directory(field->valueOffset);
        auto const at = note_.reader.number(*field);
        return at ? note_.reader.directory(*at) : std::nullopt;
    }

    void addFrom(std::optional<TiffDirectory> const& directory, OffsetAndLength tags)
    {
        if (!directory)
            return;
        auto const offset = note_.reader.number(*directory, tags.offset);
        auto const length = note_.reader.number(*directory, tags.length);
        if (!offset || !length || *length == 0)
            return;
        found_.previews.push_back({ note_.reader.base() + *offset, *length });
        // Some models count from the file's header even so.
        if (note_.reader.base() != file_.base())
            found_.previews.push_back({ file_.base() + *offset, *length });
    }

    void addStored(std::uint16_t tag)
    {
        constexpr std::uint32_t smallest = 128;
        auto const* field = directory_.find(tag);
        if (field != nullptr && (field->type == 1 || field->type == 7) && field->count >= smallest)
            found_.previews.push_back({ note_.reader.base() + field->valueOffset, field->count });
    }

    [[nodiscard]] RawColors colors() const
    {
        auto const isNikon = note_.maker == Maker::nikon;
        if (!isNikon && note_.maker != Maker::other)
            return RawColors::unknown;
        // Nikon and Canon number alike.
        auto const value = note_.reader.number(directory_, isNikon ? 0x001E : 0x00B4);
        if (value == 1U)
            return RawColors::srgb;
        return value == 2U ? RawColors::adobeRgb : RawColors::unknown;
    }

    TiffReader const& file_;
    OpenNote const& note_;
    TiffDirectory const& directory_;
    MakerNote found_;
};

} // namespace

MakerNote readMakerNote(ByteSource const& bytes, TiffReader const& reader, TiffField const& note)
{
    auto const open = openNote(bytes, reader, note);
    auto const directory = open ? open->reader.directory(open->directory) : std::nullopt;
    if (!directory)
        return {};
    return NoteScan(reader, *open, *directory).scan();
}

RawColors exifColors(TiffReader const& reader, TiffDirectory const& exif)
{
    constexpr std::uint32_t srgb = 1;
    constexpr std::uint32_t adobe = 2; // beside the standard, but written
    auto const space = reader.number(exif, tag::colorSpace);
    if (space == srgb)
        return RawColors::srgb;
    if (space == adobe)
        return RawColors::adobeRgb;
    auto const at = reader.number(exif, tag::interoperability);
    auto const directory = at ? reader.directory(*at) : std::nullopt;
    auto const* index = directory ? directory->find(1) : nullptr;
    if (index == nullptr)
        return RawColors::unknown;
    auto const name = reader.text(*index, 4);
    if (name == "R03")
        return RawColors::adobeRgb;
    return name == "R98" ? RawColors::srgb : RawColors::unknown;
}

} // namespace pixelhain
