#include "decoder/InProcessDecoder.h"
#include "support/ImageWriters.h"
#include "support/TemporaryFolder.h"
#include <doctest/doctest.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace pixelhain;

namespace {

constexpr std::uint32_t red = 0xC00000FF;
constexpr std::uint32_t blue = 0x0000C0FF;

std::string_view view(FileBytes const& bytes)
{
    return { reinterpret_cast<char const*>(bytes.data()), bytes.size() };
}

bool yieldsNothing(FileUrl const& url)
{
    InProcessDecoder decoder;
    return !decoder.readMeta(url) && !decoder.glance(url, 256)
        && !decoder.decode({ url, 256, EmbeddedPreviews::prefer })
        && !decoder.decode({ url, 256, EmbeddedPreviews::ignore })
        && !decoder.decode({ url, 0, EmbeddedPreviews::ignore });
}

bool isMostlyBlue(Bitmap const& bitmap)
{
    auto const* pixel = bitmap.row(bitmap.size.height / 2) + bitmap.size.width / 2 * 4;
    return pixel[0] > 150 && pixel[2] < 50;
}

long peakMegabytes()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

// A header that promises more than any picture holds: SOI, SOF0, SOS and nothing after.
std::string jpegOfAbsurdSize()
{
    using namespace std::string_literals;
    return "\xFF\xD8\xFF\xC0\0\x11\x08\xFF\xFF\xFF\xFF\x03\x01\x22\0\x02\x11\0\x03\x11\0"
           "\xFF\xDA\0\x0C\x03\x01\0\x02\x11\x03\x11\0\x3F\0"s;
}

} // namespace

TEST_CASE("a picture is read from its file at the size asked for")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const url = folder.file("a.jpg", view(writeJpeg(RgbaPixels::filled({ 400, 300 }, blue))));
    CHECK(decoder.readMeta(url) == ImageMeta { PixelSize { 400, 300 }, false });
    auto const small = decoder.decode({ url, 100, EmbeddedPreviews::prefer });
    REQUIRE(small);
    CHECK(small->bitmap.size == PixelSize { 100, 75 });
    CHECK(small->origin == PixelOrigin::scaled);
    CHECK(isMostlyBlue(small->bitmap));
    auto const full = decoder.decode({ url, 0, EmbeddedPreviews::ignore });
    REQUIRE(full);
    CHECK(full->bitmap.size == PixelSize { 400, 300 });
    CHECK(full->origin == PixelOrigin::full);
}

TEST_CASE("a preview inside the file is preferred where it is large enough")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    ExifOptions exif;
    exif.thumbnail = writeJpeg(RgbaPixels::filled({ 160, 120 }, blue));
    JpegOptions options;
    options.exif = exifBlock(exif);
    auto const url
        = folder.file("a.jpg", view(writeJpeg(RgbaPixels::filled({ 800, 600 }, red), options)));
    auto const near = decoder.decode({ url, 213, EmbeddedPreviews::prefer });
    REQUIRE(near);
    CHECK(near->origin == PixelOrigin::embedded);
    CHECK(near->bitmap.size == PixelSize { 160, 120 });
    CHECK(isMostlyBlue(near->bitmap));
    auto const larger = decoder.decode({ url, 216, EmbeddedPreviews::prefer });
    REQUIRE(larger);
    CHECK(larger->origin == PixelOrigin::scaled);
    CHECK_FALSE(isMostlyBlue(larger->bitmap));
    auto const plain = decoder.decode({ url, 160, EmbeddedPreviews::ignore });
    REQUIRE(plain);
    CHECK_FALSE(isMostlyBlue(plain->bitmap));
}

TEST_CASE("a first look yields the size and the small picture inside the file")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    ExifOptions exif;
    exif.orientation = 6;
    exif.thumbnail = writeJpeg(RgbaPixels::filled({ 160, 120 }, blue));
    JpegOptions options;
    options.exif = exifBlock(exif);
    auto const url
        = folder.file("a.jpg", view(writeJpeg(RgbaPixels::filled({ 800, 600 }, red), options)));
    auto const glance = decoder.glance(url, 256);
    REQUIRE(glance);
    CHECK(glance->meta == ImageMeta { PixelSize { 600, 800 }, false });
    CHECK(glance->embedded.size == PixelSize { 120, 160 });
    CHECK(isMostlyBlue(glance->embedded));
    CHECK_FALSE(glance->isQuick);
    CHECK(glance->bytesRead > 0);
}

