#include "codecs/FileProperties.h"
#include "codecs/ByteView.h"
#include "codecs/CodecSupport.h"
#include "codecs/PropertyLimits.h"
#include "support/ExifFields.h"
#include "support/SampleProperties.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Field = ExifField;
using Text = std::optional<std::string>;

// What every kind of file is made to state.
FileBytes sampleExif(bool isBigEndian = false)
{
    return exifOf({ Field::ascii(0x010F, "Canon"), Field::ascii(0x0110, "Canon EOS R5") },
        { Field::fraction(0x829A, { 1, 250 }), Field::fraction(0x829D, { 18, 10 }),
            Field::numbers(0x8827, { 200, 400 }), Field::ascii(0x9003, "2023:05:17 14:30:12"),
            Field::fraction(0x920A, { 50, 1 }), Field::ascii(0xA434, "RF50mm F1.8 STM") },
        isBigEndian);
}

PhotoProperties gathered(FileBytes const& bytes)
{
    return gatherProperties(SpanBytes(bytes));
}

PhotoProperties withoutSize(PhotoProperties properties)
{
    properties.pixelSize.reset();
    return properties;
}

PhotoProperties ofShot(std::vector<Field> const& exif)
{
    return gathered(exifOf({}, exif));
}

FileBytes applicationSegment(std::string const& name, FileBytes const& contents)
{
    ByteWriter segment(true);
    segment.u16(0xFFE1);
    segment.u16(static_cast<unsigned>(2 + name.size() + contents.size()));
    segment.text(name);
    segment.raw(contents);
    return segment.bytes;
}

FileBytes exifSegment(FileBytes const& block)
{
    return applicationSegment(std::string("Exif\0", 6), block);
}

FileBytes bytesOf(std::string_view text)
{
    return { text.begin(), text.end() };
}

FileBytes withPacket(FileBytes jpeg, std::string_view packet)
{
    auto const segment
        = applicationSegment(std::string("http://ns.adobe.com/xap/1.0/") + '\0', bytesOf(packet));
    jpeg.insert(jpeg.begin() + 2, segment.begin(), segment.end());
    return jpeg;
}

std::string const packetWithLens = "<rdf:Description aux:Lens=\"EF 50mm\"/>";

FileBytes jpegWith(FileBytes const& exif)
{
    JpegOptions options;
    options.exif = exif;
    return writeJpeg(RgbaPixels::filled({ 40, 30 }, 0x8040C0FF), options);
}

} // namespace

TEST_CASE("a block in either byte order states everything")
{
    CHECK(gathered(sampleExif()) == sampleProperties());
    CHECK(gathered(sampleExif(true)) == sampleProperties());
}

TEST_CASE("pictures of every kind state what their EXIF block does")
{
    auto const pixels = RgbaPixels::filled({ 40, 30 }, 0x8040C0FF);
    PngOptions png;
    png.exif = sampleExif();
    WebpOptions webp;
    webp.exif = sampleExif(true);
    for (auto const& file : { jpegWith(sampleExif()), jpegWith(sampleExif(true)),
             writePng(pixels, png), writeWebp(pixels, webp) }) {
        auto const properties = readFileProperties(memoryBytes(file), openImage);
        REQUIRE(properties);
        CHECK(withoutSize(*properties) == sampleProperties());
        CHECK(properties->pixelSize == PixelSize { 40, 30 });
    }
}

TEST_CASE("the size is the one that is stored, not turned")
{
    ExifOptions exif;
    exif.orientation = 6;
    auto const properties = readFileProperties(memoryBytes(jpegWith(exifBlock(exif))), openImage);
    REQUIRE(properties);
    CHECK(properties->pixelSize == PixelSize { 40, 30 });
}

TEST_CASE("a picture that states nothing has its size, and what is none has nothing")
{
    auto const pixels = RgbaPixels::filled({ 40, 30 }, 0x8040C0FF);
    PhotoProperties size;
    size.pixelSize = PixelSize { 40, 30 };
    for (auto const& file : { writeJpeg(pixels), writePng(pixels), writeWebp(pixels),
             writeTiff(pixels), writeGif({ 40, 30 }, { GifFrame { pixels } }) })
        CHECK(readFileProperties(memoryBytes(file), openImage) == size);
    CHECK_FALSE(readFileProperties(memoryBytes({ 't', 'e', 'x', 't' }), openImage));
    CHECK_FALSE(readFileProperties(memoryBytes({}), openImage));
}

