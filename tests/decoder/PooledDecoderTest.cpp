#include "decoder/PooledDecoder.h"
#include "codecs/PhotoCollection.h"
#include "decoder/DecoderProgram.h"
#include "decoder/InProcessDecoder.h"
#include "support/Children.h"
#include "support/ImageWriters.h"
#include "support/Places.h"
#include "support/Sanitizers.h"
#include "support/TemporaryFolder.h"
#include <algorithm>
#include <cstring>
#include <doctest/doctest.h>
#include <thread>

using namespace pixelhain;

namespace {

std::string_view view(FileBytes const& bytes)
{
    return { reinterpret_cast<char const*>(bytes.data()), bytes.size() };
}

WorkerPool::Options usualOptions()
{
    WorkerPool::Options options;
    options.program = decoderProgram();
    return options;
}

bool isEqual(Bitmap const& a, Bitmap const& b)
{
    if (a.size != b.size || a.isOpaque != b.isOpaque || a.isEmpty() != b.isEmpty())
        return false;
    for (int y = 0; y < a.size.height; ++y)
        if (std::memcmp(a.row(y), b.row(y), static_cast<std::size_t>(a.size.width) * 4) != 0)
            return false;
    return true;
}

bool isEqual(std::optional<DecodedPicture> const& a, std::optional<DecodedPicture> const& b)
{
    if (!a || !b)
        return !a && !b;
    return a->origin == b->origin && isEqual(a->bitmap, b->bitmap);
}

RgbaPixels colorful(PixelSize size)
{
    auto pixels = RgbaPixels::filled(size, 0x000000FF);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            pixels.at(x, y)[0] = static_cast<std::uint8_t>(x);
            pixels.at(x, y)[1] = static_cast<std::uint8_t>(y);
            pixels.at(x, y)[2] = static_cast<std::uint8_t>(x / 7 + y / 5);
        }
    return pixels;
}

bool isEqual(std::optional<Glance> const& a, std::optional<Glance> const& b)
{
    if (!a || !b)
        return !a && !b;
    return a->meta == b->meta && a->isQuick == b->isQuick && a->bytesRead == b->bytesRead
        && a->embedded.isEmpty() == b->embedded.isEmpty()
        && (a->embedded.isEmpty() || isEqual(a->embedded, b->embedded));
}

struct Decoders {
    PooledDecoder pooled { usualOptions() };
    InProcessDecoder here {};

    bool agree(FileUrl const& url, int maxPixel, EmbeddedPreviews previews)
    {
        DecodeRequest const request { url, maxPixel, previews };
        return isEqual(pooled.decode(request), here.decode(request));
    }
    bool agreeOnAllSizes(FileUrl const& url)
    {
        return agree(url, 160, EmbeddedPreviews::prefer)
            && agree(url, 384, EmbeddedPreviews::prefer)
            && agree(url, 384, EmbeddedPreviews::ignore)
            && agree(url, 2880, EmbeddedPreviews::ignore) && agree(url, 0, EmbeddedPreviews::ignore)
            && agree(url, 2880, EmbeddedPreviews::only)
            && isEqual(pooled.glance(url, 128), here.glance(url, 128))
            && isEqual(pooled.glance(url, 384), here.glance(url, 384))
            && pooled.readMeta(url) == here.readMeta(url);
    }
};

} // namespace

TEST_CASE("a picture decoded in another process is the one decoded here, at every size"
    * doctest::skip(isThreadSanitized))
{
    TemporaryFolder const folder;
    Decoders decoders;
    auto const url = folder.file("a.jpg", view(writeJpeg(colorful({ 5000, 3000 }))));
    for (int const maxPixel : { 1, 100, 1023, 1024, 1025, 2880, 4096, 4097, 5000, 65535, 0 }) {
        CAPTURE(maxPixel);
        CHECK(decoders.agree(url, maxPixel, EmbeddedPreviews::ignore));
    }
    CHECK(decoders.pooled.readMeta(url) == ImageMeta { PixelSize { 5000, 3000 }, false });
}

