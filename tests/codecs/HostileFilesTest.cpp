#include "codecs/CodecSupport.h"
#include "codecs/DecodeLimits.h"
#include "support/ByteWriter.h"
#include "support/CodedWriters.h"
#include "support/PlainWriters.h"
#include <doctest/doctest.h>
#include <sys/resource.h>
#include <zlib.h>

using namespace pixelhain;

namespace {

struct Sample {
    std::string name;
    FileBytes bytes;
};

FileBytes busyJpeg(JpegOptions options)
{
    ExifOptions exif;
    exif.orientation = 6;
    exif.thumbnail = writeJpeg(sampleColors({ 40, 30 }));
    exif.dateTimeOriginal = "2026:11:21 10:00:00";
    options.exif = exifBlock(exif);
    options.preview = writeJpeg(sampleColors({ 60, 45 }));
    options.profile = FileBytes(500, 0x42);
    return writeJpeg(sampleColors({ 80, 60 }), options);
}

void addPlain(std::vector<Sample>& all)
{
    auto const pixels = sampleWithAlpha({ 50, 40 });
    all.push_back({ "QOI", writeQoi(pixels) });
    for (auto const kind : { '1', '3', '4', '6', '7' })
        all.push_back({ std::string("PNM ") + kind, writePnm(pixels, { kind, 255 }) });
    using TgaKind = TgaOptions::Kind;
    for (auto const kind : { TgaKind::color15, TgaKind::color32, TgaKind::palette })
        all.push_back({ "TGA", writeTga(pixels, { kind, true, false, false }) });
    using IcoKind = IcoPicture::Kind;
    for (auto const kind : { IcoKind::masked24, IcoKind::color32, IcoKind::png })
        all.push_back({ "ICO", writeIco({ { pixels, kind } }) });
    using Packing = RadianceOptions::Packing;
    for (auto const packing : { Packing::plain, Packing::oldRuns, Packing::separateRuns })
        all.push_back({ "Radiance", writeRadiance(pixels, { packing, "-Y +X", 1 }) });
}

std::vector<Sample> samples()
{
    std::vector<Sample> all;
    JpegOptions jpeg;
    all.push_back({ "baseline JPEG", busyJpeg(jpeg) });
    jpeg.isProgressive = true;
    all.push_back({ "progressive JPEG", busyJpeg(jpeg) });
    jpeg.isArithmetic = true;
    all.push_back({ "arithmetic JPEG", busyJpeg(jpeg) });
    jpeg = {};
    jpeg.color = JpegOptions::Color::ycck;
    all.push_back({ "YCCK JPEG", busyJpeg(jpeg) });
    PngOptions png;
    png.frames = { sampleWithAlpha({ 50, 40 }) };
    png.exif = exifBlock({ 3, writeJpeg(sampleColors({ 16, 12 })), "", "", "", true });
    all.push_back({ "animated PNG", writePng(sampleWithAlpha({ 50, 40 }), png) });
    png = {};
    png.kind = PngOptions::Kind::rgba16;
    png.isInterlaced = true;
    all.push_back({ "interlaced PNG", writePng(sampleWithAlpha({ 50, 40 }), png) });
    png.kind = PngOptions::Kind::paletteAlpha;
    all.push_back({ "palette PNG", writePng(sampleWithAlpha({ 50, 40 }), png) });
    GifFrame frame;
    frame.pixels = sampleWithAlpha({ 50, 40 });
    frame.isInterlaced = true;
    all.push_back({ "GIF", writeGif({ 60, 45 }, { frame, frame }) });
    WebpOptions webp;
    webp.exif = png.exif;
    all.push_back({ "lossy WebP", writeWebp(sampleWithAlpha({ 50, 40 }), webp) });
    webp.isLossless = true;
    webp.frames = { sampleColors({ 50, 40 }) };
    all.push_back({ "animated WebP", writeWebp(sampleWithAlpha({ 50, 40 }), webp) });
    using TiffKind = TiffOptions::Kind;
    for (auto const kind : { TiffKind::rgba8, TiffKind::rgb16, TiffKind::rgbFloat,
             TiffKind::palette, TiffKind::cmyk8, TiffKind::ycbcrJpeg, TiffKind::bilevel }) {
        for (auto const isTiled : { false, true }) {
            TiffOptions tiff;
            tiff.kind = kind;
            tiff.isTiled = isTiled;
            if (kind != TiffKind::ycbcrJpeg)
                tiff.packing = isTiled ? TiffOptions::Packing::none : TiffOptions::Packing::lzw;
            tiff.pages = { sampleColors({ 20, 20 }) };
            all.push_back(
                { "TIFF " + std::to_string(int(kind)), writeTiff(sampleColors({ 50, 40 }), tiff) });
        }
    }
    HeifOptions heif;
    heif.hasAlpha = true;
    heif.thumbnail = 16;
    heif.exif = png.exif;
    all.push_back({ "AVIF", writeHeif(sampleWithAlpha({ 50, 40 }), heif) });
    heif.coding = HeifOptions::Coding::hevc;
    heif.bits = 10;
    heif.orientation = 6;
    heif.others = { sampleColors({ 30, 20 }) };
    all.push_back({ "HEIC", writeHeif(sampleColors({ 50, 40 }), heif) });
    JxlOptions jxl;
    jxl.hasAlpha = true;
    jxl.exif = png.exif;
    jxl.isPacked = true;
    all.push_back({ "lossless JPEG XL", writeJxl(sampleWithAlpha({ 50, 40 }), jxl) });
    jxl = {};
    jxl.distance = 1;
    jxl.frames = { sampleColors({ 50, 40 }) };
    all.push_back({ "lossy JPEG XL", writeJxl(sampleColors({ 50, 40 }), jxl) });
    jxl = {};
    JpegOptions transcoded;
    transcoded.exif = png.exif;
    jxl.jpeg = writeJpeg(sampleColors({ 80, 60 }), transcoded);
    all.push_back({ "JPEG XL of a JPEG", writeJxl(sampleColors({ 80, 60 }), jxl) });
    using BmpKind = BmpOptions::Kind;
    for (auto const kind : { BmpKind::mono, BmpKind::rle4, BmpKind::rle8, BmpKind::rgb565,
             BmpKind::rgba32, BmpKind::os2palette8 })
        all.push_back({ "BMP " + std::to_string(int(kind)),
            writeBmp(sampleColors({ 50, 40 }), { kind, false }) });
    addPlain(all);
    return all;
}

// Whatever comes of it must be a picture within what was asked for.
void useUp(FileBytes bytes)
{
    auto const source = opened(std::move(bytes));
    if (!source)
        return;
    CHECK(source->frameCount() >= 1);
    CHECK(source->orientation() >= 1);
    CHECK(source->orientation() <= 8);
    auto const sizes = source->previews();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        auto const preview = source->decodePreview(i, 32);
        CHECK((!preview || preview->bitmap.size.longestSide() <= 32));
    }
    auto const image = source->decode(24);
    CHECK((!image || image->bitmap.size.longestSide() <= 24));
    auto const size = source->pixelSize();
    if (size && isWithinLimits(*size) && std::int64_t { size->width } * size->height < 1'000'000) {
        auto const whole = source->decodeWhole();
        CHECK((!whole || whole->bitmap.size == *size));
    }
}

} // namespace

