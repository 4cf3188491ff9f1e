#include "images/InfoLines.h"
#include "support/FakeImageDecoder.h"
#include "support/FakeTextFormats.h"
#include <doctest/doctest.h>
#include <limits>

using namespace pixelhain;

namespace {

using Lines = std::vector<std::string>;

PhotoItem const item { FileUrl("/photos/IMG_1.jpg"), Timestamp(std::chrono::seconds(1000)), 52 };

Lines linesOf(PhotoProperties const& properties)
{
    return infoLines(item, properties, FakeTextFormats());
}

// The lines behind the three that every file has.
Lines more(PhotoProperties const& properties)
{
    auto lines = linesOf(properties);
    REQUIRE(lines.size() >= 3);
    CHECK(lines[0] == "IMG_1.jpg");
    CHECK(lines[1] == "52 B");
    CHECK(lines[2] == "Geändert: second 1000");
    lines.erase(lines.begin(), lines.begin() + 3);
    return lines;
}

Lines camera(char const* make, char const* model)
{
    PhotoProperties properties;
    properties.make = make;
    properties.model = model;
    return more(properties);
}

Lines exposed(double seconds)
{
    PhotoProperties properties;
    properties.exposureTime = seconds;
    return more(properties);
}

} // namespace

TEST_CASE("a photo with everything has six lines")
{
    PhotoProperties properties;
    properties.pixelSize = PixelSize { 4000, 3000 };
    properties.dateTimeOriginal = "2023:05:17 14:30:12";
    properties.make = "Canon";
    properties.model = "Canon EOS R5";
    properties.lensModel = "RF50mm F1.8 STM";
    properties.focalLength = 50;
    properties.fNumber = 1.8;
    properties.exposureTime = 0.004;
    properties.isoSpeedRatings = { 200, 400 };
    CHECK(linesOf(properties)
        == Lines { "IMG_1.jpg", "4000 × 3000 px (12.0 MP) · 52 B",
            "Aufgenommen: 2023:05:17 14:30:12", "Canon EOS R5", "RF50mm F1.8 STM",
            "50 mm · f/1.8 · 1/250 s · ISO 200" });
}

TEST_CASE("a file without properties has its name, its size and its date")
{
    Lines const three { "IMG_1.jpg", "52 B", "Geändert: second 1000" };
    CHECK(infoLines(item, std::nullopt, FakeTextFormats()) == three);
    CHECK(linesOf({}) == three);
}

TEST_CASE("what the disk has not told of a file is not shown, an empty file is")
{
    PhotoItem file { item.url, distantPast, PhotoItem::notYetKnown };
    CHECK(infoLines(file, std::nullopt, FakeTextFormats()) == Lines { "IMG_1.jpg" });
    file = { item.url, item.date, 0 };
    CHECK(infoLines(file, std::nullopt, FakeTextFormats())
        == Lines { "IMG_1.jpg", "0 B", "Geändert: second 1000" });
}

TEST_CASE("megapixels have one decimal")
{
    auto const second = [](PixelSize size) {
        PhotoProperties properties;
        properties.pixelSize = size;
        return linesOf(properties).at(1);
    };
    CHECK(second({ 6000, 4000 }) == "6000 × 4000 px (24.0 MP) · 52 B");
    CHECK(second({ 1, 1 }) == "1 × 1 px (0.0 MP) · 52 B");
    CHECK(second({ 65535, 65535 }) == "65535 × 65535 px (4294.8 MP) · 52 B");
}

TEST_CASE("a picture without EXIF has a resolution and the date of its file")
{
    PhotoProperties properties;
    properties.pixelSize = PixelSize { 640, 480 };
    CHECK(linesOf(properties)
        == Lines { "IMG_1.jpg", "640 × 480 px (0.3 MP) · 52 B", "Geändert: second 1000" });
}

TEST_CASE("the date of the shot is shown as it is stored, even if malformed")
{
    for (auto const* const text : { "2023:05:17 14:30:12", "0000:00:00 00:00:00", "gestern", "" }) {
        PhotoProperties properties;
        properties.dateTimeOriginal = text;
        CHECK(linesOf(properties).at(2) == std::string("Aufgenommen: ") + text);
    }
}

TEST_CASE("a date that the file system does not know is not shown")
{
    PhotoItem const undated { FileUrl("/a.png"), distantPast, 0 };
    CHECK(infoLines(undated, std::nullopt, FakeTextFormats()) == Lines { "a.png", "0 B" });
}

