#include "codecs/CodecSupport.h"
#include "codecs/ColorConversion.h"
#include "support/CodedWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

using Coding = HeifOptions::Coding;

int grey(Bitmap const& bitmap, int x, int y)
{
    auto const* at = pixelAt(bitmap, x, y);
    CHECK(std::abs(at[0] - at[1]) <= 2);
    CHECK(std::abs(at[2] - at[1]) <= 2);
    return at[1];
}

// Names another brand the file states; `index` 0 is the major one.
FileBytes withBrand(FileBytes file, std::size_t index, std::string_view name)
{
    std::copy(name.begin(), name.end(),
        file.begin() + static_cast<std::ptrdiff_t>(index == 0 ? 8 : 12 + 4 * index));
    return file;
}

std::size_t positionOf(FileBytes const& file, std::string_view text)
{
    auto const found = std::search(file.begin(), file.end(), text.begin(), text.end());
    return static_cast<std::size_t>(found - file.begin());
}

} // namespace

TEST_CASE("HEIFs of both codings and of 8, 10 and 12 bits come out with size and colours")
{
    for (auto const coding : { Coding::av1, Coding::hevc }) {
        for (auto const bits : { 8, 10, 12 }) {
            for (auto const hasFullColor : { false, true }) {
                CAPTURE(int(coding));
                CAPTURE(bits);
                CAPTURE(hasFullColor);
                HeifOptions options;
                options.coding = coding;
                options.bits = bits;
                options.hasFullColor = hasFullColor;
                auto const pixels = sampleColors({ 301, 203 });
                auto const source = opened(writeHeif(pixels, options));
                REQUIRE(source);
                CHECK(source->typeIdentifier()
                    == (coding == Coding::av1 ? "public.avif" : "public.heic"));
                CHECK(source->pixelSize() == PixelSize { 301, 203 });
                CHECK(source->orientation() == 1);
                CHECK(source->frameCount() == 1);
                CHECK(source->previews().empty());
                auto const whole = source->decodeWhole();
                REQUIRE(whole);
                CHECK(whole->bitmap.size == PixelSize { 301, 203 });
                CHECK(whole->bitmap.isOpaque);
                CHECK(meanDifference(whole->bitmap, pixels) < 4);
                auto const small = source->decode(60);
                REQUIRE(small);
                CHECK(small->bitmap.size == PixelSize { 60, 40 });
                CHECK(meanDifference(small->bitmap, pixels) < 6);
            }
        }
    }
}

TEST_CASE("every matrix and range of YCbCr gives the same colours")
{
    auto const pixels = sampleColors({ 64, 48 });
    for (auto const matrix : { 1, 6, 9 }) {
        for (auto const isFullRange : { false, true }) {
            CAPTURE(matrix);
            CAPTURE(isFullRange);
            HeifOptions options;
            options.matrix = matrix;
            options.isFullRange = isFullRange;
            auto const source = opened(writeHeif(pixels, options));
            REQUIRE(source);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            CHECK(meanDifference(image->bitmap, pixels) < 4);
        }
    }
}

TEST_CASE("the alpha of a HEIF counts whether its colours are premultiplied or not")
{
    for (auto const bits : { 8, 10 }) {
        for (auto const isPremultiplied : { false, true }) {
            CAPTURE(bits);
            CAPTURE(isPremultiplied);
            auto const wanted = sampleWithAlpha({ 120, 80 });
            auto pixels = wanted;
            for (std::size_t i = 0; isPremultiplied && i < pixels.rgba.size(); ++i) {
                if (i % 4 != 3)
                    pixels.rgba[i]
                        = static_cast<std::uint8_t>(pixels.rgba[i] * pixels.rgba[i | 3] / 255);
            }
            HeifOptions options;
            options.coding = bits == 8 ? Coding::av1 : Coding::hevc;
            options.bits = bits;
            options.hasAlpha = true;
            options.isPremultiplied = isPremultiplied;
            auto const source = opened(writeHeif(pixels, options));
            REQUIRE(source);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            CHECK_FALSE(image->bitmap.isOpaque);
            CHECK(meanDifference(image->bitmap, wanted) < 4);
            CHECK(pixelAt(image->bitmap, 118, 2)[3] <= 8);
        }
    }
}