TEST_CASE("pictures of all kinds come out of another process as they do here")
{
    TemporaryFolder const folder;
    Decoders decoders;
    auto const pixels = colorful({ 700, 500 });
    JpegOptions turned;
    ExifOptions exif;
    exif.orientation = 6;
    exif.thumbnail = writeJpeg(colorful({ 160, 120 }));
    turned.exif = exifBlock(exif);
    PngOptions transparent;
    transparent.kind = PngOptions::Kind::rgba16;
    WebpOptions lossless;
    lossless.isLossless = true;
    std::vector<FileBytes> const files { writeJpeg(pixels), writeJpeg(pixels, turned),
        writePng(pixels), writePng(pixels, transparent), writeWebp(pixels, lossless),
        writeTiff(pixels), writeGif({ 700, 500 }, { GifFrame { pixels }, GifFrame { pixels } }),
        writeJpeg(colorful({ 3000, 9 })), writeJpeg(colorful({ 9, 3000 })) };
    for (auto const& bytes : files) {
        REQUIRE_FALSE(bytes.empty());
        CHECK(decoders.agreeOnAllSizes(folder.file("a", view(bytes))));
    }
}

TEST_CASE("a small JPEG comes out of another process as it is, like here")
{
    TemporaryFolder const folder;
    Decoders decoders;
    JpegOptions turned;
    ExifOptions exif;
    exif.orientation = 6;
    turned.exif = exifBlock(exif);
    auto const small = folder.file("a.jpg", view(writeJpeg(colorful({ 200, 150 }))));
    auto const sideways = folder.file("b.jpg", view(writeJpeg(colorful({ 200, 150 }), turned)));
    auto const request = [](FileUrl const& url, int maxPixel) {
        return DecodeRequest { url, maxPixel, EmbeddedPreviews::prefer, SmallJpegs::pass };
    };
    for (int const maxPixel : { 200, 1200 }) { // into the worker's own space, and a passed one
        auto const passed = decoders.pooled.decode(request(small, maxPixel));
        auto const here = decoders.here.decode(request(small, maxPixel));
        REQUIRE(passed);
        REQUIRE(here);
        REQUIRE(passed->jpeg);
        REQUIRE(here->jpeg);
        CHECK(passed->bitmap.isEmpty());
        CHECK(passed->jpeg.size == PixelSize { 200, 150 });
        CHECK(*passed->jpeg.bytes == *here->jpeg.bytes);
    }
    for (auto const& asked : { request(small, 199), request(sideways, 300), request(small, 0) }) {
        auto const decoded = decoders.pooled.decode(asked);
        REQUIRE(decoded);
        CHECK_FALSE(decoded->jpeg);
        CHECK_FALSE(decoded->bitmap.isEmpty());
    }
}