TEST_CASE("files cut anywhere do no harm")
{
    for (auto const& sample : samples()) {
        CAPTURE(sample.name);
        auto const& bytes = sample.bytes;
        REQUIRE(opened(bytes));
        for (std::size_t part = 0; part <= 16; ++part) {
            auto cut = bytes;
            cut.resize(bytes.size() * part / 16);
            useUp(std::move(cut));
        }
        for (std::size_t length = 0; length < std::min<std::size_t>(bytes.size(), 64); ++length) {
            auto cut = bytes;
            cut.resize(length);
            useUp(std::move(cut));
        }
    }
}

TEST_CASE("files with bytes changed at random do no harm")
{
    std::uint32_t state = 20261121;
    auto const random = [&state](std::size_t below) {
        state = state * 1664525 + 1013904223;
        return static_cast<std::size_t>(state >> 8) % below;
    };
    for (auto const& sample : samples()) {
        CAPTURE(sample.name);
        for (int round = 0; round < 60; ++round) {
            CAPTURE(round);
            auto changed = sample.bytes;
            auto const changes = 1 + random(6);
            // Most damage is done in the header.
            auto const reach
                = round % 2 == 0 ? changed.size() : std::min<std::size_t>(600, changed.size());
            for (std::size_t i = 0; i < changes; ++i)
                changed[random(reach)] = static_cast<std::uint8_t>(random(256));
            useUp(std::move(changed));
        }
    }
}

