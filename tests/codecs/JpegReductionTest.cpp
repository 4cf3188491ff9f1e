#include "codecs/JpegReduction.h"
#include "codecs/CodecSupport.h"
#include "codecs/CountedBytes.h"
#include "codecs/JpegMarkers.h"
#include "codecs/JpegPixels.h"
#include "support/LibraryJpeg.h"
#include <algorithm>
#include <array>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

struct Eighth {
    PixelSize size;
    std::vector<std::uint8_t> pixels;
};

std::optional<Eighth> eighthFrom(
    ByteSource const& source, std::size_t piece = JpegReduction::usualPiece)
{
    JpegReduction reduction(source, piece);
    auto const whole = reduction.readFrame();
    if (!whole || !reduction.readMeans())
        return {};
    Eighth eighth { eighthOf(*whole), {} };
    auto const stride = std::size_t(eighth.size.width) * 4;
    eighth.pixels.resize(stride * std::size_t(eighth.size.height));
    JpegPixels pixels(reduction.planes(), reduction.colors(), eighth.size.width);
    for (int y = 0; y < eighth.size.height; ++y)
        pixels.writeRow(y, eighth.pixels.data() + std::size_t(y) * stride);
    return eighth;
}

std::optional<Eighth> eighthFrom(
    FileBytes const& file, std::size_t piece = JpegReduction::usualPiece)
{
    return eighthFrom(SpanBytes(file), piece);
}

// Something of every frequency and colour, with flat parts.
RgbaPixels busyColors(PixelSize size, std::uint32_t seed = 1)
{
    auto pixels = sampleColors(size);
    auto state = seed;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            for (int c = 0; c < 3; ++c) {
                state = state * 1664525 + 1013904223;
                if ((x / 24 + y / 24) % 3 != 0)
                    pixels.at(x, y)[c]
                        = static_cast<std::uint8_t>(pixels.at(x, y)[c] ^ (state >> 25));
            }
        }
    }
    return pixels;
}

/// Numbers that look random and are the same every time.
struct Random {
    std::uint32_t state;

    std::size_t below(std::size_t limit)
    {
        state = state * 1664525 + 1013904223;
        return static_cast<std::size_t>(state >> 8) % limit;
    }
};

void append(FileBytes& file, std::initializer_list<int> bytes)
{
    for (auto const byte : bytes)
        file.push_back(static_cast<std::uint8_t>(byte));
}

int largestDifference(Eighth const& ours, LibraryEighth const& theirs)
{
    REQUIRE(ours.size == theirs.size);
    int largest = 0;
    for (std::size_t i = 0; i < ours.pixels.size(); ++i)
        largest = std::max(largest, std::abs(ours.pixels[i] - theirs.pixels[i]));
    return largest;
}

void checkLikeLibrary(FileBytes const& file, std::size_t piece = JpegReduction::usualPiece)
{
    REQUIRE_FALSE(file.empty());
    auto const theirs = libraryEighth(file);
    REQUIRE(theirs);
    auto const ours = eighthFrom(file, piece);
    REQUIRE(ours);
    CHECK(largestDifference(*ours, *theirs) == 0);
}

void checkMeansLikeLibrary(FileBytes const& file)
{
    REQUIRE_FALSE(file.empty());
    auto const theirs = libraryEighth(withMeansOnly(file));
    REQUIRE(theirs);
    auto const ours = eighthFrom(file);
    REQUIRE(ours);
    // The bits that were not waited for, twice as visible in blue as in the chroma.
    CHECK(largestDifference(*ours, *theirs) <= 3);
}

// Whether there is a picture of it; a damaged file yields what its frame says, and is not read over
// and over.
bool checkBounds(FileBytes const& file, std::size_t piece = JpegReduction::usualPiece)
{
    std::uint64_t count = 0;
    CountedBytes const counted(std::make_unique<SpanBytes>(file), count);
    auto const eighth = eighthFrom(counted, piece);
    CHECK(count <= file.size() * 5 / 4 + 8192);
    if (!eighth)
        return false;
    JpegMarkers markers(counted);
    REQUIRE(markers.readFrame());
    CHECK(eighth->size == eighthOf(markers.frame().size));
    CHECK(eighth->pixels.size() == std::size_t(eighth->size.width * eighth->size.height) * 4);
    return true;
}

} // namespace

