#include "base/Orientation.h"
#include "base/Resample.h"
#include "codecs/CodecSupport.h"
#include "support/RawWriters.h"
#include <doctest/doctest.h>

using namespace pixelhain;

namespace {

constexpr PixelSize sensor { 600, 400 };
constexpr PixelSize smallSize { 150, 100 };
constexpr PixelSize largeSize { 480, 320 };

std::vector<RawKind> allKinds()
{
    std::vector<RawKind> kinds;
    for (int i = 0; i < rawKinds; ++i)
        kinds.push_back(static_cast<RawKind>(i));
    return kinds;
}

bool hasPlainThumbnail(RawKind kind)
{
    return kind == RawKind::dng || kind == RawKind::hasselblad || kind == RawKind::phaseOne
        || kind == RawKind::kdc || kind == RawKind::erf || kind == RawKind::x3f;
}

// Some keep one picture only.
bool hasSmallOne(RawKind kind)
{
    return kind != RawKind::nef && kind != RawKind::raf && kind != RawKind::rw2
        && kind != RawKind::srw && kind != RawKind::mrw && kind != RawKind::mos;
}

// In these the JPEG alone says how the camera was held.
bool statesOrientation(RawKind kind)
{
    return kind != RawKind::raf;
}

RawOptions filled(RawKind kind)
{
    RawOptions options;
    options.sensor = sensor;
    if (hasPlainThumbnail(kind))
        options.plain = sampleColors(smallSize);
    else
        options.small = writeJpeg(sampleColors(smallSize));
    options.large = writeJpeg(sampleColors(largeSize));
    return options;
}

std::vector<PixelSize> wantedSizes(RawKind kind)
{
    if (!hasSmallOne(kind))
        return { largeSize };
    return { smallSize, largeSize };
}

} // namespace

TEST_CASE("the finished pictures in RAW files of every kind are found")
{
    for (auto const kind : allKinds()) {
        CAPTURE(nameOf(kind));
        auto const source = opened(writeRaw(kind, filled(kind)));
        REQUIRE(source);
        CHECK(source->pixelSize() == sensor);
        CHECK(source->orientation() == 1);
        CHECK(source->typeIdentifier()
            == (kind == RawKind::dng ? "com.adobe.raw-image" : "public.camera-raw-image"));
        REQUIRE(source->previews() == wantedSizes(kind));
        for (std::size_t i = 0; i < wantedSizes(kind).size(); ++i) {
            auto const image = source->decodePreview(i, 0);
            REQUIRE(image);
            CHECK(image->bitmap.size == wantedSizes(kind)[i]);
            CHECK(meanDifference(image->bitmap, sampleColors(image->bitmap.size)) < 6);
        }
        auto const reduced = source->decodePreview(wantedSizes(kind).size() - 1, 96);
        REQUIRE(reduced);
        CHECK(reduced->bitmap.size == PixelSize { 96, 64 });
    }
}

TEST_CASE("a RAW picture is the largest finished one if that is as large as is wanted")
{
    for (auto const kind : allKinds()) {
        CAPTURE(nameOf(kind));
        auto const source = opened(writeRaw(kind, filled(kind)));
        REQUIRE(source);
        for (auto const wanted : { 100, 300, 480 }) {
            auto const image = source->decode(wanted);
            REQUIRE(image);
            CHECK(image->bitmap.size.longestSide() == wanted);
            CHECK(meanDifference(image->bitmap, sampleColors(image->bitmap.size)) < 6);
        }
    }
}

TEST_CASE("a RAW file says how its finished pictures are turned unless they say it themselves")
{
    for (auto const kind : allKinds()) {
        if (!statesOrientation(kind))
            continue;
        CAPTURE(nameOf(kind));
        auto options = filled(kind);
        options.orientation = 6;
        auto const source = opened(writeRaw(kind, options));
        REQUIRE(source);
        CHECK(source->orientation() == 6);
        CHECK(source->pixelSize() == sensor);
        CHECK(source->previews().back() == largeSize.turned());
        auto const image = source->decode(320);
        REQUIRE(image);
        CHECK(image->bitmap.size.height == 320);
        // What was at the left is at the top.
        CHECK(pixelAt(image->bitmap, 100, 300)[2] > 180);
        CHECK(pixelAt(image->bitmap, 100, 20)[2] < 80);
    }
}