TEST_CASE("what is no image has no source")
{
    CHECK_FALSE(opened({}));
    CHECK_FALSE(opened(FileBytes(1, 0xFF)));
    CHECK_FALSE(opened(FileBytes(100'000, 0)));
    std::string const text = "This is a letter, not a picture.";
    CHECK_FALSE(opened(FileBytes(text.begin(), text.end())));
    CHECK_FALSE(openImage(nullptr));
}

TEST_CASE("a small progressive JPEG that promises 65,500 pixels a side is refused at once")
{
    JpegOptions options;
    options.isProgressive = true;
    auto file = writeJpeg(sampleColors({ 16, 16 }), options);
    for (std::size_t i = 0; i + 9 < file.size(); ++i) {
        if (file[i] == 0xFF && file[i + 1] == 0xC2) {
            for (std::size_t side : { i + 5, i + 7 }) {
                file[side] = 65500 >> 8;
                file[side + 1] = 65500 & 0xFF;
            }
        }
    }
    auto const source = opened(std::move(file));
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 65500, 65500 });
    CHECK_FALSE(source->decode(256));
    CHECK_FALSE(source->decodeWhole());
}

TEST_CASE("a JPEG of thousands of scans is given up after some")
{
    // The last scan again and again: each pass goes over all pixels of its component.
    JpegOptions options;
    options.isInterleaved = false;
    auto bomb = writeJpeg(sampleColors({ 320, 320 }), options);
    auto const isScan = [&](std::size_t i) { return bomb[i] == 0xFF && bomb[i + 1] == 0xDA; };
    auto last = bomb.size() - 2;
    while (last > 0 && !isScan(last))
        --last;
    REQUIRE(last > 0);
    FileBytes const scan(bomb.begin() + static_cast<std::ptrdiff_t>(last), bomb.end() - 2);
    bomb.resize(bomb.size() - 2);
    for (int i = 0; i < 5000; ++i)
        bomb.insert(bomb.end(), scan.begin(), scan.end());
    MemoryBytes::Reads reads;
    auto const length = bomb.size();
    auto const source = opened(std::move(bomb), &reads);
    REQUIRE(source);
    CHECK(source->decode(320));
    CHECK(reads.bytes < length / 4);
}

TEST_CASE("a JPEG of many scans over many pixels is given up sooner")
{
    // 144 megapixels of one colour and scans that hold nothing, between comments that show how far
    // the file is read.
    constexpr unsigned side = 12'000;
    constexpr unsigned scans = 250;
    ByteWriter file(true);
    file.u32(0xFFD8FFDB);
    file.u16(67);
    file.u8(0);
    file.raw(FileBytes(64, 16));
    file.u16(0xFFC2);
    file.u16(11);
    file.u8(8);
    file.u16(side);
    file.u16(side);
    file.raw({ 1, 1, 0x11, 0 });
    for (unsigned const table : { 0x00U, 0x10U }) {
        file.u16(0xFFC4);
        file.u16(20);
        file.u8(table);
        file.u8(1);
        file.raw(FileBytes(16, 0));
    }
    for (unsigned i = 0; i < scans; ++i) {
        auto const coefficient = static_cast<std::uint8_t>(i == 0 ? 0 : 1 + i % 60);
        file.u16(0xFFDA);
        file.u16(8);
        file.raw({ 1, 1, 0, coefficient, coefficient, 0x01 });
        file.u32(0xFFFEFFFF);
        file.raw(FileBytes(0xFFFD, 'x'));
    }
    auto const length = file.size();
    MemoryBytes::Reads reads;
    auto const source = opened(std::move(file.bytes), &reads);
    REQUIRE(source);
    CHECK(source->decode(100));
    CHECK(reads.bytes < length / 2);
}

TEST_CASE("padding between the segments of a JPEG is given up after some")
{
    auto const jpeg = writeJpeg(sampleColors({ 16, 16 }));
    ByteWriter file;
    file.raw({ 0xFF, 0xD8 });
    for (int i = 0; i < 200; ++i) {
        file.raw({ 0xFF, 0xE0, 0, 2 });
        file.raw(FileBytes(4000, 0));
    }
    file.bytes.insert(file.bytes.end(), jpeg.begin() + 2, jpeg.end());
    MemoryBytes::Reads reads;
    static_cast<void>(opened(std::move(file.bytes), &reads));
    CHECK(reads.calls < 10'000);
}

TEST_CASE("of a JPEG's thousands of blocks of metadata only some are looked into")
{
    // Directories that are long and say nothing.
    auto const jpeg = writeJpeg(sampleColors({ 16, 16 }));
    ByteWriter file;
    file.raw({ 0xFF, 0xD8 });
    constexpr unsigned fields = 4096;
    constexpr unsigned length = fields * 12 + 6 + 14;
    constexpr int blocks = 500;
    for (int i = 0; i < blocks; ++i) {
        file.raw({ 0xFF, 0xE1, length >> 8, length & 0xFF });
        file.raw({ 'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 8, 0, 0, 0, 0, fields >> 8 });
        file.raw(FileBytes(length - 18, 0));
    }
    file.bytes.insert(file.bytes.end(), jpeg.begin() + 2, jpeg.end());
    auto const whole = file.size();
    MemoryBytes::Reads reads;
    auto const source = opened(std::move(file.bytes), &reads);
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 16, 16 });
    CHECK(reads.bytes < whole / 10);
}

TEST_CASE("a WebP that is one long hole is given up after some empty chunks")
{
    ByteWriter file;
    file.text("RIFF");
    file.u32(10'000'000);
    file.text("WEBPVP8X");
    file.u32(10);
    file.raw({ 2, 0, 0, 0, 15, 0, 0, 15, 0, 0 });
    file.raw(FileBytes(10'000'000, 0));
    MemoryBytes::Reads reads;
    CHECK_FALSE(opened(std::move(file.bytes), &reads));
    CHECK(reads.calls < 10'000);
}

namespace {

FileBytes withTexts(FileBytes const& png, FileBytes const& text, int count)
{
    constexpr std::size_t behindHeader = 33;
    ByteWriter chunk(true);
    chunk.u32(text.size());
    chunk.text("zTXt");
    chunk.raw(text);
    chunk.u32(::crc32(0, chunk.bytes.data() + 4, static_cast<unsigned>(text.size()) + 4));
    ByteWriter file(true);
    file.bytes.assign(png.begin(), png.begin() + behindHeader);
    for (int i = 0; i < count; ++i)
        file.raw(chunk.bytes);
    file.bytes.insert(file.bytes.end(), png.begin() + behindHeader, png.end());
    return file.bytes;
}

long peakMegabytes()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

TEST_CASE("texts in a PNG that unpack to a thousand times their length are not unpacked")
{
    FileBytes const plain(7U << 20U, 'A');
    FileBytes text { 'k', 0, 0 };
    auto packed = ::compressBound(plain.size());
    text.resize(3 + packed);
    REQUIRE(::compress(text.data() + 3, &packed, plain.data(), plain.size()) == Z_OK);
    text.resize(3 + packed);
    auto const before = peakMegabytes();
    auto const source = opened(withTexts(writePng(sampleColors({ 16, 16 }), {}), text, 100));
    REQUIRE(source);
    CHECK(source->decode(16));
    CHECK(peakMegabytes() - before < 100);
}
