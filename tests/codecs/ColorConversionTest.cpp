#include "codecs/ColorConversion.h"
#include "codecs/CodecSupport.h"
#include <cstring>
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

Chromaticities const srgbColors { { 0.3127, 0.3290 }, { 0.64, 0.33 }, { 0.30, 0.60 },
    { 0.15, 0.06 } };
Chromaticities const displayP3 { { 0.3127, 0.3290 }, { 0.680, 0.320 }, { 0.265, 0.690 },
    { 0.150, 0.060 } };

Bitmap pixel(std::uint8_t b, std::uint8_t g, std::uint8_t r, std::uint8_t a)
{
    auto bitmap = Bitmap::allocate({ 1, 1 }, a == 255);
    std::uint8_t const bytes[] { b, g, r, a };
    std::memcpy(bitmap.row(0), bytes, 4);
    return bitmap;
}

} // namespace

TEST_CASE("a wider colour space makes colours stronger in sRGB, greys stay")
{
    auto const profile = makeProfile(displayP3, 2.2);
    REQUIRE_FALSE(profile.empty());
    CHECK(changesColors(profile));
    auto red = pixel(40, 40, 200, 255);
    convertToSrgb(red, PixelFormat::opaque, Channels::color, profile);
    CHECK(red.row(0)[2] > 205);
    CHECK(red.row(0)[1] < 40);
    CHECK(red.row(0)[3] == 255);
    auto grey = pixel(128, 128, 128, 255);
    convertToSrgb(grey, PixelFormat::opaque, Channels::color, profile);
    for (int c = 0; c < 3; ++c)
        CHECK(std::abs(grey.row(0)[c] - 128) <= 3);
}

TEST_CASE("premultiplied colours are converted as if they were not")
{
    auto const profile = makeProfile(srgbColors, 1.0);
    auto solid = pixel(100, 100, 100, 255);
    convertToSrgb(solid, PixelFormat::straight, Channels::color, profile);
    auto half = pixel(50, 50, 50, 128);
    convertToSrgb(half, PixelFormat::straight, Channels::color, profile);
    CHECK(std::abs(half.row(0)[0] - solid.row(0)[0] * 128 / 255) <= 2);
    CHECK(half.row(0)[3] == 128);
}

TEST_CASE("premultiplying rounds to the nearest level for every colour and alpha")
{
    int wrong = 0;
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int color = 0; color < 256; ++color) {
            auto const level = static_cast<std::uint8_t>(color);
            std::uint8_t row[] { level, level, level, static_cast<std::uint8_t>(alpha) };
            premultiply(row, 1);
            wrong += row[0] != (color * alpha + 127) / 255 || row[3] != alpha;
        }
    }
    CHECK(wrong == 0);
}

TEST_CASE("a broken profile, or one about other colours, is ignored")
{
    FileBytes const junk(3000, 0x42);
    auto profile = makeProfile(displayP3, 2.2);
    CHECK_FALSE(changesColors(junk));
    CHECK_FALSE(changesColors({}));
    auto bitmap = pixel(10, 20, 30, 255);
    convertToSrgb(bitmap, PixelFormat::opaque, Channels::color, junk);
    CHECK(bitmap.row(0)[0] == 10);
    profile.resize(profile.size() / 2);
    convertToSrgb(bitmap, PixelFormat::opaque, Channels::color, profile);
    CHECK(bitmap.row(0)[2] == 30);
}

TEST_CASE("ink without a profile is converted by multiplication")
{
    auto const convert = [](Bitmap bitmap, PixelFormat format) {
        convertToSrgb(bitmap, format, Channels::color, {});
        return std::vector<int>(bitmap.row(0), bitmap.row(0) + 4);
    };
    CHECK(convert(pixel(0, 0, 0, 0), PixelFormat::cmyk) == std::vector { 255, 255, 255, 255 });
    CHECK(convert(pixel(255, 0, 0, 0), PixelFormat::cmyk) == std::vector { 255, 255, 0, 255 });
    CHECK(convert(pixel(0, 0, 0, 255), PixelFormat::cmyk) == std::vector { 0, 0, 0, 255 });
    CHECK(convert(pixel(255, 255, 0, 255), PixelFormat::cmykInverted)
        == std::vector { 0, 255, 255, 255 });
}

TEST_CASE("an embedded profile is applied to JPEG, PNG, WebP and TIFF alike")
{
    auto const profile = makeProfile(displayP3, 2.2);
    auto const pixels = RgbaPixels::filled({ 40, 40 }, 0xC82828FF);
    JpegOptions jpeg;
    jpeg.quality = 100;
    jpeg.subsampling = JpegOptions::Subsampling::s444;
    jpeg.profile = profile;
    PngOptions png;
    png.profile = profile;
    PngOptions deep = png;
    deep.kind = PngOptions::Kind::rgb16;
    WebpOptions webp;
    webp.isLossless = true;
    webp.profile = profile;
    TiffOptions tiff;
    tiff.profile = profile;
    TiffOptions deepTiff = tiff;
    deepTiff.kind = TiffOptions::Kind::rgb16;
    for (auto const& file :
        { writeJpeg(pixels, jpeg), writePng(pixels, png), writePng(pixels, deep),
            writeWebp(pixels, webp), writeTiff(pixels, tiff), writeTiff(pixels, deepTiff) }) {
        auto const source = opened(file);
        REQUIRE(source);
        CAPTURE(source->typeIdentifier());
        auto const image = source->decode(20);
        REQUIRE(image);
        auto const* at = pixelAt(image->bitmap, 10, 10);
        CHECK(at[2] > 210);
        CHECK(at[1] < 36);
        CHECK(at[3] == 255);
    }
}

TEST_CASE("a profile that says sRGB changes nothing")
{
    auto const profile = makeProfile(srgbColors, 2.2);
    auto bitmap = pixel(10, 120, 230, 255);
    convertToSrgb(bitmap, PixelFormat::opaque, Channels::color, profile);
    CHECK(std::abs(bitmap.row(0)[1] - 120) <= 2);
}