TEST_CASE("blanks and empty texts state nothing")
{
    auto const properties
        = gathered(exifOf({ Field::ascii(0x010F, "   "), Field::ascii(0x0110, "") },
            { Field::ascii(0x9003, ""), Field::ascii(0xA434, std::string(20, ' ')) }));
    CHECK(properties == PhotoProperties {});
}

TEST_CASE("a text is as it is stored, up to its NUL or its end")
{
    CHECK(gathered(exifOf({ Field::ascii(0x0110, " X 5  ") }, {})).model == Text(" X 5  "));
    CHECK(ofShot({ Field::ascii(0x9003, "    :  :     :  :  ") }).dateTimeOriginal
        == Text("    :  :     :  :  "));
    std::vector<std::size_t> const letters { 'L', 'e', 'n', 's', '5' };
    CHECK(ofShot({ { 0xA434, 2, letters } }).lensModel == Text("Lens5"));
    CHECK(ofShot({ { 0xA434, 129, letters } }).lensModel == Text("Lens5"));
    CHECK(ofShot({ Field::ascii(0xA434,
                     "Gr\xF6\xDF"
                     "e \u00FC") })
              .lensModel
        == Text("Gr\uFFFD\uFFFDe \u00FC"));
}

TEST_CASE("texts without end are cut")
{
    auto const properties = ofShot({ Field::ascii(0xA434, std::string(100'000, '\xFF')) });
    REQUIRE(properties.lensModel);
    CHECK(properties.lensModel->size() == PropertyLimits::shownText);
    auto endless = Field::ascii(0xA434, "RF50mm");
    endless.count = 0xFFFFFFFF;
    CHECK(ofShot({ endless }).lensModel == Text("RF50mm"));
}

TEST_CASE("a value of another type is not stated")
{
    CHECK(ofShot({ Field::numbers(0x829D, { 2 }) }) == PhotoProperties {});
    CHECK(ofShot({ { 0x829A, 4, { 2 } } }) == PhotoProperties {});
    CHECK(ofShot({ Field::ascii(0x920A, "50 mm") }) == PhotoProperties {});
    CHECK(ofShot({ Field::fraction(0x8827, { 200, 1 }) }) == PhotoProperties {});
    CHECK(ofShot({ Field::ascii(0x8827, "200") }) == PhotoProperties {});
    CHECK(ofShot({ { 0xA434, 7, { 'L', 'e', 'n', 's', '5' } } }) == PhotoProperties {});
    CHECK(ofShot({ Field::numbers(0x9003, { 2023, 5, 17 }) }) == PhotoProperties {});
    CHECK(gathered(exifOf({ Field::numbers(0x0110, { 5 }) }, {})) == PhotoProperties {});
}

TEST_CASE("numbers may be fractions, with a sign or not, or floating")
{
    CHECK(ofShot({ { 0x920A, 10, { std::size_t(-5) & 0xFFFFFFFF, 2 } } }).focalLength == -2.5);
    CHECK(ofShot({ { 0x829D, 11, { 0x40600000 } } }).fNumber == 3.5);
    CHECK(ofShot({ { 0x829D, 12, { 0, 0x400C0000 } } }).fNumber == 3.5);
    CHECK(gathered(exifOf({}, { { 0x829D, 12, { 0x400C0000, 0 } } }, true)).fNumber == 3.5);
    CHECK(ofShot({ { 0x8827, 4, { 102400 } } }).isoSpeedRatings == std::vector { 102400U });
    CHECK(ofShot({ { 0x8827, 1, { 200 } } }).isoSpeedRatings == std::vector { 200U });
}

TEST_CASE("numbers that are not finite are not stated")
{
    CHECK(ofShot({ Field::fraction(0x829A, { 1, 0 }) }) == PhotoProperties {});
    CHECK(ofShot({ Field::fraction(0x829D, { 0, 0 }) }) == PhotoProperties {});
    CHECK(ofShot({ { 0x829D, 11, { 0x7F800000 } } }) == PhotoProperties {});
    CHECK(ofShot({ { 0x829D, 11, { 0x7FC00000 } } }) == PhotoProperties {});
    CHECK(ofShot({ { 0x829D, 12, { 0, 0xFFF00000 } } }) == PhotoProperties {});
}

TEST_CASE("what stands in the first directory counts where the EXIF directory is silent")
{
    auto const early
        = exifOf({ Field::fraction(0x829A, { 1, 50 }), Field::fraction(0x829D, { 4, 1 }) },
            { Field::fraction(0x829D, { 8, 1 }) });
    CHECK(gathered(early).exposureTime == 0.02);
    CHECK(gathered(early).fNumber == 8);
}

TEST_CASE("a second block fills in what the first does not state")
{
    auto file = jpegWith(sampleExif());
    auto const first = exifSegment(exifOf({ Field::ascii(0x010F, "Sony") }, {}));
    file.insert(file.begin() + 2, first.begin(), first.end());
    auto wanted = sampleProperties();
    wanted.make = "Sony";
    CHECK(withoutSize(gathered(file)) == wanted);
}

TEST_CASE("the lens of an XMP packet counts where EXIF names none")
{
    auto const named = withPacket(jpegWith(sampleExif()), packetWithLens);
    CHECK(gathered(named).lensModel == Text("RF50mm F1.8 STM"));
    CHECK_FALSE(gathered(named).auxLensModel);
    auto const unnamed = withPacket(jpegWith({}), packetWithLens);
    CHECK_FALSE(gathered(unnamed).lensModel);
    CHECK(gathered(unnamed).auxLensModel == Text("EF 50mm"));
}

TEST_CASE("a TIFF keeps its packet in a field")
{
    Field packet { 0x02BC, 1 };
    packet.values.assign(packetWithLens.begin(), packetWithLens.end());
    CHECK(gathered(exifOf({ packet }, {})).auxLensModel == Text("EF 50mm"));
    packet.type = 7;
    CHECK(gathered(exifOf({ packet }, {})).auxLensModel == Text("EF 50mm"));
}

TEST_CASE("a directory that refers to itself is read once")
{
    for (auto const tag : { 0x8769U, 0x927CU, 0x014AU }) {
        ByteWriter out;
        out.text("II");
        out.u16(42);
        out.u32(8);
        out.u16(1);
        out.u16(tag);
        out.u16(4);
        out.u32(1);
        out.u32(8);
        out.u32(8);
        MemoryBytes::Reads reads;
        CHECK(gatherProperties(MemoryBytes(out.bytes, &reads)) == PhotoProperties {});
        CHECK(reads.calls < 30);
    }
}

TEST_CASE("offsets and counts beyond the end state nothing")
{
    for (std::size_t const place : { 0U, 1U, 0x7FFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFF8U }) {
        for (std::size_t const count : { 1U, 0xFFFFFFFFU }) {
            for (unsigned const type : { 1U, 2U, 3U, 4U, 5U, 7U, 10U, 11U, 12U, 13U, 0xFFFFU }) {
                std::vector<Field> fields;
                for (unsigned const tag : { 0x010FU, 0x02BCU, 0x829AU, 0x829DU, 0x8769U, 0x8827U,
                         0x9003U, 0x920AU, 0x927CU, 0xA434U }) {
                    fields.push_back({ tag, type });
                    fields.back().count = count;
                    fields.back().place = place;
                }
                MemoryBytes::Reads reads;
                auto const properties
                    = gatherProperties(MemoryBytes(exifOf(fields, fields), &reads));
                auto const isFarAway = place > 1 && (count > 1 || type == 5 || type == 12);
                if (isFarAway)
                    CHECK(properties == PhotoProperties {});
                CHECK(reads.bytes < std::size_t { 64 } << 10);
            }
        }
    }
}

TEST_CASE("ten thousand fields are not too many to find the first ones")
{
    std::vector<Field> fields { Field::ascii(0x9003, "2023:05:17 14:30:12") };
    fields.resize(10'000, Field::numbers(0x1234, { 1 }));
    MemoryBytes::Reads reads;
    auto const properties = gatherProperties(MemoryBytes(exifOf({}, fields), &reads));
    CHECK(properties.dateTimeOriginal == Text("2023:05:17 14:30:12"));
    CHECK(reads.bytes < std::size_t { 200 } << 10);
}

TEST_CASE("sensitivities without end are cut")
{
    auto const properties = ofShot({ Field::numbers(0x8827, std::vector<std::size_t>(5000, 100)) });
    CHECK(properties.isoSpeedRatings == std::vector<std::uint32_t>(PropertyLimits::isoValues, 100));
    auto field = Field::numbers(0x8827, { 100, 200 });
    field.count = 0xFFFFFFFF;
    CHECK(ofShot({ field }).isoSpeedRatings.size() <= PropertyLimits::isoValues);
}

TEST_CASE("a large photo costs a few kilobytes")
{
    auto file = jpegWith(sampleExif());
    file.resize(file.size() + (10 << 20));
    MemoryBytes::Reads reads;
    auto const properties = readFileProperties(memoryBytes(std::move(file), &reads), openImage);
    REQUIRE(properties);
    CHECK(withoutSize(*properties) == sampleProperties());
    CHECK(reads.bytes < 10 << 10);
    CHECK(reads.calls < 10);
}
