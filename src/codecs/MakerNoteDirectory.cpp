#include "codecs/MakerNoteDirectory.h"
#include "codecs/ByteView.h"

namespace pixelhain {

namespace {

using Style = MakerNoteDirectory::Style;

/// Where a note's directory begins.
struct NotePlace {
    Style style = Style::other;
    TiffReader reader;
    std::uint32_t directory = 0;
};

std::optional<NotePlace> placeOf(
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
    auto const inside = [&](Style style, std::size_t order, std::uint32_t directory) {
        return NotePlace { style, TiffReader(bytes, at, isBigEndianAt(order)), directory };
    };
    auto const outside = [&](Style style, bool isBigEndian, std::uint32_t directory) {
        return NotePlace { style, TiffReader(bytes, reader.base(), isBigEndian),
            note.valueOffset + directory };
    };
    if (startsWith(start, "Nikon\0\2")) {
        auto const own = TiffReader::open(bytes, at + 10);
        if (!own)
            return {};
        return NotePlace { Style::nikon, *own, own->firstDirectory() };
    }
    if (startsWith(start, "AOC\0"))
        return outside(Style::pentax, isBigEndianAt(4), 6);
    if (startsWith(start, "PENTAX \0"))
        return inside(Style::pentax, 8, 10);
    if (startsWith(start, "OLYMPUS\0"))
        return inside(Style::olympus, 8, 12);
    if (startsWith(start, "OM SYSTEM\0"))
        return inside(Style::olympus, 12, 16);
    auto const order = reader.isBigEndian();
    if (startsWith(start, "OLYMP\0") || startsWith(start, "EPSON\0"))
        return outside(Style::olympus, order, 8);
    if (startsWith(start, "SONY DSC \0") || startsWith(start, "SONY CAM \0")
        || startsWith(start, "Panasonic\0"))
        return outside(Style::other, order, 12);
    return outside(Style::other, order, 0);
}

} // namespace

std::optional<TiffDirectory> MakerNoteDirectory::subDirectory(std::uint16_t tag) const
{
    auto const* field = directory.find(tag);
    if (field == nullptr)
        return {};
    constexpr std::uint16_t undefined = 7;
    // Kept in the field itself or pointed at.
    if (field->type == undefined && field->count > 4)
        return reader.directory(field->valueOffset);
    auto const at = reader.number(*field);
    return at ? reader.directory(*at) : std::nullopt;
}

std::optional<MakerNoteDirectory> openMakerNote(
    ByteSource const& bytes, TiffReader const& reader, TiffField const& note)
{
    auto const place = placeOf(bytes, reader, note);
    auto directory = place ? place->reader.directory(place->directory) : std::nullopt;
    if (!directory)
        return {};
    return MakerNoteDirectory { place->style, place->reader, std::move(*directory) };
}

} // namespace pixelhain
