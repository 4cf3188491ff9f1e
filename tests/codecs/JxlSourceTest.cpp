#include "codecs/CodecSupport.h"
#include "codecs/ColorConversion.h"
#include "support/CodedWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Sample = JxlOptions::Sample;

int grey(Bitmap const& bitmap, int x, int y)
{
    auto const* at = pixelAt(bitmap, x, y);
    CHECK(std::abs(at[0] - at[1]) <= 2);
    CHECK(std::abs(at[2] - at[1]) <= 2);
    return at[1];
}

RgbaPixels flat(unsigned signal)
{
    return RgbaPixels::filled({ 32, 32 }, signal << 24 | signal << 16 | signal << 8 | 0xFF);
}

} // namespace

TEST_CASE("JPEG XLs, lossy or lossless, of 8, 16 and 32 bits come out with size and colours")
{
    for (auto const distance : { 0.0F, 1.0F }) {
        for (auto const sample : { Sample::u8, Sample::u16, Sample::f32 }) {
            CAPTURE(distance);
            CAPTURE(int(sample));
            JxlOptions options;
            options.distance = distance;
            options.sample = sample;
            auto const pixels = sampleColors({ 301, 203 });
            auto const source = opened(writeJxl(pixels, options));
            REQUIRE(source);
            CHECK(source->typeIdentifier() == "public.jpeg-xl");
            CHECK(source->pixelSize() == PixelSize { 301, 203 });
            CHECK(source->frameCount() == 1);
            CHECK(source->previews().empty());
            auto const whole = source->decodeWhole();
            REQUIRE(whole);
            CHECK(whole->bitmap.size == PixelSize { 301, 203 });
            CHECK(whole->bitmap.isOpaque);
            CHECK(meanDifference(whole->bitmap, pixels) < (distance > 0 ? 4 : 0.5));
            auto const small = source->decode(60);
            REQUIRE(small);
            CHECK(small->bitmap.size == PixelSize { 60, 40 });
            CHECK(meanDifference(small->bitmap, pixels) < 6);
        }
    }
}

TEST_CASE("the alpha of a JPEG XL counts whether its colours are premultiplied or not")
{
    for (auto const sample : { Sample::u8, Sample::u16 }) {
        for (auto const isPremultiplied : { false, true }) {
            if (isPremultiplied && sample != Sample::u8)
                continue;
            CAPTURE(int(sample));
            CAPTURE(isPremultiplied);
            auto const wanted = sampleWithAlpha({ 120, 80 });
            auto pixels = wanted;
            for (std::size_t i = 0; isPremultiplied && i < pixels.rgba.size(); ++i) {
                if (i % 4 != 3)
                    pixels.rgba[i]
                        = static_cast<std::uint8_t>(pixels.rgba[i] * pixels.rgba[i | 3] / 255);
            }
            JxlOptions options;
            options.sample = sample;
            options.hasAlpha = true;
            options.isPremultiplied = isPremultiplied;
            auto const source = opened(writeJxl(pixels, options));
            REQUIRE(source);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            CHECK_FALSE(image->bitmap.isOpaque);
            CHECK(meanDifference(image->bitmap, wanted) < 2);
            CHECK(pixelAt(image->bitmap, 118, 2)[3] == 0);
        }
    }
}

TEST_CASE("a grey JPEG XL is grey, lossy or lossless")
{
    for (auto const distance : { 0.0F, 1.0F }) {
        CAPTURE(distance);
        JxlOptions options;
        options.isGrey = true;
        options.distance = distance;
        auto const source = opened(writeJxl(flat(0x5A), options));
        REQUIRE(source);
        auto const image = source->decodeWhole();
        REQUIRE(image);
        CHECK(std::abs(grey(image->bitmap, 16, 16) - 0x5A) <= 2);
    }
}

