#include "codecs/ExifReader.h"
#include "codecs/ByteView.h"
#include "codecs/TiffReader.h"
#include "support/ByteWriter.h"
#include <doctest/doctest.h>

using namespace pixelhain;

TEST_CASE("orientation and thumbnail are read in both byte orders")
{
    for (auto const isBigEndian : { false, true }) {
        ExifOptions options;
        options.orientation = 7;
        options.thumbnail = FileBytes(40, 0x55);
        options.make = "Maker";
        options.dateTimeOriginal = "2026:11:21 10:00:00";
        options.isBigEndian = isBigEndian;
        auto const block = exifBlock(options);
        FileBytes file(13, 0);
        file.insert(file.end(), block.begin(), block.end());
        SpanBytes const bytes(file);
        auto const exif = readExif(bytes, 13, block.size());
        CHECK(exif.orientation == 7);
        CHECK(exif.thumbnail == ByteRange { file.size() - 40, 40 });
        auto const cut = readExif(bytes, 13, block.size() - 1);
        CHECK_FALSE(cut.thumbnail);
    }
}

TEST_CASE("fields are read by type, texts up to their NUL")
{
    ExifOptions options;
    options.orientation = 3;
    options.make = "A";
    options.model = "Model X";
    auto const block = exifBlock(options);
    SpanBytes const bytes(block);
    auto const reader = TiffReader::open(bytes);
    REQUIRE(reader);
    auto const first = reader->directory(reader->firstDirectory());
    REQUIRE(first);
    REQUIRE(first->find(0x010F));
    CHECK(reader->text(*first->find(0x010F)) == "A");
    CHECK(reader->text(*first->find(0x0110)) == "Model X");
    CHECK(reader->text(*first->find(0x0110), 3) == "Mod");
    CHECK(reader->number(*first, 0x0112) == 3U);
    CHECK_FALSE(reader->number(*first, 0x0110));
    CHECK_FALSE(reader->number(*first, 0x9999));
    CHECK_FALSE(reader->number(*first->find(0x0112), 1));
    CHECK(first->next == 0);
}

TEST_CASE("a quotient with a denominator of 0 is no number")
{
    ByteWriter out;
    out.text("II");
    out.u16(42);
    out.u32(8);
    out.u16(2);
    for (unsigned i = 0; i < 2; ++i) {
        out.u16(0x829A + i);
        out.u16(5);
        out.u32(1);
        out.u32(38 + i * 8);
    }
    out.u32(0);
    out.u32(1);
    out.u32(250);
    out.u32(1);
    out.u32(0);
    SpanBytes const bytes(out.bytes);
    auto const reader = TiffReader::open(bytes);
    REQUIRE(reader);
    auto const first = reader->directory(8);
    REQUIRE(first);
    CHECK(reader->rational(*first->find(0x829A)) == doctest::Approx(0.004));
    CHECK_FALSE(reader->rational(*first->find(0x829B)));
}

TEST_CASE("directories that point at themselves or behind the end do no harm")
{
    ByteWriter out;
    out.text("MM");
    out.bytes.insert(out.bytes.end(), { 0, 42, 0, 0, 0, 8, 0xFF, 0xFF });
    out.bytes.insert(out.bytes.end(), { 0x87, 0x69, 0, 4, 0, 0, 0, 1, 0, 0, 0, 8 });
    SpanBytes const bytes(out.bytes);
    auto const reader = TiffReader::open(bytes);
    REQUIRE(reader);
    auto const first = reader->directory(8);
    REQUIRE(first);
    CHECK(first->fields.size() == 1);
    CHECK_FALSE(reader->directory(5000));
    CHECK_FALSE(reader->directory(0));
    CHECK(readExif(bytes, 0, out.size()) == ExifSummary {});
    CHECK(readExif(bytes, 1000, 10) == ExifSummary {});
}

TEST_CASE("what is no TIFF structure has no directories")
{
    FileBytes const junk(64, 0x49);
    CHECK(TiffReader::open(SpanBytes(junk))->directory(0x49494949) == std::nullopt);
    FileBytes const zeros(64, 0);
    CHECK_FALSE(TiffReader::open(SpanBytes(zeros)));
}