TEST_CASE("a preview's own orientation counts for more than its file's")
{
    auto options = filled(RawKind::arw);
    options.orientation = 8;
    JpegOptions jpeg;
    jpeg.exif = exifBlock({ 6, {}, "", "", "", false });
    options.large = writeJpeg(sampleColors(largeSize), jpeg);
    auto const source = opened(writeRaw(RawKind::arw, options));
    REQUIRE(source);
    auto const image = source->decodePreview(1, 0);
    REQUIRE(image);
    CHECK(image->bitmap.size == largeSize.turned());
    CHECK(pixelAt(image->bitmap, 100, 460)[2] > 180);
}

TEST_CASE("a preview that is upright already is not turned with its file")
{
    auto options = filled(RawKind::arw);
    options.orientation = 6;
    options.large = writeJpeg(sampleColors(largeSize.turned()));
    auto const source = opened(writeRaw(RawKind::arw, options));
    REQUIRE(source);
    auto const image = source->decodePreview(1, 0);
    REQUIRE(image);
    CHECK(image->bitmap.size == largeSize.turned());
    CHECK(meanDifference(image->bitmap, sampleColors(largeSize.turned())) < 6);
}

TEST_CASE("the orientation of a RAF is that of the JPEG in it")
{
    auto options = filled(RawKind::raf);
    JpegOptions jpeg;
    jpeg.exif = exifBlock({ 6, writeJpeg(sampleColors(smallSize)), "", "", "", true });
    options.large = writeJpeg(sampleColors(largeSize), jpeg);
    auto const source = opened(writeRaw(RawKind::raf, options));
    REQUIRE(source);
    CHECK(source->orientation() == 6);
    // With the thumbnail in the JPEG's own EXIF block.
    CHECK(source->previews() == std::vector<PixelSize> { smallSize.turned(), largeSize.turned() });
}