TEST_CASE("a JPEG's eighth is the library's, whatever the sampling of its components")
{
    auto const pixels = busyColors({ 203, 121 });
    int written = 0;
    for (int i = 0; i < 256; ++i) {
        PixelSize const first { 1 + i % 4, 1 + i / 4 % 4 };
        PixelSize const second { 1 + i / 16 % 4, 1 + i / 64 };
        auto const across = std::max(first.width, second.width);
        auto const down = std::max(first.height, second.height);
        // The library writes no other ratios.
        if (first.width * first.height + second.width * second.height + 1 > 10
            || across % first.width + across % second.width != 0
            || down % first.height + down % second.height != 0)
            continue;
        CAPTURE(i);
        JpegOptions options;
        options.sampling = { first, second, { 1, 1 } };
        auto const file = writeJpeg(pixels, options);
        auto const theirs = libraryEighth(file);
        REQUIRE(theirs);
        ++written;
        auto const ours = eighthFrom(file);
        // The third component would need 4 × 4 samples of a block.
        CHECK(ours.has_value() == (across * down < 16));
        if (ours)
            CHECK(largestDifference(*ours, *theirs) == 0);
    }
    CHECK(written >= 50);
}

TEST_CASE("a JPEG's eighth is the library's at every small size")
{
    JpegOptions options;
    for (int width = 1; width <= 33; ++width) {
        for (int height = 1; height <= 33; ++height) {
            CAPTURE(width);
            CAPTURE(height);
            auto const pixels = busyColors({ width, height });
            using Subsampling = JpegOptions::Subsampling;
            options.subsampling = (width + height) % 3 == 0 ? Subsampling::s444
                : (width + height) % 3 == 1                 ? Subsampling::s422
                                                            : Subsampling::s420;
            options.isInterleaved = height % 2 == 0;
            options.isOptimized = width % 2 == 0;
            checkLikeLibrary(writeJpeg(pixels, options));
        }
    }
}

TEST_CASE("a JPEG's eighth is the library's in every colour and quality")
{
    using Color = JpegOptions::Color;
    for (auto const color : { Color::ycbcr, Color::rgb, Color::grey, Color::cmyk, Color::ycck }) {
        for (int const quality : { 1, 20, 75, 100 }) {
            for (bool const isInterleaved : { true, false }) {
                CAPTURE(int(color));
                CAPTURE(quality);
                JpegOptions options;
                options.color = color;
                options.quality = quality;
                options.hasWideSteps = quality == 1;
                options.isInterleaved = isInterleaved;
                options.isOptimized = quality != 75;
                checkLikeLibrary(writeJpeg(busyColors({ 150, 90 }), options));
            }
        }
    }
}

TEST_CASE("restarts are passed wherever they are")
{
    for (int const units : { 1, 2, 3, 7, 8, 9, 100 }) {
        for (bool const isInterleaved : { true, false }) {
            CAPTURE(units);
            JpegOptions options;
            options.restartUnits = units;
            options.isInterleaved = isInterleaved;
            checkLikeLibrary(writeJpeg(busyColors({ 203, 121 }), options));
            options.isProgressive = true;
            options.isInterleaved = true;
            checkMeansLikeLibrary(writeJpeg(busyColors({ 203, 121 }), options));
        }
    }
}

