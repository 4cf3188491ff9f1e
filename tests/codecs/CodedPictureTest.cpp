#include "codecs/CodecSupport.h"
#include "codecs/ColorConversion.h"
#include "support/MemoryBytes.h"
#include <doctest/doctest.h>
#include <lcms2.h>
#include <memory>

using namespace pixelhain;

namespace {

constexpr PixelSize usual { 203, 121 };

FileBytes turned(int orientation, FileBytes thumbnail = {})
{
    ExifOptions exif;
    exif.orientation = orientation;
    exif.thumbnail = std::move(thumbnail);
    return exifBlock(exif);
}

CodedJpeg codedPicture(JpegOptions const& options, int maxPixel = 300)
{
    auto const source = opened(writeJpeg(sampleColors(usual), options));
    REQUIRE(source);
    return source->codedPicture(maxPixel);
}

FileBytes wideProfile()
{
    return makeProfile({ { 0.3127, 0.329 }, { 0.64, 0.33 }, { 0.21, 0.71 }, { 0.15, 0.06 } }, 2.2);
}

FileBytes srgbProfile()
{
    std::unique_ptr<void, decltype(&cmsCloseProfile)> const profile(
        cmsCreate_sRGBProfile(), cmsCloseProfile);
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile.get(), nullptr, &length);
    FileBytes bytes(length);
    cmsSaveProfileToMem(profile.get(), bytes.data(), &length);
    return bytes;
}

} // namespace

TEST_CASE("a small JPEG comes as it is, and decodes to the same picture")
{
    JpegOptions options;
    options.exif = turned(1);
    auto const coded = codedPicture(options);
    REQUIRE(coded);
    CHECK(coded.size == usual);
    auto const source = opened(*coded.bytes);
    REQUIRE(source);
    auto const image = source->decode(300);
    auto const wanted = opened(writeJpeg(sampleColors(usual), options))->decode(300);
    REQUIRE(image);
    REQUIRE(wanted);
    for (int y = 0; y < usual.height; ++y)
        REQUIRE(std::equal(
            image->bitmap.row(y), image->bitmap.row(y) + usual.width * 4, wanted->bitmap.row(y)));
}

TEST_CASE("a JPEG that must be turned, reduced or recoloured does not come as it is")
{
    JpegOptions options;
    int maxPixel = 300;
    SUBCASE("turned")
    {
        options.exif = turned(6);
    }
    SUBCASE("mirrored")
    {
        options.exif = turned(2);
    }
    SUBCASE("too large")
    {
        maxPixel = 202;
    }
    SUBCASE("with wide colours")
    {
        options.profile = wideProfile();
    }
    SUBCASE("grey with a profile")
    {
        options.color = JpegOptions::Color::grey;
        options.profile = wideProfile();
    }
    SUBCASE("CMYK")
    {
        options.color = JpegOptions::Color::cmyk;
    }
    CHECK_FALSE(codedPicture(options, maxPixel));
}

TEST_CASE("a profile that says sRGB is no reason to code a JPEG anew")
{
    JpegOptions options;
    options.profile = srgbProfile();
    CHECK(codedPicture(options));
}

TEST_CASE("a JPEG whose coded pixels are damaged does not come as it is")
{
    auto const whole = writeJpeg(sampleColors(usual));
    auto const reports = [](FileBytes const& file) {
        auto const source = opened(file);
        return source && source->codedPicture(300);
    };
    REQUIRE(reports(whole));
    auto cut = whole; // its last rows are missing, but it has an end
    cut.erase(cut.end() - 300, cut.end() - 2);
    CHECK_FALSE(reports(cut));
    auto without = whole;
    without.resize(without.size() - 2);
    CHECK_FALSE(reports(without));
}

TEST_CASE("an upright thumbnail of the picture's shape comes as it is")
{
    auto const thumbnail = writeJpeg(sampleColors({ 160, 120 }));
    JpegOptions options;
    options.exif = turned(1, thumbnail);
    auto const source = opened(writeJpeg(sampleColors({ 1600, 1200 }), options));
    REQUIRE(source);
    REQUIRE(source->previews().size() == 1);
    auto const coded = source->codedPreview(0, 170);
    REQUIRE(coded);
    CHECK(coded.size == PixelSize { 160, 120 });
    CHECK_FALSE(source->codedPreview(0, 159));
    CHECK_FALSE(source->codedPreview(1, 170));
}

TEST_CASE("a thumbnail with bars, turned, or under the picture's profile does not come as it is")
{
    auto pixels = RgbaPixels::filled({ 160, 120 }, 0x000000FF);
    auto const inner = sampleColors({ 160, 106 });
    for (int y = 0; y < 106; ++y)
        std::copy_n(inner.at(0, y), 160 * 4, pixels.at(0, y + 7));
    auto const straight = writeJpeg(sampleColors({ 160, 120 }));
    JpegOptions options;
    PixelSize picture { 1600, 1200 };
    SUBCASE("bars")
    {
        options.exif = turned(1, writeJpeg(pixels));
        picture = { 1500, 1000 };
    }
    SUBCASE("turned")
    {
        options.exif = turned(8, straight);
    }
    SUBCASE("profile")
    {
        options.exif = turned(1, straight);
        options.profile = wideProfile();
    }
    auto const source = opened(writeJpeg(sampleColors(picture), options));
    REQUIRE(source);
    REQUIRE(source->previews().size() == 1);
    CHECK_FALSE(source->codedPreview(0, 200));
}

TEST_CASE("what is no JPEG has no coded picture")
{
    auto const source = opened(writePng(sampleColors(usual)));
    REQUIRE(source);
    CHECK_FALSE(source->codedPicture(300));
}

TEST_CASE("a JPEG of 50 MB is not read for a thumbnail of it")
{
    auto file = writeJpeg(sampleColors({ 1600, 1200 }));
    file.resize(std::size_t { 50 } << 20U, 0);
    MemoryBytes::Reads reads;
    auto const source = opened(std::move(file), &reads);
    REQUIRE(source);
    auto const opening = reads.bytes;
    CHECK_FALSE(source->codedPicture(300));
    CHECK(reads.bytes - opening < 10'000);
    CHECK(reads.bytes < 300'000);
}
