#include "codecs/CodecSupport.h"
#include "codecs/ToneMapping.h"
#include "support/PlainWriters.h"
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

constexpr PixelSize size { 60, 40 };

std::array<std::uint8_t, 4> toned(float red, float green, float blue, float exposure = 1)
{
    std::array<std::uint8_t, 4> out {};
    ToneMap(exposure).put(red, green, blue, out.data());
    return out;
}

std::optional<DecodedImage> whole(FileBytes bytes)
{
    auto const source = opened(std::move(bytes));
    return source ? source->decode(0) : std::nullopt;
}

// Bright colours are pressed together a little.
constexpr double tolerance = 5;

} // namespace

TEST_CASE("light up to the shoulder is sRGB, more is pressed together below white")
{
    CHECK(toned(0, 0, 0)[1] == 0);
    CHECK(std::abs(toned(0.18F, 0.18F, 0.18F)[1] - 118) <= 1);
    CHECK(std::abs(toned(0.5F, 0.5F, 0.5F)[1] - 188) <= 1);
    auto before = toned(0.8F, 0.8F, 0.8F)[1];
    for (auto const light : { 1.0F, 1.3F, 2.0F }) {
        auto const now = toned(light, light, light)[1];
        CHECK(now > before);
        before = now;
    }
    CHECK(toned(1e30F, 1e30F, 1e30F)[1] == 255);
}

TEST_CASE("bright colours keep their hue")
{
    auto const bright = toned(8, 4, 0);
    CHECK(bright[2] == 255);
    CHECK(std::abs(bright[1] - 188) <= 2);
    CHECK(bright[0] == 0);
}

TEST_CASE("negative light and what is no number is black")
{
    auto const nan = std::numeric_limits<float>::quiet_NaN();
    CHECK(toned(nan, -1, 0.5F)[2] == 0);
    CHECK(toned(nan, -1, 0.5F)[1] == 0);
    CHECK(std::abs(toned(nan, -1, 0.5F)[0] - 188) <= 1);
    auto const infinity = std::numeric_limits<float>::infinity();
    CHECK(toned(infinity, infinity, infinity)[1] == 255);
}

TEST_CASE("ordinary pictures keep their exposure, others are brought to middle grey")
{
    auto const measured = [](float light) {
        ExposureMeter meter;
        for (int i = 0; i < 100; ++i)
            meter.add(light, light, light);
        return meter.exposure();
    };
    CHECK(ExposureMeter().exposure() == 1);
    CHECK(measured(0.05F) == 1);
    CHECK(measured(0.5F) == 1);
    CHECK(measured(0) == 1);
    CHECK(measured(18) == doctest::Approx(0.01));
    CHECK(measured(0.0018F) == doctest::Approx(100).epsilon(0.01));
}

TEST_CASE("Radiance pictures come out in every packing, from whichever corner they begin")
{
    using Packing = RadianceOptions::Packing;
    auto const pixels = sampleColors(size);
    for (auto const packing : { Packing::plain, Packing::oldRuns, Packing::separateRuns }) {
        for (auto const* axes :
            { "-Y +X", "-Y -X", "+Y +X", "+Y -X", "+X -Y", "-X -Y", "-X +Y", "+X +Y" }) {
            CAPTURE(int(packing));
            CAPTURE(axes);
            auto const source = opened(writeRadiance(pixels, { packing, axes, 1 }));
            REQUIRE(source);
            CHECK(source->typeIdentifier() == "public.radiance");
            auto const image = source->decode(0);
            REQUIRE(image);
            CHECK(image->bitmap.size == size);
            CHECK(meanDifference(image->bitmap, pixels) <= tolerance);
            auto const small = source->decode(30);
            REQUIRE(small);
            CHECK(small->bitmap.size == PixelSize { 30, 20 });
        }
    }
}