TEST_CASE("a HEIF of one channel is grey")
{
    HeifOptions options;
    options.isGrey = true;
    auto const pixels = RgbaPixels::filled({ 70, 50 }, 0x5A0000FF);
    auto const source = opened(writeHeif(pixels, options));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(std::abs(grey(image->bitmap, 35, 25) - 0x5A) <= 2);
}

TEST_CASE("a HEIF turns as it says itself, whatever its EXIF block says")
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        CAPTURE(orientation);
        HeifOptions options;
        options.orientation = orientation;
        ExifOptions exif;
        exif.orientation = 6;
        options.exif = exifBlock(exif);
        auto const source = opened(writeHeif(sampleColors({ 120, 64 }), options));
        REQUIRE(source);
        auto const isTurned = orientation >= 5;
        auto const size = isTurned ? PixelSize { 64, 120 } : PixelSize { 120, 64 };
        CHECK(source->pixelSize() == size);
        CHECK(source->orientation() == 1);
        auto const image = source->decode(120);
        REQUIRE(image);
        REQUIRE(image->bitmap.size == size);
        // The bluish quarter was at the top left.
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
    }
}

TEST_CASE("the thumbnail of a HEIF is a preview and spares most of the file")
{
    auto pixels = sampleColors({ 1600, 1200 });
    for (std::size_t i = 0; i < pixels.rgba.size(); ++i) {
        if (i % 4 != 3)
            pixels.rgba[i]
                = static_cast<std::uint8_t>(pixels.rgba[i] ^ (i * 2654435761U >> 16 & 15));
    }
    HeifOptions options;
    options.coding = Coding::hevc;
    options.thumbnail = 160;
    MemoryBytes::Reads reads;
    auto file = writeHeif(pixels, options);
    auto const length = file.size();
    auto const source = opened(std::move(file), &reads);
    REQUIRE(source);
    CHECK(source->previews() == std::vector { PixelSize { 160, 120 } });
    auto const preview = source->decodePreview(0, 100);
    REQUIRE(preview);
    CHECK(preview->bitmap.size == PixelSize { 100, 75 });
    CHECK(meanDifference(preview->bitmap, pixels) < 8);
    CHECK(reads.bytes < length / 4);
    CHECK_FALSE(source->decodePreview(1, 100));
}

TEST_CASE("a thumbnail in the EXIF block counts where it lies like the picture")
{
    for (auto const exifOrientation : { 1, 6 }) {
        for (auto const own : { 1, 6, 7 }) {
            CAPTURE(exifOrientation);
            CAPTURE(own);
            HeifOptions options;
            options.orientation = own;
            ExifOptions exif;
            exif.orientation = exifOrientation;
            exif.thumbnail = writeJpeg(sampleColors({ 80, 40 }));
            options.exif = exifBlock(exif);
            auto const source = opened(writeHeif(sampleColors({ 320, 160 }), options));
            REQUIRE(source);
            if (exifOrientation != own) {
                CHECK(source->previews().empty());
                continue;
            }
            auto const size = own == 6 ? PixelSize { 40, 80 } : PixelSize { 80, 40 };
            REQUIRE(source->previews() == std::vector { size });
            auto const preview = source->decodePreview(0, 80);
            auto const image = source->decode(80);
            REQUIRE(preview);
            REQUIRE(image);
            REQUIRE(preview->bitmap.size == image->bitmap.size);
            CHECK(meanDifference(preview->bitmap, image->bitmap) < 5);
        }
    }
}

TEST_CASE("a HEIF with several pictures shows the primary one and counts them all")
{
    HeifOptions options;
    options.others = { sampleColors({ 32, 32 }), sampleColors({ 16, 16 }) };
    options.thumbnail = 40;
    auto const source = opened(writeHeif(sampleColors({ 90, 60 }), options));
    REQUIRE(source);
    CHECK(source->frameCount() == 3);
    CHECK(source->pixelSize() == PixelSize { 90, 60 });
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 90, 60 });
}