TEST_CASE("the bars of a small picture inside the file are cut off, another shape is not shown")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const embeddedIn = [&](PixelSize photo, FileBytes const& thumbnail) {
        ExifOptions exif;
        exif.thumbnail = thumbnail;
        JpegOptions options;
        options.exif = exifBlock(exif);
        auto const bytes = writeJpeg(RgbaPixels::filled(photo, red), options);
        auto const glance = decoder.glance(folder.file("a.jpg", view(bytes)), 512);
        REQUIRE(glance);
        return glance->embedded;
    };
    auto barred = RgbaPixels::filled({ 160, 120 }, 0x000000FF);
    for (int y = 7; y < 113; ++y)
        for (int x = 0; x < 160; ++x)
            barred.at(x, y)[2] = 200;
    auto const cut = embeddedIn({ 900, 600 }, writeJpeg(barred));
    REQUIRE_FALSE(cut.isEmpty());
    CHECK(cut.size == PixelSize { 160, 106 });
    CHECK(isMostlyBlue(cut));
    CHECK(embeddedIn({ 900, 600 }, writeJpeg(RgbaPixels::filled({ 160, 120 }, blue))).isEmpty());
    CHECK(embeddedIn({ 600, 900 }, writeJpeg(RgbaPixels::filled({ 160, 120 }, blue))).isEmpty());
}

TEST_CASE("the bytes decide what a file is, not its name")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const bytes = writeJpeg(RgbaPixels::filled({ 40, 30 }, blue));
    CHECK(decoder.readMeta(folder.file("a.png", view(bytes))));
    CHECK(decoder.decode({ folder.file("b", view(bytes)), 20, EmbeddedPreviews::prefer }));
    CHECK(yieldsNothing(folder.file("text.jpg", "This is no picture.\n")));
}

TEST_CASE("a name that is not UTF-8 and a path near the limit are read like others")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const bytes = writeJpeg(RgbaPixels::filled({ 40, 30 }, blue));
    CHECK(decoder.readMeta(folder.file("gr\xFC\xDF.jpg", view(bytes))));
    auto deep = folder.url();
    while (deep.path().size() + 202 < 4000) {
        deep = deep.child(std::string(200, 'd'));
        REQUIRE(::mkdir(deep.cString(), 0700) == 0);
    }
    auto const url = deep.child("a.jpg");
    {
        std::ofstream out(url.cString(), std::ios::binary);
        out << view(bytes);
    }
    CHECK(decoder.readMeta(url));
    CHECK(yieldsNothing(deep.child(std::string(300, 'x') + ".jpg")));
}

TEST_CASE("what is missing, empty or no file yields nothing")
{
    TemporaryFolder const folder;
    CHECK(yieldsNothing({}));
    CHECK(yieldsNothing(folder.url().child("gone.jpg")));
    CHECK(yieldsNothing(folder.file("empty.jpg")));
    CHECK(yieldsNothing(folder.url()));
    CHECK(yieldsNothing(FileUrl("/dev/zero")));
}

TEST_CASE("a pipe or a socket named like a photo yields nothing and holds nobody up")
{
    TemporaryFolder const folder;
    auto const pipe = folder.url().child("x.jpg");
    REQUIRE(::mkfifo(pipe.cString(), 0600) == 0);
    CHECK(yieldsNothing(pipe));

    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    auto const url = folder.url().child("s.jpg");
    url.path().copy(address.sun_path, sizeof address.sun_path - 1);
    int const listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    REQUIRE(::bind(listener, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0);
    CHECK(yieldsNothing(url));
    ::close(listener);
}

TEST_CASE("a link that leads nowhere or in a circle yields nothing")
{
    TemporaryFolder const folder;
    auto const url = folder.url().child("a.jpg");
    REQUIRE(::symlink("a.jpg", url.cString()) == 0);
    CHECK(yieldsNothing(url));
}

TEST_CASE("of a truncated picture what is there is shown, at its full size")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const bytes = writeJpeg(RgbaPixels::filled({ 400, 300 }, blue));
    auto const url = folder.file("a.jpg", view(bytes).substr(0, bytes.size() * 9 / 10));
    auto const picture = decoder.decode({ url, 200, EmbeddedPreviews::prefer });
    REQUIRE(picture);
    CHECK(picture->bitmap.size == PixelSize { 200, 150 });
    CHECK(yieldsNothing(folder.file("b.jpg", view(bytes).substr(0, 20))));
}

TEST_CASE("a header that promises 65,535 x 65,535 pixels costs no memory")
{
    TemporaryFolder const folder;
    InProcessDecoder decoder;
    auto const url = folder.file("a.jpg", jpegOfAbsurdSize());
    auto const before = peakMegabytes();
    CHECK_FALSE(decoder.decode({ url, 256, EmbeddedPreviews::prefer }));
    CHECK_FALSE(decoder.decode({ url, 65535, EmbeddedPreviews::ignore }));
    CHECK_FALSE(decoder.decode({ url, 0, EmbeddedPreviews::ignore }));
    CHECK(peakMegabytes() - before < 64);
}
