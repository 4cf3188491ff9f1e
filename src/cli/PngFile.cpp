#include "cli/PngFile.h"
#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <png.h>
#include <span>
#include <system_error>
#include <unistd.h>

namespace pixelhain {

namespace {

void append(png_structp png, png_bytep bytes, std::size_t count)
{
    auto& into = *static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(png));
    bool isKept = true;
    try {
        into.insert(into.end(), bytes, bytes + count);
    } catch (std::exception const&) {
        isKept = false;
    }
    if (!isKept)
        png_error(png, "no memory");
}

// PNG keeps colours as they are without their alpha.
std::uint8_t unmultiplied(std::uint8_t channel, std::uint8_t alpha)
{
    if (alpha == 0)
        return 0;
    int const whole = (channel * 255 + alpha / 2) / alpha;
    return static_cast<std::uint8_t>(std::min(whole, 255));
}

void fillRow(Bitmap const& bitmap, int y, std::uint8_t* to)
{
    auto const* from = bitmap.row(y);
    for (int x = 0; x < bitmap.size.width; ++x, from += 4) {
        auto const alpha = bitmap.isOpaque ? std::uint8_t { 255 } : from[3];
        for (int const channel : { 2, 1, 0 })
            *to++ = unmultiplied(from[channel], alpha);
        if (!bitmap.isOpaque)
            *to++ = alpha;
    }
}

struct PngWriting {
    png_structp png = nullptr;
    png_infop info = nullptr;
    ~PngWriting() { png_destroy_write_struct(&png, &info); }
};

// The library leaves this function from its middle on an error: nothing in it needs unwinding.
bool encode(PngWriting& writing, Bitmap const& bitmap, std::vector<std::uint8_t>& into,
    std::vector<std::uint8_t>& row)
{
    constexpr int quick = 2; // of 9: these files are looked at and thrown away
    auto* const png = writing.png;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(cert-err52-cpp): the library knows no other way
        return false;
    png_set_write_fn(png, &into, append, nullptr);
    png_set_compression_level(png, quick);
    png_set_IHDR(png, writing.info, static_cast<png_uint_32>(bitmap.size.width),
        static_cast<png_uint_32>(bitmap.size.height), 8,
        bitmap.isOpaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
        PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB(png, writing.info, PNG_sRGB_INTENT_PERCEPTUAL);
    png_write_info(png, writing.info);
    for (int y = 0; y < bitmap.size.height; ++y) {
        fillRow(bitmap, y, row.data());
        png_write_row(png, row.data());
    }
    png_write_end(png, nullptr);
    return true;
}

bool writeAll(int descriptor, std::span<std::uint8_t const> bytes)
{
    while (!bytes.empty()) {
        auto const written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

Failure failureOf(int error)
{
    return { std::generic_category().message(error) };
}

} // namespace

std::vector<std::uint8_t> pngOf(Bitmap const& bitmap)
{
    PngWriting writing;
    writing.png = png_create_write_struct(
        PNG_LIBPNG_VER_STRING, nullptr, nullptr, [](png_structp, png_const_charp) {});
    if (writing.png == nullptr)
        return {};
    writing.info = png_create_info_struct(writing.png);
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(bitmap.size.width) * 4);
    if (writing.info == nullptr || !encode(writing, bitmap, bytes, row))
        bytes.clear();
    return bytes;
}

std::optional<Failure> writePng(Bitmap const& bitmap, FileUrl const& url)
{
    constexpr mode_t mode = 0666; // less the user's mask
    auto const bytes = pngOf(bitmap);
    if (bytes.empty())
        return failureOf(ENOMEM);
    int const descriptor = ::open(url.cString(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor < 0)
        return failureOf(errno);
    errno = 0;
    bool const isWritten = writeAll(descriptor, bytes);
    int error = isWritten ? 0 : errno;
    if (::close(descriptor) != 0 && isWritten)
        error = errno;
    if (isWritten && error == 0)
        return std::nullopt;
    ::unlink(url.cString());
    return failureOf(error);
}

} // namespace pixelhain