TEST_CASE("a make in front of the model is not said twice")
{
    CHECK(camera("Canon", "Canon EOS R5") == Lines { "Canon EOS R5" });
    CHECK(camera("NIKON CORPORATION", "NIKON Z 6") == Lines { "NIKON CORPORATION NIKON Z 6" });
    CHECK(camera("Apple", "iPhone 12") == Lines { "Apple iPhone 12" });
    CHECK(camera("SONY", "sony ILCE-7M3") == Lines { "SONY ILCE-7M3" });
    CHECK(camera("Canon", "canon") == Lines { "Canon" });
    CHECK(camera("", "EOS R5") == Lines { "EOS R5" });
    CHECK(camera("Canon", "") == Lines { "Canon" });
}

TEST_CASE("make and model lose the white space at their ends")
{
    CHECK(camera(" \t\nCanon\r\n", "  Canon   EOS R5  ") == Lines { "Canon EOS R5" });
    CHECK(camera("\u00A0\u3000Leica\u2028", "\u202FM10 \u00A0Q\u2009")
        == Lines { "Leica M10 \u00A0Q" });
    CHECK(camera("  ", " \u00A0 ") == Lines {});
    CHECK(camera("Zenza à", "à") == Lines { "Zenza à à" });
}

TEST_CASE("a camera may state its make or its model only")
{
    PhotoProperties properties;
    properties.model = "Pixel 6";
    CHECK(more(properties) == Lines { "Pixel 6" });
    properties.model.reset();
    properties.make = "Google";
    CHECK(more(properties) == Lines { "Google" });
}

TEST_CASE("the lens is the one of EXIF, else the one that stands elsewhere")
{
    PhotoProperties properties;
    properties.auxLensModel = "18-55mm";
    CHECK(more(properties) == Lines { "18-55mm" });
    properties.lensModel = "RF50mm F1.8 STM";
    CHECK(more(properties) == Lines { "RF50mm F1.8 STM" });
    properties.lensModel = "";
    CHECK(more(properties) == Lines {});
}

TEST_CASE("the shutter time is a fraction below a second")
{
    CHECK(exposed(1) == Lines { "1.0 s" });
    CHECK(exposed(2) == Lines { "2.0 s" });
    CHECK(exposed(30.04) == Lines { "30.0 s" });
    CHECK(exposed(0.5) == Lines { "1/2 s" });
    CHECK(exposed(0.004) == Lines { "1/250 s" });
    CHECK(exposed(0.3) == Lines { "1/3 s" });
    CHECK(exposed(0.4) == Lines { "1/3 s" }); // halves away from zero
    CHECK(exposed(0.999) == Lines { "1/1 s" });
    CHECK(exposed(1.0 / 32000) == Lines { "1/32000 s" });
}

TEST_CASE("a shutter time that is not positive is left out")
{
    CHECK(exposed(0) == Lines {});
    CHECK(exposed(-1) == Lines {});
    CHECK(exposed(std::numeric_limits<double>::quiet_NaN()) == Lines {});
}

TEST_CASE("focal length and aperture are shown even when they are zero")
{
    PhotoProperties properties;
    properties.focalLength = 0;
    properties.fNumber = 0;
    CHECK(more(properties) == Lines { "0 mm · f/0.0" });
    properties.focalLength = 23.5;
    properties.fNumber = 16;
    CHECK(more(properties) == Lines { "24 mm · f/16.0" });
}

TEST_CASE("ISO may stand alone")
{
    PhotoProperties properties;
    properties.isoSpeedRatings = { 100 };
    CHECK(more(properties) == Lines { "ISO 100" });
}

TEST_CASE("numbers out of all proportion harm nothing")
{
    PhotoProperties properties;
    properties.focalLength = std::numeric_limits<double>::max();
    properties.exposureTime = 1e-300;
    properties.isoSpeedRatings = { 4294967295 };
    auto const lines = more(properties);
    REQUIRE(lines.size() == 1);
    CHECK(lines.front().size() > 600);
    CHECK(lines.front().ends_with(" s · ISO 4294967295"));
}

TEST_CASE("a name that is not UTF-8 is shown with replacement characters")
{
    PhotoItem const odd { FileUrl("/gr\xFC\xDF.jpg"), distantPast, 1 };
    CHECK(infoLines(odd, std::nullopt, FakeTextFormats()).front() == "gr\uFFFD\uFFFD.jpg");
}

TEST_CASE("the lines of a file are those of what its decoder reads")
{
    FakeImageDecoder decoder;
    FakeImageDecoder::File file;
    file.properties.emplace();
    file.properties->model = "Pixel 6";
    decoder.put(item.url, file);
    CHECK(infoLines(item, decoder, FakeTextFormats())
        == Lines { "IMG_1.jpg", "52 B", "Geändert: second 1000", "Pixel 6" });
    CHECK(decoder.propertyReads() == std::vector { item.url });
    PhotoItem const missing { FileUrl("/photos/gone.jpg"), item.date, 7 };
    CHECK(infoLines(missing, decoder, FakeTextFormats())
        == Lines { "gone.jpg", "7 B", "Geändert: second 1000" });
}