TEST_CASE(
    "every photo comes out of another process as it does here" * doctest::skip(isThreadSanitized))
{
    Decoders decoders;
    for (auto const& row :
        photoAnswers({ "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "avif", "jxl" })) {
        if (row.at("kind") != "ok")
            continue;
        CAPTURE(row.at("path"));
        CHECK(decoders.agreeOnAllSizes(FileUrl(photosFolder() + "/" + row.at("path"))));
    }
}

TEST_CASE("what every photo states is the same through another process and here")
{
    Decoders decoders;
    for (auto const& row : photoAnswers({ "jpeg", "png", "gif", "webp", "tiff", "bmp", "heif",
             "avif", "jxl", "raw", "broken" })) {
        CAPTURE(row.at("path"));
        FileUrl const url(photosFolder() + "/" + row.at("path"));
        auto const properties = decoders.pooled.readProperties(url);
        if (row.at("kind") == "ok")
            REQUIRE(properties);
        // A picture that its codec dies of dies alone there.
        if (properties)
            CHECK(properties == decoders.here.readProperties(url));
    }
}

TEST_CASE("what a file states comes out of another process")
{
    TemporaryFolder const folder;
    Decoders decoders;
    ExifOptions exif;
    exif.make = "Maker";
    exif.model = "Model X";
    exif.dateTimeOriginal = "2026:11:21 10:00:00";
    JpegOptions options;
    options.exif = exifBlock(exif);
    auto const url = folder.file("a.jpg", view(writeJpeg(colorful({ 60, 40 }), options)));
    PhotoProperties wanted;
    wanted.pixelSize = PixelSize { 60, 40 };
    wanted.make = "Maker";
    wanted.model = "Model X";
    wanted.dateTimeOriginal = "2026:11:21 10:00:00";
    CHECK(decoders.pooled.readProperties(url) == wanted);
    CHECK(decoders.here.readProperties(url) == wanted);
    for (auto const& file : { folder.url().child("gone.jpg"), folder.url(),
             folder.file("text.jpg", "no picture"), folder.file("empty.jpg", "") }) {
        CAPTURE(file.path());
        CHECK_FALSE(decoders.pooled.readProperties(file));
        CHECK_FALSE(decoders.here.readProperties(file));
    }
}

TEST_CASE("no damaged photo costs more than its own picture")
{
    PooledDecoder decoder(usualOptions());
    for (auto const& row : photoAnswers({ "broken" })) {
        CAPTURE(row.at("path"));
        FileUrl const url(photosFolder() + "/" + row.at("path"));
        static_cast<void>(decoder.readMeta(url));
        auto const picture = decoder.decode({ url, 256, EmbeddedPreviews::prefer });
        if (picture)
            CHECK(picture->bitmap.size.longestSide() <= 256);
    }
    TemporaryFolder const folder;
    auto const good = folder.file("a.jpg", view(writeJpeg(colorful({ 60, 40 }))));
    CHECK(decoder.readMeta(good));
}

TEST_CASE("what is missing, empty, no picture or no file yields nothing")
{
    TemporaryFolder const folder;
    PooledDecoder decoder(usualOptions());
    for (auto const& url : { FileUrl(), folder.url(), folder.url().child("gone"),
             folder.file("empty"), folder.file("text.jpg", "no picture"), FileUrl("/dev/zero") }) {
        CHECK_FALSE(decoder.readMeta(url));
        CHECK_FALSE(decoder.decode({ url, 256, EmbeddedPreviews::prefer }));
        CHECK_FALSE(decoder.decode({ url, 0, EmbeddedPreviews::ignore }));
    }
}

TEST_CASE("a picture stays as it is when many others are decoded after it")
{
    TemporaryFolder const folder;
    Decoders decoders;
    auto const first = folder.file("a.jpg", view(writeJpeg(colorful({ 2000, 1500 }))));
    auto const later
        = folder.file("b.jpg", view(writeJpeg(RgbaPixels::filled({ 2000, 1500 }, 0xFF0000FF))));
    for (int const maxPixel : { 384, 2000 }) {
        DecodeRequest const request { first, maxPixel, EmbeddedPreviews::ignore };
        auto const kept = decoders.pooled.decode(request);
        for (int i = 0; i < 8; ++i)
            CHECK(decoders.pooled.decode({ later, maxPixel, EmbeddedPreviews::ignore }));
        CHECK(isEqual(kept, decoders.here.decode(request)));
    }
}

TEST_CASE("pictures outlive the decoder and its processes")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.jpg", view(writeJpeg(colorful({ 2000, 1500 }))));
    std::optional<DecodedPicture> picture;
    {
        PooledDecoder decoder(usualOptions());
        picture = decoder.decode({ url, 2000, EmbeddedPreviews::ignore });
        CHECK(children().size() >= 1);
    }
    CHECK(children().empty());
    REQUIRE(picture);
    InProcessDecoder here;
    CHECK(isEqual(picture, here.decode({ url, 2000, EmbeddedPreviews::ignore })));
}

TEST_CASE("many threads get their own pictures")
{
    TemporaryFolder const folder;
    auto options = usualOptions();
    options.width = 3;
    PooledDecoder decoder(std::move(options));
    std::vector<FileUrl> files;
    for (int i = 0; i < 8; ++i)
        files.push_back(folder.file(std::to_string(i), view(writeJpeg(colorful({ 100 + i, 50 })))));
    std::atomic<int> right = 0;
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < files.size(); ++i)
            threads.emplace_back([&, i] {
                for (int turn = 0; turn < 20; ++turn) {
                    auto const picture = decoder.decode({ files[i], 0, EmbeddedPreviews::ignore });
                    if (picture && picture->bitmap.size.width == 100 + static_cast<int>(i))
                        ++right;
                }
            });
    }
    CHECK(right == 160);
    CHECK(children().size() <= 4);
}

TEST_CASE("a picture too large for the usual worker is decoded by one with more memory")
{
    TemporaryFolder const folder;
    auto options = usualOptions();
    options.addressSpace = std::uint64_t { 256 } << 20;
    PooledDecoder decoder(std::move(options));
    InProcessDecoder here;
    PngOptions grey;
    grey.kind = PngOptions::Kind::grey8;
    // Estimated at 160 MB, more than half of what the usual worker has.
    auto const url = folder.file("a.png", view(writePng(colorful({ 5000, 4000 }), grey)));
    DecodeRequest const request { url, 300, EmbeddedPreviews::ignore };
    auto const picture = decoder.decode(request);
    REQUIRE(picture);
    CHECK(isEqual(picture, here.decode(request)));
}