TEST_CASE("a large JPEG is walked through from several places and stays the library's")
{
    for (auto const subsampling : { JpegOptions::Subsampling::s444, JpegOptions::Subsampling::s422,
             JpegOptions::Subsampling::s420 }) {
        for (bool const isOptimized : { false, true }) {
            JpegOptions options;
            options.subsampling = subsampling;
            options.isOptimized = isOptimized;
            options.quality = 96;
            auto const file = writeJpeg(busyColors({ 1601, 1203 }), options);
            REQUIRE(file.size() > 600'000);
            checkLikeLibrary(file);
            for (std::size_t const piece : { 5'000U, 40'000U, 150'001U })
                checkLikeLibrary(file, piece);
        }
    }
}

TEST_CASE("a large JPEG whose components come one after the other is read once")
{
    for (bool const hasRestarts : { false, true }) {
        JpegOptions options;
        options.isInterleaved = false;
        options.subsampling = JpegOptions::Subsampling::s444;
        options.restartUnits = hasRestarts ? 50 : 0;
        options.quality = 96;
        auto const file = writeJpeg(busyColors({ 1601, 1203 }), options);
        REQUIRE(file.size() > 1'000'000);
        checkLikeLibrary(file);
        for (std::size_t const piece : { 60'000U, 400'000U, 524'288U, 1'048'576U }) {
            std::uint64_t count = 0;
            CountedBytes const counted(std::make_unique<SpanBytes>(file), count);
            CHECK(eighthFrom(counted, piece));
            CHECK(count <= file.size() + 4096);
        }
    }
}

TEST_CASE("a large flat JPEG is more units than a walk keeps")
{
    JpegOptions options;
    options.color = JpegOptions::Color::grey;
    checkLikeLibrary(writeJpeg(RgbaPixels::filled({ 4000, 3000 }, 0x4080C0FF), options));
}

TEST_CASE("a progressive JPEG's eighth is that of its blocks' means")
{
    using Color = JpegOptions::Color;
    for (auto const color : { Color::ycbcr, Color::rgb, Color::grey, Color::ycck }) {
        for (int const quality : { 1, 20, 75, 95 }) {
            CAPTURE(int(color));
            CAPTURE(quality);
            JpegOptions options;
            options.color = color;
            options.quality = quality;
            options.isProgressive = true;
            checkMeansLikeLibrary(writeJpeg(busyColors({ 203, 121 }), options));
        }
    }
}

TEST_CASE("bytes of padding in front of markers change nothing")
{
    JpegOptions options;
    options.restartUnits = 5;
    auto const plain = writeJpeg(busyColors({ 120, 80 }), options);
    FileBytes padded;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        auto const isMarker = i > 1 && plain[i] == 0xFF && i + 1 < plain.size()
            && ((plain[i + 1] >= 0xD0 && plain[i + 1] <= 0xD7) || plain[i + 1] == 0xDA
                || plain[i + 1] == 0xC0);
        if (isMarker)
            padded.insert(padded.end(), 1 + i % 3, 0xFF);
        padded.push_back(plain[i]);
    }
    REQUIRE(padded.size() > plain.size() + 5);
    checkLikeLibrary(padded);
    CHECK(eighthFrom(padded)->pixels == eighthFrom(plain)->pixels);
}

TEST_CASE("a JPEG is looked through for markers behind a bounded number of bytes of padding")
{
    auto const plain = writeJpeg(busyColors({ 120, 80 }), {});
    auto padded = plain;
    padded.insert(padded.begin() + 2, 600, 0xFF);
    CHECK(eighthFrom(padded));
    std::array<std::uint8_t, 2> const marker { 0xFF, 0xC0 };
    auto const frame = std::search(padded.begin(), padded.end(), marker.begin(), marker.end());
    REQUIRE(frame != padded.end());
    padded.insert(frame, 600, 0xFF);
    REQUIRE(libraryEighth(padded));
    CHECK_FALSE(eighthFrom(padded));
}

TEST_CASE("what stands behind the last component does not matter")
{
    JpegOptions options;
    options.isInterleaved = false;
    auto file = writeJpeg(busyColors({ 67, 45 }), options);
    auto const whole = eighthFrom(file);
    REQUIRE(whole);
    file[file.size() - 1] = 0x77; // in place of the end of the picture
    auto const damaged = eighthFrom(file);
    REQUIRE(damaged);
    CHECK(damaged->pixels == whole->pixels);
}

TEST_CASE("a value behind the last coefficient is that one's")
{
    // 16 × 16, 4:2:0, all means 128: codes of one bit for the means, of two for an end (00),
    // sixteen zeros (01) and ten bits behind fifteen zeros (10), three sixteens and one of which
    // come to 64.
    FileBytes file { 0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0 };
    file.insert(file.end(), 64, 3);
    append(file, { 0xFF, 0xC0, 0, 17, 8, 0, 16, 0, 16, 3, 1, 0x22, 0, 2, 0x11, 0, 3, 0x11, 0 });
    append(file, { 0xFF, 0xC4, 0, 20, 0x00, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 });
    append(file,
        { 0xFF, 0xC4, 0, 22, 0x10, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x00, 0xF0,
            0xFA });
    append(file, { 0xFF, 0xDA, 0, 12, 3, 1, 0, 2, 0, 3, 0, 0, 63, 0 });
    // Five blocks: nothing in the four of luma, 1023 behind the end of the first of chroma.
    append(file, { 0b0000'0000, 0b0000'0010, 0b1011'0111, 0b1111'1110, 0b0011'1111, 0xFF, 0xD9 });
    checkLikeLibrary(file);
}

TEST_CASE("one component after the other, each block of more than its mean, takes no stack")
{
    JpegOptions options;
    options.sampling = { { 2, 2 }, { 1, 1 }, { 1, 1 } };
    options.isInterleaved = false;
    checkLikeLibrary(writeJpeg(busyColors({ 1600, 1504 }), options));
}

TEST_CASE("a JPEG cut anywhere comes out as the library shows it, or is left to it")
{
    for (bool const isInterleaved : { true, false }) {
        for (int const units : { 0, 3 }) {
            JpegOptions options;
            options.isInterleaved = isInterleaved;
            options.restartUnits = units;
            auto const file = writeJpeg(busyColors({ 67, 45 }), options);
            int shown = 0;
            for (std::size_t length = 0; length < file.size(); ++length) {
                CAPTURE(length);
                FileBytes const cut(file.begin(), file.begin() + std::ptrdiff_t(length));
                auto const ours = eighthFrom(cut);
                if (!ours)
                    continue;
                ++shown;
                auto const theirs = libraryEighth(cut);
                REQUIRE(theirs);
                CHECK(largestDifference(*ours, *theirs) == 0);
            }
            CHECK(shown > int(file.size()) / 3);
        }
    }
}

TEST_CASE("a cut progressive JPEG does no harm")
{
    JpegOptions options;
    options.isProgressive = true;
    auto const file = writeJpeg(busyColors({ 67, 45 }), options);
    int shown = 0;
    for (std::size_t length = 0; length < file.size(); ++length)
        shown += checkBounds(FileBytes(file.begin(), file.begin() + std::ptrdiff_t(length)));
    CHECK(shown > int(file.size()) / 3);
    CHECK(shown < int(file.size()));
}

TEST_CASE("restarts that are missing or wrong are left to the library")
{
    JpegOptions options;
    options.restartUnits = 2;
    auto const file = writeJpeg(busyColors({ 120, 80 }), options);
    std::vector<std::size_t> restarts;
    for (std::size_t i = 0; i + 1 < file.size(); ++i) {
        if (file[i] == 0xFF && file[i + 1] >= 0xD0 && file[i + 1] <= 0xD7)
            restarts.push_back(i);
    }
    REQUIRE(restarts.size() > 5);
    auto wrong = file;
    wrong[restarts[2] + 1] ^= 1;
    CHECK_FALSE(eighthFrom(wrong));
    auto missing = file;
    missing.erase(missing.begin() + std::ptrdiff_t(restarts[3]),
        missing.begin() + std::ptrdiff_t(restarts[3]) + 2);
    CHECK_FALSE(eighthFrom(missing));
    auto late = file;
    late.insert(late.begin() + std::ptrdiff_t(restarts[1]), { 0x12, 0x34 });
    CHECK_FALSE(eighthFrom(late));
}

TEST_CASE("kinds of JPEG that are rare are left to the library")
{
    JpegOptions options;
    SUBCASE("arithmetic codes")
    {
        options.isArithmetic = true;
    }
    SUBCASE("sixteen samples of a block")
    {
        options.sampling = { { 4, 4 }, { 1, 1 }, { 1, 1 } };
        options.isInterleaved = false;
    }
    auto const file = writeJpeg(sampleColors({ 64, 48 }), options);
    REQUIRE(libraryEighth(file));
    CHECK_FALSE(eighthFrom(file));
}

TEST_CASE("a progressive JPEG of many small scans is read once")
{
    // 16 × 16 of four components; their means come bit by bit, in 56 scans of one byte.
    FileBytes file { 0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0 };
    file.insert(file.end(), 64, 200);
    append(file, { 0xFF, 0xC2, 0, 20, 8, 0, 16, 0, 16, 4 });
    for (int part = 1; part <= 4; ++part)
        append(file, { part, 0x11, 0 });
    append(file, { 0xFF, 0xC4, 0, 20, 0x00, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 });
    for (int low = 13; low >= 0; --low)
        for (int part = 1; part <= 4; ++part)
            append(file,
                { 0xFF, 0xDA, 0, 8, 1, part, 0, 0, 0, (low == 13 ? 0 : low + 1) << 4 | low, 0 });
    file.insert(file.end(), 40'000, 0x11);
    CHECK(checkBounds(file));
}

TEST_CASE("JPEGs damaged behind the first piece that is read do no harm")
{
    Random random { 20261122 };
    int shown = 0;
    for (int round = 0; round < 60; ++round) {
        JpegOptions options;
        options.restartUnits = round % 3 == 0 ? 50 : 0;
        options.isOptimized = round % 2 == 0;
        options.quality = 96;
        auto file = writeJpeg(busyColors({ 800, 401 }), options);
        REQUIRE(file.size() > 150'000);
        for (std::size_t i = 0; i <= random.below(3); ++i)
            file[50'000 + random.below(file.size() - 50'000)]
                = static_cast<std::uint8_t>(random.below(256));
        shown += checkBounds(file, 8'000 + random.below(70'000));
    }
    CHECK(shown > 5);
    CHECK(shown < 60);
}

TEST_CASE("damaged JPEGs do no harm")
{
    Random random { 20261121 };
    int shown = 0;
    for (int round = 0; round < 3000; ++round) {
        JpegOptions options;
        options.isProgressive = round % 3 == 0;
        options.restartUnits = round % 5 == 0 ? 2 : 0;
        options.isOptimized = round % 2 == 0;
        auto file = writeJpeg(busyColors({ 40, 24 }), options);
        for (std::size_t i = 0; i <= random.below(6); ++i)
            file[random.below(file.size())] = static_cast<std::uint8_t>(random.below(256));
        shown += checkBounds(file);
    }
    CHECK(shown > 300);
    CHECK(shown < 3000);
}