TEST_CASE("a preview of another shape, a lossless one and one behind the end do not count")
{
    auto options = filled(RawKind::arw);
    options.small = writeJpeg(sampleColors({ 160, 160 }));
    auto const source = opened(writeRaw(RawKind::arw, options));
    REQUIRE(source);
    CHECK(source->previews() == std::vector<PixelSize> { largeSize });

    options = filled(RawKind::arw);
    auto const frame = std::search(options.large.begin(), options.large.end(),
        std::begin("\xFF\xC0"), std::begin("\xFF\xC0") + 2,
        [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
    REQUIRE(frame != options.large.end());
    frame[1] = 0xC3;
    auto const lossless = opened(writeRaw(RawKind::arw, options));
    REQUIRE(lossless);
    CHECK(lossless->previews() == std::vector<PixelSize> { smallSize });

    auto whole = writeRaw(RawKind::arw, filled(RawKind::arw));
    whole.resize(0x28000 + 100);
    auto const cut = opened(whole);
    REQUIRE(cut);
    CHECK(cut->previews() == std::vector<PixelSize> { smallSize });
}

TEST_CASE("a preview of another shape is shown if there is nothing else")
{
    auto options = filled(RawKind::srf);
    options.small.clear();
    options.large = writeJpeg(sampleColors({ 200, 200 }));
    auto const source = opened(writeRaw(RawKind::srf, options));
    REQUIRE(source);
    CHECK(source->previews().empty());
    auto const image = source->decode(100);
    REQUIRE(image);
    CHECK(image->bitmap.size == PixelSize { 100, 100 });
}

TEST_CASE("the black bars of RAW thumbnails are left out")
{
    auto framed = RgbaPixels::filled({ 160, 120 }, 0x000000FF);
    auto const picture = sampleColors({ 160, 106 });
    std::copy(picture.rgba.begin(), picture.rgba.end(), framed.at(0, 7));
    auto jpeg = filled(RawKind::arw);
    jpeg.small = writeJpeg(framed);
    auto plain = filled(RawKind::dng);
    plain.plain = framed;
    for (auto const& file : { writeRaw(RawKind::arw, jpeg), writeRaw(RawKind::dng, plain) }) {
        auto const source = opened(file);
        REQUIRE(source);
        REQUIRE(source->previews().front() == PixelSize { 160, 106 });
        CAPTURE(source->typeIdentifier());
        auto const image = source->decodePreview(0, 80);
        REQUIRE(image);
        CHECK(image->bitmap.size == PixelSize { 80, 53 });
        CHECK(meanDifference(image->bitmap, picture) < 6);
    }
}

TEST_CASE("Adobe RGB is brought to sRGB where a RAW file or its preview names it")
{
    for (auto const kind : { RawKind::arw, RawKind::nef, RawKind::cr3, RawKind::dng }) {
        CAPTURE(nameOf(kind));
        auto options = filled(kind);
        options.large = writeJpeg(RgbaPixels::filled(largeSize, 0x60C060FF));
        auto const inSrgb = opened(writeRaw(kind, options));
        options.isAdobeRgb = true;
        auto const inAdobe = opened(writeRaw(kind, options));
        REQUIRE(inSrgb);
        REQUIRE(inAdobe);
        auto const narrow = inSrgb->decode(300);
        auto const wide = inAdobe->decode(300);
        REQUIRE(narrow);
        REQUIRE(wide);
        CHECK(std::abs(pixelAt(narrow->bitmap, 9, 9)[2] - 0x60) <= 3);
        // The same numbers are a stronger green there: less red in sRGB.
        CHECK(pixelAt(wide->bitmap, 9, 9)[2] < 0x30);
    }
}

TEST_CASE("finding the previews of a large RAW file takes a few kilobytes")
{
    constexpr std::size_t large = std::size_t { 12 } << 20;
    for (auto const kind : allKinds()) {
        CAPTURE(nameOf(kind));
        auto options = filled(kind);
        options.fileBytes = large;
        MemoryBytes::Reads reads;
        auto const source = opened(writeRaw(kind, options), &reads);
        REQUIRE(source);
        CHECK(source->previews() == wantedSizes(kind));
        CHECK(reads.bytes < 32 << 10);
        CHECK(reads.calls < 100);
    }
}

TEST_CASE(
    "sensor data are developed upright, in their colours and at half the size if that will do")
{
    constexpr PixelSize size { 192, 128 };
    for (auto const orientation : { 1, 6 }) {
        auto const source = opened(writeSensorDng(sampleColors(size), { orientation, {}, {} }));
        REQUIRE(source);
        CHECK(source->pixelSize() == size);
        CHECK(source->previews().empty());
        auto const whole = source->decode(192);
        REQUIRE(whole);
        CHECK(whole->bitmap.size == uprightSize(size, orientation));
        CHECK_FALSE(whole->wasReduced);
        auto const half = source->decode(96);
        REQUIRE(half);
        CHECK(half->bitmap.size == uprightSize({ 96, 64 }, orientation));
        CHECK(half->wasReduced);
        CHECK(meanDifference(resampled(whole->bitmap, half->bitmap.size), half->bitmap) < 8);
        // Red rises to the right of the stored picture, blue is at its top left.
        auto const right
            = orientation == 1 ? pixelAt(half->bitmap, 90, 48) : pixelAt(half->bitmap, 16, 90);
        CHECK(right[2] > 180);
        CHECK(right[0] < 120);
        auto const corner
            = orientation == 1 ? pixelAt(half->bitmap, 8, 8) : pixelAt(half->bitmap, 56, 8);
        CHECK(corner[0] > corner[2] + 80);
        auto const stored = source->decodeWhole();
        REQUIRE(stored);
        CHECK(stored->bitmap.size == size);
    }
}

TEST_CASE("a finished picture is used for nine tenths of the sensor's size, not for less")
{
    // Nothing can be developed here, so a picture tells that a finished one was enough.
    for (auto const wanted : { 480, 600 }) {
        auto const source = opened(writeRaw(RawKind::arw, filled(RawKind::arw)));
        REQUIRE(source);
        auto const image = source->decode(wanted);
        REQUIRE(image);
        CHECK(image->bitmap.size == largeSize);
    }
}

TEST_CASE("a part that was chosen in the camera is the picture if the finished one shows it too")
{
    constexpr PixelSize wide { 600, 338 };
    for (auto const kind : { RawKind::arw, RawKind::orf, RawKind::raf }) {
        CAPTURE(nameOf(kind));
        auto options = filled(kind);
        options.shown = wide;
        auto const ignored = opened(writeRaw(kind, options));
        REQUIRE(ignored);
        CHECK(ignored->pixelSize() == sensor);
        CHECK(ignored->previews().back() == largeSize);

        options.large = writeJpeg(sampleColors({ 480, 270 }));
        auto const shown = opened(writeRaw(kind, options));
        REQUIRE(shown);
        CHECK(shown->pixelSize() == wide);
        CHECK(shown->previews().back() == PixelSize { 480, 270 });
    }
}

TEST_CASE("of developed sensor data the chosen part is kept")
{
    constexpr PixelSize size { 192, 128 };
    constexpr PixelSize crop { 96, 96 };
    SensorDngOptions options;
    options.crop = crop;
    options.preview = writeJpeg(sampleColors({ 32, 32 }));
    auto const source = opened(writeSensorDng(sampleColors(size), options));
    REQUIRE(source);
    CHECK(source->pixelSize() == crop);
    auto const part = source->decode(96);
    REQUIRE(part);
    CHECK(part->bitmap.size == crop);
    auto const all = opened(writeSensorDng(sampleColors(size)))->decode(192);
    REQUIRE(all);
    // The middle of one is the middle of the other.
    CHECK(std::abs(pixelAt(part->bitmap, 90, 20)[2] - pixelAt(all->bitmap, 138, 36)[2]) < 20);
    CHECK(std::abs(pixelAt(part->bitmap, 10, 90)[1] - pixelAt(all->bitmap, 58, 106)[1]) < 20);
    auto const reduced = source->decode(40);
    REQUIRE(reduced);
    CHECK(reduced->bitmap.size == PixelSize { 40, 40 });
}

TEST_CASE("a TIFF with a camera's name is a picture, one with sensor data below it is none")
{
    FileLayout file;
    file.tiffHeader(0, 64);
    file.text(48, "Maker");
    file.put(1024, FileBytes(8 * 8 * 3, 100));
    std::vector<FileLayout::Field> fields { { 0x0100, 4, 1, 8 }, { 0x0101, 4, 1, 8 },
        { 0x0102, 3, 1, 8 }, { 0x0103, 3, 1, 1 }, { 0x0106, 3, 1, 2 }, { 0x010F, 2, 6, 48 },
        { 0x0111, 4, 1, 1024 }, { 0x0115, 3, 1, 3 }, { 0x0117, 4, 1, 192 } };
    file.directory(64, fields);
    auto const picture = opened(file.bytes);
    REQUIRE(picture);
    CHECK(picture->typeIdentifier() == "public.tiff");

    fields.push_back({ 0x014A, 4, 1, 512 });
    file.directory(64, fields);
    file.directory(512, { { 0x0100, 4, 1, 60 }, { 0x0101, 4, 1, 60 }, { 0x0106, 3, 1, 32803 } });
    auto const raw = opened(file.bytes);
    REQUIRE(raw);
    CHECK(raw->typeIdentifier() == "public.camera-raw-image");
    CHECK(raw->previews() == std::vector<PixelSize> { { 8, 8 } });
}
