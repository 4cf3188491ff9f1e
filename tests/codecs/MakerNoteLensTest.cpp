#include "codecs/ByteView.h"
#include "codecs/FileProperties.h"
#include "support/ExifFields.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Field = ExifField;
using Text = std::optional<std::string>;

// The lens of a camera of this make with this note. Notes without a header of their own count
// offsets from the block's start, so they are laid out at their place in it.
Text lensOf(std::string const& make, std::string const& head, std::vector<Field> const& note,
    bool isBigEndian = false)
{
    constexpr std::size_t place = 400;
    ByteWriter out(isBigEndian);
    out.text(head);
    out.u16(static_cast<unsigned>(note.size()));
    auto free = place + head.size() + 2 + 12 * note.size() + 4;
    FileBytes values;
    for (auto const& field : note) {
        auto data = field.data(isBigEndian);
        out.u16(field.tag);
        out.u16(field.type);
        out.u32(field.stated());
        if (data.size() > 4) {
            out.u32(free + values.size());
            values.insert(values.end(), data.begin(), data.end());
        } else {
            data.resize(4);
            out.raw(data);
        }
    }
    out.u32(0);
    out.raw(values);
    Field field { 0x927C, 7 };
    field.count = out.size();
    field.place = place;
    auto block = exifOf({ Field::ascii(0x010F, make) }, { field }, isBigEndian);
    block.resize(place);
    block.insert(block.end(), out.bytes.begin(), out.bytes.end());
    return gatherProperties(SpanBytes(block)).auxLensModel;
}

// A note that is a TIFF structure behind the words that it begins with.
Text lensInside(std::string const& make, std::string const& head, FileBytes const& tiff)
{
    Field field { 0x927C, 7 };
    for (auto const letter : head)
        field.values.push_back(static_cast<unsigned char>(letter));
    field.values.insert(field.values.end(), tiff.begin(), tiff.end());
    return gatherProperties(SpanBytes(exifOf({ Field::ascii(0x010F, make) }, { field })))
        .auxLensModel;
}

Text nikon(std::vector<std::size_t> const& figures)
{
    return lensInside("NIKON CORPORATION", std::string("Nikon\0\2\x10\0\0", 10),
        exifOf({ Field::fraction(0x0084, figures) }, {}, true));
}

Text sony(std::vector<std::size_t> const& digits)
{
    return lensOf("SONY", std::string("SONY DSC \0\0\0", 12), { { 0xB02A, 1, digits } });
}

} // namespace

TEST_CASE("Canon and Panasonic name the lens in words")
{
    Field const canon = Field::ascii(0x0095, "EF24-105mm f/4L IS USM");
    CHECK(lensOf("Canon", "", { canon }) == Text("EF24-105mm f/4L IS USM"));
    CHECK(lensOf("Canon", "", { canon }, true) == Text("EF24-105mm f/4L IS USM"));
    Field const panasonic = Field::ascii(0x0051, "LUMIX G VARIO 14-42mm   ");
    CHECK(lensOf("Panasonic", std::string("Panasonic\0\0\0", 12), { panasonic })
        == Text("LUMIX G VARIO 14-42mm"));
}

TEST_CASE("another maker's note is not read by the rules of one")
{
    CHECK(lensOf("Casio", "", { Field::ascii(0x0095, "EF24-105mm") }) == Text());
    CHECK(lensOf("", "", { Field::ascii(0x0095, "EF24-105mm") }) == Text());
}

TEST_CASE("texts of a note that are none are not shown")
{
    for (std::string const text : { "", "    ", "----", "a\x01z",
             "EF \xFF"
             "50mm" })
        CHECK(lensOf("Canon", "", { Field::ascii(0x0095, text) }) == Text());
    CHECK(lensOf("Canon", "", { Field::numbers(0x0095, { 50, 60, 70 }) }) == Text());
    auto far = Field::ascii(0x0095, "");
    far.count = 0xFFFFFFFF;
    far.values.assign(8, 0xFF);
    CHECK(lensOf("Canon", "", { far }) == Text());
}

