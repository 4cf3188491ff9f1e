#include "codecs/CodecSupport.h"
#include "codecs/RawContents.h"
#include "codecs/RawDeveloper.h"
#include "codecs/RawPreviews.h"
#include "support/RawWriters.h"
#include <doctest/doctest.h>
#include <random>

using namespace pixelhain;

namespace {

constexpr PixelSize sensor { 600, 400 };

FileBytes sample(RawKind kind)
{
    RawOptions options;
    options.sensor = sensor;
    options.plain = sampleColors({ 60, 40 });
    if (kind != RawKind::dng && kind != RawKind::x3f && kind != RawKind::kdc)
        options.plain = {};
    options.small = writeJpeg(sampleColors({ 60, 40 }));
    JpegOptions jpeg;
    jpeg.exif = exifBlock({ 3, options.small, "", "", "2026:11:21 10:00:00", false });
    options.large = writeJpeg(sampleColors({ 120, 80 }), jpeg);
    return writeRaw(kind, options);
}

/// What finding previews in `bytes` costs; every one of them is decoded, too.
MemoryBytes::Reads walk(FileBytes const& bytes)
{
    MemoryBytes::Reads reads;
    MemoryBytes const file(bytes, &reads);
    auto const contents = readRawContents(file);
    static_cast<void>(isTiffRaw(file));
    if (!contents)
        return reads;
    auto const found = findRawPreviews(file, *contents, contents->size);
    auto const cost = reads;
    for (auto const& preview : found) {
        auto const image = decodeRawPreview(file, preview, 48);
        if (image)
            CHECK(image->bitmap.size.longestSide() <= 48);
    }
    return cost;
}

void flipSome(FileBytes& bytes, std::mt19937& random, std::size_t within)
{
    for (auto left = 1 + random() % 6; left > 0; --left) {
        auto const at = random() % std::min(bytes.size(), within);
        bytes[at] = random() % 2 == 0 ? static_cast<std::uint8_t>(random())
                                      : static_cast<std::uint8_t>(bytes[at] ^ 1U << random() % 8);
    }
}

} // namespace

TEST_CASE("RAW files cut anywhere do no harm")
{
    for (int kind = 0; kind < rawKinds; ++kind) {
        auto const whole = sample(static_cast<RawKind>(kind));
        for (std::size_t part = 0; part <= 16; ++part) {
            auto cut = whole;
            cut.resize(whole.size() * part / 16);
            walk(cut);
        }
        for (std::size_t length = 0; length < 1024; length += 7) {
            auto cut = whole;
            cut.resize(length);
            walk(cut);
        }
    }
}

TEST_CASE("RAW files with wrong bytes do no harm and are read in a bounded way")
{
    std::mt19937 random(20261121);
    std::uint64_t most = 0;
    for (int kind = 0; kind < rawKinds; ++kind) {
        auto const whole = sample(static_cast<RawKind>(kind));
        for (int round = 0; round < 150; ++round) {
            auto broken = whole;
            flipSome(broken, random, round % 2 == 0 ? 0x1000 : whole.size());
            most = std::max(most, walk(broken).bytes);
        }
    }
    CHECK(most < 8 << 20);
}

TEST_CASE("directories that point at each other are read once")
{
    FileLayout file;
    file.tiffHeader(0, 64);
    file.text(0, "IIRO");
    file.directory(64,
        { { 0x0100, 4, 1, 600 }, { 0x0101, 4, 1, 400 }, { 0x014A, 4, 1, 256 }, { 0x8769, 4, 1, 64 },
            { 0xFE00, 4, 1, 64 } },
        256);
    file.directory(256, { { 0x014A, 4, 1, 64 }, { 0x8769, 4, 1, 256 }, { 0x927C, 7, 64, 64 } }, 64);
    file.bytes.resize(1024);
    CHECK(walk(file.bytes).calls < 60);
}

TEST_CASE("a directory of thousands of others is given up")
{
    FileLayout file;
    file.tiffHeader(0, 64);
    file.text(0, "IIRO");
    file.directory(64, { { 0x014A, 4, 0xFFFFFFFF, 1024 } }, 0x8000);
    for (std::size_t i = 0; i < 2000; ++i)
        file.u32(1024 + 4 * i, 0x10000 + i * 32);
    for (std::size_t i = 0; i < 2000; ++i)
        file.directory(0x10000 + i * 32, { { 0x0201, 4, 1, 64 }, { 0x0202, 4, 1, 64 } },
            0x10000 + (i + 1) * 32);
    auto const cost = walk(file.bytes);
    CHECK(cost.calls < 1000);
    CHECK(cost.bytes < 256 << 10);
}

TEST_CASE("heaps within heaps come to an end")
{
    // The one entry of the heap is the heap itself.
    FileLayout file;
    file.text(0, "II");
    file.u32(2, 26);
    file.text(6, "HEAPCCDR");
    file.u16(100, 2);
    for (std::size_t const at : { 102U, 112U }) {
        file.u16(at, 0x300A);
        file.u32(at + 2, 200 - 26);
        file.u32(at + 6, 0);
    }
    file.u32(196, 100 - 26);
    CHECK(walk(file.bytes).calls < 500);
}

TEST_CASE("boxes within boxes and thousands in a row come to an end")
{
    FileLayout deep(true);
    deep.u32(0, 24);
    deep.text(4, "ftypcrx ");
    for (std::size_t i = 0; i < 100'000; ++i) {
        deep.u32(24 + 8 * i, 800'000 - 8 * i);
        deep.text(28 + 8 * i, "moov");
    }
    CHECK(walk(deep.bytes).calls < 1500);

    FileLayout many(true);
    many.u32(0, 24);
    many.text(4, "ftypcrx ");
    many.u32(24, 0);
    many.text(28, "moov");
    for (std::size_t i = 0; i < 100'000; ++i) {
        many.u32(32 + 8 * i, 8);
        many.text(36 + 8 * i, "trak");
    }
    CHECK(walk(many.bytes).calls < 1500);
}

TEST_CASE("developing cut and broken sensor data comes to an end")
{
    auto const whole = writeSensorDng(sampleColors({ 96, 64 }));
    REQUIRE(developRaw(SpanBytes(whole), 0));
    for (std::size_t part = 0; part < 16; ++part) {
        auto cut = whole;
        cut.resize(whole.size() * part / 16);
        auto const developed = developRaw(SpanBytes(cut), 0);
        CHECK((!developed || developed->isCut));
    }
    std::mt19937 random(1121);
    for (int round = 0; round < 100; ++round) {
        auto broken = whole;
        flipSome(broken, random, 0x400);
        auto const developed = developRaw(SpanBytes(broken), 64);
        if (developed)
            CHECK(developed->image.bitmap.size.longestSide() <= 64);
    }
}

TEST_CASE("a RAW file that claims what no file holds gives nothing")
{
    for (auto const kind : { RawKind::arw, RawKind::crw, RawKind::x3f, RawKind::cr3 }) {
        RawOptions options;
        options.sensor = { 65535, 65535 };
        auto const source = opened(writeRaw(kind, options));
        CHECK_FALSE((source && source->decode(256)));
        CHECK_FALSE((source && source->decodeWhole()));
    }
}

TEST_CASE("a TIFF whose directory breaks off is no RAW file that could be read")
{
    FileLayout file;
    file.tiffHeader(0, 8);
    file.directory(8, { { 0x010F, 2, 4, 0 } });
    auto const source = opened(file.bytes);
    CHECK_FALSE((source && source->decode(256)));
}
