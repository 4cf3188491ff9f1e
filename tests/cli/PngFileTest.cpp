#include "cli/PngFile.h"
#include "support/TemporaryFolder.h"
#include <array>
#include <csignal>
#include <cstring>
#include <doctest/doctest.h>
#include <filesystem>
#include <iterator>
#include <png.h>
#include <string>
#include <sys/resource.h>

using namespace pixelhain;

namespace {

std::string bytesOf(FileUrl const& url)
{
    std::ifstream in(url.cString(), std::ios::binary);
    return { std::istreambuf_iterator<char>(in), {} };
}

/// What the library reads back, as RGBA.
std::vector<int> pixelsOf(std::vector<std::uint8_t> const& png)
{
    png_image image {};
    image.version = PNG_IMAGE_VERSION;
    REQUIRE(png_image_begin_read_from_memory(&image, png.data(), png.size()) != 0);
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(image));
    REQUIRE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0);
    return { pixels.begin(), pixels.end() };
}

Bitmap onePixel(std::array<std::uint8_t, 4> bgra, bool isOpaque)
{
    auto bitmap = Bitmap::allocate({ 1, 1 }, isOpaque);
    std::memcpy(bitmap.row(0), bgra.data(), bgra.size());
    return bitmap;
}

} // namespace

TEST_CASE("an opaque picture is written with its colours")
{
    CHECK(pixelsOf(pngOf(onePixel({ 1, 2, 3, 255 }, true))) == std::vector { 3, 2, 1, 255 });
}

TEST_CASE("a translucent picture is written with its colours brought back to full")
{
    CHECK(
        pixelsOf(pngOf(onePixel({ 64, 0, 128, 128 }, false))) == std::vector { 255, 0, 128, 128 });
    CHECK(pixelsOf(pngOf(onePixel({ 0, 0, 0, 0 }, false))) == std::vector { 0, 0, 0, 0 });
}

TEST_CASE("a picture is written to a new file")
{
    TemporaryFolder const folder;
    auto const url = folder.url().child("a\xFF.jpg.png");
    auto const bitmap = onePixel({ 1, 2, 3, 255 }, true);
    CHECK_FALSE(writePng(bitmap, url));
    auto const png = pngOf(bitmap);
    CHECK(bytesOf(url) == std::string(png.begin(), png.end()));
}

TEST_CASE("a file that is there already is not replaced")
{
    TemporaryFolder const folder;
    auto const url = folder.file("a.png", "a photo");
    CHECK(writePng(onePixel({ 1, 2, 3, 255 }, true), url));
    CHECK(bytesOf(url) == "a photo");
}

TEST_CASE("a file that cannot be written whole is taken away again")
{
    TemporaryFolder const folder;
    auto const url = folder.url().child("a.png");
    rlimit usual {};
    REQUIRE(::getrlimit(RLIMIT_FSIZE, &usual) == 0);
    auto const before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit const tenBytes { 10, usual.rlim_max };
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &tenBytes) == 0);
    auto const failure = writePng(onePixel({ 1, 2, 3, 255 }, true), url);
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &usual) == 0);
    std::signal(SIGXFSZ, before);
    CHECK(failure);
    CHECK_FALSE(std::filesystem::exists(url.path()));
}

TEST_CASE("a picture for a folder that is not there is a failure")
{
    CHECK(writePng(onePixel({ 1, 2, 3, 255 }, true), FileUrl("/nowhere/a.png")));
}
