#include "codecs/CodecSupport.h"
#include "codecs/ColorConversion.h"
#include "support/PlainWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

constexpr PixelSize size { 75, 41 };

std::optional<DecodedImage> whole(FileBytes bytes)
{
    auto const source = opened(std::move(bytes));
    return source ? source->decodeWhole() : std::nullopt;
}

/// Opens a file of these pixels in every way: its type, its size, whole and reduced.
void checkPicture(
    FileBytes const& bytes, std::string_view type, RgbaPixels const& wanted, double tolerance)
{
    auto const source = opened(bytes);
    REQUIRE(source);
    CHECK(source->typeIdentifier() == type);
    CHECK(source->pixelSize() == wanted.size);
    auto const image = source->decode(0);
    REQUIRE(image);
    CHECK(image->bitmap.size == wanted.size);
    CHECK(meanDifference(image->bitmap, wanted) <= tolerance);
    auto const small = source->decode(30);
    REQUIRE(small);
    CHECK(small->bitmap.size == PixelSize { 30, 16 });
    CHECK(meanDifference(small->bitmap, wanted) <= tolerance + 8);
}

/// The rows of a picture that a file cut to `share` of its length still shows.
int rowsLeft(FileBytes bytes, double share)
{
    bytes.resize(static_cast<std::size_t>(static_cast<double>(bytes.size()) * share));
    auto const image = whole(std::move(bytes));
    if (!image)
        return 0;
    int rows = 0;
    for (int y = 0; y < image->bitmap.size.height; ++y)
        rows += pixelAt(image->bitmap, 3, y)[3] != 0 ? 1 : 0;
    return rows;
}

} // namespace

TEST_CASE("QOI pictures come out to the byte")
{
    checkPicture(writeQoi(sampleWithAlpha(size)), "org.qoiformat.qoi", sampleWithAlpha(size), 1);
    checkPicture(
        writeQoi(sampleColors(size), { false }), "org.qoiformat.qoi", sampleColors(size), 0.001);
    auto const uniform = RgbaPixels::filled({ 300, 10 }, 0x336699FF);
    auto const image = whole(writeQoi(uniform));
    REQUIRE(image);
    CHECK(image->bitmap.isOpaque);
    CHECK(meanDifference(image->bitmap, uniform) == 0);
}

TEST_CASE("linear QOI pictures get sRGB's curve")
{
    auto const image = whole(writeQoi(RgbaPixels::filled({ 4, 4 }, 0x808080FF), { false, true }));
    REQUIRE(image);
    CHECK(std::abs(pixelAt(image->bitmap, 1, 1)[1] - 188) <= 1); // 0.502 of the light
}

TEST_CASE("anymaps of every kind and depth come out")
{
    struct Case {
        char kind;
        int most;
        double tolerance;
    };
    for (auto const& it : { Case { '3', 255, 0.001 }, Case { '6', 255, 0.001 },
             Case { '6', 65535, 0.001 }, Case { '6', 31, 3 }, Case { '3', 1023, 0.3 } }) {
        CAPTURE(it.kind);
        CAPTURE(it.most);
        checkPicture(writePnm(sampleColors(size), { it.kind, it.most }), "public.pbm",
            sampleColors(size), it.tolerance);
    }
    checkPicture(
        writePnm(sampleWithAlpha(size), { '7', 255 }), "public.pbm", sampleWithAlpha(size), 1);
    auto grey = sampleColors(size);
    for (std::size_t at = 0; at < grey.rgba.size(); at += 4)
        grey.rgba[at + 1] = grey.rgba[at + 2] = grey.rgba[at];
    checkPicture(writePnm(grey, { '2', 255 }), "public.pbm", grey, 1);
    checkPicture(writePnm(grey, { '5', 255 }), "public.pbm", grey, 1);
}

TEST_CASE("in a bitmap of one bit 1 is black, with and without blanks between the digits")
{
    for (auto const kind : { '1', '4' }) {
        CAPTURE(kind);
        auto const image = whole(writePnm(sampleColors({ 33, 20 }), { kind, 1 }));
        REQUIRE(image);
        CHECK(pixelAt(image->bitmap, 1, 1)[0] == 0);
        CHECK(pixelAt(image->bitmap, 32, 19)[0] == 255);
    }
    std::string const blanks = "P1 2 1\n0 # white\n 1";
    auto const image = whole({ blanks.begin(), blanks.end() });
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 0, 0)[0] == 255);
    CHECK(pixelAt(image->bitmap, 1, 0)[0] == 0);
}

TEST_CASE("anymaps whose header makes no sense are refused")
{
    for (std::string const text : { "P6\n0 5\n255\n", "P6\n5 5\n0\n1234", "P6\n5 5\n65536\n1234",
             "P6\n-5 5\n255\n1234", "P6\n99999999999 5\n255\n1", "P7\nWIDTH 3\nENDHDR\n",
             "P7\nWIDTH 3\nHEIGHT 3\nDEPTH 9\nMAXVAL 255\nENDHDR\nxxxx", "P6", "P6\n",
             "P5 # no end", "P8\n3 3\n255\n000000000" }) {
        CAPTURE(text);
        auto const source = opened({ text.begin(), text.end() });
        CHECK((!source || !source->decode(10)));
    }
}

