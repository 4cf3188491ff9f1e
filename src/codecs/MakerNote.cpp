#include "codecs/MakerNote.h"
#include "codecs/MakerNoteDirectory.h"
#include <array>

namespace pixelhain {

namespace {

using Style = MakerNoteDirectory::Style;

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

class NoteScan {
public:
    NoteScan(TiffReader const& file, MakerNoteDirectory const& note)
        : file_(file)
        , note_(note)
        , directory_(note.directory)
    {
    }

    MakerNote scan()
    {
        if (note_.style == Style::nikon)
            addFrom(note_.subDirectory(0x0011), { tag::jpegOffset, tag::jpegLength });
        if (note_.style == Style::pentax)
            addFrom(directory_, { 0x0004, 0x0003 });
        if (note_.style == Style::olympus)
            addFrom(note_.subDirectory(0x2020), { 0x0101, 0x0102 });
        if (note_.style == Style::olympus || note_.style == Style::other)
            addMinolta();
        if (note_.style == Style::other) {
            addFrom(note_.subDirectory(0x0035), { tag::jpegOffset, tag::jpegLength }); // Samsung
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
        auto const isNikon = note_.style == Style::nikon;
        if (!isNikon && note_.style != Style::other)
            return RawColors::unknown;
        // Nikon and Canon number alike.
        auto const value = note_.reader.number(directory_, isNikon ? 0x001E : 0x00B4);
        if (value == 1U)
            return RawColors::srgb;
        return value == 2U ? RawColors::adobeRgb : RawColors::unknown;
    }

    TiffReader const& file_;
    MakerNoteDirectory const& note_;
    TiffDirectory const& directory_;
    MakerNote found_;
};

} // namespace

MakerNote readMakerNote(ByteSource const& bytes, TiffReader const& reader, TiffField const& note)
{
    auto const open = openMakerNote(bytes, reader, note);
    if (!open)
        return {};
    return NoteScan(reader, *open).scan();
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