TEST_CASE("a JPEG XL is turned as its codestream says")
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        CAPTURE(orientation);
        JxlOptions options;
        options.orientation = orientation;
        auto const source = opened(writeJxl(sampleColors({ 120, 64 }), options));
        REQUIRE(source);
        CHECK(source->pixelSize() == PixelSize { 120, 64 });
        CHECK(source->orientation() == orientation);
        auto const size = orientation >= 5 ? PixelSize { 64, 120 } : PixelSize { 120, 64 };
        auto const image = source->decode(120);
        REQUIRE(image);
        REQUIRE(image->bitmap.size == size);
        auto const isRight
            = orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
        auto const isBelow
            = orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
        auto const blue = [&](bool right, bool below) {
            return pixelAt(
                image->bitmap, right ? size.width - 8 : 8, below ? size.height - 8 : 8)[0];
        };
        CHECK(blue(isRight, isBelow) > 150);
        CHECK(blue(!isRight, isBelow) < 90);
        CHECK(blue(isRight, !isBelow) < 90);
        auto const whole = source->decodeWhole();
        REQUIRE(whole);
        CHECK(whole->bitmap.size == PixelSize { 120, 64 });
    }
}

TEST_CASE("the thumbnail in the EXIF block of a JPEG XL is found, packed or not")
{
    for (auto const isPacked : { false, true }) {
        for (auto const orientation : { 1, 6 }) {
            CAPTURE(isPacked);
            CAPTURE(orientation);
            ExifOptions exif;
            exif.orientation = 6;
            exif.thumbnail = writeJpeg(sampleColors({ 80, 40 }));
            JxlOptions options;
            options.exif = exifBlock(exif);
            options.isPacked = isPacked;
            options.orientation = orientation;
            auto const source = opened(writeJxl(sampleColors({ 320, 160 }), options));
            REQUIRE(source);
            if (orientation != 6) {
                CHECK(source->previews().empty());
                continue;
            }
            REQUIRE(source->previews() == std::vector { PixelSize { 40, 80 } });
            auto const preview = source->decodePreview(0, 80);
            auto const image = source->decode(80);
            REQUIRE(preview);
            REQUIRE(image);
            REQUIRE(preview->bitmap.size == image->bitmap.size);
            CHECK(meanDifference(preview->bitmap, image->bitmap) < 5);
            CHECK_FALSE(source->decodePreview(1, 80));
        }
    }
}

TEST_CASE("the preview frame of a JPEG XL is a preview, turned like the picture")
{
    for (auto const orientation : { 1, 6 }) {
        CAPTURE(orientation);
        JxlOptions options;
        options.preview = sampleColors({ 60, 40 });
        options.orientation = orientation;
        MemoryBytes::Reads reads;
        auto pixels = sampleColors({ 1500, 1000 });
        for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
            if (i % 4 != 3)
                pixels.rgba[i]
                    = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 2654435761U >> 16 & 15));
        }
        auto const source = opened(writeJxl(pixels, options), &reads);
        REQUIRE(source);
        CHECK(source->pixelSize() == PixelSize { 1500, 1000 });
        auto const size = orientation == 6 ? PixelSize { 40, 60 } : PixelSize { 60, 40 };
        REQUIRE(source->previews() == std::vector { size });
        auto const preview = source->decodePreview(0, 60);
        REQUIRE(preview);
        CHECK(preview->bitmap.size == size);
        CHECK(reads.bytes < 100'000);
        auto const image = source->decode(60);
        REQUIRE(image);
        REQUIRE(image->bitmap.size == size);
        CHECK(meanDifference(preview->bitmap, image->bitmap) < 10);
        auto const smaller = source->decodePreview(0, 30);
        REQUIRE(smaller);
        CHECK(smaller->bitmap.size.longestSide() == 30);
    }
}

TEST_CASE("a JPEG XL made of a JPEG gives the same picture, small or whole")
{
    auto const pixels = sampleColors({ 400, 300 });
    ExifOptions exif;
    exif.orientation = 6;
    JpegOptions jpeg;
    jpeg.exif = exifBlock(exif);
    JxlOptions options;
    options.jpeg = writeJpeg(pixels, jpeg);
    auto const direct = opened(options.jpeg);
    auto const source = opened(writeJxl(pixels, options));
    REQUIRE(direct);
    REQUIRE(source);
    CHECK(source->orientation() == 6);
    for (auto const maxPixel : { 50, 100, 400 }) {
        CAPTURE(maxPixel);
        auto const wanted = direct->decode(maxPixel);
        auto const image = source->decode(maxPixel);
        REQUIRE(wanted);
        REQUIRE(image);
        REQUIRE(image->bitmap.size == wanted->bitmap.size);
        CHECK(image->wasReduced == wanted->wasReduced);
        CHECK(meanDifference(image->bitmap, wanted->bitmap) < 2);
    }
}

