#include "support/LibraryJpeg.h"
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace pixelhain {

namespace {

struct Errors {
    jpeg_error_mgr manager {};
    std::jmp_buf jump {};
};

void leave(j_common_ptr common)
{
    std::longjmp(reinterpret_cast<Errors*>(common->err)->jump, 1);
}

void note(j_common_ptr common, int level)
{
    if (level < 0)
        ++common->err->num_warnings;
}

void setErrors(j_common_ptr common, Errors& errors)
{
    common->err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = leave;
    errors.manager.emit_message = note;
}

void readHeader(jpeg_decompress_struct& library, std::span<std::uint8_t const> jpeg)
{
    jpeg_create_decompress(&library);
    library.mem->max_memory_to_use = 1L << 28;
    jpeg_mem_src(&library, jpeg.data(), static_cast<unsigned long>(jpeg.size()));
    jpeg_read_header(&library, TRUE);
}

void readEighth(jpeg_decompress_struct& library, LibraryEighth& into)
{
    library.scale_num = 1;
    library.scale_denom = 8;
    auto const isInk = library.jpeg_color_space == JCS_CMYK || library.jpeg_color_space == JCS_YCCK;
    library.out_color_space = isInk ? JCS_CMYK : JCS_EXT_BGRA;
    jpeg_start_decompress(&library);
    into.isProgressive = library.progressive_mode == TRUE;
    into.size = { static_cast<int>(library.output_width), static_cast<int>(library.output_height) };
    auto const stride = std::size_t { library.output_width } * 4;
    into.pixels.resize(stride * library.output_height);
    while (library.output_scanline < library.output_height) {
        JSAMPROW row = into.pixels.data() + library.output_scanline * stride;
        jpeg_read_scanlines(&library, &row, 1);
    }
}

void flatten(jpeg_decompress_struct& library, jvirt_barray_ptr* planes)
{
    for (int i = 0; i < library.num_components; ++i) {
        auto const& component = library.comp_info[i];
        for (unsigned y = 0; y < component.height_in_blocks; ++y) {
            auto** rows = library.mem->access_virt_barray(
                reinterpret_cast<j_common_ptr>(&library), planes[i], y, 1, TRUE);
            for (unsigned x = 0; x < component.width_in_blocks; ++x)
                for (int k = 1; k < DCTSIZE2; ++k)
                    rows[0][x][k] = 0;
        }
    }
}

bool areLevelsSmall(jpeg_decompress_struct& library, jvirt_barray_ptr* planes)
{
    constexpr long most = 8 * 500;
    for (int i = 0; i < library.num_components; ++i) {
        auto const& component = library.comp_info[i];
        for (unsigned y = 0; y < component.height_in_blocks; ++y) {
            auto** rows = library.mem->access_virt_barray(
                reinterpret_cast<j_common_ptr>(&library), planes[i], y, 1, FALSE);
            for (unsigned x = 0; x < component.width_in_blocks; ++x) {
                long sum = 0;
                for (int k = 0; k < DCTSIZE2 && component.quant_table != nullptr; ++k)
                    sum += std::labs(long { rows[0][x][k] } * component.quant_table->quantval[k]);
                if (sum > most)
                    return false;
            }
        }
    }
    return true;
}

} // namespace

bool staysWithinLevels(std::span<std::uint8_t const> jpeg)
{
    Errors errors;
    jpeg_decompress_struct library {};
    setErrors(reinterpret_cast<j_common_ptr>(&library), errors);
    bool const areSmall = [&] {
        if (setjmp(errors.jump) != 0)
            return false;
        readHeader(library, jpeg);
        return areLevelsSmall(library, jpeg_read_coefficients(&library));
    }();
    jpeg_destroy_decompress(&library);
    return areSmall;
}

std::optional<LibraryEighth> libraryEighth(std::span<std::uint8_t const> jpeg)
{
    Errors errors;
    jpeg_decompress_struct library {};
    LibraryEighth eighth;
    setErrors(reinterpret_cast<j_common_ptr>(&library), errors);
    bool const isRead = [&] {
        if (setjmp(errors.jump) != 0)
            return false;
        readHeader(library, jpeg);
        readEighth(library, eighth);
        return true;
    }();
    eighth.isSound = errors.manager.num_warnings == 0;
    jpeg_destroy_decompress(&library);
    if (!isRead)
        return {};
    return eighth;
}

std::vector<std::uint8_t> withMeansOnly(std::span<std::uint8_t const> jpeg)
{
    Errors errors;
    jpeg_decompress_struct library {};
    jpeg_compress_struct writer {};
    setErrors(reinterpret_cast<j_common_ptr>(&library), errors);
    writer.err = &errors.manager;
    unsigned char* memory = nullptr;
    unsigned long length = 0;
    bool const isWritten = [&] {
        if (setjmp(errors.jump) != 0)
            return false;
        readHeader(library, jpeg);
        auto* const planes = jpeg_read_coefficients(&library);
        flatten(library, planes);
        jpeg_create_compress(&writer);
        jpeg_mem_dest(&writer, &memory, &length);
        jpeg_copy_critical_parameters(&library, &writer);
        writer.optimize_coding = TRUE;
        jpeg_write_coefficients(&writer, planes);
        jpeg_finish_compress(&writer);
        return true;
    }();
    std::vector<std::uint8_t> flat;
    if (isWritten)
        flat.assign(memory, memory + length);
    jpeg_destroy_compress(&writer);
    jpeg_destroy_decompress(&library);
    std::free(memory);
    return flat;
}

} // namespace pixelhain