TEST_CASE("a brand that fits is enough, be it the major one, another, or one of sequences")
{
    auto const pixels = sampleColors({ 40, 30 });
    HeifOptions options;
    options.coding = Coding::hevc;
    auto const heic = writeHeif(pixels, options);
    auto const avif = writeHeif(pixels);
    struct Case {
        FileBytes file;
        std::string_view type;
    };
    auto const shownAs = [](FileBytes file) {
        auto const source = opened(std::move(file));
        CHECK((!source || source->decodeWhole()));
        return source ? std::string(source->typeIdentifier()) : std::string();
    };
    CHECK(shownAs(withBrand(heic, 0, "heix")) == "public.heic");
    CHECK(shownAs(withBrand(heic, 0, "hevc")) == "public.heic");
    CHECK(shownAs(withBrand(heic, 0, "mif1")) == "public.heif");
    CHECK(shownAs(withBrand(heic, 0, "msf1")) == "public.heif");
    CHECK(shownAs(withBrand(heic, 0, "MiHE")) != "");
    CHECK(shownAs(withBrand(avif, 0, "avis")) == "public.avif");
    CHECK(shownAs(withBrand(avif, 0, "miaf")) == "public.avif");
    auto strange = withBrand(heic, 0, "mp42");
    for (std::size_t i = 1; i <= 4; ++i)
        strange = withBrand(strange, i, "isom");
    CHECK(shownAs(strange) == "");
}

TEST_CASE("a profile in a HEIF counts before its code points")
{
    Chromaticities const swapped { { 0.3127, 0.3290 }, { 0.30, 0.60 }, { 0.64, 0.33 },
        { 0.15, 0.06 } };
    HeifOptions options;
    options.isLossless = true;
    options.primaries = 9;
    options.profile = makeProfile(swapped, 2.2);
    auto const source = opened(writeHeif(RgbaPixels::filled({ 32, 32 }, 0xC01010FF), options));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 9, 9)[1] > 180);
    CHECK(pixelAt(image->bitmap, 9, 9)[2] < 40);
}

TEST_CASE("the code points of a wide gamut make its colours stronger in sRGB")
{
    HeifOptions options;
    options.bits = 10;
    options.primaries = 12;
    auto const source = opened(writeHeif(RgbaPixels::filled({ 32, 32 }, 0xB4645AFF), options));
    REQUIRE(source);
    auto const image = source->decodeWhole();
    REQUIRE(image);
    auto const* at = pixelAt(image->bitmap, 16, 16);
    CHECK(at[2] > 0xB4 + 5);
    CHECK(at[1] < 0x64 - 2);
}

TEST_CASE("of a high range the white of a page is a light grey and the rest finds its place")
{
    for (auto const transfer : { 16, 18 }) {
        CAPTURE(transfer);
        // Signals of PQ and HLG for black, middle grey, the white of a page, and 1000 cd/m².
        std::array<std::uint32_t, 4> const signals = transfer == 16
            ? std::array<std::uint32_t, 4> { 0, 97, 148, 192 }
            : std::array<std::uint32_t, 4> { 0, 97, 191, 255 };
        std::array<int, 4> shown {};
        for (std::size_t i = 0; i < signals.size(); ++i) {
            HeifOptions options;
            options.bits = 10;
            options.primaries = 9;
            options.transfer = transfer;
            options.matrix = 9;
            auto const signal = signals[i];
            auto const source = opened(writeHeif(
                RgbaPixels::filled({ 32, 32 }, signal << 24 | signal << 16 | signal << 8 | 0xFF),
                options));
            REQUIRE(source);
            auto const image = source->decodeWhole();
            REQUIRE(image);
            shown[i] = grey(image->bitmap, 16, 16);
        }
        CHECK(shown[0] <= 2);
        CHECK(shown[1] > 90);
        CHECK(shown[1] < 150);
        CHECK(shown[2] > 205);
        CHECK(shown[2] < 240);
        CHECK(shown[3] >= 250);
    }
}

TEST_CASE("a HEIF that claims more pixels than there may be is refused by its header")
{
    auto file = writeHeif(sampleColors({ 40, 30 }));
    auto const at = positionOf(file, "ispe");
    REQUIRE(at < file.size());
    for (auto const byte : { at + 9, at + 13 })
        file[byte] = 1;
    auto const source = opened(std::move(file));
    CHECK_FALSE(source);
}

TEST_CASE("a HEIF whose header claims more than its picture holds gives no picture")
{
    auto file = writeHeif(sampleColors({ 40, 30 }));
    auto const at = positionOf(file, "ispe");
    REQUIRE(at < file.size());
    file[at + 11] = 60;
    auto const source = opened(std::move(file));
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 60, 30 });
    CHECK_FALSE(source->decodeWhole());
}