TEST_CASE("TGAs of every kind come out, from whichever corner they begin")
{
    using Kind = TgaOptions::Kind;
    struct Case {
        Kind kind;
        double tolerance;
    };
    for (auto const& it :
        { Case { Kind::color24, 0.001 }, Case { Kind::color15, 5 }, Case { Kind::palette, 20 } }) {
        for (auto const hasRuns : { false, true }) {
            for (auto const isTopDown : { false, true }) {
                for (auto const isRightToLeft : { false, true }) {
                    CAPTURE(int(it.kind));
                    CAPTURE(hasRuns);
                    CAPTURE(isTopDown);
                    CAPTURE(isRightToLeft);
                    checkPicture(writeTga(sampleColors(size),
                                     { it.kind, hasRuns, isTopDown, isRightToLeft }),
                        "com.truevision.tga-image", sampleColors(size), it.tolerance);
                }
            }
        }
    }
    checkPicture(writeTga(sampleWithAlpha(size), { Kind::color32, true }),
        "com.truevision.tga-image", sampleWithAlpha(size), 1);
}

TEST_CASE("a palette TGA counts as indexed, one of grey does not")
{
    auto const palette = whole(writeTga(sampleColors(size), { TgaOptions::Kind::palette }));
    REQUIRE(palette);
    CHECK(palette->isIndexed);
    auto const grey = whole(writeTga(sampleColors(size), { TgaOptions::Kind::grey }));
    REQUIRE(grey);
    CHECK_FALSE(grey->isIndexed);
}

TEST_CASE("bytes that only resemble a TGA are no picture")
{
    auto const file = writeTga(sampleColors({ 8, 8 }));
    struct Change {
        std::size_t at;
        std::uint8_t value;
    };
    for (auto const& change : { Change { 1, 7 }, Change { 2, 0 }, Change { 2, 32 },
             Change { 12, 0 }, Change { 16, 7 }, Change { 17, 0xC0 } }) {
        CAPTURE(change.at);
        auto changed = file;
        changed[change.at] = change.value;
        CHECK_FALSE(opened(std::move(changed)));
    }
    CHECK_FALSE(opened(FileBytes(4096, 0)));
    CHECK_FALSE(opened(FileBytes(file.begin(), file.begin() + 20)));
}

TEST_CASE("an icon shows its largest picture, with its mask or its alpha")
{
    using Kind = IcoPicture::Kind;
    auto const large = sampleWithAlpha({ 48, 32 });
    auto const little = RgbaPixels::filled({ 16, 16 }, 0xFF0000FF);
    for (auto const kind : { Kind::masked24, Kind::color32, Kind::png }) {
        CAPTURE(int(kind));
        auto const source = opened(writeIco({ { little, Kind::color32 }, { large, kind } }));
        REQUIRE(source);
        CHECK(source->typeIdentifier() == "com.microsoft.ico");
        CHECK(source->frameCount() == 2);
        CHECK(source->pixelSize() == large.size);
        auto const image = source->decodeWhole();
        REQUIRE(image);
        CHECK_FALSE(image->bitmap.isOpaque);
        CHECK(pixelAt(image->bitmap, 47, 0)[3] == 0);
        CHECK(pixelAt(image->bitmap, 0, 31)[3] == 255);
        if (kind != Kind::masked24)
            CHECK(meanDifference(image->bitmap, large) <= 1);
        auto const small = source->decode(24);
        REQUIRE(small);
        CHECK(small->bitmap.size == PixelSize { 24, 16 });
    }
}

TEST_CASE("an icon of 32 bits whose fourth bytes are all empty has a mask")
{
    auto pixels = sampleColors({ 16, 16 });
    for (std::size_t at = 3; at < pixels.rgba.size(); at += 4)
        pixels.rgba[at] = 0;
    auto file = writeIco({ { pixels, IcoPicture::Kind::color32 } });
    // Of the mask, which says "clear" everywhere, the last row of the file shows the top.
    std::fill(file.end() - 4, file.end(), std::uint8_t { 0 });
    auto const image = whole(file);
    REQUIRE(image);
    CHECK(pixelAt(image->bitmap, 5, 0)[3] == 255);
    CHECK(pixelAt(image->bitmap, 5, 1)[3] == 0);
}

TEST_CASE("an icon whose largest picture is broken shows the next")
{
    auto file = writeIco({ { sampleColors({ 16, 16 }), IcoPicture::Kind::color32 },
        { sampleColors({ 48, 48 }), IcoPicture::Kind::color32 } });
    auto const second = std::size_t { 6 + 32 + 40 + 16 * 16 * 4 + 16 * 4 };
    file[second] = 99; // the length of its header
    auto const source = opened(std::move(file));
    REQUIRE(source);
    CHECK(source->pixelSize() == PixelSize { 16, 16 });
}

TEST_CASE("cut files keep the rows that came")
{
    auto const pixels = sampleColors({ 60, 60 });
    for (auto const& bytes :
        { writeQoi(pixels), writePnm(pixels), writeTga(pixels), writeRadiance(pixels) }) {
        auto const rows = rowsLeft(bytes, 0.5);
        CHECK(rows > 15);
        CHECK(rows < 45);
        CHECK(rowsLeft(bytes, 1.0) == 60);
    }
}

TEST_CASE("pictures with absurd sides are refused before memory is taken")
{
    auto qoi = writeQoi(sampleColors({ 8, 8 }));
    qoi[4] = 0x7F;
    CHECK_FALSE(opened(qoi));
    std::string const pnm = "P6\n65535 65535\n255\nx";
    auto const source = opened({ pnm.begin(), pnm.end() });
    CHECK((!source || !source->decode(100)));
    std::string const radiance = "#?RADIANCE\n\n-Y 65535 +X 65535\n....";
    CHECK_FALSE(opened({ radiance.begin(), radiance.end() }));
}