TEST_CASE("a Radiance picture a thousand times too bright or too dark is still to be seen")
{
    auto const pixels = sampleColors(size);
    for (auto const brightness : { 1000.0, 0.001 }) {
        auto const image = whole(
            writeRadiance(pixels, { RadianceOptions::Packing::separateRuns, "-Y +X", brightness }));
        REQUIRE(image);
        auto const* middle = pixelAt(image->bitmap, 45, 30);
        CHECK(middle[2] > 90);
        CHECK(middle[0] < middle[2]);
    }
}

TEST_CASE("a Radiance file without a picture is refused")
{
    for (std::string const text : { "#?RADIANCE\n", "#?RADIANCE\n\n-Y 5 +Y 5\n",
             "#?RADIANCE\n\n-Y 5\n", "#?RADIANCE\n\n-Y 0 +X 4\n",
             "#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 4 +X 4\nxxxx", "#?RADIANCE\n\nX Y\n" }) {
        CAPTURE(text);
        CHECK_FALSE(opened({ text.begin(), text.end() }));
    }
}

TEST_CASE("OpenEXR pictures come out, tiled, with luminance and chroma, and of wide primaries")
{
    auto const pixels = sampleColors(size);
    ExrOptions tiled;
    tiled.isTiled = true;
    ExrOptions chroma;
    chroma.isLuminanceChroma = true;
    ExrOptions wide;
    wide.hasWidePrimaries = true;
    for (auto const& options : { ExrOptions {}, tiled, chroma, wide }) {
        auto const source = opened(writeExr(pixels, options));
        REQUIRE(source);
        CHECK(source->typeIdentifier() == "com.ilm.openexr-image");
        CHECK(source->pixelSize() == size);
        auto const image = source->decode(0);
        REQUIRE(image);
        CHECK(image->bitmap.isOpaque);
        CHECK(meanDifference(image->bitmap, pixels) <= tolerance);
        auto const small = source->decode(30);
        REQUIRE(small);
        CHECK(small->bitmap.size == PixelSize { 30, 20 });
    }
}

TEST_CASE("an OpenEXR picture keeps its alpha, and is clear around its data window")
{
    ExrOptions options;
    options.hasAlpha = true;
    auto const pixels = sampleWithAlpha(size);
    auto const image = whole(writeExr(pixels, options));
    REQUIRE(image);
    CHECK_FALSE(image->bitmap.isOpaque);
    CHECK(meanDifference(image->bitmap, pixels) <= tolerance);

    options = {};
    options.border = 10;
    auto const framed = whole(writeExr(sampleColors(size), options));
    REQUIRE(framed);
    CHECK(framed->bitmap.size == PixelSize { 80, 60 });
    CHECK(pixelAt(framed->bitmap, 5, 30)[3] == 0);
    CHECK(pixelAt(framed->bitmap, 40, 30)[3] == 255);
    options.border = -10;
    auto const cropped = whole(writeExr(sampleColors(size), options));
    REQUIRE(cropped);
    CHECK(cropped->bitmap.size == PixelSize { 40, 20 });
    CHECK(pixelAt(cropped->bitmap, 0, 0)[3] == 255);
}

TEST_CASE("a cut or broken OpenEXR file shows what is left, or nothing")
{
    auto const file = writeExr(sampleColors({ 64, 64 }));
    for (std::size_t part = 0; part < 16; ++part) {
        CAPTURE(part);
        auto cut = file;
        cut.resize(file.size() * part / 16);
        auto const source = opened(std::move(cut));
        if (source) {
            auto const image = source->decode(32);
            CHECK((!image || image->bitmap.size == PixelSize { 32, 32 }));
        }
    }
    unsigned seed = 7;
    for (int round = 0; round < 300; ++round) {
        auto broken = file;
        for (int i = 0; i < 4; ++i) {
            seed = seed * 1664525 + 1013904223;
            broken[(seed >> 8) % broken.size()] ^= static_cast<std::uint8_t>(1U << (seed & 7));
        }
        if (auto const source = opened(std::move(broken)))
            static_cast<void>(source->decode(32));
    }
}
