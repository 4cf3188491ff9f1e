#include "codecs/BareJpeg.h"
#include "codecs/CodecSupport.h"
#include "codecs/JpegDecoder.h"
#include "support/ByteWriter.h"
#include <doctest/doctest.h>
#include <random>
#include <string_view>

using namespace pixelhain;

namespace {

constexpr PixelSize usual { 203, 121 };
constexpr int enough = 300;

std::optional<BareJpeg> bareOf(FileBytes const& jpeg, int maxPixel = enough)
{
    return bareJpeg(SpanBytes(jpeg), maxPixel);
}

FileBytes withSegment(FileBytes const& jpeg, unsigned marker, std::string_view contents)
{
    ByteWriter file(true);
    file.u16(0xFFD8);
    file.u16(0xFF00 | marker);
    file.u16(static_cast<unsigned>(contents.size() + 2));
    file.text(contents);
    file.raw({ jpeg.begin() + 2, jpeg.end() });
    return file.bytes;
}

FileBytes withEverything(FileBytes const& jpeg)
{
    auto file = withSegment(jpeg, 0xFE, "a comment from nowhere");
    file = withSegment(file, 0xE1, std::string_view("http://ns.adobe.com/xap/1.0/\0<x/>", 33));
    file = withSegment(file, 0xE1, std::string_view("Exif\0\0MM\0*GPS 48.1 N", 20));
    file.insert(file.end(), { 't', 'r', 'a', 'i', 'l', 'e', 'r' });
    return file;
}

bool holds(std::vector<std::uint8_t> const& bytes, std::string_view text)
{
    return std::string_view(reinterpret_cast<char const*>(bytes.data()), bytes.size()).find(text)
        != std::string_view::npos;
}

// From the first quantization table to the end: nothing but the picture, as these are written.
std::string_view pictureIn(std::vector<std::uint8_t> const& bytes)
{
    std::string_view const all(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return all.substr(all.find("\xFF\xDB"));
}

FileBytes written(JpegOptions const& options)
{
    return writeJpeg(sampleColors(usual), options);
}

} // namespace

TEST_CASE("the tables and the coded pixels of a bare JPEG are those of the file, byte for byte")
{
    JpegOptions options;
    SUBCASE("baseline") { }
    SUBCASE("without subsampling")
    {
        options.subsampling = JpegOptions::Subsampling::s444;
    }
    SUBCASE("grey")
    {
        options.color = JpegOptions::Color::grey;
    }
    SUBCASE("progressive")
    {
        options.isProgressive = true;
    }
    SUBCASE("a scan for each component")
    {
        options.isInterleaved = false;
    }
    SUBCASE("restart markers")
    {
        options.restartRows = 1;
    }
    auto const plain = written(options);
    auto const bare = bareOf(withEverything(plain));
    REQUIRE(bare);
    CHECK(bare->size == usual);
    CHECK(bare->isGrey == (options.color == JpegOptions::Color::grey));
    CHECK(pictureIn(bare->bytes) == pictureIn(plain));
    CHECK(isSoundJpeg(bare->bytes));
}

TEST_CASE("nothing beside the picture is left in a bare JPEG")
{
    JpegOptions options;
    ExifOptions exif;
    exif.make = "Werkzeug";
    exif.thumbnail = writeJpeg(sampleColors({ 16, 12 }));
    options.exif = exifBlock(exif);
    options.profile = FileBytes(3000, 'p');
    auto const file = withEverything(written(options));
    for (auto const* const text :
        { "comment", "xap", "GPS", "trailer", "Exif", "Werkzeug", "ICC_" })
        REQUIRE(holds(file, text));
    auto const bare = bareOf(file);
    REQUIRE(bare);
    for (auto const* const text :
        { "comment", "xap", "GPS", "trailer", "Exif", "Werkzeug", "ICC_" })
        CHECK_FALSE(holds(bare->bytes, text));
    CHECK(pictureIn(bare->bytes) == pictureIn(written({})));
}

TEST_CASE("a bare JPEG of a bare JPEG is the same")
{
    auto const bare = bareOf(written({}));
    REQUIRE(bare);
    auto const again = bareOf(bare->bytes);
    REQUIRE(again);
    CHECK(again->bytes == bare->bytes);
}

TEST_CASE("what not every reader takes, or takes otherwise, is no bare JPEG")
{
    JpegOptions options;
    SUBCASE("CMYK")
    {
        options.color = JpegOptions::Color::cmyk;
    }
    SUBCASE("YCCK")
    {
        options.color = JpegOptions::Color::ycck;
    }
    SUBCASE("RGB")
    {
        options.color = JpegOptions::Color::rgb;
    }
    SUBCASE("arithmetic codes")
    {
        options.isArithmetic = true;
    }
    auto const file = written(options);
    REQUIRE_FALSE(file.empty());
    CHECK_FALSE(bareOf(file));
}

TEST_CASE("components that a header calls RGB are not taken for YCbCr")
{
    CHECK(bareOf(withSegment(written({}), 0xEE, std::string_view("Adobe\0d\0\0\0\0\1", 12))));
    CHECK_FALSE(bareOf(withSegment(written({}), 0xEE, std::string_view("Adobe\0d\0\0\0\0\0", 12))));
}

TEST_CASE("a bare JPEG is at most as large as was asked for, in pixels and in bytes")
{
    CHECK(bareOf(written({}), 203));
    CHECK_FALSE(bareOf(written({}), 202));
    auto noise = sampleColors(usual);
    std::mt19937 random(1);
    for (auto& value : noise.rgba)
        value = static_cast<std::uint8_t>(random());
    JpegOptions best;
    best.quality = 100;
    auto const heavy = writeJpeg(noise, best);
    REQUIRE(heavy.size() > mostBareBytes(203));
    CHECK_FALSE(bareOf(heavy, 203));
    auto const heavyInside = bareOf(heavy, 400);
    REQUIRE(heavyInside);
    CHECK(heavyInside->bytes.size() <= mostBareBytes(400));
}

TEST_CASE("thirty bare JPEGs of the usual cells leave a page below 1.5 MB")
{
    constexpr int usualCell = 289;
    CHECK(30 * mostBareBytes(usualCell) < 1'400'000);
}

TEST_CASE("a JPEG that ends too early is no bare one, wherever it is cut")
{
    JpegOptions options;
    SUBCASE("baseline") { }
    SUBCASE("progressive")
    {
        options.isProgressive = true;
    }
    auto const whole = writeJpeg(sampleColors({ 40, 30 }), options);
    REQUIRE(bareOf(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CAPTURE(length);
        CHECK_FALSE(bareOf({ whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length) }));
    }
}

TEST_CASE("whatever is wrong in a JPEG, what is left of it is well-formed and bounded")
{
    auto const whole = writeJpeg(sampleColors({ 40, 30 }));
    std::mt19937 random(7);
    for (int i = 0; i < 4000; ++i) {
        auto damaged = whole;
        for (int errors = 0; errors < 3; ++errors)
            damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
        auto const bare = bareOf(damaged);
        if (!bare)
            continue;
        REQUIRE(bare->size.longestSide() <= enough);
        auto const again = bareOf(bare->bytes);
        REQUIRE(again);
        REQUIRE(again->bytes == bare->bytes);
    }
}

TEST_CASE("of a file of 50 MB no more is read than the picture takes")
{
    FileBytes file = writeJpeg(sampleColors(usual));
    std::string const block(65'000, 'x');
    for (int i = 0; i < 40; ++i)
        file = withSegment(file, 0xE5, block);
    file.resize(std::size_t { 50 } << 20U, 0xFF);
    MemoryBytes::Reads reads;
    MemoryBytes const source(std::move(file), &reads);
    CHECK(bareJpeg(source, enough));
    CHECK(reads.bytes < 60'000);
    CHECK(reads.calls < 200);
}

TEST_CASE("coded pixels without an end are given up at the bound")
{
    FileBytes file = writeJpeg(sampleColors(usual));
    file.resize(file.size() - 2);
    file.resize(std::size_t { 50 } << 20U, 0x55);
    MemoryBytes::Reads reads;
    MemoryBytes const source(std::move(file), &reads);
    CHECK_FALSE(bareJpeg(source, enough));
    CHECK(reads.bytes < 2 * mostBareBytes(enough));
}