TEST_CASE("Nikon states the figures on the lens")
{
    CHECK(nikon({ 18, 1, 105, 1, 35, 10, 56, 10 }) == Text("18-105mm f/3.5-5.6"));
    CHECK(nikon({ 50, 1, 50, 1, 18, 10, 18, 10 }) == Text("50mm f/1.8"));
    CHECK(nikon({ 70, 1, 200, 1, 28, 10, 28, 10 }) == Text("70-200mm f/2.8"));
    CHECK(nikon({ 105, 10, 105, 10, 28, 10, 28, 10 }) == Text("10.5mm f/2.8"));
    CHECK(nikon({ 50, 1, 50, 1, 0, 0, 0, 0 }) == Text("50mm"));
}

TEST_CASE("figures that are on no lens are not shown")
{
    CHECK(nikon({ 0, 0, 0, 0, 0, 0, 0, 0 }) == Text());
    CHECK(nikon({ 0, 1, 50, 1, 18, 10, 18, 10 }) == Text());
    CHECK(nikon({ 0xFFFFFFFF, 1, 0xFFFFFFFF, 1, 18, 10, 18, 10 }) == Text());
    CHECK(nikon({ 50, 1, 50, 1, 0xFFFFFFFF, 1, 0xFFFFFFFF, 1 }) == Text("50mm"));
    CHECK(nikon({ 50, 1 }) == Text());
}

TEST_CASE("Sony states the figures as decimal digits")
{
    CHECK(sony({ 0x01, 0x00, 0x55, 0x02, 0x00, 0x40, 0x56, 0x02 }) == Text("55-200mm f/4-5.6"));
    CHECK(sony({ 0x00, 0x00, 0x50, 0x00, 0x50, 0x18, 0x18, 0x00 }) == Text("50mm f/1.8"));
    CHECK(sony({ 0, 0, 0, 0, 0, 0, 0, 0 }) == Text());
    CHECK(sony({ 0x01, 0x00, 0x5A, 0x02, 0x00, 0x40, 0x56, 0x02 }) == Text());
    CHECK(sony({ 0x01, 0x00, 0x55, 0x02, 0x00, 0xFF, 0x56, 0x02 }) == Text());
    CHECK(sony({ 0x01, 0x00, 0x55 }) == Text());
}

TEST_CASE("Olympus names the lens in a directory of its own")
{
    // Offsets count from the note's first byte.
    std::string const name = "OLYMPUS M.12-40mm F2.8";
    ByteWriter note;
    note.text(std::string("OLYMPUS\0II\3\0", 12));
    note.u16(1);
    for (auto const& [tag, type, count, value] : { std::array<std::size_t, 4> { 0x2010, 13, 1, 30 },
             std::array<std::size_t, 4> { 0x0203, 2, name.size() + 1, 48 } }) {
        if (tag == 0x0203)
            note.u16(1);
        note.u16(static_cast<unsigned>(tag));
        note.u16(static_cast<unsigned>(type));
        note.u32(count);
        note.u32(value);
        note.u32(0);
    }
    note.text(name);
    note.u8(0);
    CHECK(lensInside("OLYMPUS CORPORATION", "", note.bytes) == Text(name));
}

TEST_CASE("a lens in an XMP packet counts more than one in a note")
{
    Field packet { 0x02BC, 1 };
    for (auto const letter : std::string("<a aux:Lens='EF 50mm'/>"))
        packet.values.push_back(static_cast<unsigned char>(letter));
    Field note { 0x927C, 7 };
    note.place = 8;
    note.count = 100;
    auto const block = exifOf(
        { Field::ascii(0x010F, "Canon"), packet, Field::ascii(0x0095, "from the note") }, { note });
    // The note is the first directory once more.
    auto const properties = gatherProperties(SpanBytes(block));
    CHECK(properties.auxLensModel == Text("EF 50mm"));
    auto const alone = exifOf(
        { Field::ascii(0x010F, "Canon"), Field::ascii(0x0095, "from the note") }, { note });
    CHECK(gatherProperties(SpanBytes(alone)).auxLensModel == Text("from the note"));
}
