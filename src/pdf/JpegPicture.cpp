#include "pdf/JpegPicture.h"
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace pixelhain {

namespace {

constexpr int quality = 90; // of 100: no block shows in print, and a page stays small

struct ErrorExit {
    jpeg_error_mgr manager {};
    std::jmp_buf place {};
};

struct Compression {
    jpeg_compress_struct jpeg {};
    ErrorExit error;
    unsigned char* bytes = nullptr;
    unsigned long count = 0;

    ~Compression()
    {
        jpeg_destroy_compress(&jpeg);
        std::free(bytes);
    }
};

// Premultiplied: what a pixel lacks comes from behind it.
void fillRow(Bitmap const& bitmap, int y, int background, std::uint8_t* to)
{
    auto const* from = bitmap.row(y);
    for (int x = 0; x < bitmap.size.width; ++x, from += 4) {
        int const behind = bitmap.isOpaque ? 0 : (255 - from[3]) * background / 255;
        for (int const channel : { 2, 1, 0 }) {
            int const value = from[channel] + behind;
            *to++ = static_cast<std::uint8_t>(value > 255 ? 255 : value);
        }
    }
}

// The library leaves this function from its middle on an error: nothing in it needs unwinding.
bool encode(
    Compression& compression, Bitmap const& bitmap, int background, std::vector<std::uint8_t>& row)
{
    auto& jpeg = compression.jpeg;
    jpeg.err = jpeg_std_error(&compression.error.manager);
    compression.error.manager.error_exit = [](j_common_ptr common) {
        std::longjmp(reinterpret_cast<ErrorExit*>(common->err)->place, 1);
    };
    compression.error.manager.output_message = [](j_common_ptr) {};
    if (setjmp(compression.error.place) != 0) // NOLINT(cert-err52-cpp): the library's only way
        return false;
    jpeg_create_compress(&jpeg);
    jpeg_mem_dest(&jpeg, &compression.bytes, &compression.count);
    jpeg.image_width = static_cast<JDIMENSION>(bitmap.size.width);
    jpeg.image_height = static_cast<JDIMENSION>(bitmap.size.height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    jpeg.optimize_coding = TRUE;
    jpeg_start_compress(&jpeg, TRUE);
    auto* scanline = row.data();
    for (int y = 0; y < bitmap.size.height; ++y) {
        fillRow(bitmap, y, background, scanline);
        jpeg_write_scanlines(&jpeg, &scanline, 1);
    }
    jpeg_finish_compress(&jpeg);
    return true;
}

} // namespace

std::vector<std::uint8_t> jpegOf(Bitmap const& bitmap, int background)
{
    if (bitmap.isEmpty())
        return {};
    std::vector<std::uint8_t> row(static_cast<std::size_t>(bitmap.size.width) * 3);
    Compression compression;
    if (!encode(compression, bitmap, background, row))
        return {};
    return { compression.bytes, compression.bytes + compression.count };
}

} // namespace pixelhain