TEST_CASE("of an animated JPEG XL the first frame is the picture, and all are counted")
{
    JxlOptions options;
    options.frames = { flat(10), flat(20) };
    auto const source = opened(writeJxl(flat(200), options));
    REQUIRE(source);
    CHECK(source->frameCount() == 3);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(grey(image->bitmap, 9, 9) == 200);
}

TEST_CASE("colours of a JPEG XL come out in sRGB, be they coded, profiled or linear")
{
    auto const pixels = RgbaPixels::filled({ 32, 32 }, 0xB4645AFF);
    Chromaticities const displayP3 { { 0.3127, 0.3290 }, { 0.680, 0.320 }, { 0.265, 0.690 },
        { 0.150, 0.060 } };
    for (auto const sample : { Sample::u8, Sample::u16 }) {
        for (auto const distance : { 0.0F, 1.0F }) {
            for (auto const isProfiled : { false, true }) {
                CAPTURE(int(sample));
                CAPTURE(distance);
                CAPTURE(isProfiled);
                JxlOptions options;
                options.sample = sample;
                options.distance = distance;
                options.primaries = 11;
                if (isProfiled)
                    options.profile = makeProfile(displayP3, 2.2);
                auto const source = opened(writeJxl(pixels, options));
                REQUIRE(source);
                auto const image = source->decodeWhole();
                REQUIRE(image);
                auto const* at = pixelAt(image->bitmap, 16, 16);
                CHECK(std::abs(at[2] - 194) <= 4);
                CHECK(std::abs(at[1] - 93) <= 4);
                CHECK(std::abs(at[0] - 85) <= 4);
            }
        }
    }
    JxlOptions linear;
    linear.sample = Sample::f32;
    linear.transfer = 8;
    auto const source = opened(writeJxl(flat(55), linear));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(std::abs(grey(image->bitmap, 5, 5) - 128) <= 2);
}

TEST_CASE("of a high range the white of a page is a light grey in a JPEG XL too")
{
    for (auto const distance : { 0.0F, 1.0F }) {
        for (auto const transfer : { 16, 18 }) {
            CAPTURE(distance);
            CAPTURE(transfer);
            JxlOptions options;
            options.sample = Sample::u16;
            options.distance = distance;
            options.primaries = 9;
            options.transfer = transfer;
            options.intensity = 1000;
            auto const shown = [&](unsigned signal) {
                auto const source = opened(writeJxl(flat(signal), options));
                REQUIRE(source);
                auto const image = source->decodeWhole();
                REQUIRE(image);
                return grey(image->bitmap, 16, 16);
            };
            CHECK(shown(0) <= 4);
            auto const white = shown(transfer == 16 ? 148 : 191);
            CHECK(white > 205);
            CHECK(white < 240);
            CHECK(shown(transfer == 16 ? 192 : 255) >= 248);
        }
    }
}

TEST_CASE("of a cut JPEG XL what is there is shown, or nothing")
{
    auto pixels = sampleColors({ 700, 700 });
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
        if (i % 4 != 3)
            pixels.rgba[i]
                = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 2654435761U >> 16 & 15));
    }
    JxlOptions options;
    options.distance = 1;
    auto const file = writeJxl(pixels, options);
    auto cut = file;
    cut.resize(file.size() * 3 / 4);
    auto const source = opened(std::move(cut));
    REQUIRE(source);
    auto const image = source->decode(350);
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 350, 350 });
    auto const whole = opened(file)->decode(350);
    REQUIRE(whole);
    CHECK(std::abs(pixelAt(image->bitmap, 20, 20)[1] - pixelAt(whole->bitmap, 20, 20)[1]) < 30);
}
